#include "platform/desktop/qt/text_painting.h"

#include <QTextLayout>
#include <vector>

#include "platform/desktop/qt/convert.h"

namespace jotlet {

namespace {

// More than this never fits on a screen, and laying it out would only cost time.
constexpr qsizetype kGreatestLength = 16384;

bool IsControl(QChar c)
{
    return c.unicode() < 32 || c.unicode() == 127;
}

QString Clean(const QString& shown, bool keepBreaks)
{
    QString text = shown.left(kGreatestLength);
    for (QChar& c : text) {
        if (c == u'\t' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
        else if (c == u'\n')
            c = keepBreaks ? QChar(QChar::LineSeparator) : QChar(u' ');
        else if (IsControl(c))
            c = QChar(0x200B);  // takes no room
    }
    return text;
}

QTextOption OptionFor(bool wrap)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(wrap ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::ManualWrap);
    return option;
}

// The lines of a text, each as wide as its own ink.
std::vector<QTextLine> LayOut(QTextLayout& layout, int width, bool wrap)
{
    layout.setTextOption(OptionFor(wrap));
    std::vector<QTextLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(wrap ? qMax(1, width) : 1e6);
        lines.push_back(line);
    }
    layout.endLayout();
    return lines;
}

qreal AlignedX(const QRect& area, qreal width, std::uint32_t flags)
{
    if (flags & kTextCentre)
        return area.x() + (area.width() - qRound(width)) / 2;
    if (flags & kTextRight)
        return area.x() + area.width() - qRound(width);
    return area.x();
}

int AlignedY(const QRect& area, int height, std::uint32_t flags)
{
    if (flags & kTextVCentre)
        return area.y() + (area.height() - height) / 2;
    if (flags & kTextBottom)
        return area.y() + area.height() - height;
    return area.y();
}

// Characters that are drawn glyph by glyph from left to right; anything else takes the full layout.
bool IsPlain(const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x300)
            return false;
    }
    return true;
}

void PaintLine(QPainter& painter, const QString& text, const QRect& area, const Font::Data& font, int y,
               std::uint32_t flags)
{
    const int width = font.metrics.horizontalAdvance(text);
    const qreal x = AlignedX(area, width, flags);
    if (IsPlain(text)) {
        painter.drawText(QPointF(x, y + font.metrics.ascent()), text);
        return;
    }
    QTextLayout layout(text, font.font);
    for (const QTextLine& line : LayOut(layout, 0, false))
        line.draw(&painter, QPointF(x, y));
}

int PaintSingle(QPainter& painter, const QRect& area, const QString& text, const Font::Data& font, std::uint32_t flags)
{
    const int height = font.metrics.height();
    QString shown = text;
    if (flags & kTextEndEllipsis)
        shown = font.metrics.elidedText(text, Qt::ElideRight, area.width());
    PaintLine(painter, shown, area, font, AlignedY(area, height, flags), flags);
    return height;
}

int PaintWrapped(QPainter& painter, const QRect& area, const QString& text, const Font::Data& font, std::uint32_t flags)
{
    QTextLayout layout(text, font.font);
    const std::vector<QTextLine> lines = LayOut(layout, area.width(), flags & kTextWordBreak);
    const int pitch = font.metrics.height();
    const int height = pitch * static_cast<int>(lines.size());
    std::size_t whole = lines.size();
    if ((flags & kTextEndEllipsis) && height > area.height())
        whole = static_cast<std::size_t>(qMax(1, area.height() / pitch));
    int y = area.y();
    for (std::size_t i = 0; i < lines.size() && i < whole; ++i, y += pitch) {
        if (y >= area.y() + area.height() && !(flags & kTextNoClip))
            break;
        const QTextLine& line = lines[i];
        if (i + 1 == whole && whole < lines.size()) {
            QString rest = text.mid(line.textStart());
            rest.replace(QChar(QChar::LineSeparator), u' ');
            QString cut = font.metrics.elidedText(rest, Qt::ElideRight, area.width());
            // A short line that ends at a break is cut there, not filled up from the next one.
            const QString own = text.mid(line.textStart(), line.textLength()).trimmed();
            if (line.textLength() < rest.size() &&
                text[line.textStart() + line.textLength() - 1].category() == QChar::Separator_Line)
                cut = font.metrics.elidedText(own + QChar(0x2026), Qt::ElideRight, area.width());
            PaintLine(painter, cut, area, font, y, flags);
        } else {
            const qreal x = AlignedX(area, line.naturalTextWidth(), flags);
            line.draw(&painter, QPointF(x - line.x(), y - line.y()));
        }
    }
    return height;
}

}  // namespace

QString LineForDrawing(std::string_view text)
{
    return Clean(ShownLines(text), false);
}

int PaintText(QPainter& painter, const QRect& area, std::string_view text, const Font::Data& font, const QColor& colour,
              std::uint32_t flags)
{
    painter.save();
    if (!(flags & kTextNoClip))
        painter.setClipRect(area, painter.hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
    painter.setPen(colour);
    painter.setFont(font.font);
    const bool single = flags & kTextSingleLine;
    const QString shown = Clean(ShownLines(text), !single);
    const int height =
        single ? PaintSingle(painter, area, shown, font, flags) : PaintWrapped(painter, area, shown, font, flags);
    painter.restore();
    return height;
}

Size MeasureParagraphs(std::string_view text, const Font::Data& font, int width)
{
    QTextLayout layout(Clean(ShownLines(text), true), font.font);
    const std::vector<QTextLine> lines = LayOut(layout, width, true);
    Size size{0, font.metrics.height() * static_cast<int>(lines.size())};
    for (const QTextLine& line : lines)
        size.width = qMax(size.width, qCeil(line.naturalTextWidth()));
    return size;
}

}  // namespace jotlet
