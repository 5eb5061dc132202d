// What a dialog is made from: its frame and its controls, in dialog units.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace jotlet {

enum class ControlKind {
    Push,
    DefaultPush,
    Check,
    Radio,
    Group,
    Text,
    RightText,
    CentreText,
    Edit,
    ListBox,
    Combo,
    DropList,
    Picture,
    Icon
};

enum ControlStyle : std::uint32_t {
    kControlGroup = 1,        // starts a group of radio buttons
    kControlMultiLine = 2,    // edit: several lines, Return makes a new one
    kControlPassword = 4,     // edit: masked
    kControlLowerCase = 8,    // edit: typed capitals become small
    kControlReadOnly = 16,    // edit
    kControlSorted = 32,      // list box, combo
    kControlOwnerDrawn = 64,  // list box, drop list
    kControlHidden = 128,
    kControlDisabled = 256,
    kControlScroll = 512,   // vertical scroll bar
    kControlSunken = 1024,  // static: a frame around it
};

struct ControlTemplate {
    ControlKind kind = ControlKind::Text;
    int id = -1;
    std::string_view text = {};  // '&' marks the access key; a picture's or icon's resource number
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;  // of a combo: with its list folded out
    std::uint32_t style = 0;
};

enum DialogStyle : std::uint32_t {
    kDialogNoCaption = 1,
    kDialogPicker = 2,  // opens at a control; as a popup of it where windows cannot choose their place
};

struct DialogTemplate {
    int id = 0;
    std::string_view caption = {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::uint32_t style = 0;
    std::vector<ControlTemplate> controls = {};
};

// Null when there is no such dialog. Each dialog's table stands in resources/dialogs/<name>.cpp.
const DialogTemplate* FindDialogTemplate(int id);

}  // namespace jotlet
