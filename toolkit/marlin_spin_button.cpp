#include "toolkit/marlin_spin_button.h"

#include "toolkit/glyph.h"

namespace jotlet {
namespace {

constexpr int kRepeatTimerId = 150;
constexpr Milliseconds kFirstRepeat{500};
constexpr Milliseconds kRepeat{25};
constexpr int kFirstPicture = 2001;

}  // namespace

void MarlinSpinButton::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinSpinButton";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::Hand;
}

void MarlinSpinButton::SetColours(Colour face, Colour glyphPart, Colour frame)
{
    faceColour = face;
    glyphColour = glyphPart;
    frameColour = frame;
    Invalidate(nullptr, 0);
}

void MarlinSpinButton::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    if (glyph < kGlyphUp || glyph > kGlyphDot)
        return;
    const Rect client = GetClientArea();
    dc.FillRect(client, colour);
    const int shift = pressed ? 1 : 0;
    DrawGlyph(dc, client.Moved(shift, shift), kFirstPicture + glyph - 1, colour);
    if (keyboard && FocusedWindow() == window)
        dc.DrawFocusRect(client, 0);
}

void MarlinSpinButton::Tell()
{
    SendCommand(id, reinterpret_cast<MessageParam>(this));
}

MessageParam MarlinSpinButton::OnLButtonDown(WndMessage&)
{
    StartTimer(window, kRepeatTimerId, kFirstRepeat);
    pressed = true;
    firstRepeat = true;
    Invalidate(nullptr, 0);
    CaptureMouse(window);
    Tell();
    return 0;
}

MessageParam MarlinSpinButton::OnTimer(WndMessage& record)
{
    if (record.wParam != kRepeatTimerId)
        return 0;
    if (firstRepeat) {
        StopTimer(window, kRepeatTimerId);
        StartTimer(window, kRepeatTimerId, kRepeat);
        firstRepeat = false;
    }
    Tell();
    return 0;
}

MessageParam MarlinSpinButton::OnLButtonUp(WndMessage&)
{
    OnCaptureLost();
    ReleaseMouse();
    return 0;
}

void MarlinSpinButton::OnCaptureLost()
{
    StopTimer(window, kRepeatTimerId);
    pressed = false;
    firstRepeat = false;
    Invalidate(nullptr, 0);
}

MessageParam MarlinSpinButton::OnKeyDown(WndMessage& record)
{
    if (!keyboard || (record.wParam != kKeySpace && record.wParam != kKeyReturn))
        return DefaultHandler(record);
    Tell();
    return 0;
}

void MarlinSpinButton::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinSpinButton::CollectTabStops(TabStops& stops)
{
    if (keyboard)
        stops.push_back(this);
}

void MarlinSpinButton::Describe(AccessibleDescription& description)
{
    if (name.empty())
        return;
    description.role = AccessibleRole::Button;
    description.name = name;
}

}  // namespace jotlet
