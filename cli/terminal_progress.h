// A line on standard error that shows how far a long operation is; silent unless that is a terminal.
#pragma once

#include <string>

#include "platform/base/progress_display.h"

namespace jotlet {

class TerminalProgress : public ProgressDisplay {
public:
    TerminalProgress();

    void Open(const std::string& newTitle, int newSteps) override;
    void Step() override;
    void Close() override;
    void ShowText(const std::string& text) override;

private:
    void Show();

    bool isTerminal;
    std::string title;
    long steps = 0;
    long done = 0;
    long shownPercent = -1;
};

}  // namespace jotlet
