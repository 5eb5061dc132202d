// What a window that paints itself tells a screen reader. The layer asks with kWmDescribe; a window that fills nothing
// is passed over.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/geometry.h"

namespace jotlet {

enum class AccessibleRole {
    None,
    Pane,
    List,
    ListItem,
    ToolBar,
    Button,
    TabList,
    Tab,
    Calendar,
    Day,
    Text,
    Slider,
    Picture
};

// A part that the window shows: a cell, a tool bar item, a day.
struct AccessiblePart {
    AccessibleRole role = AccessibleRole::None;
    std::string name;
    Rect bounds;  // client coordinates
    bool selected = false;
    bool focused = false;
    bool enabled = true;
    std::string detail = {};  // what is seen but is not in the name
    // A press of the part tells the window this system command; 0: it is a click in its middle.
    int sysCommand = 0;
};

struct AccessibleValue {
    double now = 0;
    double least = 0;
    double most = 0;
};

struct AccessibleDescription {
    AccessibleRole role = AccessibleRole::None;
    std::string name;
    std::vector<AccessiblePart> parts;
    // Where a press of the window itself goes, in client coordinates; a button's is its middle unless it says so.
    std::optional<Rect> press = {};
    std::optional<AccessibleValue> value = {};
    // What to do here; also shown as a tip while the mouse rests on the window.
    std::string hint = {};
};

// Tells the desktop's accessibility bus that the window's parts, selection or name changed.
void AccessibleChanged(std::uintptr_t window);

}  // namespace jotlet
