// Compaction, and the repair that it serves: the file is rewritten beside itself with its live records alone, no record
// locked and its counters at 0, and the rewritten file takes its place in one step (rename). At every moment the path
// names either the whole old file or the whole new one, on the disk too. Categories, passwords, identities, the change
// stamp, the order of the records and all bytes of them but the lock are kept; addresses change.
//
// It runs only for who holds the file alone, from the test to the end, so no copy can open it meanwhile: openers wait,
// and then find the new file.
//
// The new file is for the same people as the old one: owner, group, mode, access list and attributes are kept. Where a
// user can't give it to its owner, and its owner would lose by that, nothing is compacted (FileErrorKind::NotOurs).
//
// The temporary file is the path (of what it leads to when it is a link) and ".temp". What a killed process left there
// goes at the next RepairTable that has the file alone.
//
// On SMB, where replacing a file that is open may lose it, RepairTable puts counters and locks right in the file
// itself.
//
// Errors: nothing throws. The old file is untouched on every failure, and no temporary file stays.
#pragma once

#include <string>

#include "platform/base/files.h"
#include "platform/base/progress_display.h"

namespace jotlet {

// What RepairTable found and did.
enum class RepairOutcome {
    Clean,      // closed properly by its last user; nothing was touched
    Compacted,  // rewritten
    PutRight,   // counters and locks were put right in the file itself; free slots stay
    Busy,       // somebody has it open, or nobody can tell (locks stay on this machine)
    Missing,
    NotTableFile,  // sizes of no table file, or shorter than its front part; nothing was touched
    Failed,        // see the FileError; the file is as it was
};

// 1 when the file is fit to open and was made so if need be; 0 when it is in use, missing, no table file, or could not
// be repaired. In use: a caller opens it all the same. `force` other than 0 compacts a clean file too. To be called
// before every opening of a table file; OpenTable does.
int CheckAfterCrash(const std::string& path, int force, ProgressDisplay* progress = nullptr);

// The same with its reason. With `force`, a file whose locks stay on this machine is compacted when no copy on this
// machine has it open: the caller was asked to by a person who can know.
RepairOutcome RepairTable(const std::string& path, bool force, ProgressDisplay* progress = nullptr,
                          FileError* error = nullptr);

// The rewrite. `handle` is of the file at `path` and was opened with FileSharing::None. On 1 the handle has been closed
// and the counters of the new file are 0; on 0 it is still open and the file as it was.
int CompactFile(FileHandle handle, const std::string& path, ProgressDisplay* progress = nullptr,
                FileError* error = nullptr);

// The rewritten table alone, into the empty file `to`; neither synced nor renamed. `path` is for the progress display.
// False, with errno, when the table can't be read or written whole.
bool WriteCompacted(FileHandle from, FileHandle to, const std::string& path, ProgressDisplay* progress = nullptr);

}  // namespace jotlet
