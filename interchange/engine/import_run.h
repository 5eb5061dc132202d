#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "interchange/engine/delimited_reader.h"
#include "notes/model/import_fields.h"
#include "platform/base/clock.h"
#include "store/record_address.h"

// The import itself: rows of delimited text become records of a table.

namespace jotlet {

class TableFile;
class ProgressDisplay;

// Completes a record of the table's record size. 1 to store it, 0 to drop it. Records are stored in the order of the
// rows, but some time after this call.
using PrepareHook = std::function<int(std::span<std::byte> record)>;
// Told of each record that is now in the file.
using AddedHook = std::function<void(std::span<const std::byte> record, RecordAddress address)>;

struct ImportRequest {
    TableFile* table = nullptr;
    DelimitedReader* reader = nullptr;
    std::span<const ImportField> fields;  // with the map applied
    bool firstLineNames = true;           // the first record holds names and is no row
    PrepareHook prepare;
    AddedHook added;                      // may be empty
    ProgressDisplay* progress = nullptr;  // may be null
};

struct ImportCounts {
    std::size_t rows = 0;        // whole rows worked through, the header row not counted
    std::size_t added = 0;       // stored
    std::size_t dropped = 0;     // duplicates, and rows with a value that could not be read
    bool writeFailed = false;    // records could not be stored or brought to the disk; the run ended there
    bool refused = false;        // the role may not add; the run ended there
    bool incompleteEnd = false;  // text stands behind the last whole row and was left out
    std::size_t lastLine = 0;    // then: the line of the text on which that row ended; 0 when there is none
};

// Runs to the end of the data, then brings what was added to the disk. Added records stay, whatever comes later. The
// list refresh is off meanwhile.
ImportCounts RunImportRows(const ImportRequest& request, const Clock& clock = SystemClock());

// The import of notes: completes each by PrepareImportedNote and leaves out those that the file holds already.
// `request.prepare` and `request.added` are not used.
ImportCounts RunNoteImport(ImportRequest request, const Clock& clock = SystemClock());

}  // namespace jotlet
