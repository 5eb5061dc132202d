// A window's own image, at the screen's scale factor, and the one painter that may be open on it at a time.
#pragma once

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <optional>

namespace jotlet {

struct Surface {
    QImage image;
    QPainter* active = nullptr;  // the painter now open on the image

    // Makes the image fit; keeps the old pixels where they still lie inside. True when it was made anew.
    bool Fit(QSize logical, qreal scale, const QColor& fill);
};

// Draws on a surface with `origin` as the zero point. Drawing inside drawing (a window context taken during a paint
// cycle) borrows the painter that is open and gives it back as it was.
class SurfacePainter {
public:
    // `clip` in surface coordinates.
    SurfacePainter(Surface& surface, const QPoint& origin, const QRegion& clip);
    ~SurfacePainter();
    SurfacePainter(const SurfacePainter&) = delete;
    SurfacePainter& operator=(const SurfacePainter&) = delete;

    QPainter& Get() { return *surface.active; }
    const QRegion& Clip() const { return clip; }  // relative to the origin

private:
    Surface& surface;
    QRegion clip;
    std::optional<QPainter> own;
};

}  // namespace jotlet
