// The skin that the frame and the pane bar draw with: colours from skin/table, pictures loaded into bitmaps.
//
// Owns:    the process's one SkinTable. A reference from LoadSkin stays valid; its values change with ReloadSkin.
// Threads: one, the user interface's.
// Errors:  none are told. What a skin lacks stays unset: a bitmap is none, a colour is kUnsetColour. A picture that is
//          no image, or too large to be one of a frame with those read before it, counts as missing.
#pragma once

#include <array>

#include "platform/desktop/bitmap.h"

namespace jotlet {

// Drawn as it stands, nearly black; a skin cannot use it as a colour.
inline constexpr Colour kUnsetColour = 5;

// Caption button states, in the order of a skin's three pictures.
using ButtonBitmaps = std::array<Bitmap, 3>;

struct SkinTable {
    Bitmap bmpTitle;
    Bitmap bmpTitleLeft;
    Bitmap bmpTitleRight;
    Bitmap bmpSubTitle;
    ButtonBitmaps bmpClose;
    ButtonBitmaps bmpRestore;
    ButtonBitmaps bmpMinimize;
    Bitmap bmpResize;
    Colour colorBack = kUnsetColour;
    Colour colorBackUp = kUnsetColour;
    Colour colorBackDown = kUnsetColour;
    Colour colorTitle = kUnsetColour;
    Colour colorTitleUp = kUnsetColour;
    Colour colorTitleDown = kUnsetColour;
    Colour colorFrame = kUnsetColour;
    Colour colorFrameUp = kUnsetColour;
    Colour colorFrameDown = kUnsetColour;
    Colour colorTextTitle = 0;  // keeps the value of the skin before, where a skin has none
    Colour colorPanelFrame = kUnsetColour;
    bool loaded = false;
};

// Loads the current skin at the first call; later calls give the table at once.
const SkinTable& LoadSkin();
// Frees the bitmaps and unsets the colours, the title text's excepted.
void FreeSkin();
const SkinTable& ReloadSkin();

}  // namespace jotlet
