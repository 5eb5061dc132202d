// Printing, in a module of its own: its library is large and most runs never print.
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>

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
    document.setPlainText(text);
    const qreal edge = QFontMetricsF(font, &printer).height() * 2;
    const QRectF body = page.adjusted(0, edge, 0, -edge);
    document.setPageSize(body.size());
    const int count = document.pageCount();
    const int first = qMax(1, printer.fromPage());
    const int last = printer.toPage() > 0 ? qMin(printer.toPage(), count) : count;
    for (int number = first; number <= last; ++number) {
        if (number > first && !printer.newPage())
            return false;
        PaintEdges(painter, page, name, number, count);
        painter.save();
        painter.translate(body.left(), body.top() - (number - 1) * body.height());
        const QRectF part(0, (number - 1) * body.height(), body.width(), body.height());
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
