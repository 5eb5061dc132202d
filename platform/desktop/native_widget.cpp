#include "platform/desktop/qt/native_widget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHelpEvent>
#include <QTimerEvent>
#include <QToolTip>

#include "platform/desktop/application.h"
#include "platform/desktop/qt/accessible_native.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/held_messages.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/system_metrics.h"

namespace jotlet {

namespace {

class MessageEvent final : public QEvent {
public:
    MessageEvent(const WndMessage& posted, NativeWidget::Posted itsKind)
        : QEvent(static_cast<QEvent::Type>(MessageEventType())), message(posted), kind(itsKind)
    {
    }
    const WndMessage message;
    const NativeWidget::Posted kind;
};

constexpr std::uint32_t kOverlappedBits = 0x00C00000;  // a title bar: what tells a frame from a bare window

QMargins MarginOf(std::uint32_t style, bool dialog)
{
    if (dialog)
        return {};
    if (!(style & kStyleChild) && (style & kOverlappedBits) == kOverlappedBits)
        return {kFrameMarginSide, kFrameMarginTop, kFrameMarginSide, kFrameMarginBottom};
    return style & kStyleBorder ? QMargins(1, 1, 1, 1) : QMargins();
}

Qt::WindowFlags FlagsOf(std::uint32_t style, bool dialog, bool owned)
{
    if (dialog) {
        // Only as a popup does a window get a place beside its owner there.
        if ((style & kStylePicker) && owned && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
            return Qt::Popup | Qt::FramelessWindowHint;
        if ((style & kOverlappedBits) != kOverlappedBits)
            return Qt::Dialog | Qt::FramelessWindowHint;
        return Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
               Qt::WindowCloseButtonHint;
    }
    if (style & kStyleChild)
        return Qt::Widget;
    return Qt::Window | Qt::FramelessWindowHint;
}

// A child begins where its parent's client area does.
QPoint OriginFor(std::uint32_t style, const QWidget* parent)
{
    const auto* native = dynamic_cast<const NativeWidget*>(parent);
    return native && (style & kStyleChild) ? QPoint(native->Margin().left(), native->Margin().top()) : QPoint();
}

}  // namespace

int MessageEventType()
{
    static const int type = QEvent::registerEventType();
    return type;
}

NativeWidget::NativeWidget(WindowHandle newHandle, const WindowClass& itsClass, std::uint32_t itsStyle, Kind itsKind,
                           QWidget* parent)
    : QWidget(parent, FlagsOf(itsStyle, itsKind == Kind::Dialog, parent != nullptr)),
      procedure(itsClass.procedure),
      handle(newHandle),
      windowClass(itsClass),
      style(itsStyle),
      kind(itsKind),
      birthLoop(LoopDepth()),
      margin(MarginOf(itsStyle, itsKind == Kind::Dialog)),
      toldPosition(OriginFor(itsStyle, parent)),
      toldSize(0, 0)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    setGeometry(QRect(toldPosition, toldSize));
    // Toolkit windows are focused by their own handlers; only in a dialog does Tab stop at them.
    setFocusPolicy((itsStyle & kStyleChild) && (itsStyle & kStyleTabStop) ? Qt::TabFocus : Qt::NoFocus);
}

NativeWidget::~NativeWidget()
{
    if (alive)
        ForgetHandle(handle);
}

NativeWidget* NativeWidget::OwnDialog()
{
    for (QWidget* widget = this; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (auto* native = dynamic_cast<NativeWidget*>(widget); native && native->IsDialog())
            return native;
    }
    return nullptr;
}

MessageParam NativeWidget::Deliver(std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    if (!alive || !procedure)
        return 0;
    const HandlerScope scope;
    const MessageParam result = procedure(handle, message, wParam, lParam);
    return result == 0 && IsDialog() && alive ? DialogDefault(message, wParam) : result;
}

MessageParam NativeWidget::DialogDefault(std::uint32_t message, MessageParam wParam)
{
    switch (message) {
        case kWmClose:
            return Deliver(kWmCommand, kIdCancel, 0);
        case kWmEraseBkgnd:
        case kWmSetCursor:
            return DefaultProcedure(handle, message, wParam, 0);
        default:
            return 0;
    }
}

void NativeWidget::PostMessage(const WndMessage& message, Posted itsKind)
{
    QCoreApplication::postEvent(this, std::make_unique<MessageEvent>(message, itsKind).release());
}

bool NativeWidget::event(QEvent* event)
{
    if (event->type() == MessageEventType()) {
        const auto& posted = static_cast<const MessageEvent&>(*event);
        const WndMessage& m = posted.message;
        if (MessagesHeld())
            HoldMessage(m, posted.kind);
        else if (posted.kind == Posted::Message || !DropsRequests(*this))
            Deliver(m.message, m.wParam, m.lParam);
        return true;
    }
    if (!alive)
        return event->type() == QEvent::DeferredDelete || event->type() == QEvent::Timer ? QWidget::event(event) : true;
    switch (event->type()) {
        case QEvent::WindowActivate:
        case QEvent::WindowDeactivate:
            if (isWindow()) {
                const bool active = event->type() == QEvent::WindowActivate;
                if (IsFrame())
                    Deliver(kWmNcActivate, active, 0);
                Deliver(kWmActivate, active, 0);
            }
            return QWidget::event(event);
        case QEvent::KeyPress:
            // Outside dialogs Tab is a key like any other.
            if (!OwnDialog()) {
                keyPressEvent(static_cast<QKeyEvent*>(event));
                return true;
            }
            return QWidget::event(event);
        case QEvent::ToolTip:
            ShowTip(static_cast<const QHelpEvent*>(event)->globalPos());
            return true;
        case QEvent::Enter:
        case QEvent::Leave:
            if (isWindow())
                NoteMouseCrossing(event->type() == QEvent::Leave);
            return QWidget::event(event);
        case QEvent::ScreenChangeInternal:
            Invalidate(rect(), true);
            return QWidget::event(event);
        default:
            return QWidget::event(event);
    }
}

void NativeWidget::ShowTip(const QPoint& screen)
{
    AccessibleDescription described;
    Deliver(kWmDescribe, 0, reinterpret_cast<MessageParam>(&described));
    QToolTip::showText(screen, ShownText(described.hint), this);
}

void NativeWidget::closeEvent(QCloseEvent* event)
{
    event->ignore();
    const HandlerScope scope;
    Deliver(kWmClose, 0, 0);
}

void NativeWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange && alive)
        Deliver(kWmEnable, isEnabled(), 0);
    QWidget::changeEvent(event);
}

void NativeWidget::BeginTimer(int id, Milliseconds period)
{
    EndTimer(id);
    const int interval = static_cast<int>(period.count());
    timers[id] = startTimer(interval, interval < 1000 ? Qt::PreciseTimer : Qt::CoarseTimer);
}

void NativeWidget::EndTimer(int id)
{
    const auto found = timers.find(id);
    if (found == timers.end())
        return;
    killTimer(found->second);
    timers.erase(found);
}

void NativeWidget::timerEvent(QTimerEvent* event)
{
    for (const auto& [id, timer] : timers) {
        if (timer != event->timerId())
            continue;
        if (MessagesHeld())
            return;  // the next tick comes
        Deliver(kWmTimer, id, 0);
        return;
    }
    QWidget::timerEvent(event);
}

void NativeWidget::focusInEvent(QFocusEvent* event)
{
    // A menu takes the focus only for the platform's toolkit; the window it belongs to keeps it.
    if (event->reason() != Qt::PopupFocusReason)
        Deliver(kWmSetFocus, 0, 0);
    TellFocus(*this);
}

void NativeWidget::focusOutEvent(QFocusEvent* event)
{
    if (event->reason() != Qt::PopupFocusReason)
        Deliver(kWmKillFocus, 0, 0);
}

void NativeWidget::Die()
{
    if (!alive || ending)
        return;
    ending = true;
    const HandlerScope scope;
    Deliver(kWmDestroy, 0, 0);
    const QObjectList inside = children();
    for (QObject* child : inside) {
        if (auto* native = dynamic_cast<NativeWidget*>(child))
            native->Die();
        else if (auto* control = qobject_cast<QWidget*>(child); control && HandleOf(control) != handle)
            ForgetHandle(HandleOf(control));
    }
    alive = false;
    for (const auto& [id, timer] : timers)
        killTimer(timer);
    timers.clear();
    QCoreApplication::removePostedEvents(this, MessageEventType());
    ForgetHandle(handle);
    ForgetMouse(handle);
    hide();
    // What lies in another dying window goes with it.
    const auto* parent = dynamic_cast<const NativeWidget*>(parentWidget());
    if (isWindow() || !parent || !parent->ending)
        DeleteWhenIdle(this);
}

}  // namespace jotlet
