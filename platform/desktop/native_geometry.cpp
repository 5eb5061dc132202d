// Places and sizes of windows, and what they are told about them.
#include <QMoveEvent>
#include <QResizeEvent>

#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

constexpr int kGreatestSide = QWIDGETSIZE_MAX;

// The decoration that a window manager put round a dialog; nothing before it is shown and for our own frames.
QMargins Decoration(const QWidget& widget)
{
    const QRect outer = widget.frameGeometry();
    const QRect inner = widget.geometry();
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

}  // namespace

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
        const QMargins decoration = Decoration(*this);
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
    ReportGeometry();
}

}  // namespace jotlet
