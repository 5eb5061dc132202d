// Places and sizes of windows, and what they are told about them.
#include <QMoveEvent>
#include <QResizeEvent>

#include <QGuiApplication>
#include <QScreen>

#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

constexpr int kGreatestSide = QWIDGETSIZE_MAX;

// What the window manager put round the dialog shown last: the next one is likely to get the same.
QMargins usualDecoration;

QPoint MiddleOf(const QMargins& margins)
{
    return {(margins.left() + margins.right()) / 2, (margins.top() + margins.bottom()) / 2};
}

}  // namespace

bool NativeWidget::IsDecorated() const
{
    return isWindow() && IsDialog() && !(windowFlags() & Qt::FramelessWindowHint);
}

// What a window manager puts round a dialog; nothing for our own frames.
QMargins NativeWidget::Decoration() const
{
    const QRect outer = frameGeometry();
    const QRect inner = geometry();
    const QMargins now{inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                       outer.bottom() - inner.bottom()};
    return now.isNull() && !isVisible() && IsDecorated() ? usualDecoration : now;
}

QRect NativeWidget::Whole() const
{
    const QMargins decoration = Decoration();
    return {pos(), size() + QSize(decoration.left() + decoration.right(), decoration.top() + decoration.bottom())};
}

// Decorations come when the window stands already. One that was put in the middle of something stays there.
void NativeWidget::AllowForDecoration()
{
    // Elsewhere the position of a window is its own affair or nobody's.
    if (QGuiApplication::platformName() != QLatin1String("xcb") || !IsDecorated() || !isVisible() ||
        Decoration().isNull())
        return;
    usualDecoration = Decoration();
    if (!assumedDecoration)
        return;
    const QPoint shift = MiddleOf(usualDecoration) - MiddleOf(*assumedDecoration);
    assumedDecoration.reset();
    const QPoint corner = screen()->availableGeometry().topLeft();
    const QPoint place = pos() - shift;
    if (!shift.isNull())
        move(qMax(place.x(), corner.x()), qMax(place.y(), corner.y()));
}

QSize NativeWidget::Limited(QSize whole)
{
    if (!IsFrame())
        return whole;
    const QSize least(margin.left() + margin.right(), margin.top() + margin.bottom());
    MinMaxInfo info{{least.width(), least.height()}, {kGreatestSide, kGreatestSide}};
    Deliver(kWmGetMinMaxInfo, 0, reinterpret_cast<MessageParam>(&info));
    return whole.expandedTo({info.minTrack.width, info.minTrack.height})
        .boundedTo({info.maxTrack.width, info.maxTrack.height});
}

void NativeWidget::ApplyLimits()
{
    if (!IsFrame())
        return;
    setMinimumSize(Limited({0, 0}));
    setMaximumSize(Limited({kGreatestSide, kGreatestSide}));
}

void NativeWidget::Place(const QRect& bounds)
{
    const HandlerScope scope;
    if (isWindow()) {
        if (IsFrame())
            ApplyLimits();
        const QMargins decoration = Decoration();
        if (!isVisible())
            assumedDecoration = decoration;
        const QSize inner =
            bounds.size() - QSize(decoration.left() + decoration.right(), decoration.top() + decoration.bottom());
        if (IsDialog())
            setFixedSize(inner.expandedTo({1, 1}));
        else
            resize(inner.expandedTo({0, 0}));
        move(bounds.topLeft());
    } else {
        setGeometry(QRect(bounds.topLeft(), bounds.size().expandedTo({0, 0})));
    }
    ReportGeometry();
}

void NativeWidget::ReportGeometry()
{
    if (!alive)
        return;
    if (pos() != toldPosition) {
        toldPosition = pos();
        Deliver(kWmMove, 0, MakeParam(x() + margin.left(), y() + margin.top()));
    }
    if (size() != toldSize) {
        toldSize = size();
        Invalidate(rect(), true);
        const QSize client = ClientArea().size();
        Deliver(kWmSize, 0, MakeParam(client.width(), client.height()));
    }
}

void NativeWidget::resizeEvent(QResizeEvent*)
{
    ReportGeometry();
}

void NativeWidget::moveEvent(QMoveEvent*)
{
    AllowForDecoration();
    ReportGeometry();
}

}  // namespace jotlet
