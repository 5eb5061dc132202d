#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

// The five colours that a user can choose for a note. A note stores the colour value itself; delimited text carries the
// index.

namespace jotlet {

inline constexpr std::uint32_t kYellow = 0x65E7FF;  // 0x00BBGGRR, as all colours
inline constexpr std::uint32_t kGreen = 0x76E476;
inline constexpr std::uint32_t kRed = 0x495EFF;
inline constexpr std::uint32_t kBlue = 0xECB194;
inline constexpr std::uint32_t kGrey = 0xF5F5F5;

struct PaletteColour {
    std::uint32_t colour;
    int index;  // in delimited text
    std::string_view name;
};

// In the order of the editor's colour box.
inline constexpr std::array<PaletteColour, 5> kPalette = {{
    {kYellow, 3, "yellow"},
    {kGreen, 1, "green"},
    {kRed, 2, "red"},
    {kBlue, 0, "blue"},
    {kGrey, 4, "grey"},
}};

// 4 for every colour that is not in the palette.
int ColourToIndex(std::uint32_t colour);
// Yellow for every number without a colour.
std::uint32_t IndexToColour(std::int64_t index);

// "yellow", "green", "red", "blue" or "grey"; nothing outside the palette.
std::optional<std::string_view> ColourName(std::uint32_t colour);
std::optional<std::uint32_t> ColourByName(std::string_view name);

}  // namespace jotlet
