#include "cli/held_note.h"

#include "cli/find_note.h"
#include "cli/open_notes.h"
#include "net/core/outbox.h"

namespace jotlet {

HeldNote::~HeldNote()
{
    if (isLocked)
        table.UnlockRecord(address);
}

ExitCode HeldNote::Take(std::uint64_t id)
{
    if (const ExitCode code = RequireChange(table); code != ExitCode::Done)
        return code;
    address = FindNote(table, id, note);
    if (address == 0)
        return FailNotFound(table.Path(), id);
    isLocked = table.LockRecord(address) == 1;
    // The slot may have been emptied or given to another note since it was found.
    const bool isThere = table.ReadRecord(BytesOf(note), address) == 1 && note.uniqueId == id;
    const bool mayBeSeen = note.confidential == 0 || SeesConfidential(table.GetRole());
    if (!isThere || !mayBeSeen)
        return FailNotFound(table.Path(), id);
    if (!isLocked)
        return Fail(ExitCode::Locked, table.Path(),
                    "Program can't edit this entry. It is being edited by another user. Try again.");
    return ExitCode::Done;
}

ExitCode HeldNote::Write()
{
    return Finish(table.WriteRecord(BytesOf(note), address));
}

ExitCode HeldNote::Delete()
{
    if (IsGroupEvent(note))
        PurgeEvent(table.Path(), note.uniqueId);
    return Finish(table.DeleteRecord(address));
}

ExitCode HeldNote::Finish(int result)
{
    isLocked = false;
    const bool isUnlocked = table.UnlockRecord(address) == 1;
    const bool isOnDisk = table.Flush() == 1;
    if (result == kRefusedByRole)
        return RequireChange(table);
    if (result == 1 && isUnlocked && isOnDisk)
        return ExitCode::Done;
    return Fail(ExitCode::Refused, table.Path(), "The note could not be written. Check the disk's free space.");
}

}  // namespace jotlet
