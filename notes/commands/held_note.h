// A note that this copy may change, for everything that works on one note: the role tested, the record locked, read
// anew under the lock, saved or removed, given back. Knows no window.
#pragma once

#include <optional>

#include "notes/model/note_record.h"
#include "store/record_hold.h"

namespace jotlet {

// How a command on a note ended. The caller makes a sentence, a sound or an exit code of it.
enum class Outcome {
    Done,
    NoPermission,   // the role may not change notes, or no file is open
    NothingChosen,  // no note was given
    Locked,         // somebody edits the note, or it is gone
    Hidden,         // confidential for this user now, or gone since it was locked
    Withdrawn,      // the note belongs to a withdrawn event
    GroupEvent,     // the command is none for group events
    Failed,         // not written: the file is as it was
    Unconfirmed,    // removed, but it may come back: the disk has not taken it
    Replaced,       // the path leads to another file by now, or to none; nothing was written
};

struct NoteResult {
    Outcome outcome = Outcome::Done;
    FileError error;  // with Failed and Unconfirmed: why
    // The participants of the event could not all be written to; the note itself is told by `outcome`.
    bool missedParticipants = false;

    NoteResult(Outcome outcome = Outcome::Done) : outcome(outcome) {}
    NoteResult(const SaveResult& saved);
    explicit operator bool() const { return outcome == Outcome::Done; }
};

// What to do with a note that is confidential for this user.
enum class HiddenNotes { GiveBack, Take };

// True when the role may change notes.
bool MayChangeNotes(const TableFile* file);

class HeldNote {
public:
    // Role and lock: Done, NoPermission, NothingChosen, Locked, or why not. For questions that are asked with the lock
    // held.
    NoteResult Lock(TableFile* file, std::optional<ChosenRecord> chosen);
    // Reads the note into `note`: Done or Hidden; it is given back unless Done.
    NoteResult Read(HiddenNotes hidden = HiddenNotes::GiveBack);
    // Lock, then Read.
    NoteResult Take(TableFile* file, std::optional<ChosenRecord> chosen, HiddenNotes hidden = HiddenNotes::GiveBack);

    // `note` as it stands. The hold goes on in every case.
    NoteResult Save() { return hold->Save(BytesOf(note)); }
    NoteResult Remove() { return hold->Remove(); }
    // False when the lock could not be cleared in the file.
    bool GiveBack();

    // While held.
    TableFile& File() const { return hold->File(); }

    NoteRecord note{};

private:
    std::optional<RecordHold> hold;
};

}  // namespace jotlet
