// A look at a table's change stamp from another thread, for a drive that may take long to answer. It shares nothing
// with the table but the file, and looks also while calls on a silent drive are refused.
//
// Threads: made where the table is used; Look in any one thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/file_system.h"
#include "platform/base/shared_file.h"

namespace jotlet {

class TableFile;

class StampWatch {
public:
    // Of an open table; of a closed one nothing can be seen.
    explicit StampWatch(const TableFile& table);

    // The stamp as the server has it, one call to it: what TableFile::GetChangeStamp would give. False when it can't be
    // had; `error` tells why (FileErrorKind::NoAnswer: the drive is away, or has forgotten this opening; the table's
    // own GetChangeStamp then opens the file anew once the drive is back).
    bool Look(std::uint64_t& stamp, FileError& error) const;

    // Unmounted: the drive of the file isn't there any more. Unknown: no answer.
    enum class PathState { ThisFile, Elsewhere, Unmounted, Unknown };
    // What the table's path leads to, one more call to the server.
    PathState LookAtPath() const;

private:
    // Whether the folder, or what is left of the way to it, is still on the drive of the file.
    bool IsMounted() const;

    FileIdentity identity;
    SharedFile file;
    std::string path;
    std::vector<std::string> folders;
};

}  // namespace jotlet
