#pragma once

#include "notes/commands/held_note.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

// "Internet Events" on a note that is held for the whole dialog, so that no second copy works on its participants. OK
// commits them and saves the note; the result is the save's. Cancel leaves both alone and is Done.
NoteResult EditGroupEvent(MarlinWnd& parent, HeldNote& held);

}  // namespace jotlet
