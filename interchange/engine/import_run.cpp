#include "interchange/engine/import_run.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "interchange/engine/import_values.h"
#include "notes/model/duplicates.h"
#include "notes/model/record_header.h"
#include "platform/base/progress_display.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

// Records that go to the file together: enough to make the cost of a write's surroundings small, few enough that other
// copies get their turn.
constexpr std::size_t kBatchRecords = 64;

// Opens the display for its own lifetime; with no display nothing happens.
class Progress {
public:
    Progress(ProgressDisplay* display, std::size_t steps) : display(display)
    {
        if (display != nullptr)
            display->Open("Import...", static_cast<int>(std::min<std::size_t>(steps, std::numeric_limits<int>::max())));
    }
    ~Progress()
    {
        if (display != nullptr)
            display->Close();
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Step()
    {
        if (display != nullptr)
            display->Step();
    }

private:
    ProgressDisplay* display;
};

// Collects records and stores them together.
class Batch {
public:
    Batch(const ImportRequest& request, ImportCounts& counts)
        : request(request), counts(counts), recordSize(request.table->RecordSize())
    {
        bytes.reserve(kBatchRecords * recordSize);
    }

    // False when the run must end.
    bool Put(std::span<const std::byte> record)
    {
        bytes.insert(bytes.end(), record.begin(), record.end());
        return bytes.size() < kBatchRecords * recordSize || Store();
    }

    bool Store()
    {
        if (bytes.empty())
            return true;
        std::vector<RecordAddress> addresses;
        const int result = request.table->AddRecords(bytes, addresses);
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            if (request.added)
                request.added(std::span(bytes).subspan(i * recordSize, recordSize), addresses[i]);
        }
        counts.added += addresses.size();
        bytes.clear();
        counts.refused = result == kRefusedByRole;
        counts.writeFailed = result == 0;
        return result == 1;
    }

private:
    const ImportRequest& request;
    ImportCounts& counts;
    std::size_t recordSize;
    std::vector<std::byte> bytes;
};

// One row into a record. False when a value could not be read; the reader stands behind the row in any case.
bool ReadRow(const ImportRequest& request, std::span<std::byte> record)
{
    DelimitedReader& reader = *request.reader;
    reader.Rewind();
    bool good = true;
    for (int column = 0;; ++column) {
        const int code = reader.NextField();
        if (code == DelimitedReader::kNoMore)
            return false;
        if (good && !reader.Field().empty())
            good = StoreField(request.fields, column, reader.Field(), record) == 1;
        if (code == DelimitedReader::kLastFieldOfRecord)
            return good;
    }
}

void RunRows(const ImportRequest& request, const Clock& clock, Progress& progress, ImportCounts& counts)
{
    DelimitedReader& reader = *request.reader;
    reader.Reset();
    if (request.firstLineNames && reader.NextRecord() != 1)
        return;

    // What all records of one run have in common is asked once; only the id is each one's own.
    const std::uint32_t recordSize = request.table->RecordSize();
    std::vector<std::byte> fresh = request.table->AllocRecordBuffer();
    if (fresh.size() < sizeof(RecordHeader)) {
        counts.writeFailed = true;
        return;
    }
    RecordHeader header{};
    InitRecordHeader(*request.table, header, recordSize, clock);
    std::memcpy(fresh.data(), &header, sizeof header);

    Batch batch(request, counts);
    std::vector<std::byte> record;
    while (reader.NextRecord() == 1) {
        ++counts.rows;
        record = fresh;
        header.uniqueId = RandomId();
        std::memcpy(record.data(), &header, sizeof header);
        const bool keep = ReadRow(request, record) && request.prepare(record) == 1;
        progress.Step();
        if (keep && !batch.Put(record))
            return;
    }
    batch.Store();
}

}  // namespace

ImportCounts RunImportRows(const ImportRequest& request, const Clock& clock)
{
    ImportCounts counts;
    const std::size_t records = request.reader->CountRecords();
    counts.incompleteEnd = request.reader->HasIncompleteEnd();
    if (counts.incompleteEnd)
        counts.lastLine = request.reader->LastWholeLine();

    Progress progress(request.progress, records);
    const RefreshPause pause;
    RunRows(request, clock, progress, counts);
    if (counts.added > 0 && request.table->Flush() != 1)
        counts.writeFailed = true;
    counts.dropped = counts.rows - counts.added;
    return counts;
}

ImportCounts RunNoteImport(ImportRequest request, const Clock& clock)
{
    if (request.table->RecordSize() != kNoteRecordSize) {
        ImportCounts counts;
        counts.writeFailed = true;
        return counts;
    }
    NoteDuplicates duplicates(*request.table);
    request.prepare = [&](std::span<std::byte> record) {
        auto& note = *reinterpret_cast<NoteRecord*>(record.data());
        if (PrepareImportedNote(note, duplicates, clock) != 1)
            return 0;
        duplicates.Expect(note);
        return 1;
    };
    request.added = [&](std::span<const std::byte> record, RecordAddress address) {
        duplicates.Added(*reinterpret_cast<const NoteRecord*>(record.data()), address);
    };
    return RunImportRows(request, clock);
}

}  // namespace jotlet
