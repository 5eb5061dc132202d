#include "skin/drawing.h"

#include <stdexcept>

namespace jotlet {

int ReplaceColour(Bitmap& bitmap, Colour from, Colour to)
{
    if (from == to)
        return 1;
    return bitmap ? bitmap.Replace(from, to) : 0;
}

void DrawBitmap(DeviceContext& dc, Bitmap& bitmap, int x, int y, Colour from, Colour to)
{
    if (!bitmap)
        return;
    if (from != kNoColour || to != kNoColour)
        ReplaceColour(bitmap, from, to);
    dc.DrawBitmap(bitmap, x, y);
}

Bitmap LoadResourceBitmap(std::string_view name)
{
    Bitmap bitmap = Bitmap::FromResource(name);
    if (!bitmap)
        throw std::runtime_error("Unable to find resource");
    return bitmap;
}

void DrawResourceBitmap(DeviceContext& dc, int x, int y, std::string_view name)
{
    dc.DrawBitmap(LoadResourceBitmap(name), x, y);
}

void DrawRect(DeviceContext& dc, const Rect& rect, Colour colour)
{
    dc.DrawLine(rect.left, rect.top, rect.right, rect.top, colour);
    dc.DrawLine(rect.right, rect.top, rect.right, rect.bottom, colour);
    dc.DrawLine(rect.right, rect.bottom, rect.left, rect.bottom, colour);
    dc.DrawLine(rect.left, rect.bottom, rect.left, rect.top, colour);
}

void DrawBevel(DeviceContext& dc, const Rect& rect, Colour a, Colour b)
{
    dc.DrawLine(rect.left, rect.bottom, rect.right - 1, rect.bottom, a);
    dc.DrawLine(rect.right - 1, rect.bottom, rect.right - 1, rect.top, a);
    dc.DrawLine(rect.left, rect.top, rect.right - 1, rect.top, b);
    dc.DrawLine(rect.left, rect.top, rect.left, rect.bottom, b);
}

void DrawSunkenBevel(DeviceContext& dc, const Rect& rect, Colour a, Colour b)
{
    dc.DrawLine(rect.left + 1, rect.bottom, rect.right, rect.bottom, b);
    dc.DrawLine(rect.right, rect.bottom, rect.right, rect.top, b);
    dc.DrawLine(rect.left, rect.bottom, rect.left, rect.top, a);
    dc.DrawLine(rect.left, rect.top, rect.right, rect.top, a);
}

}  // namespace jotlet
