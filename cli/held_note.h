// A note that this process may change: found, locked, and read anew under the lock.
#pragma once

#include <cstdint>

#include "cli/outcome.h"
#include "notes/model/note_record.h"
#include "store/table_file.h"

namespace jotlet {

// Gives the lock back at the end of its life, unless Finish did.
class HeldNote {
public:
    explicit HeldNote(TableFile& table) : table(table) {}
    ~HeldNote();
    HeldNote(const HeldNote&) = delete;
    HeldNote& operator=(const HeldNote&) = delete;

    // Tests the role, finds and locks the note. On a failure nothing is locked and the reason has been told.
    ExitCode Take(std::uint64_t id);

    NoteRecord& Note() { return note; }

    // Each changes the file, gives the lock back and returns when all is on the disk.
    ExitCode Write();
    // Takes the participants of a group event with it; nobody is told.
    ExitCode Delete();

private:
    ExitCode Finish(int result);

    TableFile& table;
    RecordAddress address = 0;
    bool isLocked = false;
    NoteRecord note{};
};

}  // namespace jotlet
