// Colour arithmetic, edges and the program's pictures, as every widget draws with them.
#pragma once

#include <string_view>

#include "platform/desktop/device_context.h"

namespace jotlet {

// Each of red, green and blue raised (lowered) by `steps`, stopping at 255 (0). With steps under 1 the colour as it
// was.
constexpr Colour Lighten(Colour colour, int steps);
constexpr Colour Darken(Colour colour, int steps);

// 1 when done or when the two are equal, 0 for no bitmap.
int ReplaceColour(Bitmap& bitmap, Colour from, Colour to);
// At natural size; unless `from` and `to` are both kNoColour the bitmap is recoloured first, and stays so.
void DrawBitmap(DeviceContext& dc, Bitmap& bitmap, int x, int y, Colour from = kNoColour, Colour to = kNoColour);
// A named picture ("tbar1.bmp"). Throws std::runtime_error "Unable to find resource": a broken build.
Bitmap LoadResourceBitmap(std::string_view name);
void DrawResourceBitmap(DeviceContext& dc, int x, int y, std::string_view name);

void DrawRect(DeviceContext& dc, const Rect& rect, Colour colour);
// Top and left edges in b; bottom edge, and right edge one pixel inside, in a.
void DrawBevel(DeviceContext& dc, const Rect& rect, Colour a, Colour b);
// Bottom edge from x + 1 and right edge in b, left and top edges in a.
void DrawSunkenBevel(DeviceContext& dc, const Rect& rect, Colour a, Colour b);

constexpr Colour ShiftChannels(Colour colour, int steps)
{
    const auto shift = [steps](int channel) {
        const int moved = channel + steps;
        return moved < 0 ? 0 : moved > 255 ? 255 : moved;
    };
    return Rgb(shift(RedOf(colour)), shift(GreenOf(colour)), shift(BlueOf(colour)));
}
constexpr Colour Lighten(Colour colour, int steps)
{
    return steps < 1 ? colour : ShiftChannels(colour, steps);
}
constexpr Colour Darken(Colour colour, int steps)
{
    return steps < 1 ? colour : ShiftChannels(colour, -steps);
}

}  // namespace jotlet
