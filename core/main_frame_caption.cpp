// The part of MainFrame that the mouse meets in the margin: caption buttons, caption, grip.
#include "core/main_frame.h"
#include "platform/desktop/application.h"

namespace jotlet {

Rect MainFrame::OnScreen(const Rect& inWindow) const
{
    const Rect whole = WindowRect(window);
    return inWindow.Moved(whole.left, whole.top);
}

bool MainFrame::CursorOnGrip() const
{
    const Point cursorNow = CursorPosition();
    return FrameGripHit(ClientSize()).Contains(ScreenToClient(window, cursorNow)) &&
           WindowFromScreenPoint(cursorNow) == window;
}

void MainFrame::SetLook(CaptionButton button, ButtonLook look)
{
    ButtonLook& now = looks[static_cast<std::size_t>(button)];
    if (now == look)
        return;
    now = look;
    DrawOnWholeWindow(window, [this](DeviceContext& dc) { PaintCaptionButtons(dc, WindowSize(), looks); });
}

MessageParam MainFrame::OnTimer(WndMessage&)
{
    if (!IsForeground(window))
        return 0;
    UpdateHover();
    UpdateCursor();
    return 0;
}

void MainFrame::UpdateHover()
{
    const Point at = CursorPosition();
    const auto on = [&](CaptionButton button) {
        return OnScreen(CaptionButtonRect(WindowSize(), button)).Contains(at);
    };
    for (const CaptionButton button : kCaptionButtons) {
        if (!on(button) && GetButtonLook(button) == ButtonLook::UnderMouse)
            SetLook(button, ButtonLook::Normal);
    }
    for (const CaptionButton button : kCaptionButtons) {
        if (on(button) && GetButtonLook(button) == ButtonLook::Normal)
            SetLook(button, ButtonLook::UnderMouse);
    }
}

void MainFrame::UpdateCursor()
{
    if (CursorOnGrip())
        cursor = CursorId::SizeNwse;
    else if (!CapturedWindow() && WindowFromScreenPoint(CursorPosition()) == window)
        cursor = CursorId::Arrow;
    else
        return;
    SetCursorNow(cursor);
}

MessageParam MainFrame::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

// Only the grip starts a size; the other borders and corners do nothing.
MessageParam MainFrame::OnNcHitTest(WndMessage& record)
{
    const MessageParam hit = DefaultHandler(record);
    return hit >= kHitLeft && hit <= kHitBottomLeft ? MessageParam{kHitNowhere} : hit;
}

MessageParam MainFrame::OnNcLButtonDown(WndMessage& record)
{
    const Point at = CursorPosition();
    for (const CaptionButton button : kCaptionButtons) {
        if (OnScreen(CaptionButtonRect(WindowSize(), button)).Contains(at)) {
            PressCaptionButton(button);
            return 0;
        }
    }
    if (OnScreen(FrameCaptionHit(WindowSize())).Contains(MousePoint(record))) {
        if (!IsForeground(window))
            FocusWindow(window);
        Send(kWmSysCommand, kSysMove + 2, 0);
        return 0;
    }
    return PressGrip() ? 0 : DefaultHandler(record);
}

MessageParam MainFrame::OnLButtonDown(WndMessage&)
{
    PressGrip();
    return 0;
}

bool MainFrame::PressGrip()
{
    if (!CursorOnGrip())
        return false;
    cursor = CursorId::SizeNwse;
    SetCursorNow(cursor);
    Send(kWmSysCommand, kSysSize + 8, 0);
    return true;
}

// While the button is held all other windows go on working; the loop sleeps while nothing waits.
void MainFrame::PressCaptionButton(CaptionButton button)
{
    SetLook(button, ButtonLook::Pressed);
    CaptureMouse(window);
    const bool released = ServeUntilButtonReleased();
    if (!IsWindow(window))
        return;
    ReleaseMouse();
    SetLook(button, ButtonLook::Normal);
    if (released && OnScreen(CaptionButtonRect(WindowSize(), button)).Contains(CursorPosition()))
        ActOn(button);
}

void MainFrame::ActOn(CaptionButton button)
{
    switch (button) {
        case CaptionButton::Maximise:
            Post(kWmSysCommand, kSysMaximize, 0);
            break;
        case CaptionButton::Minimise:
            Minimise(window);
            break;
        case CaptionButton::Close:
            Post(kWmClose, 0, 0);
            break;
    }
}

MessageParam MainFrame::OnNcLButtonDblClk(WndMessage&)
{
    Post(kWmSysCommand, kSysMaximize, 0);
    return 0;
}

MessageParam MainFrame::OnSysCommand(WndMessage& record)
{
    switch (record.wParam) {
        case kSysKeyMenu:
        case kSysMouseMenu:
            return 0;
        case kSysMaximize:
            ToggleSize();
            return 0;
        default: {
            const MessageParam result = DefaultHandler(record);
            DrawFrame();
            return result;
        }
    }
}

void MainFrame::ToggleSize()
{
    const Rect now = WindowRect(window);
    MoveTo(window, ToggledFrame(now, DesktopRect(FrameHold(now))));
}

// The buttons of the caption; its children speak for themselves.
void MainFrame::Describe(AccessibleDescription& description)
{
    struct Spoken {
        CaptionButton button;
        const char* name;
        int command;
    };
    for (const Spoken& one : {Spoken{CaptionButton::Minimise, "Minimize", kSysMinimize},
                              Spoken{CaptionButton::Maximise, "Maximize", kSysMaximize},
                              Spoken{CaptionButton::Close, "Close", kSysClose}}) {
        const Rect inWindow = CaptionButtonRect(WindowSize(), one.button);
        description.parts.push_back({.role = AccessibleRole::Button,
                                     .name = one.name,
                                     .bounds = inWindow.Moved(-kFrameMarginSide, -kFrameMarginTop),
                                     .sysCommand = one.command});
    }
}

}  // namespace jotlet
