// Any bytes as a table file: it is refused without a change, or every operation on it stays in bounds and keeps the
// live records through a compaction.
//
// Raw bytes would hardly ever pass for a table, so a first byte of the input decides what front part they get.
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "store/compaction.h"
#include "store/open_table.h"
#include "store/record_query.h"

namespace {

using namespace jotlet;

void Require(bool truth, const char* what)
{
    if (!truth) {
        fprintf(stderr, "broken: %s\n", what);
        abort();
    }
}

const std::string& Path()
{
    static const std::string path = [] {
        const char* memory = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        std::string folder = std::string(memory) + "/jotlet-fuzz-XXXXXX";
        Require(mkdtemp(folder.data()) != nullptr, "a folder to work in");
        static std::string toRemove = folder;
        atexit([] {
            unlink((toRemove + "/table.jot").c_str());
            rmdir(toRemove.c_str());
        });
        return folder + "/table.jot";
    }();
    return path;
}

std::string ReadAll()
{
    std::string bytes;
    if (FILE* file = fopen(Path().c_str(), "rb")) {
        char part[65536];
        for (std::size_t got = 0; (got = fread(part, 1, sizeof part, file)) > 0;)
            bytes.append(part, got);
        fclose(file);
    }
    return bytes;
}

void WriteAll(const std::string& bytes)
{
    FILE* file = fopen(Path().c_str(), "wb");
    Require(file && fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size(), "a file to work on");
    fclose(file);
}

// The input, behind sizes that let it in where `shape` says so: with its own header, or with a sound one.
std::string TableBytes(unsigned shape, const std::string& input, std::uint32_t recordSize)
{
    if (shape % 4 == 0)
        return input;
    const SizeBlock sizes{kHeaderBlockSize, kCategoryBlockSize, recordSize};
    std::string bytes(reinterpret_cast<const char*>(&sizes), sizeof sizes);
    if (shape % 4 == 1) {
        bytes += input;
        return bytes;
    }
    bytes.resize(kFirstRecordOffset);
    // Records from little input: each byte fills a stretch of a slot, the first ones its prefix.
    for (std::size_t at = 0; at + 40 <= input.size(); at += 40) {
        std::string record = input.substr(at, 16);
        for (std::size_t i = 16; i < 40; ++i)
            record.append(recordSize / 24, input[at + i]);
        record.resize(recordSize, input[at + 39]);
        if (shape % 4 == 2)
            record[4] = static_cast<char>(record[4] & 1);
        bytes += record;
    }
    bytes += input.substr(0, input.size() % 40);
    return bytes;
}

void QueryAndSort(TableFile& table, const std::string& input)
{
    RecordQuery query;
    query.PrepareResults();
    const auto byteAt = [&](std::size_t at) {
        return static_cast<std::uint8_t>(input.empty() ? 0 : input[at % input.size()]);
    };
    for (std::size_t i = 0; i < 4; ++i) {
        FilterTerm term;
        term.valueType = static_cast<ValueType>(byteAt(i * 5) % 12);
        term.kind = static_cast<TermKind>(byteAt(i * 5 + 1) % 13);
        term.fieldOffset = byteAt(i * 5 + 2) * 15u;
        term.fieldSize = byteAt(i * 5 + 3) * 9u;
        term.connective = static_cast<Connective>(1 + byteAt(i * 5 + 4) % 2);
        for (std::size_t j = 0; j < term.value.bytes.size(); ++j)
            term.value.bytes[j] = std::byte{byteAt(i + j)};
        query.AddTerm(term);
    }
    Require(table.RunQuery(query) == 1, "a local file can be read");
    const FieldComparator comparators[] = {CompareInt8,  CompareInt32,  CompareInt64, CompareFloat,
                                           CompareTimes, CompareTitles, CompareDates, CompareFloat12};
    const std::size_t before = query.Results().size();
    for (const FieldComparator comparator : comparators)
        query.Sort(table, byteAt(3) * 14u, 1 + byteAt(4), comparator);
    Require(query.Results().size() == before, "a sort loses nothing");
}

void ChangeRecords(TableFile& table)
{
    std::vector<std::byte> record = table.AllocRecordBuffer();
    RecordQuery query;
    query.PrepareResults();
    query.AddAllTerm();
    table.RunQuery(query);
    for (const RecordAddress address : query.Results().first(std::min<std::size_t>(query.Results().size(), 3))) {
        Require(table.ReadRecord(record, address) == 1, "a result can be read");
        if (table.LockRecord(address) == 1) {
            Require(table.LockRecord(address) == 0, "a lock is taken once");
            table.WriteRecord(record, address);
            table.UnlockRecord(address);
        }
        table.DeleteRecord(address);
        RecordAddress added = 0;
        if (table.AddRecord(record, &added) == 1)
            Require(table.ReadRecord(record, added) == 1, "an added record can be read");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::uint32_t recordSizes[] = {kNoteRecordSize, kContactRecordSize, kSendRecordSize};
    const std::uint32_t recordSize = recordSizes[data[0] / 4 % 3];
    const std::string input(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string bytes = TableBytes(data[0], input, recordSize);
    WriteAll(bytes);
    {
        const OpenedTable opened = OpenTable(Path(), input.substr(0, 3), recordSize);
        if (!opened) {
            Require(ReadAll() == bytes, "a refused file stays as it was");
            return 0;
        }
        CategoryBlock categories;
        opened.table->ReadCategories(categories);
        Require(categories.Count() <= kCategoryCapacity, "categories stay in their block");
        QueryAndSort(*opened.table, input);
        ChangeRecords(*opened.table);
    }
    SlotCounts before;
    Require(TableFile(Path(), "").DescribeSlots(before) == 1, "slots can be counted");
    Require(CheckAfterCrash(Path(), 1) == 1, "a table can be compacted");
    SlotCounts after;
    Require(TableFile(Path(), "").DescribeSlots(after) == 1, "slots can be counted again");
    Require(after.live == before.live && after.slots == before.live && after.locked + after.cutTailBytes == 0,
            "a compaction keeps the live records and nothing else");
    return 0;
}
