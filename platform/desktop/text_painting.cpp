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

void Prepare(QPainter& painter, const QRect& area, const Font::Data& font, const QColor& colour, std::uint32_t flags)
{
    if (!(flags & kTextNoClip))
        painter.setClipRect(area, painter.hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
    painter.setPen(colour);
    painter.setFont(font.font);
}

constexpr QChar kEllipsis(0x2026);
// Characters left standing before a place that a single line is moved to.
constexpr qsizetype kContext = 4;

QString Folded(QString text)
{
    for (QChar& c : text) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + (u'a' - u'A'));
    }
    return text;
}

struct Place {
    qsizetype start = 0;
    qsizetype end = 0;
};

std::vector<Place> PlacesOf(const QString& found, const QString& text)
{
    std::vector<Place> places;
    if (found.isEmpty())
        return places;
    const QString within = Folded(text);
    const QString wanted = Folded(found);
    for (qsizetype at = within.indexOf(wanted); at >= 0; at = within.indexOf(wanted, at + wanted.size()))
        places.push_back({at, at + wanted.size()});
    return places;
}

QString FromThere(const QString& text, qsizetype start)
{
    if (start > 0 && text[start].isLowSurrogate())
        --start;
    return start > 0 ? kEllipsis + text.mid(start) : text;
}

// `origin` is where the line's own zero lies.
void MarkPlaces(QPainter& painter, const QTextLine& line, const std::vector<Place>& places, QPointF origin, int height,
                const QColor& colour)
{
    const qsizetype first = line.textStart();
    const qsizetype end = first + line.textLength();
    for (const Place& place : places) {
        if (place.end <= first || place.start >= end)
            continue;
        const qreal from = line.cursorToX(static_cast<int>(qMax(place.start, first)));
        const qreal to = line.cursorToX(static_cast<int>(qMin(place.end, end)));
        const int left = qRound(origin.x() + qMin(from, to));
        const int right = qRound(origin.x() + qMax(from, to));
        painter.fillRect(QRect(left, qRound(origin.y()), right - left, height), colour);
    }
}

int PaintMarkedSingle(QPainter& painter, const QRect& area, QString text, const QString& found, const QColor& mark,
                      const Font::Data& font, std::uint32_t flags)
{
    const int height = font.metrics.height();
    if (const std::vector<Place> places = PlacesOf(found, text); !places.empty()) {
        const Place first = places.front();
        const qreal x = AlignedX(area, font.metrics.horizontalAdvance(text), flags);
        const qreal from = x + font.metrics.horizontalAdvance(text.left(first.start));
        const qreal to = x + font.metrics.horizontalAdvance(text.left(first.end));
        if (from < area.left() || to > area.left() + area.width()) {
            text = FromThere(text, qMax<qsizetype>(0, first.start - kContext));
            flags &= ~std::uint32_t{kTextCentre | kTextRight};
        }
    }
    if (flags & kTextEndEllipsis)
        text = font.metrics.elidedText(text, Qt::ElideRight, area.width());
    QTextLayout layout(text, font.font);
    const std::vector<QTextLine> lines = LayOut(layout, 0, false);
    const QPointF origin(AlignedX(area, font.metrics.horizontalAdvance(text), flags), AlignedY(area, height, flags));
    for (const QTextLine& line : lines) {
        MarkPlaces(painter, line, PlacesOf(found, text), origin, height, mark);
        line.draw(&painter, origin);
    }
    return height;
}

int PaintMarkedWrapped(QPainter& painter, const QRect& area, QString text, const QString& found, const QColor& mark,
                       const Font::Data& font, std::uint32_t flags)
{
    const int pitch = font.metrics.height();
    const bool wrap = flags & kTextWordBreak;
    if (const std::vector<Place> places = PlacesOf(found, text); !places.empty()) {
        QTextLayout whole(text, font.font);
        const std::vector<QTextLine> lines = LayOut(whole, area.width(), wrap);
        const int fit = qMax(1, area.height() / pitch);
        for (int i = fit; i < static_cast<int>(lines.size()); ++i) {
            const QTextLine& line = lines[static_cast<std::size_t>(i)];
            if (places.front().start >= line.textStart() &&
                places.front().start < line.textStart() + line.textLength()) {
                text = FromThere(text, line.textStart());
                break;
            }
        }
    }
    QTextLayout layout(text, font.font);
    const std::vector<QTextLine> lines = LayOut(layout, area.width(), wrap);
    const std::vector<Place> places = PlacesOf(found, text);
    int y = area.y();
    for (const QTextLine& line : lines) {
        if (y >= area.y() + area.height() && !(flags & kTextNoClip))
            break;
        const QPointF origin(AlignedX(area, line.naturalTextWidth(), flags) - line.x(), y);
        MarkPlaces(painter, line, places, origin, pitch, mark);
        line.draw(&painter, origin - QPointF(0, line.y()));
        y += pitch;
    }
    return pitch * static_cast<int>(lines.size());
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
    Prepare(painter, area, font, colour, flags);
    const bool single = flags & kTextSingleLine;
    const QString shown = Clean(ShownLines(text), !single);
    const int height =
        single ? PaintSingle(painter, area, shown, font, flags) : PaintWrapped(painter, area, shown, font, flags);
    painter.restore();
    return height;
}

int PaintMarkedText(QPainter& painter, const QRect& area, std::string_view text, const TextMark& mark,
                    const Font::Data& font, const QColor& colour, std::uint32_t flags)
{
    if (mark.found.empty())
        return PaintText(painter, area, text, font, colour, flags);
    const bool single = flags & kTextSingleLine;
    const QString shown = Clean(ShownLines(text), !single);
    const QString found = LineForDrawing(mark.found);
    if (PlacesOf(found, shown).empty())
        return PaintText(painter, area, text, font, colour, flags);
    painter.save();
    Prepare(painter, area, font, colour, flags);
    const auto paint = single ? PaintMarkedSingle : PaintMarkedWrapped;
    const int height = paint(painter, area, shown, found, mark.colour, font, flags);
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
