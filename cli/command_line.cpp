#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "interchange/engine/report.h"

namespace jotlet {
namespace {

using Command = std::function<ExitCode()>;

template <typename Options>
struct Declared {
    CLI::App& command;
    Options& options;  // as long-lived as the command
};

// When the user names this command, `run` with its options is left in `chosen`.
template <typename Options, typename Run>
Declared<Options> Declare(CLI::App& app, Command& chosen, const char* name, const char* description, Run run)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(name, description);
    command->callback([&chosen, options, run] { chosen = [options, run] { return run(*options); }; });
    return {*command, *options};
}

void AddFile(CLI::App& command, std::string& path)
{
    command.add_option("FILE", path, "note file (.jot)")->required();
}

void AddFile(CLI::App& command, FileOptions& options)
{
    AddFile(command, options.path);
    command.add_option("--password-file", options.passwordFile,
                       "file whose first line is the password (else JOTLET_PASSWORD, else a prompt)");
}

void AddId(CLI::App& command, std::string& id)
{
    command.add_option("ID", id, "the note's id, 16 hex digits")->required();
}

void AddListOptions(CLI::App& command, ListOptions& options)
{
    command.add_option("--category", options.category, "only notes of this category");
    command.add_flag("--json", options.asJson, "a JSON array");
}

void AddReadCommands(CLI::App& app, Command& chosen)
{
    const auto list = Declare<ListOptions>(app, chosen, "list", "List notes, by title", RunList);
    AddFile(list.command, list.options.file);
    AddListOptions(list.command, list.options);
    list.command.add_option("--date", list.options.date, "only notes of this day, YYYY-MM-DD");
    list.command.add_option("--sort", list.options.sort, "title (the default) or date")
        ->check(CLI::IsMember({"title", "date"}));

    const auto findOrComplain = [](const ListOptions& options) {
        return options.find.empty() ? Fail(ExitCode::Usage, "find", "Give a text to find.") : RunList(options);
    };
    const auto find = Declare<ListOptions>(app, chosen, "find", "List notes with TEXT in their title or body, by date",
                                           findOrComplain);
    find.options.sort = "date";
    AddFile(find.command, find.options.file);
    find.command.add_option("TEXT", find.options.find, "text to find; letter case does not count")->required();
    AddListOptions(find.command, find.options);

    const auto show = Declare<ShowOptions>(app, chosen, "show", "Show one note", RunShow);
    AddFile(show.command, show.options.file);
    AddId(show.command, show.options.id);
    show.command.add_flag("--json", show.options.asJson, "a JSON object");
}

void AddNoteOptions(CLI::App& command, NoteChange& change, bool isNew)
{
    command.add_option("--title", change.title, "at most 149 bytes")->required(isNew);
    command.add_option("--text", change.text, "at most 2023 bytes")->required(isNew);
    command.add_option("--category", change.category, "at most 29 bytes");
    command.add_option("--colour", change.colour, "yellow, green, red, blue or grey");
    command.add_option("--date", change.date, "the day on which the note stands, YYYY-MM-DD");
    // By a function, which is called only when one of the two is there: a plain flag would set the value at once.
    command.add_flag_function(
        "--confidential,!--no-confidential", [&change](std::int64_t given) { change.isConfidential = given > 0; },
        "only the Owner sees the note");
    command.add_flag("--cut", change.mayCut, "cut a text that is too long, instead of refusing it");
}

void AddChangeCommands(CLI::App& app, Command& chosen)
{
    const auto add = Declare<ChangeOptions>(app, chosen, "add", "Add a note and print its id", RunAdd);
    AddFile(add.command, add.options.file);
    AddNoteOptions(add.command, add.options.change, true);

    const auto edit = Declare<ChangeOptions>(app, chosen, "edit", "Change what the options name of one note", RunEdit);
    AddFile(edit.command, edit.options.file);
    AddId(edit.command, edit.options.id);
    AddNoteOptions(edit.command, edit.options.change, false);

    const auto remove = Declare<ChangeOptions>(app, chosen, "delete", "Delete one note", RunDelete);
    AddFile(remove.command, remove.options.file);
    AddId(remove.command, remove.options.id);
}

void AddReportCommand(CLI::App& app, Command& chosen, const char* name, const char* description, ReportKind kind)
{
    const auto run = [kind](const ReportOptions& options) { return RunReport(options, kind); };
    const auto report = Declare<ReportOptions>(app, chosen, name, description, run);
    AddFile(report.command, report.options.file);
    report.command.add_option("OUT", report.options.target, "the file to write")->required();
    report.command.add_option("--from", report.options.from, "first day, YYYY-MM-DD");
    report.command.add_option("--to", report.options.to, "last day, YYYY-MM-DD");
    report.command.add_option("--find", report.options.find, "only notes with this text in their title or body");
}

void AddImportCommand(CLI::App& app, Command& chosen)
{
    const auto [command, options] = Declare<ImportOptions>(
        app, chosen, "import", "Add the rows of a delimited text file, without those already there", RunImport);
    AddFile(command, options.file);
    command.add_option("IN", options.source, "the text file to read")->required();
    command.add_flag("--no-header", options.noHeader, "the first row is a note and not a row of names");
    command.add_option("--separator", options.separator, "comma or tab (default: the first of them in the file)")
        ->check(CLI::IsMember({"comma", "tab"}));
    command
        .add_option("--qualifier", options.qualifier, "quote or none (default: quote when the file begins with one)")
        ->check(CLI::IsMember({"quote", "none"}));
    command.add_option("--line-ends", options.lineEnds, "auto, or crlf: a lone LF never ends a row")
        ->check(CLI::IsMember({"auto", "crlf"}));
    command.add_option("--map", options.map, "fields and their columns, such as Title=1,Text=2,Color=3,Category=4")
        ->delimiter(',');
    command.add_flag("--json", options.asJson, "a JSON object: rows, added, dropped");
}

void AddUpkeepCommand(CLI::App& app, Command& chosen, const char* name, const char* description, Upkeep upkeep)
{
    const auto run = [upkeep](const std::string& path) { return RunUpkeep(path, upkeep); };
    const auto declared = Declare<std::string>(app, chosen, name, description, run);
    AddFile(declared.command, declared.options);
}

void AddFileCommands(CLI::App& app, Command& chosen)
{
    const auto create = Declare<NewOptions>(app, chosen, "new", "Make a note file", RunNew);
    AddFile(create.command, create.options.path);
    create.command.add_flag("--examples", create.options.withExamples, "with the four example notes");

    const auto info = Declare<InfoOptions>(app, chosen, "info",
                                           "Show sizes, counters, categories and which passwords are set", RunInfo);
    AddFile(info.command, info.options.path);
    info.command.add_flag("--json", info.options.asJson, "a JSON object");

    AddUpkeepCommand(app, chosen, "check", "Repair the file if its last user went away uncleanly; look for damage",
                     Upkeep::Check);
    AddUpkeepCommand(app, chosen, "compact", "Rewrite the file without the slots of deleted notes", Upkeep::Compact);

    const auto passwd = Declare<FileOptions>(
        app, chosen, "passwd",
        "Set the three passwords (Owner, Assistant, Reader; from standard input, one a line; empty clears)", RunPasswd);
    AddFile(passwd.command, passwd.options);
}

void AddRegisterCommand(CLI::App& app, Command& chosen)
{
    const auto [command, options] = Declare<RegisterOptions>(
        app, chosen, "register", "Register a user on a Marlin Server (the password from standard input)", RunRegister);
    command.add_option("--server", options.server, "host name or address")->required();
    command.add_option("--port", options.port, "1 to 65535")->required()->check(CLI::Range(1, 65535));
    command.add_option("--email", options.email, "the user's e-mail address")->required();
}

}  // namespace

ExitCode ReadCommandLine(int argc, char** argv, std::function<ExitCode()>& chosen)
{
    CLI::App app("Notes of a Jotlet file, without a window.", "jotctl");
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 done, 1 refused or not found, 2 usage, 3 not opened or no note file,\n"
        "4 no permission, 5 locked by another user.");
    AddReadCommands(app, chosen);
    AddChangeCommands(app, chosen);
    AddReportCommand(app, chosen, "export", "Write notes as comma-separated text", ReportKind::Export);
    AddReportCommand(app, chosen, "report", "Write notes as a plain text report", ReportKind::Report);
    AddImportCommand(app, chosen);
    AddFileCommands(app, chosen);
    AddRegisterCommand(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error) == 0 ? ExitCode::Done : ExitCode::Refused;  // --help
        return Fail(ExitCode::Usage, "", std::string(error.what()) + ". Run \"jotctl --help\".");
    }
    return ExitCode::Done;
}

}  // namespace jotlet
