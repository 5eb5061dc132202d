#include "notes/commands/note_commands.h"

#include "net/core/outbox.h"
#include "store/open_table.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

// A record that begins a life of its own: live, unlocked, no group event.
void MakeOrdinary(NoteRecord& note)
{
    note.active = 1;
    note.locked = 0;
    note.eventState = kEventNone;
    note.reserved547 = 0;
    note.eventStatus = kStatusNotAnnounced;
}

std::optional<ChosenRecord> NoteOfId(const TableFile& file, std::uint64_t id)
{
    RecordQuery query;
    query.PrepareResults();
    query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, id, Connective::And);
    if (file.RunQuery(query) != 1 || query.resultCount == 0)
        return std::nullopt;
    return ChosenRecord{query.results[0], id};
}

}  // namespace

NoteResult AddNote(TableFile& file, const NoteRecord& note)
{
    return AddSaved(file, BytesOf(note));
}

NoteResult TakeForEdit(HeldNote& held, TableFile* file, std::optional<ChosenRecord> chosen)
{
    const NoteResult taken = held.Take(file, chosen);
    if (!taken || held.note.eventState != kEventWithdrawn)
        return taken;
    held.GiveBack();
    return Outcome::Withdrawn;
}

NoteResult SaveEdited(HeldNote& held, Participants participants)
{
    bool reached = true;
    if (IsGroupEvent(held.note) && participants == Participants::Tell)
        NotifyEvent(held.File().Path(), held.note, kNotifyChange, &reached);
    NoteResult result = held.Save();
    result.missedParticipants = !reached;
    return result;
}

NoteResult SaveInNewFile(const TableFile& lost, NoteRecord& note)
{
    const OpenedTable opened = OpenTable(lost.Path(), lost.Password(), kNoteRecordSize);
    if (!opened) {
        NoteResult failed = Outcome::Failed;
        failed.error = opened.error;
        return failed;
    }
    TableFile& file = *opened.table;
    HeldNote held;
    const NoteResult taken = held.Take(&file, NoteOfId(file, note.uniqueId));
    if (taken.outcome == Outcome::NothingChosen) {
        note.active = 1;
        note.locked = 0;
        return AddNote(file, note);
    }
    if (!taken)
        return taken;
    held.note = note;
    held.note.locked = 1;
    return held.Save();
}

NoteResult RemoveHeld(HeldNote& held, Participants participants)
{
    NoteRecord& note = held.note;
    const std::string& path = held.File().Path();
    bool reached = true;
    bool stays = false;
    if (IsGroupEvent(note) && participants == Participants::Tell) {
        NotifyEvent(path, note, kNotifyWithdrawal, &reached);
        stays = note.active != 0;
    } else if (IsGroupEvent(note)) {
        PurgeEvent(path, note.uniqueId, &reached);
    }
    NoteResult result = stays ? held.Save() : held.Remove();
    result.missedParticipants = !reached;
    held.GiveBack();
    return result;
}

NoteResult CutNote(TableFile* file, std::optional<ChosenRecord> chosen, NoteRecord& taken)
{
    HeldNote held;
    if (const NoteResult took = held.Take(file, chosen); !took)
        return took;
    if (IsGroupEvent(held.note))
        return Outcome::GroupEvent;
    taken = held.note;
    return held.Remove();
}

NoteResult CopyNote(TableFile* file, std::optional<ChosenRecord> chosen, NoteRecord& taken)
{
    HeldNote held;
    const NoteResult took = held.Take(file, chosen);
    if (took)
        taken = held.note;
    return took;
}

NoteResult PasteNote(TableFile& file, NoteRecord& note, const DateValue& day)
{
    note.date = day;
    note.uniqueId = RandomId();
    MakeOrdinary(note);
    return AddNote(file, note);
}

NoteResult RestoreNote(TableFile& file, NoteRecord& note)
{
    MakeOrdinary(note);
    // The same note may have come back by another way meanwhile; two live notes never share an id.
    if (NoteOfId(file, note.uniqueId))
        note.uniqueId = RandomId();
    return AddNote(file, note);
}

NoteResult MoveNoteToDay(TableFile* file, std::optional<ChosenRecord> chosen, const DateValue& day, NoteRecord& moved)
{
    HeldNote held;
    if (const NoteResult took = held.Take(file, chosen, HiddenNotes::Take); !took)
        return took;
    held.note.date = day;
    moved = held.note;
    return held.Save();
}

NoteResult CopyNoteToDay(TableFile* file, std::optional<ChosenRecord> chosen, const DateValue& day, NoteRecord& copy)
{
    HeldNote held;
    if (const NoteResult took = held.Take(file, chosen, HiddenNotes::Take); !took)
        return took;
    copy = held.note;
    return PasteNote(*file, copy, day);
}

}  // namespace jotlet
