#include "toolkit/glyph.h"

#include "skin/drawing.h"

namespace jotlet {

Point CentredIn(const Rect& area, Size picture)
{
    return {area.left + (area.Width() - picture.width) / 2, area.top + (area.Height() - picture.height) / 2};
}

void DrawGlyph(DeviceContext& dc, const Rect& area, int pictureId, Colour background, Colour key, Colour colour)
{
    Bitmap glyph = Bitmap::FromResource(pictureId);
    if (!glyph)
        return;
    // The drawing first: the new background may well be its key.
    if (colour != kNoColour)
        ReplaceColour(glyph, key, colour);
    ReplaceColour(glyph, kMagenta, background);
    const Point place = CentredIn(area, glyph.GetSize());
    dc.DrawBitmap(glyph, place.x, place.y);
}

}  // namespace jotlet
