// Printing, in a module of its own: its library is large and most runs never print.
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextOption>
#include <vector>

namespace {

constexpr qreal kMarginMm = 18;
constexpr int kFontPoints = 10;

// A running head and the page's number, above and below the text.
void PaintEdges(QPainter& painter, const QRectF& page, const QString& name, int number, int count)
{
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPointSize(8);
    painter.setFont(font);
    painter.setPen(QColor(90, 90, 90));
    const qreal line = painter.fontMetrics().height();
    const QRectF head(page.left(), page.top(), page.width(), line);
    const QRectF foot(page.left(), page.bottom() - line, page.width(), line);
    painter.drawText(head, Qt::AlignLeft,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, qRound(page.width())));
    painter.drawText(foot, Qt::AlignRight, QStringLiteral("%1 / %2").arg(number).arg(count));
    const qreal ruleY = head.bottom() + line / 4;
    painter.drawLine(QPointF(page.left(), ruleY), QPointF(page.right(), ruleY));
}

// A note of a report begins with its date, its category and its title; these and the first of its text stay together.
constexpr int kKeptLines = 6;

bool BeginsNote(const QTextBlock& block)
{
    return block.text().startsWith(QLatin1String("Date: ")) &&
           block.next().next().text().startsWith(QLatin1String("Title: "));
}

// Where each page begins in the text; no line is cut.
std::vector<qreal> PageTops(const QTextDocument& document, qreal height)
{
    std::vector<qreal> tops{0};
    qreal noteTop = 0;
    int kept = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const qreal blockTop = document.documentLayout()->blockBoundingRect(block).top();
        if (BeginsNote(block)) {
            noteTop = blockTop;
            kept = kKeptLines;
        }
        for (int i = 0; i < block.layout()->lineCount(); ++i, --kept) {
            const QTextLine line = block.layout()->lineAt(i);
            const qreal top = blockTop + line.y();
            if (top + line.height() > tops.back() + height)
                tops.push_back(kept > 0 && noteTop > tops.back() ? noteTop : top);
        }
    }
    return tops;
}

// Blank lines at the end would give a page of their own.
QString WithoutBlankEnd(const QString& text)
{
    qsizetype end = text.size();
    while (end > 0 && text[end - 1].isSpace())
        --end;
    return text.left(end);
}

bool PrintPages(QPrinter& printer, const QString& name, const QString& text)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QRectF page = printer.pageLayout()
                            .paintRectPixels(printer.resolution())
                            .translated(-printer.pageLayout().paintRectPixels(printer.resolution()).topLeft());
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPointSize(kFontPoints);
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&printer);
    document.setDefaultFont(font);
    document.setDocumentMargin(0);
    // A word longer than a line, such as an address, goes on in the next one.
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(wrapping);
    document.setPlainText(WithoutBlankEnd(text));
    const qreal edge = QFontMetricsF(font, &printer).height() * 2;
    const QRectF body = page.adjusted(0, edge, 0, -edge);
    document.setTextWidth(body.width());
    const std::vector<qreal> tops = PageTops(document, body.height());
    const int count = static_cast<int>(tops.size());
    const int first = qMax(1, printer.fromPage());
    const int last = printer.toPage() > 0 ? qMin(printer.toPage(), count) : count;
    for (int number = first; number <= last; ++number) {
        if (number > first && !printer.newPage())
            return false;
        PaintEdges(painter, page, name, number, count);
        painter.save();
        const qreal top = tops[static_cast<std::size_t>(number - 1)];
        const qreal end = number < count ? tops[static_cast<std::size_t>(number)] : top + body.height();
        painter.translate(body.left(), body.top() - top);
        const QRectF part(0, top, body.width(), end - top);
        painter.setClipRect(part);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = part;
        context.palette.setColor(QPalette::Text, Qt::black);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
    }
    return painter.end();
}

}  // namespace

// Into a PDF without asking.
extern "C" Q_DECL_EXPORT bool JotletPrintToPdf(const QString& path, const QString& name, const QString& text)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter);
    return PrintPages(printer, name, text);
}

extern "C" Q_DECL_EXPORT bool JotletPrintText(QWidget* owner, const QString& name, const QString& text,
                                              QString& problem)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(name);
    printer.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter);
    QPrintDialog dialog(&printer, owner);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    if (PrintPages(printer, name, text))
        return true;
    problem = printer.outputFileName().isEmpty()
                  ? QStringLiteral("The printer did not take the document.")
                  : QStringLiteral("The file \"%1\" cannot be written.").arg(printer.outputFileName());
    return false;
}
