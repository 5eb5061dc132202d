#include "toolkit/intro_text.h"

#include "resources/string_table.h"
#include "skin/fonts.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

constexpr int kMargin = 5;
constexpr int kEmblem = 5000;
constexpr int kEmblemX = 5;
constexpr int kEmblemRise = 34;  // above the bottom of the inset area
constexpr int kOfferX = 39;
constexpr int kOfferRise = 33;
constexpr int kLinkShift = 1;
constexpr int kLinkWider = 5;
constexpr Colour kOfferColour = 0;
constexpr Colour kLinkColour = 0xFF4040;

constexpr std::string_view kOffer = "Try Kestrel Planner";
constexpr std::string_view kLink = "click here for more info.";
constexpr std::string_view kPage = "kestrel.htm";

}  // namespace

IntroText::IntroText(int text, Colour back, Colour colour) : stringId(text), backColour(back), textColour(colour) {}

void IntroText::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "IntroText";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::None;
}

void IntroText::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    const Rect inset = client.Inset(kMargin, kMargin);
    dc.FillRect(client, backColour);
    dc.DrawText(inset, LoadStringResource(stringId), SansFont(400), textColour, kTextLeft | kTextWordBreak);
    DrawOffer(dc, inset);
}

void IntroText::DrawOffer(DeviceContext& dc, const Rect& inset)
{
    static const Bitmap emblem = Bitmap::FromResource(kEmblem);
    dc.DrawBitmap(emblem, inset.left + kEmblemX, inset.bottom - kEmblemRise);

    Rect area = inset;
    area.left += kOfferX;
    area.top = inset.bottom - kOfferRise;
    area.top += dc.DrawText(area, kOffer, SansFont(400), kOfferColour, kTextLeft | kTextWordBreak);
    area.left += kLinkShift;
    const Size size = dc.MeasureText(kLink, SansLinkFont(400));
    linkArea = Rect::At(area.left, area.top, size.width + kLinkWider, size.height);
    dc.DrawText(linkArea, kLink, SansLinkFont(400), kLinkColour, kTextLeft | kTextSingleLine | kTextNoClip);
    if (focused)
        dc.DrawFocusRect(linkArea.Inset(-1, 0, 2, 0), kOfferColour);
}

MessageParam IntroText::OnMouseMove(WndMessage& record)
{
    cursor = linkArea.Contains(MousePoint(record)) ? CursorId::Hand : CursorId::Arrow;
    SetCursorNow(cursor);
    return 0;
}

MessageParam IntroText::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

MessageParam IntroText::OnLButtonDown(WndMessage& record)
{
    if (linkArea.Contains(MousePoint(record)))
        FollowLink();
    return 0;
}

MessageParam IntroText::OnKeyDown(WndMessage& record)
{
    if (record.wParam != kKeyReturn && record.wParam != kKeySpace)
        return MarlinWnd::OnKeyDown(record);
    FollowLink();
    return 0;
}

void IntroText::OnFocusChanged(bool nowFocused)
{
    focused = nowFocused;
    Invalidate(nullptr, 0);
}

void IntroText::FollowLink()
{
    OpenHelpPage(kPage, true);
}

void IntroText::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Text;
    description.name = LoadStringResource(stringId);
    description.parts.push_back({.role = AccessibleRole::Button,
                                 .name = std::string(kOffer) + ": " + std::string(kLink),
                                 .bounds = linkArea,
                                 .focused = focused});
}

}  // namespace jotlet
