#include "toolkit/intro_pane.h"

#include <utility>

#include "resources/string_ids.h"
#include "skin/drawing.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr int kHeaderHeight = 26;
constexpr int kHeaderTextX = 15;
constexpr int kPictureWidth = 140;
constexpr int kPictureHeight = 250;
constexpr int kTextX = 150;
constexpr int kTextY = 55;
constexpr int kTextNarrower = 160;  // text width: client width less this
constexpr int kTextShorter = 65;    // text height: client height less this
constexpr int kTitleTop = 35;
constexpr int kTitleBottom = 54;
constexpr Colour kTitleColour = 497583;

constexpr Colour kTextBack = 0xADFEFE;
constexpr Colour kTextColour = 876176;

}  // namespace

IntroLayout LayOutIntro(Size client)
{
    return {.picture = Rect::At(0, kHeaderHeight, kPictureWidth, kPictureHeight),
            .text = Rect::At(kTextX, kTextY, client.width - kTextNarrower, client.height - kTextShorter),
            .title = {kTextX, kTitleTop, client.width, kTitleBottom},
            .header = {0, 0, client.width, kHeaderHeight}};
}

IntroPane::IntroPane(const PaneColours& paneColours, std::string paneName, std::string module)
    : MarlinPane(paneColours, std::move(paneName)),
      moduleName(std::move(module)),
      picture(std::make_unique<IntroPicture>()),
      text(std::make_unique<IntroText>(kStringIntro, kTextBack, kTextColour))
{
}

int IntroPane::OnEntered()
{
    if (text)
        FocusWindow(text->window);
    return 1;
}

MessageParam IntroPane::OnCreate(WndMessage&)
{
    picture->Create(this);
    text->Create(this);
    return 0;
}

MessageParam IntroPane::OnClose(WndMessage&)
{
    picture.reset();
    text.reset();
    return 0;
}

MessageParam IntroPane::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const IntroLayout layout = LayOutIntro({client.Width(), client.Height()});
    if (picture)
        MoveTo(picture->window, layout.picture);
    if (text)
        MoveTo(text->window, layout.text);
    return 0;
}

void IntroPane::CollectTabStops(TabStops& stops)
{
    if (text)
        text->CollectTabStops(stops);
}

void IntroPane::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    static const Bitmap bar = LoadResourceBitmap("tbar2.bmp");
    static const Bitmap corner = LoadResourceBitmap("tbar2_corner.bmp");
    const Rect client = GetClientArea();
    const IntroLayout layout = LayOutIntro({client.Width(), client.Height()});
    dc.FillRect(client, colours.backColour);
    dc.StretchBitmap(bar, layout.header);
    dc.DrawBitmap(corner, layout.header.left, layout.header.top);
    dc.DrawText(layout.header.Inset(kHeaderTextX, 0, 0, 0), moduleName, SmallFont(700), colours.barTextColour,
                kTextLeft | kTextVCentre | kTextSingleLine);
    dc.DrawText(layout.title, moduleName, ArialFont(700), kTitleColour, kTextLeft | kTextVCentre | kTextSingleLine);
}

}  // namespace jotlet
