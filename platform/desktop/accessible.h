// What a window that paints itself tells a screen reader. The layer asks with kWmDescribe; a window that fills nothing
// is passed over.
#pragma once

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
};

struct AccessibleDescription {
    AccessibleRole role = AccessibleRole::None;
    std::string name;
    std::vector<AccessiblePart> parts;
};

// Tells the desktop's accessibility bus that the window's parts, selection or name changed.
void AccessibleChanged(std::uintptr_t window);

}  // namespace jotlet
