#include "toolkit/marlin_class_link_button.h"

#include "platform/base/text.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr std::size_t kMaxTextBytes = 255;

}  // namespace

MarlinClassLinkButton::MarlinClassLinkButton(int id, std::string_view text, Colour backColour, Colour colour,
                                             Colour activeColour, std::uint32_t drawFlags)
    : id(id),
      backColour(backColour),
      colour(colour),
      activeColour(activeColour),
      text(CutText(text, kMaxTextBytes)),
      drawFlags(drawFlags)
{
}

void MarlinClassLinkButton::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinClassLinkButton";
    windowClass.cursor = CursorId::None;
}

void MarlinClassLinkButton::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.FillRect(client, backColour);
    dc.DrawText(client, text, SansLinkFont(400), active ? activeColour : colour, drawFlags);
    if (FocusedWindow() == window)
        dc.DrawFocusRect(client, colour);
}

MessageParam MarlinClassLinkButton::OnSetCursor(WndMessage&)
{
    SetCursorNow(CursorId::Hand);
    return 1;
}

MessageParam MarlinClassLinkButton::OnLButtonDown(WndMessage&)
{
    if (pressed)
        return 0;
    active = true;
    pressed = true;
    Invalidate(nullptr, 0);
    CaptureMouse(window);
    return 0;
}

MessageParam MarlinClassLinkButton::OnMouseMove(WndMessage& record)
{
    if (!pressed)
        return 0;
    const bool on = GetClientArea().Contains(MousePoint(record));
    if (on != active) {
        active = on;
        Invalidate(nullptr, 0);
    }
    return 0;
}

MessageParam MarlinClassLinkButton::OnLButtonUp(WndMessage& record)
{
    if (!pressed)
        return 0;
    ReleaseMouse();
    pressed = false;
    active = false;
    Invalidate(nullptr, 0);
    if (GetClientArea().Contains(MousePoint(record)))
        RequestCommand(id, 0);
    return 0;
}

void MarlinClassLinkButton::OnCaptureLost()
{
    pressed = false;
    active = false;
    Invalidate(nullptr, 0);
}

MessageParam MarlinClassLinkButton::OnKeyDown(WndMessage& record)
{
    if (record.wParam != kKeySpace && record.wParam != kKeyReturn)
        return DefaultHandler(record);
    RequestCommand(id, 0);
    return 0;
}

void MarlinClassLinkButton::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinClassLinkButton::CollectTabStops(TabStops& stops)
{
    stops.push_back(this);
}

void MarlinClassLinkButton::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Button;
    description.name = text;
}

}  // namespace jotlet
