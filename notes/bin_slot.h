// The recycle bin's memory: the note deleted last, for one step of undo. Private to the process and gone with it;
// nothing of it lies in the note file. It is tied to no file: an undo adds the note to whatever file is open then.
#pragma once

#include "notes/model/note_record.h"
#include "notes/model/record_holder.h"

namespace jotlet {

// The process-wide holders.
RecordHolder& BinSlot();
// Notes that were cut or copied; the tag is the command.
RecordHolder& NoteClipboard();

// Takes a note; what was there is gone.
void RememberDeletedNote(const NoteRecord& record);
// True and the note, when the slot holds one. The slot keeps it.
bool RestoreDeletedNote(NoteRecord& record);

}  // namespace jotlet
