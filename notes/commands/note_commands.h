// What is done to notes: added, edited, removed, cut, copied, pasted, moved to a day, brought back. No windows here:
// each command takes the table and plain values and tells how it ended; boards and jotctl ask, call and tell.
//
// Each works for a file that other copies use at the same time, in one order: role, lock, read anew, work, write,
// flush, give the lock back. Done means that the change is on the disk; after any other outcome but Unconfirmed the
// file is as it was.
#pragma once

#include <cstdint>
#include <optional>

#include "notes/commands/held_note.h"

namespace jotlet {

// Whether the participants of a group event are to hear of a change or a removal. Notes without any know no difference.
enum class Participants { Tell, LeaveAlone };

// NoPermission, Failed or Done.
NoteResult AddNote(TableFile& file, const NoteRecord& note);

// Locks and reads the note for an editor. Withdrawn, and given back, when it can no longer be changed.
NoteResult TakeForEdit(HeldNote& held, TableFile* file, std::optional<ChosenRecord> chosen);
// Writes `held.note`. The hold stays, so that an editor can try again.
NoteResult SaveEdited(HeldNote& held, Participants participants);

// Puts `note` into the file that has the path of `lost` by now, over the note of the same id or as a new one. For an
// editor whose file was replaced under it.
NoteResult SaveInNewFile(const TableFile& lost, NoteRecord& note);

// Removes the held note, and gives it back. A group event whose participants are told stays in the file, frozen, unless
// nobody had heard of it; otherwise its participants go with it.
NoteResult RemoveHeld(HeldNote& held, Participants participants);

// Locked, read, and for Cut removed; what was read is in `taken`. A group event cannot be cut.
NoteResult CutNote(TableFile* file, std::optional<ChosenRecord> chosen, NoteRecord& taken);
NoteResult CopyNote(TableFile* file, std::optional<ChosenRecord> chosen, NoteRecord& taken);

// Adds `note` as an ordinary note of its own, on the day `day`; it gets a new id.
NoteResult PasteNote(TableFile& file, NoteRecord& note, const DateValue& day);
// Adds a removed note again. It keeps its id unless that is live in the file.
NoteResult RestoreNote(TableFile& file, NoteRecord& note);

// To another day, itself or as a copy of its own. `moved` is the note that stands there now. A hidden note is moved
// too: this shows it to nobody.
NoteResult MoveNoteToDay(TableFile* file, std::optional<ChosenRecord> chosen, const DateValue& day, NoteRecord& moved);
NoteResult CopyNoteToDay(TableFile* file, std::optional<ChosenRecord> chosen, const DateValue& day, NoteRecord& copy);

}  // namespace jotlet
