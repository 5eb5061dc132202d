#pragma once

#include <QPainter>
#include <QRegion>

#include "platform/desktop/device_context.h"

namespace jotlet {

// A device context over an open painter. `base` is what drawing may touch, in the painter's own coordinates; SetClip
// narrows it and never widens it.
class PainterContext final : public DeviceContext {
public:
    PainterContext(QPainter& painter, const QRegion& base);

    void FillRect(const Rect& area, Colour colour) override;
    void FrameRect(const Rect& area, Colour colour) override;
    void FrameRectPattern(const Rect& area, const Bitmap& pattern) override;
    void DrawLine(int x1, int y1, int x2, int y2, Colour colour) override;
    int DrawText(const Rect& area, std::string_view text, const Font& font, Colour colour,
                 std::uint32_t flags) override;
    int DrawMarkedText(const Rect& area, std::string_view text, std::string_view found, const Font& font, Colour colour,
                       Colour mark, std::uint32_t flags) override;
    Size MeasureText(std::string_view text, const Font& font) const override;
    Size MeasureWrapped(std::string_view text, const Font& font, int width) const override;
    int FontHeight(const Font& font) const override;
    void DrawBitmap(const Bitmap& bitmap, int x, int y) override;
    void StretchBitmap(const Bitmap& bitmap, const Rect& area) override;
    void DrawIcon(int iconId, int x, int y, int size) override;
    void SetClip(const Rect& area) override;
    void ClearClip() override;
    void DrawFocusRect(const Rect& area, Colour colour) override;

private:
    QPainter& painter;
    QRegion base;
};

}  // namespace jotlet
