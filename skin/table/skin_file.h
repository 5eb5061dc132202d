// A skin file read into paths and colours, with no window in sight.
//
// Errors: none are told. What is missing or cannot be understood is not set: a path is empty, a colour has no value.
//         Whatever the file holds, no path leaves the Styles folder.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jotlet {

// 0x00BBGGRR, as everywhere.
using SkinColour = std::optional<std::uint32_t>;

// Pictures of a caption button, one a state.
using ButtonPaths = std::array<std::string, 3>;

// Full paths of the picture files that are there, and the colours that the file gives.
struct SkinFile {
    std::string bmpTitle;
    std::string bmpTitleLeft;
    std::string bmpTitleRight;
    std::string bmpSubTitle;
    ButtonPaths bmpClose;
    ButtonPaths bmpRestore;
    ButtonPaths bmpMinimize;
    std::string bmpResize;
    SkinColour colorBack;
    SkinColour colorBackUp;
    SkinColour colorBackDown;
    SkinColour colorTitle;
    SkinColour colorTitleUp;
    SkinColour colorTitleDown;
    SkinColour colorFrame;
    SkinColour colorFrameUp;
    SkinColour colorFrameDown;
    SkinColour colorTextTitle;
    SkinColour colorPanelFrame;
};

// Reads the skin of this file name (see FindSkinPath); of a missing one nothing is set.
SkinFile ReadSkinFile(std::string_view skinFile);

// "red,green,blue" in decimal, of each the low 8 bits; blanks before a number and anything behind the last one don't
// matter. No value when there aren't three numbers.
SkinColour ParseSkinColour(std::string_view text);

}  // namespace jotlet
