#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "notes/model/note_record.h"
#include "store/record_address.h"

namespace jotlet {

class TableFile;

// Which notes stand in a file, by colour, title and text, so that an import of many rows reads the file once and not
// once a row. Holds a 64-bit hash and the address of each live note that this copy may see; equal hashes are settled by
// reading the note.
//
// A change of the file by anybody else (its change stamp then moved by more than the adds told to Added) makes the next
// Contains read the file again, as long as no expected note is outstanding.
class NoteDuplicates {
public:
    explicit NoteDuplicates(TableFile& file) : file(file) {}

    // True when a note of the file, or an expected one, is the same as `note` (IsSameNote).
    bool Contains(const NoteRecord& note);
    // The note is about to be added: it counts from now on.
    void Expect(const NoteRecord& note);
    // An expected note stands in the file now and raised the change stamp by 1.
    void Added(const NoteRecord& note, RecordAddress address);

private:
    void Scan();

    TableFile& file;
    std::unordered_multimap<std::uint64_t, RecordAddress> addresses;
    std::unordered_multimap<std::uint64_t, NoteRecord> expected;
    std::uint64_t stamp = 0;
    bool scanned = false;
};

// Completes an imported note: stamps its alarm fields with now, titles an empty title "Untitled", turns the colour's
// index into the colour. 1 to store it, 0 to drop it since the file holds the same note already.
int PrepareImportedNote(NoteRecord& note, TableFile& file, const Clock& clock = SystemClock());
int PrepareImportedNote(NoteRecord& note, NoteDuplicates& duplicates, const Clock& clock = SystemClock());

}  // namespace jotlet
