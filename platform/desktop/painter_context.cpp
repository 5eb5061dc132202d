#include "platform/desktop/qt/painter_context.h"

#include <array>

#include "platform/desktop/qt/bitmap_data.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/font_data.h"
#include "platform/desktop/qt/text_painting.h"

namespace jotlet {

namespace {

// The four edges of an area, one pixel wide, none drawn twice.
std::array<QRect, 4> Edges(const QRect& area)
{
    const int w = area.width();
    const int h = area.height();
    return {QRect(area.x(), area.y(), w, 1), QRect(area.x(), area.y() + h - 1, w, h > 1 ? 1 : 0),
            QRect(area.x(), area.y() + 1, 1, qMax(0, h - 2)),
            QRect(area.x() + w - 1, area.y() + 1, w > 1 ? 1 : 0, qMax(0, h - 2))};
}

class BitmapContext final : public DeviceContext {
public:
    explicit BitmapContext(QImage& image, int scale) : painter(&image), inner(painter, Area(image, scale))
    {
        if (scale != 1)
            painter.scale(scale, scale);
    }

    void FillRect(const Rect& area, Colour colour) override { inner.FillRect(area, colour); }
    void FrameRect(const Rect& area, Colour colour) override { inner.FrameRect(area, colour); }
    void FrameRectPattern(const Rect& area, const Bitmap& p) override { inner.FrameRectPattern(area, p); }
    void DrawLine(int x1, int y1, int x2, int y2, Colour c) override { inner.DrawLine(x1, y1, x2, y2, c); }
    int DrawText(const Rect& area, std::string_view text, const Font& font, Colour c, std::uint32_t flags) override
    {
        return inner.DrawText(area, text, font, c, flags);
    }
    int DrawMarkedText(const Rect& area, std::string_view text, std::string_view found, const Font& font, Colour c,
                       Colour mark, std::uint32_t flags) override
    {
        return inner.DrawMarkedText(area, text, found, font, c, mark, flags);
    }
    Size MeasureText(std::string_view text, const Font& font) const override { return inner.MeasureText(text, font); }
    Size MeasureWrapped(std::string_view text, const Font& font, int width) const override
    {
        return inner.MeasureWrapped(text, font, width);
    }
    int FontHeight(const Font& font) const override { return inner.FontHeight(font); }
    void DrawBitmap(const Bitmap& bitmap, int x, int y) override { inner.DrawBitmap(bitmap, x, y); }
    void StretchBitmap(const Bitmap& bitmap, const Rect& area) override { inner.StretchBitmap(bitmap, area); }
    void DrawIcon(int iconId, int x, int y, int size) override { inner.DrawIcon(iconId, x, y, size); }
    void SetClip(const Rect& area) override { inner.SetClip(area); }
    void ClearClip() override { inner.ClearClip(); }
    void DrawFocusRect(const Rect& area, Colour colour) override { inner.DrawFocusRect(area, colour); }

private:
    static QRegion Area(const QImage& image, int scale) { return QRect(QPoint(0, 0), image.size() / scale); }

    QPainter painter;
    PainterContext inner;
};

// A picture that was made for another scale than the screen's is fitted without losing lines of pixels.
void DrawFitted(QPainter& painter, const QRect& area, const QImage& image)
{
    const bool fits = painter.deviceTransform().mapRect(QRectF(area)).size().toSize() == image.size();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !fits);
    painter.drawImage(area, image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
}

}  // namespace

PainterContext::PainterContext(QPainter& target, const QRegion& area) : painter(target), base(area) {}

void PainterContext::FillRect(const Rect& area, Colour colour)
{
    if (!area.Empty())
        painter.fillRect(ToQt(area), ToQt(colour));
}

void PainterContext::FrameRect(const Rect& area, Colour colour)
{
    if (area.Empty())
        return;
    for (const QRect& edge : Edges(ToQt(area)))
        painter.fillRect(edge, ToQt(colour));
}

void PainterContext::FrameRectPattern(const Rect& area, const Bitmap& pattern)
{
    if (area.Empty() || pattern.IsNone())
        return;
    const Bitmap::Data& data = *pattern.GetData();
    QBrush brush(data.image);
    QTransform place = QTransform::fromTranslate(area.left, area.top);
    place.scale(1.0 / data.scale, 1.0 / data.scale);
    brush.setTransform(place);
    for (const QRect& edge : Edges(ToQt(area)))
        painter.fillRect(edge, brush);
}

void PainterContext::DrawLine(int x1, int y1, int x2, int y2, Colour colour)
{
    if (x1 == x2 || y1 == y2) {
        const QRect line(qMin(x1, x2), qMin(y1, y2), qAbs(x2 - x1) + 1, qAbs(y2 - y1) + 1);
        painter.fillRect(line, ToQt(colour));
        return;
    }
    painter.setPen(QPen(ToQt(colour), 1, Qt::SolidLine, Qt::SquareCap));
    painter.drawLine(x1, y1, x2, y2);
}

int PainterContext::DrawText(const Rect& area, std::string_view text, const Font& font, Colour colour,
                             std::uint32_t flags)
{
    return PaintText(painter, ToQt(area), text, font.GetData(), ToQt(colour), flags);
}

int PainterContext::DrawMarkedText(const Rect& area, std::string_view text, std::string_view found, const Font& font,
                                   Colour colour, Colour mark, std::uint32_t flags)
{
    return PaintMarkedText(painter, ToQt(area), text, {found, ToQt(mark)}, font.GetData(), ToQt(colour), flags);
}

Size PainterContext::MeasureText(std::string_view text, const Font& font) const
{
    const QFontMetrics& metrics = font.GetData().metrics;
    return {metrics.horizontalAdvance(LineForDrawing(text)), metrics.height()};
}

Size PainterContext::MeasureWrapped(std::string_view text, const Font& font, int width) const
{
    return MeasureParagraphs(text, font.GetData(), width);
}

int PainterContext::FontHeight(const Font& font) const
{
    return font.GetData().metrics.lineSpacing();
}

void PainterContext::DrawBitmap(const Bitmap& bitmap, int x, int y)
{
    const Bitmap::Data* data = bitmap.GetData();
    if (!data)
        return;
    const QRect area(QPoint(x, y), data->LogicalSize());
    if (data->scale > 1)
        DrawFitted(painter, area, data->image);
    else
        painter.drawImage(area, data->image);
}

void PainterContext::StretchBitmap(const Bitmap& bitmap, const Rect& area)
{
    if (const Bitmap::Data* data = bitmap.GetData(); data && !area.Empty())
        painter.drawImage(ToQt(area), data->image);
}

void PainterContext::DrawIcon(int iconId, int x, int y, int size)
{
    const qreal scale = painter.device()->devicePixelRatio();
    const QImage image = FindIcon(iconId, qRound(size * scale));
    if (!image.isNull())
        DrawFitted(painter, QRect(x, y, size, size), image);
}

void PainterContext::SetClip(const Rect& area)
{
    painter.setClipRegion(base.intersected(ToQt(area)));
}

void PainterContext::ClearClip()
{
    painter.setClipRegion(base);
}

void PainterContext::DrawFocusRect(const Rect& area, Colour colour)
{
    if (area.Empty())
        return;
    for (const QRect& edge : Edges(ToQt(area))) {
        for (int y = edge.top(); y <= edge.bottom(); ++y) {
            for (int x = edge.left() + ((edge.left() + y) & 1); x <= edge.right(); x += 2)
                painter.fillRect(x, y, 1, 1, ToQt(colour));
        }
    }
}

std::unique_ptr<DeviceContext> MakeBitmapContext(Bitmap& bitmap)
{
    if (bitmap.IsNone()) {
        static QImage nowhere(1, 1, QImage::Format_ARGB32_Premultiplied);
        return std::make_unique<BitmapContext>(nowhere, 1);
    }
    // The bitmap was handed over to be changed, and GetData is const only for those who draw it.
    auto& data = const_cast<Bitmap::Data&>(*bitmap.GetData());
    return std::make_unique<BitmapContext>(data.image, data.scale);
}

}  // namespace jotlet
