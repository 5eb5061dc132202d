#include "cli/terminal_progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "cli/outcome.h"

namespace jotlet {

TerminalProgress::TerminalProgress() : isTerminal(isatty(STDERR_FILENO) == 1) {}

void TerminalProgress::Open(const std::string& newTitle, int newSteps)
{
    title = PlainText(newTitle, Lines::Join);
    steps = newSteps;
    done = 0;
    shownPercent = -1;
    Show();
}

void TerminalProgress::Step()
{
    ++done;
    Show();
}

void TerminalProgress::Close()
{
    if (isTerminal)
        std::fputs("\r\033[K", stderr);
}

void TerminalProgress::ShowText(const std::string& text)
{
    Close();
    Fail(ExitCode::Done, "", text);
}

void TerminalProgress::Show()
{
    const long percent = steps > 0 ? std::min(done * 100 / steps, 100L) : 100;
    if (!isTerminal || percent == shownPercent)
        return;
    shownPercent = percent;
    std::fprintf(stderr, "\r%s %ld %%", title.c_str(), percent);
}

}  // namespace jotlet
