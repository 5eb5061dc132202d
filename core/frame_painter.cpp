#include "core/frame_painter.h"

#include <string>

#include "skin/drawing.h"
#include "skin/fonts.h"
#include "skin/skin_bitmaps.h"

namespace jotlet {
namespace {

constexpr int kTitleEnd = 4;  // width of the title's end pictures
constexpr int kTitleTextGap = 4;

void PaintTitle(DeviceContext& dc, Size window, const SkinTable& skin)
{
    const Rect area = FrameTitleArea(window);
    if (skin.colorTitle != kUnsetColour)
        dc.FillRect(area, skin.colorTitle);
    if (skin.bmpTitle)
        dc.StretchBitmap(skin.bmpTitle, area.Inset(-1, 0));
    if (skin.bmpTitleLeft)
        dc.StretchBitmap(skin.bmpTitleLeft, {0, 1, kTitleEnd, area.bottom});
    if (skin.bmpTitleRight)
        dc.StretchBitmap(skin.bmpTitleRight, {area.right - kTitleEnd, 1, area.right, area.bottom});
}

void PaintOutline(DeviceContext& dc, Size window, const SkinTable& skin)
{
    const int right = window.width - 1;
    const int bottom = window.height - 1;
    const int sideTop = FrameTitleRect(window).Height();
    dc.DrawLine(1, sideTop, 1, bottom, skin.colorFrameUp);
    dc.DrawLine(1, 0, right, 0, skin.colorFrame);
    dc.DrawLine(right, sideTop, right, bottom, skin.colorFrameDown);
    dc.DrawLine(1, bottom, right, bottom, skin.colorFrameDown);
}

// Centred in the title; a text that would run under the buttons is cut before them instead.
void PaintTitleText(DeviceContext& dc, Size window, std::string_view text, Colour colour)
{
    const Rect title = FrameTitleRect(window);
    const int buttons = title.right - CaptionButtonRect(window, CaptionButton::Minimise).left + kTitleTextGap;
    const bool fits = dc.MeasureText(text, SansFont(700)).width <= title.Width() - 2 * buttons;
    const Rect area = fits ? title : title.Inset(kTitleTextGap, 0, buttons, 0);
    dc.DrawText(area, text, SansFont(700), colour,
                kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}

struct ButtonPictures {
    const ButtonBitmaps& skin;
    std::string_view builtIn;
};

ButtonPictures PicturesOf(const SkinTable& skin, CaptionButton button)
{
    switch (button) {
        case CaptionButton::Maximise:
            return {skin.bmpRestore, "maximize_button"};
        case CaptionButton::Minimise:
            return {skin.bmpMinimize, "minimize_button"};
        case CaptionButton::Close:
            break;
    }
    return {skin.bmpClose, "close_button"};
}

}  // namespace

void PaintFrameMargin(DeviceContext& dc, Size window, std::string_view title, const ButtonLooks& looks)
{
    const SkinTable& skin = LoadSkin();
    const FrameStrips strips = LayOutStrips(window);
    for (const Rect& strip : {strips.left, strips.right, strips.bottom})
        dc.FillRect(strip, skin.colorFrame);
    PaintTitle(dc, window, skin);
    PaintOutline(dc, window, skin);
    PaintTitleText(dc, window, title, skin.colorTextTitle);
    PaintCaptionButtons(dc, window, looks);
}

void PaintCaptionButtons(DeviceContext& dc, Size window, const ButtonLooks& looks)
{
    const SkinTable& skin = LoadSkin();
    for (const CaptionButton button : kCaptionButtons) {
        const auto look = static_cast<std::size_t>(looks[static_cast<std::size_t>(button)]);
        const ButtonPictures pictures = PicturesOf(skin, button);
        const Rect area = CaptionButtonRect(window, button);
        if (pictures.skin[look])
            dc.DrawBitmap(pictures.skin[look], area.left, area.top);
        else
            DrawResourceBitmap(dc, area.left, area.top,
                               std::string(pictures.builtIn) + std::to_string(look + 1) + ".bmp");
    }
}

void PaintFrameRings(DeviceContext& dc, Size client, const PaneColours& colours)
{
    const FrameRings rings = LayOutRings(client);
    for (const Rect& band : rings.outer)
        dc.FillRect(band, colours.ringColour);
    for (const Rect& band : rings.inner)
        dc.FillRect(band, colours.innerRingColour);
    for (const Rect& band : rings.shadow)
        dc.FillRect(band, colours.shadowColour);
    dc.FillRect(rings.header, colours.headerColour);
    const Point grip = FrameGripPicture(client);
    if (const Bitmap& picture = LoadSkin().bmpResize)
        dc.DrawBitmap(picture, grip.x, grip.y);
}

}  // namespace jotlet
