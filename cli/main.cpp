// jotctl: the notes of a file without a window, for scripts, cron and servers.
#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>

#include "cli/commands.h"
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
    CLI::App app("Notes of a Jotlet file, without a window.", "jotctl");
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 done, 1 refused or not found, 2 usage, 3 not opened or no note file,\n"
        "4 no permission, 5 locked by another user.");
    Command chosen;
    AddReadCommands(app, chosen);
    AddChangeCommands(app, chosen);
    AddInterchangeCommands(app, chosen);
    AddFileCommands(app, chosen);
    AddPasswordCommand(app, chosen);
    AddRegisterCommand(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error) == 0 ? ExitCode::Done : ExitCode::Refused;  // --help
        return Fail(ExitCode::Usage, "", std::string(error.what()) + ". Run \"jotctl --help\".");
    }
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
