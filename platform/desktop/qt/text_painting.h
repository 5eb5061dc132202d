// Text as DrawText's flags place it: one line or wrapped, aligned, cut with an ellipsis.
#pragma once

#include <QPainter>
#include <string_view>

#include "platform/desktop/qt/font_data.h"

namespace jotlet {

// Text to make easy to see: `colour` goes behind each place of `found`.
struct TextMark {
    std::string_view found;
    QColor colour;
};

// Both return the height used.
int PaintText(QPainter& painter, const QRect& area, std::string_view text, const Font::Data& font, const QColor& colour,
              std::uint32_t flags);
int PaintMarkedText(QPainter& painter, const QRect& area, std::string_view text, const TextMark& mark,
                    const Font::Data& font, const QColor& colour, std::uint32_t flags);
Size MeasureParagraphs(std::string_view text, const Font::Data& font, int width);
// Shown text on one line: breaks and tabs as blanks, other control characters left out.
QString LineForDrawing(std::string_view text);

}  // namespace jotlet
