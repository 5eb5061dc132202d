#pragma once

#include <string>
#include <string_view>

#include "platform/base/clock.h"
#include "store/open_table.h"

// Making and opening files of notes.

namespace jotlet {

enum class WithExamples { No, Yes };

// Makes a note file with its header and default categories, and with the example notes if wanted, and closes it.
// 1, or 0 when it exists already or cannot be made whole; `error` then tells what the system refused, if it did, and no
// file is there.
int CreateNoteFile(const std::string& path, WithExamples examples, const Clock& clock = SystemClock(),
                   FileError* error = nullptr);

// The sequence of every opening: makes the file when it is missing, repairs it when its last user went away without
// closing it, opens it.
OpenedTable OpenNoteFile(const std::string& path, std::string_view password, WithExamples examples,
                         ProgressDisplay* progress = nullptr, const Clock& clock = SystemClock());

// Adds the four example notes. 1 when all are on the disk, else 0.
int AddExampleRecords(TableFile& file, const Clock& clock = SystemClock());

}  // namespace jotlet
