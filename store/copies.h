// Who has a table file open: one entry for each copy that has entered itself, in a small file beside the table.
//
// Where locks reach everybody, this list is only for people to read: who is there and what he edits. An entry is alive
// while its copy holds a lock on the table for it. Where locks stay on each machine it is also how copies know of each
// other: every copy enters itself, gives a sign of life every few seconds, and names there the records that it holds.
// Entries are made, judged and removed in the table's turn alone.
//
// Threads: one. Where locks stay, a thread of its own gives the signs of life.
// Errors:  nothing throws; false, and errno.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/base/shared_file.h"
#include "platform/base/turn_file.h"
#include "store/record_address.h"

namespace jotlet {

// One copy of a program that has the file open.
struct CopyInfo {
    std::string user;
    std::string host;
    std::int32_t process = 0;
    std::int64_t since = 0;              // seconds since 1970, by that computer's clock
    std::vector<RecordAddress> editing;  // what it holds locked
};

// The copies that have entered themselves for the table at `path` and are alive, in the order of their places. Waits
// for nobody; empty when there are none or the list can't be read.
std::vector<CopyInfo> CopiesOf(const std::string& path);

// The paths beside the table at `path` (of what it leads to when it is a link).
std::string CopyListPath(const std::string& path);
std::string TurnFilePath(const std::string& path);

// This copy's own entry.
class CopyEntry {
public:
    // Enters this copy for the open table, in its turn. `turn` is given for signs of life, too.
    CopyEntry(const SharedFile& table, const std::string& path, std::shared_ptr<TurnFile> turn);
    // Leaves the list, in the table's turn. On a drive that is silent (silent_drive.h) it waits for nothing.
    ~CopyEntry();
    CopyEntry(const CopyEntry&) = delete;
    CopyEntry& operator=(const CopyEntry&) = delete;

    bool IsEntered() const;
    // For a file whose locks stay on each machine. False when this copy was silent for so long that another took it for
    // gone: what it held is then no longer its own.
    bool IsStillEntered() const;
    // At most kMostHeld; false when it could not be told to the others.
    bool Holds(std::span<const RecordAddress> addresses);
    // Whether another copy that is alive holds the record; also true when that can't be read.
    bool IsHeldElsewhere(RecordAddress address) const;
    // Whether another copy is alive; also true when that can't be read.
    bool AreOthersThere() const;

    static constexpr std::size_t kMostHeld = 16;

private:
    class Beating;
    std::shared_ptr<Beating> beating;
};

}  // namespace jotlet
