// Save As: a copy of the open file that nobody has open and that has no locks or counters of the original. No window.
#pragma once

#include <string>

#include "platform/base/file_error.h"
#include "platform/base/progress_display.h"
#include "store/table_file.h"

namespace jotlet {

enum class CopyOutcome {
    Done,
    SameFile,  // the target is the source, by whatever name
    InUse,     // somebody has the target open, or it is no file that could be replaced
    Failed,    // see the FileError; the target is as it was
};

// Whether two paths lead to one file: equal without regard to case, or the same file on the disk.
bool IsSameFile(const std::string& a, const std::string& b);

// Flushes `source` and copies it over `target` in one step: at every moment the target is the old file or the whole
// copy, and nobody can open it between the question whether it is in use and the end. A file that was there keeps its
// access; a new one is for the people who may use `source`, or for its maker alone where it can't be given to them. The
// copy is written compacted; `error` tells what failed.
CopyOutcome CopyTable(TableFile& source, const std::string& target, ProgressDisplay* progress, FileError* error);

}  // namespace jotlet
