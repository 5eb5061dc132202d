#include <optional>

#include "cli/commands.h"
#include "cli/find_note.h"
#include "cli/held_note.h"
#include "cli/note_values.h"
#include "cli/open_notes.h"
#include "notes/model/palette.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

// What the options say, as far as they were given.
struct NoteChange {
    std::optional<std::string> title;
    std::optional<std::string> text;
    std::optional<std::string> category;
    std::optional<std::string> colour;
    std::optional<std::string> date;
    std::optional<bool> isConfidential;
};

struct ChangeOptions {
    FileOptions file;
    std::string id;
    NoteChange change;
};

// Complains about values that no note can take, before any file is touched.
ExitCode CheckValues(const NoteChange& change)
{
    if (change.title && change.title->empty())
        return Fail(ExitCode::Usage, "--title", "A title cannot be empty.");
    if (change.text && change.text->empty())
        return Fail(ExitCode::Usage, "--text", "A text cannot be empty.");
    if (change.colour && !ColourByName(*change.colour))
        return Fail(ExitCode::Usage, "--colour",
                    "\"" + *change.colour + "\" is none of yellow, green, red, blue, grey.");
    if (change.date && !ParseIsoDate(*change.date))
        return FailDate("--date", *change.date);
    return ExitCode::Done;
}

// The rest of a text that is too long is left out, and the user is told.
void StoreOption(std::string_view name, const std::string& value, std::span<char> field)
{
    StoreText(field, value);
    if (const std::size_t kept = FieldText(field).size(); kept < value.size())
        Fail(ExitCode::Done, name, "Note: cut at " + std::to_string(kept) + " bytes, which is all that a note holds.");
}

ExitCode ApplyChange(const NoteChange& change, const TableFile& table, NoteRecord& note)
{
    if (change.isConfidential.value_or(false) && !SeesConfidential(table.GetRole()))
        return Fail(ExitCode::NoPermission, table.Path(),
                    "Only the Owner can make a note confidential. Use the Owner's password.");
    if (change.title)
        StoreOption("--title", *change.title, note.title);
    if (change.text)
        StoreOption("--text", ToCrLf(*change.text), note.text);
    if (change.category)
        StoreOption("--category", *change.category, note.category);
    if (change.colour)
        note.colour = *ColourByName(*change.colour);
    if (change.date)
        note.date = *ParseIsoDate(*change.date);
    if (change.isConfidential)
        note.confidential = *change.isConfidential ? 1 : 0;
    return ExitCode::Done;
}

ExitCode RunAdd(const ChangeOptions& options)
{
    ExitCode code = CheckValues(options.change);
    std::unique_ptr<TableFile> table;
    if (code == ExitCode::Done)
        code = OpenNotes(options.file, table);
    if (code == ExitCode::Done)
        code = RequireChange(*table);
    if (code != ExitCode::Done)
        return code;

    NoteRecord note;
    InitNoteRecord(*table, note);
    note.colour = kYellow;
    note.startKind = kStartDocument;
    note.alarmDate = note.date;
    note.alarmTime = note.time;
    if (code = ApplyChange(options.change, *table, note); code != ExitCode::Done)
        return code;
    const int result = table->AddRecord(BytesOf(note));
    if (result == kRefusedByRole)
        return RequireChange(*table);
    if (result != 1 || table->Flush() != 1)
        return Fail(ExitCode::Refused, options.file.path,
                    "The note could not be written. Check the disk's free space, then \"jotctl check\" the file.");
    return PrintResult(FormatId(note.uniqueId) + '\n');
}

ExitCode TakeNote(const ChangeOptions& options, std::unique_ptr<TableFile>& table, std::optional<HeldNote>& held)
{
    const std::optional<std::uint64_t> id = ParseId(options.id);
    if (!id)
        return FailId(options.id);
    if (const ExitCode code = OpenNotes(options.file, table); code != ExitCode::Done)
        return code;
    return held.emplace(*table).Take(*id);
}

ExitCode RefuseWithdrawn(const TableFile& table, const NoteRecord& note)
{
    if (note.eventState != kEventWithdrawn)
        return ExitCode::Done;
    return Fail(ExitCode::Refused, table.Path(), "The note belongs to a withdrawn event and can no longer be changed.");
}

ExitCode RunEdit(const ChangeOptions& options)
{
    std::unique_ptr<TableFile> table;
    std::optional<HeldNote> held;
    ExitCode code = CheckValues(options.change);
    if (code == ExitCode::Done)
        code = TakeNote(options, table, held);
    if (code == ExitCode::Done)
        code = RefuseWithdrawn(*table, held->Note());
    if (code == ExitCode::Done)
        code = ApplyChange(options.change, *table, held->Note());
    return code == ExitCode::Done ? held->Write() : code;
}

ExitCode RunDelete(const ChangeOptions& options)
{
    std::unique_ptr<TableFile> table;
    std::optional<HeldNote> held;
    const ExitCode code = TakeNote(options, table, held);
    return code == ExitCode::Done ? held->Delete() : code;
}

void AddNoteOptions(CLI::App& command, NoteChange& change, bool isNew)
{
    command.add_option("--title", change.title, "at most 149 bytes")->required(isNew);
    command.add_option("--text", change.text, "at most 2023 bytes")->required(isNew);
    command.add_option("--category", change.category, "at most 29 bytes");
    command.add_option("--colour", change.colour, "yellow, green, red, blue or grey");
    command.add_option("--date", change.date, "the day on which the note stands, YYYY-MM-DD");
    command.add_flag("--confidential,!--no-confidential", change.isConfidential, "only the Owner sees the note");
}

}  // namespace

void AddChangeCommands(CLI::App& app, Command& chosen)
{
    auto added = std::make_shared<ChangeOptions>();
    CLI::App* add = app.add_subcommand("add", "Add a note and print its id");
    AddFileOptions(*add, added->file);
    AddNoteOptions(*add, added->change, true);
    add->callback([&chosen, added] { chosen = [added] { return RunAdd(*added); }; });

    auto edited = std::make_shared<ChangeOptions>();
    CLI::App* edit = app.add_subcommand("edit", "Change what the options name of one note");
    AddFileOptions(*edit, edited->file);
    edit->add_option("ID", edited->id, "the note's id, 16 hex digits")->required();
    AddNoteOptions(*edit, edited->change, false);
    edit->callback([&chosen, edited] { chosen = [edited] { return RunEdit(*edited); }; });

    auto deleted = std::make_shared<ChangeOptions>();
    CLI::App* remove = app.add_subcommand("delete", "Delete one note");
    AddFileOptions(*remove, deleted->file);
    remove->add_option("ID", deleted->id, "the note's id, 16 hex digits")->required();
    remove->callback([&chosen, deleted] { chosen = [deleted] { return RunDelete(*deleted); }; });
}

}  // namespace jotlet
