// The note editor on a note that is held, for the board and for Find.
#pragma once

#include <functional>
#include <string>

#include "notes/commands/note_commands.h"

namespace jotlet {

class MarlinWnd;

// Runs the editor with `date` as the note's date. A save that fails leaves it open with its text. True when the note
// was changed and is on the disk; it is given back either way.
bool EditHeldNote(MarlinWnd& parent, HeldNote& held, const DateValue& date);

// What the editor's OK does with `note`: `save`, and once it has told that the file was replaced, the next OK puts the
// note into the file that is there now. What it gives is for the editor to show.
class EditorSave {
public:
    EditorSave(const TableFile& file, NoteRecord& note, std::function<NoteResult()> save);
    std::string operator()();

private:
    const TableFile& file;
    NoteRecord& note;
    std::function<NoteResult()> save;
    bool lost = false;
};

}  // namespace jotlet
