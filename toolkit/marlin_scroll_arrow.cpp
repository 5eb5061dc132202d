#include "toolkit/marlin_scroll_arrow.h"

#include "skin/drawing.h"
#include "toolkit/glyph.h"

namespace jotlet {
namespace {

constexpr int kUpPicture = 3500;
constexpr int kDownPicture = 3501;
constexpr int kHeldDarkness = 40;

}  // namespace

void MarlinScrollArrow::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const bool coloured = faceColour != kNoColour && glyphColour != kNoColour && frameColour != kNoColour;
    Colour face = coloured ? faceColour : colour;
    if (pressed)
        face = Darken(face, kHeldDarkness);
    const Rect client = GetClientArea();
    dc.FillRect(client, face);
    DrawGlyph(dc, client, id == kScrollArrowUp ? kUpPicture : kDownPicture, face, 0xFFFFFF, coloured ? glyphColour : 0);
    dc.FrameRect(client, coloured ? frameColour : 0);
}

}  // namespace jotlet
