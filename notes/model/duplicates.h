#pragma once

#include <cstdint>
#include <unordered_map>

#include "notes/model/note_record.h"
#include "store/record_address.h"

namespace jotlet {

class TableFile;

// Which notes stand in a file, by colour, title and text, so that an import of many rows reads the file once and not
// once a row. Holds a 64-bit hash and the addresses of each live note; equal hashes are settled by reading the record.
//
// A change of the file by anybody but the import (its change stamp then moved by more than the adds told to Added)
// makes the next Contains read the file again.
class NoteDuplicates {
public:
    explicit NoteDuplicates(TableFile& file);

    // True when a live note of the file that this copy may see is the same as `note` (IsSameNote).
    bool Contains(const NoteRecord& note);
    // The note was added to the file by the caller, who raised the change stamp by 1 with it.
    void Added(const NoteRecord& note);

private:
    void Scan();

    TableFile& file;
    std::unordered_multimap<std::uint64_t, RecordAddress> addresses;
    std::uint64_t stamp = 0;
    bool scanned = false;
};

// Completes an imported note: stamps its alarm fields with now, titles an empty title "Untitled", turns the colour's
// index into the colour. 1 to store it, 0 to drop it since the file holds the same note.
int PrepareImportedNote(NoteRecord& note, TableFile& file, const Clock& clock = SystemClock());
int PrepareImportedNote(NoteRecord& note, NoteDuplicates& duplicates, const Clock& clock = SystemClock());

}  // namespace jotlet
