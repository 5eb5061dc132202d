#include "platform/desktop/qt/surface.h"

namespace jotlet {

bool Surface::Fit(QSize logical, qreal scale, const QColor& fill)
{
    const QSize pixels(qRound(logical.width() * scale), qRound(logical.height() * scale));
    if (active || pixels.isEmpty() || (image.size() == pixels && image.devicePixelRatio() == scale))
        return false;
    QImage fresh(pixels, QImage::Format_RGB32);
    fresh.fill(fill);
    fresh.setDevicePixelRatio(scale);
    if (!image.isNull() && image.devicePixelRatio() == scale) {
        QPainter painter(&fresh);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPoint(0, 0), image);
    }
    image = fresh;
    return true;
}

SurfacePainter::SurfacePainter(Surface& target, const QPoint& origin, const QRegion& surfaceClip)
    : surface(target), clip(surfaceClip.translated(-origin))
{
    if (surface.active) {
        surface.active->save();
        surface.active->resetTransform();
        surface.active->setClipping(false);
    } else {
        own.emplace(&surface.image);
        surface.active = &*own;
    }
    surface.active->translate(origin);
    surface.active->setClipRegion(clip);
}

SurfacePainter::~SurfacePainter()
{
    if (own)
        surface.active = nullptr;
    else
        surface.active->restore();
}

}  // namespace jotlet
