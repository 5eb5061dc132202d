// jotctl: the notes of a file without a window, for scripts, cron and servers.
#include <csignal>
#include <exception>
#include <string>

#include "cli/command_line.h"
#include "platform/base/calendar.h"
#include "platform/base/paths.h"

namespace jotlet {
namespace {

// The same setting moves the calendar of the desktop program.
void SetCalendarFromSettings()
{
    int lastYear = 0;
    if (GetSuiteIniPath().IniReadInt("Preference", "LastYear", lastYear))
        SetCalendarLastYear(lastYear);
}

ExitCode Run(int argc, char** argv)
{
    std::function<ExitCode()> chosen;
    const ExitCode code = ReadCommandLine(argc, argv, chosen);
    if (code != ExitCode::Done || !chosen)
        return code;
    SetCalendarFromSettings();
    return chosen();
}

}  // namespace
}  // namespace jotlet

int main(int argc, char** argv)
{
    using namespace jotlet;
    // A reader that closes the pipe must not end the program while it has the file open.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return static_cast<int>(Run(argc, argv));
    } catch (const std::exception& error) {
        return static_cast<int>(Fail(ExitCode::Refused, "", std::string("The work was given up: ") + error.what()));
    }
}
