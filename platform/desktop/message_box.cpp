#include "platform/desktop/message_box.h"

#include <QApplication>
#include <QMessageBox>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

ScopedAnswers* innermost = nullptr;

QMessageBox::Icon IconOf(BoxIcon icon)
{
    switch (icon) {
        case BoxIcon::Information:
            return QMessageBox::Information;
        case BoxIcon::Question:
            return QMessageBox::Question;
        case BoxIcon::Warning:
            return QMessageBox::Warning;
        default:
            return QMessageBox::NoIcon;
    }
}

Answer Refusal(BoxButtons buttons)
{
    return buttons == BoxButtons::Ok ? Answer::Ok : Answer::No;
}

}  // namespace

Answer ShowBox(WindowHandle owner, std::string_view text, std::string_view caption, BoxIcon icon, BoxButtons buttons)
{
    if (innermost) {
        innermost->texts.emplace_back(text);
        if (innermost->answers.empty())
            return Refusal(buttons);
        const Answer answer = innermost->answers.front();
        innermost->answers.pop_front();
        return answer;
    }
    if (!qApp || LeavingModals())
        return Refusal(buttons);
    const HandlerScope scope;
    const ForeignRun run;
    // A box that belongs to nobody stands over the window that the user has before him.
    const QWidget* parent = WidgetOf(owner);
    QMessageBox box(parent ? parent->window() : QApplication::activeWindow());
    box.setWindowTitle(ShownText(caption));
    box.setTextFormat(Qt::PlainText);
    box.setText(ShownLines(text));
    box.setIcon(IconOf(icon));
    if (buttons == BoxButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        return box.exec() == QMessageBox::Yes ? Answer::Yes : Answer::No;
    }
    if (buttons == BoxButtons::CancelOk) {
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
        return box.exec() == QMessageBox::Ok ? Answer::Ok : Answer::No;
    }
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
    return Answer::Ok;
}

void Beep()
{
    if (innermost)
        ++innermost->beeps;
    else if (qApp)
        QApplication::beep();
}

ScopedAnswers::ScopedAnswers(std::deque<Answer> given) : answers(std::move(given)), outer(innermost)
{
    innermost = this;
}

ScopedAnswers::~ScopedAnswers()
{
    innermost = outer;
}

}  // namespace jotlet
