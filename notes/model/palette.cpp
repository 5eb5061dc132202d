#include "notes/model/palette.h"

#include "platform/base/text.h"

namespace jotlet {

int ColourToIndex(std::uint32_t colour)
{
    for (const PaletteColour& entry : kPalette) {
        if (entry.colour == colour)
            return entry.index;
    }
    return 4;
}

std::uint32_t IndexToColour(std::int64_t index)
{
    for (const PaletteColour& entry : kPalette) {
        if (entry.index == index)
            return entry.colour;
    }
    return kYellow;
}

std::optional<std::string_view> ColourName(std::uint32_t colour)
{
    for (const PaletteColour& entry : kPalette) {
        if (entry.colour == colour)
            return entry.name;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> ColourByName(std::string_view name)
{
    for (const PaletteColour& entry : kPalette) {
        if (EqualsFolded(entry.name, name))
            return entry.colour;
    }
    return std::nullopt;
}

}  // namespace jotlet
