#include "platform/desktop/qt/stock_edits.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QTextBoundaryFinder>

#include "platform/desktop/message_box.h"

namespace jotlet {

namespace {

// The end of the character before `position`, so that none is cut in two.
int PreviousCharacter(const QString& text, int position)
{
    if (position <= 0)
        return 0;
    return position > 1 && text[position - 1].isLowSurrogate() && text[position - 2].isHighSurrogate() ? position - 2
                                                                                                       : position - 1;
}

bool IsLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

// On one line: a line break, CR LF being one, becomes a blank. The cursor stays behind the same character.
void MakeOneLine(QString& text, int& cursor)
{
    QString line;
    int newCursor = cursor;
    for (int i = 0; i < text.size(); ++i) {
        const bool secondOfBreak = text[i] == u'\n' && i > 0 && text[i - 1] == u'\r';
        if (text[i].isNull() || secondOfBreak)
            newCursor -= i < cursor ? 1 : 0;
        else
            line += IsLineBreak(text[i]) ? QChar(u' ') : text[i];
    }
    text = line;
    cursor = newCursor;
}

}  // namespace

int StoredBytes(const QString& text)
{
    return static_cast<int>(text.toUtf8().size() + text.count(u'\n'));
}

QString LinesOf(const QPlainTextEdit& edit)
{
    QString text = edit.document()->toRawText();
    for (QChar& c : text) {
        if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator)
            c = u'\n';
    }
    text.remove(QChar());
    return text;
}

TextLimit::TextLimit(QLineEdit* edit) : QValidator(edit) {}

QValidator::State TextLimit::validate(QString& text, int& cursor) const
{
    if (program) {
        accepted = text;
        return Acceptable;
    }
    MakeOneLine(text, cursor);
    if (lowerCase)
        text = text.toLower();
    if (bytes > 0 && StoredBytes(text) > bytes && StoredBytes(text) > StoredBytes(accepted)) {
        // What was put in stands before the cursor; its end goes, character by character, until the rest fits.
        const int put = static_cast<int>(text.size() - accepted.size());
        const int begin = qMax(0, cursor - qMax(put, 0));
        while (cursor > begin && StoredBytes(text) > bytes) {
            const int from = PreviousCharacter(text, cursor);
            text.remove(from, cursor - from);
            cursor = from;
        }
        Beep();
        if (StoredBytes(text) > bytes || text == accepted)
            return Invalid;
    }
    accepted = text;
    return Acceptable;
}

LineEdit::LineEdit(QWidget* parent) : QLineEdit(parent), limit(std::make_unique<TextLimit>(this).release())
{
    setValidator(limit);
}

TextArea::TextArea(QWidget* parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int, int added) { Cut(position, added); });
}

void TextArea::Cut(int position, int added)
{
    if (limit <= 0 || added <= 0 || cutting || signalsBlocked())
        return;
    const QString text = LinesOf(*this);
    int surplus = StoredBytes(text) - limit;
    if (surplus <= 0)
        return;
    const int end = qMin(position + added, static_cast<int>(text.size()));
    int from = end;
    while (from > position && surplus > 0) {
        const int previous = PreviousCharacter(text, from);
        surplus -= StoredBytes(text.mid(previous, from - previous));
        from = previous;
    }
    if (from == end)
        return;
    Beep();
    cutting = true;
    // Joined with the typing, so that one undo takes back both.
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    cursor.setPosition(from);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
    cutting = false;
}

void TextArea::keyPressEvent(QKeyEvent* event)
{
    // Escape is the dialog's; everything that the edit does not want climbs to it as well.
    if (event->key() == Qt::Key_Escape) {
        event->ignore();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

// A clipboard without a text, or one whose owner has gone, offers nothing.
bool TextArea::canInsertFromMimeData(const QMimeData* source) const
{
    return source && source->hasText();
}

void TextArea::insertFromMimeData(const QMimeData* source)
{
    QString text = source ? source->text() : QString();
    text.remove(QChar());
    if (text.isEmpty())
        return;
    QMimeData plain;
    plain.setText(text);
    QPlainTextEdit::insertFromMimeData(&plain);
}

void PushButton::focusInEvent(QFocusEvent* event)
{
    QPushButton::focusInEvent(event);
    if (isDefault())
        return;
    const auto others = parentWidget()->findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (QPushButton* other : others) {
        if (other->isDefault()) {
            dialogDefault = other;
            other->setDefault(false);
        }
    }
    if (dialogDefault)
        setDefault(true);
}

void PushButton::focusOutEvent(QFocusEvent* event)
{
    QPushButton::focusOutEvent(event);
    if (!dialogDefault)
        return;
    setDefault(false);
    dialogDefault->setDefault(true);
    dialogDefault.clear();
}

void PushButton::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

}  // namespace jotlet
