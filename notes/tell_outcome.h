// What a person reads when a command on a note did not end as wished.
#pragma once

#include <string>

#include "notes/commands/held_note.h"
#include "platform/desktop/messages.h"

namespace jotlet {

// Empty for Done, and where nothing is to be said: NothingChosen, Hidden, Withdrawn, GroupEvent.
std::string OutcomeText(const TableFile& file, const NoteResult& result);
// Shows that text, if any, and tells of participants who could not be written to. True for Done.
bool TellOutcome(WindowHandle owner, const TableFile* file, const NoteResult& result);
// True, and told, while the drive of the file is known not to answer (platform/base/silent_drive.h): what needs the
// file is not begun then.
bool RefuseSilentDrive(WindowHandle owner, const TableFile* file);
void TellMissedParticipants(WindowHandle owner, const TableFile& file);

}  // namespace jotlet
