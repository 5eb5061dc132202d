#include "platform/desktop/qt/mouse_router.h"

#include <QApplication>
#include <QCursor>
#include <QWindow>
#include <optional>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

struct Tracking {
    WindowHandle frame = 0;
    Qt::Edges edges;
    QRect start;
    QPoint from;
    bool handedOver = false;  // the window manager was asked
};

// How far the mouse goes before a press counts as a drag. Until then nothing is grabbed, and a second press still makes
// a double click.
constexpr int kDragDistance = 3;

struct MouseState {
    WindowHandle capture = 0;
    WindowHandle pressed = 0;  // where the left button went down
    bool pulled = false;       // that window saw a move since
    QPoint pressedAt;          // in its own coordinates
    bool leftDown = false;
    bool waiting = false;
    bool released = false;
    bool outside = false;  // of all our windows, as far as the desktop told
    Tracking tracking;
    std::optional<QRect> fence;
    std::optional<QPoint> pretendedCursor;
    Qt::KeyboardModifiers keys;
};

// There is one mouse.
MouseState mouse;

constexpr Point kFarAway{-1'000'000, -1'000'000};

bool Synthetic(const QMouseEvent& event)
{
    return event.source() == Qt::MouseEventSynthesizedByApplication;
}

bool HandToWindowManager(NativeWidget& frame, Qt::Edges edges)
{
    QWindow* window = frame.windowHandle();
    return window && (edges ? window->startSystemResize(edges) : window->startSystemMove());
}

void Track(const QPoint& screen)
{
    NativeWidget* frame = NativeOf(mouse.tracking.frame);
    if (!frame)
        return;
    const QPoint moved = screen - mouse.tracking.from;
    if (!mouse.tracking.handedOver) {
        if (moved.manhattanLength() < kDragDistance)
            return;
        mouse.tracking.handedOver = true;
        if (HandToWindowManager(*frame, mouse.tracking.edges)) {
            mouse.tracking = {};
            mouse.leftDown = false;  // the release goes to the window manager
            return;
        }
    }
    QRect bounds = mouse.tracking.start;
    if (!mouse.tracking.edges) {
        frame->Place(bounds.translated(moved));
        return;
    }
    if (mouse.tracking.edges & Qt::RightEdge)
        bounds.setRight(bounds.right() + moved.x());
    if (mouse.tracking.edges & Qt::BottomEdge)
        bounds.setBottom(bounds.bottom() + moved.y());
    if (mouse.tracking.edges & Qt::LeftEdge)
        bounds.setLeft(bounds.left() + moved.x());
    if (mouse.tracking.edges & Qt::TopEdge)
        bounds.setTop(bounds.top() + moved.y());
    // The edge that is held moves; the opposite one stays.
    const QSize size = frame->Limited(bounds.size());
    if (mouse.tracking.edges & Qt::LeftEdge)
        bounds.setLeft(bounds.right() - size.width() + 1);
    if (mouse.tracking.edges & Qt::TopEdge)
        bounds.setTop(bounds.bottom() - size.height() + 1);
    bounds.setSize(size);
    frame->Place(bounds);
}

// True when the event belongs to a tracking or to a held caption button, and no window sees it.
bool ServeTracking(const QMouseEvent& event, MouseKind kind)
{
    const bool leftRelease = kind == MouseKind::Release && event.button() == Qt::LeftButton;
    if (mouse.waiting && leftRelease) {
        mouse.waiting = false;
        mouse.released = true;
        return true;
    }
    if (!NativeOf(mouse.tracking.frame))
        return false;
    if (kind == MouseKind::Move)
        Track(event.globalPosition().toPoint());
    if (leftRelease)
        mouse.tracking = {};
    return true;
}

std::uint32_t ClientMessage(MouseKind kind, Qt::MouseButton button, const WindowClass& windowClass)
{
    if (kind == MouseKind::Move)
        return kWmMouseMove;
    if (button == Qt::LeftButton) {
        if (kind == MouseKind::DoubleClick && (windowClass.style & kClassDblClks))
            return kWmLButtonDblClk;
        return kind == MouseKind::Release ? kWmLButtonUp : kWmLButtonDown;
    }
    if (button == Qt::RightButton)
        return kind == MouseKind::Release ? kWmRButtonUp : kWmRButtonDown;
    return 0;
}

std::uint32_t MarginMessage(MouseKind kind, Qt::MouseButton button)
{
    if (button == Qt::LeftButton) {
        if (kind == MouseKind::DoubleClick)
            return kWmNcLButtonDblClk;
        return kind == MouseKind::Release ? kWmNcLButtonUp : kWmNcLButtonDown;
    }
    if (button == Qt::RightButton)
        return kind == MouseKind::Release ? kWmNcRButtonUp : kWmNcRButtonDown;
    return 0;
}

// Where the moves behind a press were merged to one, by a busy program or while the window manager looked at the press,
// that one may be outside already. The pressed window still sees that the mouse went away from it.
void TellFirstPull(const NativeWidget* target, const QMouseEvent& event)
{
    if (mouse.pulled || !mouse.leftDown)
        return;
    mouse.pulled = true;
    NativeWidget* pressed = NativeOf(mouse.pressed);
    if (pressed && pressed != target && !mouse.capture && pressed->isEnabled())
        pressed->Deliver(kWmMouseMove, MouseFlags(event.buttons(), event.modifiers()),
                         PointParam(pressed->ToClient(mouse.pressedAt)));
}

NativeWidget* Target(NativeWidget& receiver, const QMouseEvent& event, MouseKind kind)
{
    if (NativeWidget* captured = NativeOf(mouse.capture))
        return captured;
    if (kind == MouseKind::Press || kind == MouseKind::DoubleClick || Synthetic(event))
        return &receiver;
    // A window that got a press gets no more for it: moves and the release belong to whatever lies under the cursor.
    const QPoint local = event.position().toPoint();
    if (receiver.rect().contains(local) && !receiver.childAt(local))
        return &receiver;
    return NativeOf(WindowFromScreenPoint(FromQt(event.globalPosition().toPoint())));
}

}  // namespace

MessageParam MouseFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers keys)
{
    return (buttons & Qt::LeftButton ? kMouseLeft : 0) | (buttons & Qt::RightButton ? kMouseRight : 0) |
           (keys & Qt::ShiftModifier ? kMouseShift : 0) | (keys & Qt::ControlModifier ? kMouseControl : 0);
}

MessageParam PointParam(const QPoint& p)
{
    return MakeParam(p.x(), p.y());
}

void RouteMouse(NativeWidget& receiver, const QMouseEvent& event, MouseKind kind)
{
    const HandlerScope scope;
    if (!Synthetic(event))
        mouse.pretendedCursor.reset();
    mouse.outside = false;
    NoteKeys(event.modifiers());
    if (event.button() == Qt::LeftButton) {
        mouse.leftDown = kind != MouseKind::Release;
        mouse.pressed = 0;
    }
    QPoint screen = event.globalPosition().toPoint();
    if (ServeTracking(event, kind))
        return;
    if (mouse.fence && !Synthetic(event) && !mouse.fence->contains(screen)) {
        screen = {qBound(mouse.fence->left(), screen.x(), mouse.fence->right()),
                  qBound(mouse.fence->top(), screen.y(), mouse.fence->bottom())};
        QCursor::setPos(screen);
    }
    if (kind == MouseKind::Move)
        TellFirstPull(Target(receiver, event, kind), event);
    NativeWidget* target = Target(receiver, event, kind);
    if (!target || !target->Alive() || !target->isEnabled() || IsBlockedByModal(*target))
        return;
    const bool captured = mouse.capture != 0;
    const QPoint local =
        target == &receiver && !mouse.fence ? event.position().toPoint() : target->mapFromGlobal(screen);
    if (event.button() == Qt::LeftButton && mouse.leftDown) {
        mouse.pressed = target->Handle();
        mouse.pressedAt = local;
        mouse.pulled = false;
    }
    int hit = kHitClient;
    if (!captured && !target->Margin().isNull())
        hit = static_cast<int>(target->Deliver(kWmNcHitTest, 0, PointParam(screen)));
    if (kind == MouseKind::Move && !captured)
        target->Deliver(kWmSetCursor, static_cast<MessageParam>(target->Handle()), MakeParam(hit, kWmMouseMove));
    if (hit != kHitClient) {
        if (const std::uint32_t message = MarginMessage(kind, event.button()))
            target->Deliver(message, hit, PointParam(screen));
        return;
    }
    if (const std::uint32_t message = ClientMessage(kind, event.button(), target->Class()))
        target->Deliver(message, MouseFlags(event.buttons(), event.modifiers()), PointParam(target->ToClient(local)));
}

void NoteMouseCrossing(bool outside)
{
    mouse.outside = outside;
}

void ForgetMouse(WindowHandle window)
{
    if (mouse.capture == window)
        ReleaseMouse();
    if (mouse.tracking.frame == window)
        mouse.tracking = {};
}

void CancelMouse()
{
    const WindowHandle holder = mouse.capture;
    const WindowHandle pressed = mouse.pressed;
    mouse.tracking = {};
    mouse.waiting = false;
    mouse.leftDown = false;
    mouse.pressed = 0;
    ReleaseMouse();
    SendTo(holder, kWmCaptureLost, 0, 0);
    if (pressed != holder)
        SendTo(pressed, kWmCaptureLost, 0, 0);
}

void NoteKeys(Qt::KeyboardModifiers keys)
{
    mouse.keys = keys;
}

void CaptureMouse(WindowHandle window)
{
    NativeWidget* native = NativeOf(window);
    if (!native)
        return;
    ReleaseMouse();
    mouse.capture = window;
    // While a button is held the platform sends everything anyway.
    if (!mouse.leftDown && native->isVisible() && QGuiApplication::platformName() == QLatin1String("xcb"))
        native->grabMouse();
}

void ReleaseMouse()
{
    if (NativeWidget* native = NativeOf(mouse.capture); native && QWidget::mouseGrabber() == native)
        native->releaseMouse();
    mouse.capture = 0;
}

WindowHandle CapturedWindow()
{
    return NativeOf(mouse.capture) ? mouse.capture : 0;
}

void BeginFrameTracking(NativeWidget& frame, Qt::Edges edges)
{
    const QPoint cursor = ToQt(CursorPosition());
    mouse.tracking = {frame.Handle(), edges, frame.geometry(), cursor};
}

void WaitForRelease(bool waiting)
{
    mouse.waiting = waiting;
    mouse.released = false;
}

bool WaitingForRelease()
{
    return mouse.waiting;
}

bool ReleaseSeen()
{
    return mouse.released;
}

bool LeftButtonDown()
{
    return mouse.leftDown;
}

void PretendCursor(const QPoint& screen)
{
    mouse.pretendedCursor = screen;
}

Point CursorPosition()
{
    if (mouse.pretendedCursor)
        return FromQt(*mouse.pretendedCursor);
    // Such a desktop tells no place outside our windows; the last one inside would stay for ever.
    if (mouse.outside && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return kFarAway;
    return FromQt(QCursor::pos());
}

void SetCursorPosition(Point screen)
{
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        PretendCursor(ToQt(screen));
    else if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        QCursor::setPos(ToQt(screen));
}

void ClipCursorTo(const Rect* screen)
{
    if (screen)
        mouse.fence = ToQt(*screen);
    else
        mouse.fence.reset();
}

bool IsKeyDown(VirtualKey key)
{
    switch (key) {
        case kKeyControl:
            return mouse.keys & Qt::ControlModifier;
        case kKeyShift:
            return mouse.keys & Qt::ShiftModifier;
        case kKeyAlt:
            return mouse.keys & Qt::AltModifier;
        default:
            return false;
    }
}

}  // namespace jotlet
