// A note held for a change: locked in the file, read anew under the lock, given back at the end whatever happens.
#pragma once

#include <string>

#include "notes/model/note_record.h"
#include "store/table_file.h"

namespace jotlet {

class MarlinWnd;

class RecordHold {
public:
    // Tries to take the lock; Taken tells. The file outlives the hold.
    RecordHold(TableFile& file, RecordAddress address);
    ~RecordHold();
    RecordHold(const RecordHold&) = delete;
    RecordHold& operator=(const RecordHold&) = delete;

    bool Taken() const { return held; }
    // Reads the note into `note`. False when it is gone, or hidden from this user now.
    bool Read();
    void GiveBack();

    TableFile& file;
    const RecordAddress address;
    NoteRecord note{};

private:
    bool held;
};

// What a person reads when a note could not be stored; `result` is what the store gave.
std::string SaveProblem(const TableFile& file, int result);

// Runs the note editor on a held note with `date` as its date. A save that fails leaves the editor open with its text.
// True when the note was changed and written; the lock is given back either way.
bool EditHeldNote(MarlinWnd& parent, RecordHold& hold, const DateValue& date);

}  // namespace jotlet
