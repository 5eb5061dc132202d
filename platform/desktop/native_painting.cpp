// Invalid areas, paint cycles and the copy to the screen.
#include <QPaintEvent>
#include <QPainter>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/system_metrics.h"

namespace jotlet {

namespace {

// Paint events now on the stack; the platform's toolkit must not be asked for another one meanwhile.
int paintEvents = 0;

}  // namespace

QColor NativeWidget::BackgroundColour() const
{
    if (IsDialog())
        return ToQt(SystemColour(kSysColourButtonFace));
    switch (windowClass.background) {
        case Background::White:
            return Qt::white;
        case Background::Grey:
            return QColor(128, 128, 128);
        default:
            return ToQt(SystemColour(kSysColourButtonFace));
    }
}

Surface& NativeWidget::GetSurface()
{
    surface.Fit(size(), devicePixelRatioF(), BackgroundColour());
    return surface;
}

void NativeWidget::Invalidate(const QRegion& local, bool erase)
{
    const QRegion inside = local.intersected(rect());
    if (inside.isEmpty())
        return;
    invalid += inside;
    eraseWanted = eraseWanted || erase;
    update(inside);
}

bool NativeWidget::RunPaintCycle()
{
    if (!alive || painting || invalid.isEmpty())
        return false;
    const QRegion region = invalid.intersected(rect());
    const bool erase = eraseWanted;
    invalid = {};
    eraseWanted = false;
    if (region.isEmpty() || GetSurface().image.isNull())
        return false;
    painting = true;
    const HandlerScope scope;
    const QRect client = ClientArea();
    if (!margin.isNull() && !region.subtracted(client).isEmpty())
        Deliver(kWmNcPaint, 1, 0);
    const QRegion inClient = region.intersected(client);
    if (!inClient.isEmpty()) {
        SurfacePainter painter(surface, client.topLeft(), inClient);
        PainterContext dc(painter.Get(), painter.Clip());
        PaintInfo info{&dc, FromQt(painter.Clip().boundingRect()), false};
        if (erase)
            info.erased = Deliver(kWmEraseBkgnd, reinterpret_cast<MessageParam>(static_cast<DeviceContext*>(&dc)), 0);
        dc.ClearClip();
        Deliver(kWmPaint, 0, reinterpret_cast<MessageParam>(&info));
    }
    painting = false;
    return true;
}

void NativeWidget::PaintNow()
{
    if (!isVisible())
        return;
    const HandlerScope scope;
    const QRegion region = invalid;
    if (RunPaintCycle() || !region.isEmpty()) {
        if (paintEvents == 0)
            repaint();
        else
            update();
    }
    const QObjectList inside = children();
    for (QObject* child : inside) {
        if (auto* native = dynamic_cast<NativeWidget*>(child); native && native->alive && !native->isWindow())
            native->PaintNow();
    }
}

void NativeWidget::paintEvent(QPaintEvent* event)
{
    ++paintEvents;
    RunPaintCycle();
    const Surface& drawn = GetSurface();
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setClipRegion(event->region());
    painter.drawImage(QPoint(0, 0), drawn.image);
    --paintEvents;
}

void NativeWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    ReportGeometry();
}

}  // namespace jotlet
