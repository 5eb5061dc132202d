// Message boxes, and the way tests answer them.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop/messages.h"

namespace jotlet {

enum class BoxIcon { None, Information, Question, Warning };
enum class BoxButtons { Ok, YesNo, CancelOk };  // CancelOk: Cancel is the default and counts as No
enum class Answer { Ok, Yes, No };

// Runs a modal box over `owner`. Closing it without a choice counts as No (or Ok).
Answer ShowBox(WindowHandle owner, std::string_view text, std::string_view caption, BoxIcon icon, BoxButtons buttons);

void Beep();

// While one lives, boxes are not shown: each takes the next answer (Ok, then No, when none is left) and its text is
// kept. Beeps are counted. They nest; the innermost answers.
class ScopedAnswers {
public:
    explicit ScopedAnswers(std::deque<Answer> answers = {});
    ~ScopedAnswers();
    ScopedAnswers(const ScopedAnswers&) = delete;
    ScopedAnswers& operator=(const ScopedAnswers&) = delete;

    std::vector<std::string> texts;
    std::deque<Answer> answers;
    int beeps = 0;

private:
    ScopedAnswers* outer;
};

}  // namespace jotlet
