#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "notes/model/note_record.h"
#include "platform/base/file_error.h"

// A selection of notes as a text file: a report to read, or delimited text that the import reads back.

namespace jotlet {

class TableFile;

enum class ReportKind { Report = 1, Export = 2 };
enum class ReportSelection { All = 1, DateRange = 2, CurrentRecord = 3 };

struct ReportRequest {
    ReportKind kind = ReportKind::Report;
    TableFile* table = nullptr;  // the open note file; not owned
    ReportSelection selection = ReportSelection::All;
    std::uint64_t currentId = 0;  // of the selected note; 0 when there is none
    bool hasCurrent = false;
    DateValue fromDate;  // both ends belong to the range
    DateValue toDate;
    bool findEnabled = false;
    std::string findText;    // up to 1023 bytes; of these 499 are searched for
    std::string exportPath;  // up to 259 bytes
    bool everyNote = false;  // also past the kMaxResults at which a query of the windows stops
};

struct ReportOutcome {
    FileError error;             // why there is no whole target
    std::size_t notes = 0;       // written
    std::size_t withQuotes = 0;  // of these; a quotation mark is not doubled, so such a row may not come back
    bool limitReached = false;   // there are more than kMaxResults notes, and not all were asked for
};

// Writes the selected notes to `path`, by date. 1, or 0 when the target could not be made whole; `outcome` then tells
// why.
//
// A regular target is replaced in one step once the new text is complete and on the disk, so that it is the old one or
// the new one at any moment; a target that somebody has open, such as a note file, is refused. Anything else (a pipe, a
// device) is written to directly.
//
// All means from 1 January 2000 to 31 January of the calendar's last year. Confidential notes appear for the Owner
// alone. No record is locked. A note that another copy deletes meanwhile is left out; one that the drive refuses fails
// the whole, since nobody would miss it in the new file until the old one is gone.
int GenerateReportFile(const ReportRequest& request, const std::string& path, ReportOutcome* outcome = nullptr);

// `report.txt` in the folder where the program writes. Returns 1.
int GetReportPath(std::string& path);

// The pieces, each appended to `out`.
void WriteReportHeading(std::string& out, const DateValue& from, const DateValue& to);
void WriteCsvHeader(std::string& out);

}  // namespace jotlet
