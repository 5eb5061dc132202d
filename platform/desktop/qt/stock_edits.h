// Edits whose limit counts bytes, and that can hold capitals back.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QValidator>

namespace jotlet {

// Refuses what would make the text longer than its limit; of a pasted text it takes the part that fits, and beeps. Line
// breaks become blanks, and NUL, at which a stored text would end, goes.
class TextLimit final : public QValidator {
public:
    explicit TextLimit(QLineEdit* edit);
    State validate(QString& text, int& cursor) const override;

    int bytes = 0;  // 0: none
    bool lowerCase = false;
    bool program = false;  // the program's own text is taken as it is

private:
    mutable QString accepted;
};

class LineEdit final : public QLineEdit {
public:
    explicit LineEdit(QWidget* parent);
    TextLimit* const limit;
};

// What the edit holds with LF line ends and without NUL; unlike toPlainText it keeps no-break spaces.
QString LinesOf(const QPlainTextEdit& edit);

class TextArea final : public QPlainTextEdit {
public:
    explicit TextArea(QWidget* parent);
    void SetLimit(int bytes) { limit = bytes; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void Cut(int position, int added);

    int limit = 0;
    bool cutting = false;
};

// Return presses it while it has the focus; so long it is the one that is drawn as the default.
class PushButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QPointer<QPushButton> dialogDefault;  // while this one stands in for it
};

// Bytes of the text as it is stored: UTF-8, a line break as CR LF.
int StoredBytes(const QString& text);

}  // namespace jotlet
