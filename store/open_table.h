// The way in for every caller: repair the file if its last user went away uncleanly, open it, say why not.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/progress_display.h"
#include "store/table_file.h"

namespace jotlet {

struct OpenedTable {
    std::unique_ptr<TableFile> table;  // open; none on a failure
    OpenFailure failure = OpenFailure::None;
    FileError error;        // where the system refused: operation, path, errno
    bool repaired = false;  // the file was compacted, because its last user went away uncleanly
    // The last user went away uncleanly, but the file could not be repaired, so it is open as he left it; tell the
    // user.
    FileError repairError;
    std::int64_t cutTailBytes = 0;  // above 0: the file ends inside a record, which isn't shown; tell the user

    FileError readOnly;  // set when the file may only be read, whatever the password says; tell the user why

    explicit operator bool() const { return table != nullptr; }
};

// Opens the file at `path`, which must exist, as a table of records of `recordSize` bytes (kNoteRecordSize, ...); a
// table of another kind is refused as NotTableFile. Nothing is written to a file that is refused. A file in use by
// others is opened as it is. The password isn't checked: ask GetRole.
OpenedTable OpenTable(const std::string& path, std::string_view password, std::uint32_t recordSize,
                      ProgressDisplay* progress = nullptr);

}  // namespace jotlet
