#include <optional>

#include "cli/commands.h"
#include "cli/find_note.h"
#include "cli/note_values.h"
#include "cli/open_notes.h"
#include "net/core/outbox_file.h"
#include "notes/commands/note_commands.h"
#include "notes/model/palette.h"
#include "platform/base/file_error_text.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

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

// Without --cut a text that is too long is refused; with it the rest is left out and the user is told.
ExitCode StoreOption(std::string_view name, const std::string& value, bool mayCut, std::span<char> field)
{
    StoreText(field, value);
    const std::size_t kept = FieldText(field).size();
    if (kept == value.size())
        return ExitCode::Done;
    if (mayCut)
        return Fail(ExitCode::Done, name,
                    "Note: cut at " + std::to_string(kept) + " bytes, which is all that a note holds.");
    return Fail(ExitCode::Refused, name,
                "The text has " + std::to_string(value.size()) + " bytes, and a note holds " +
                    std::to_string(field.size() - 1) + " of them. Shorten it, or give --cut. Nothing was changed.");
}

ExitCode StoreTexts(const NoteChange& change, NoteRecord& note)
{
    ExitCode code = ExitCode::Done;
    if (change.title)
        code = StoreOption("--title", *change.title, change.mayCut, note.title);
    if (change.text && code == ExitCode::Done)
        code = StoreOption("--text", ToCrLf(*change.text), change.mayCut, note.text);
    if (change.category && code == ExitCode::Done)
        code = StoreOption("--category", *change.category, change.mayCut, note.category);
    return code;
}

ExitCode ApplyChange(const NoteChange& change, const TableFile& table, NoteRecord& note)
{
    if (change.isConfidential.value_or(false) && !SeesConfidential(table.GetRole()))
        return Fail(ExitCode::NoPermission, table.Path(),
                    "Only the Owner can make a note confidential. Use the Owner's password.");
    if (change.colour)
        note.colour = *ColourByName(*change.colour);
    if (change.date)
        note.date = *ParseIsoDate(*change.date);
    if (change.isConfidential)
        note.confidential = *change.isConfidential ? 1 : 0;
    return StoreTexts(change, note);
}

// What a change came to, with the reason told.
ExitCode EndOf(const TableFile& table, const NoteResult& result)
{
    if (result.missedParticipants)
        Fail(ExitCode::Done, OutboxPath(table.Path()),
             "Note: this file of participants cannot be opened or written, so not everybody will hear of it.");
    switch (result.outcome) {
        case Outcome::Done:
            return ExitCode::Done;
        case Outcome::NoPermission:
            return RequireChange(table);
        case Outcome::Locked:
            return Fail(ExitCode::Locked, table.Path(),
                        "Program can't edit this entry. It is being edited by another user. Try again.");
        case Outcome::Withdrawn:
            return Fail(ExitCode::Refused, table.Path(),
                        "The note belongs to a withdrawn event and can no longer be changed.");
        case Outcome::Unconfirmed:
            return Fail(ExitCode::Refused, table.Path(),
                        "The note is deleted, but the disk has not taken it, so it may come back. Check the disk.");
        case Outcome::Replaced:
            return Fail(ExitCode::Refused, table.Path(),
                        "The file was replaced or removed by another program. Nothing was changed; try again.");
        default:
            return Fail(
                ExitCode::Refused, table.Path(),
                "The note could not be written. Check the disk's free space." + SystemReason(result.error.systemError));
    }
}

ExitCode TakeNote(const ChangeOptions& options, std::unique_ptr<TableFile>& table, HeldNote& held)
{
    const std::optional<std::uint64_t> id = ParseId(options.id);
    if (!id)
        return FailId(options.id);
    ExitCode code = OpenNotes(options.file, table);
    if (code == ExitCode::Done)
        code = RequireChange(*table);
    NoteRecord found;
    RecordAddress address = 0;
    if (code == ExitCode::Done)
        code = FindNote(*table, *id, found, address);
    if (code != ExitCode::Done)
        return code;
    // The slot may have been emptied or given to another note since it was found.
    const NoteResult taken = held.Take(table.get(), ChosenRecord{address, *id});
    const NoteRecord& note = taken ? held.note : found;
    const bool isThere = taken || table->ReadRecord(BytesOf(found), address) == 1;
    if (taken.outcome == Outcome::Hidden || !isThere || note.uniqueId != *id)
        return FailNotFound(table->Path(), *id);
    return EndOf(*table, taken);
}

}  // namespace

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
    if (code = EndOf(*table, AddNote(*table, note)); code != ExitCode::Done)
        return code;
    return PrintResult(FormatId(note.uniqueId) + '\n');
}

ExitCode RunEdit(const ChangeOptions& options)
{
    std::unique_ptr<TableFile> table;
    HeldNote held;
    ExitCode code = CheckValues(options.change);
    if (code == ExitCode::Done)
        code = TakeNote(options, table, held);
    if (code == ExitCode::Done && held.note.eventState == kEventWithdrawn)
        code = EndOf(*table, Outcome::Withdrawn);
    if (code == ExitCode::Done)
        code = ApplyChange(options.change, *table, held.note);
    if (code == ExitCode::Done)
        code = EndOf(*table, SaveEdited(held, Participants::LeaveAlone));
    if (!held.GiveBack() && code == ExitCode::Done)
        return Fail(ExitCode::Refused, table->Path(),
                    "The note's lock could not be given back. Check the disk; \"jotctl compact\" unlocks the note.");
    return code;
}

// The participants of a group event go with it; nobody is told.
ExitCode RunDelete(const ChangeOptions& options)
{
    std::unique_ptr<TableFile> table;
    HeldNote held;
    const ExitCode code = TakeNote(options, table, held);
    return code == ExitCode::Done ? EndOf(*table, RemoveHeld(held, Participants::LeaveAlone)) : code;
}

}  // namespace jotlet
