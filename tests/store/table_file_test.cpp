#include "store/table_file.h"

#include <sys/stat.h>

#include "store/open_table.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

using TableFileTest = TableTest;

TEST_F(TableFileTest, ANewFileHasItsFrontPartAndEveryOpeningIsCountedAndGivenBack)
{
    EXPECT_EQ(std::filesystem::file_size(path), 2625u);
    EXPECT_EQ(+Header().changeStamp, 10u);
    Add({.title = "milk"});
    EXPECT_EQ(std::filesystem::file_size(path), 6182u);
    auto second = std::make_unique<TableFile>(path, "");
    EXPECT_EQ(second->Open(), 1);
    EXPECT_EQ(+Header().openCount, 2u);
    second.reset();
    EXPECT_EQ(+Header().openCount, 1u);
    table->Close();
    table->Close();
    EXPECT_EQ(ReadAll(path).substr(12 + 1018, 4), std::string(4, '\0'));
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST_F(TableFileTest, SlotsAreReusedFromTheFrontWhateverTheOrderOfDeletes)
{
    std::vector<RecordAddress> slots;
    for (int i = 0; i < 250; ++i)
        slots.push_back(Add({.title = std::to_string(i)}));
    TableFile other(path, "");
    for (const std::size_t i : {200, 7, 120})
        EXPECT_EQ(table->DeleteRecord(slots[i]), 1);
    EXPECT_EQ(Add({.title = "a"}), slots[7]);
    EXPECT_EQ(table->DeleteRecord(slots[3]) + other.DeleteRecord(slots[1]), 2);  // behind the back of what it remembers
    for (const std::size_t i : {1, 3, 120, 200})
        EXPECT_EQ(Add({.title = "b"}), slots[i]);
    EXPECT_EQ(FreeSlots(), 0);
}

TEST_F(TableFileTest, AFileThatIsCutGivesFailuresAndNoCrashAndItsHalfRecordIsNotShown)
{
    std::vector<RecordAddress> slots;
    for (int i = 0; i < 50; ++i)
        slots.push_back(Add({.title = std::to_string(i)}));
    EXPECT_EQ(Titles().size(), 50u);  // has the file mapped now
    CutBytes(40 * 3557 + 3);
    EXPECT_EQ(Titles().size(), 9u);
    EXPECT_EQ(TitleAt(slots[30]) + TitleAt(slots[9]), "(none)(none)");
    EXPECT_EQ(table->LockRecord(slots[9]), 0);
    EXPECT_EQ(table->CutTailBytes(), 3554);
    EXPECT_EQ(OpenTable(path, "", kNoteRecordSize).cutTailBytes, 3554);
    EXPECT_EQ(Add({.title = "next"}), slots[9]);
    EXPECT_EQ(table->CutTailBytes(), 0);
    CutBytes(10 * 3557 + 100);
    EXPECT_EQ(table->AddRecord(RecordOf({.title = "x"})), 0);
    RecordQuery query;
    query.PrepareResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 0);
}

TEST_F(TableFileTest, CreateNeverReplacesAFileAndTakesOnlyKnownSizes)
{
    Add({.title = "milk"});
    table->Close();
    TableFile second(folder.File("other.jot"), "");
    CategoryBlock categories;
    InitCategories(categories);
    EXPECT_EQ(second.Create(NewHeader(), 1581, categories, 1032, 64), 0);
    EXPECT_EQ(TableFile::Exists(folder.File("other.jot")), 0);
    EXPECT_EQ(CreateNotes(second), 1);

    std::filesystem::rename(path, folder.File("kept"));
    TableFile late(path, "");
    std::filesystem::rename(folder.File("kept"), path);
    EXPECT_EQ(CreateNotes(late), 0);
    Reopen();
    EXPECT_EQ(Titles(), Texts{"milk"});
}

// A copy put back from a backup, a program that synchronises folders, a user who tidies up.
TEST_F(TableFileTest, NothingIsWrittenToAFileThatThePathNoLongerNames)
{
    const RecordAddress milk = Add({.title = "milk"});
    const RecordAddress bread = Add({.title = "bread"});
    ASSERT_EQ(table->LockRecord(bread), 1);
    ASSERT_EQ(table->Flush(), 1);
    const std::string kept = folder.File("kept");
    const std::string bytes = ReadAll(path);
    for (const bool another : {false, true}) {
        std::filesystem::rename(path, kept);
        if (another)
            WriteAll(path, bytes);
        std::vector<RecordAddress> addresses;
        const Record record = RecordOf({.title = "lost"});
        EXPECT_EQ(table->AddRecord(record), 0);
        EXPECT_TRUE(table->WasReplaced());
        EXPECT_EQ(table->AddRecords(record, addresses) + table->WriteRecord(record, milk) + table->DeleteRecord(milk) +
                      table->LockRecord(milk) + table->UnlockRecord(bread) + table->Flush(),
                  0);
        EXPECT_EQ(table->UpdateHeader([](TableHeader&) { return true; }), 0);
        EXPECT_EQ(table->UpdateCategories([](CategoryBlock&) { return true; }), 0);
        EXPECT_EQ(ReadAll(kept), bytes);
        EXPECT_EQ(TitleAt(milk), "milk") << "what was there can still be read";
        if (another) {
            table->Close();
            EXPECT_EQ(ReadAll(kept) + ReadAll(path), bytes + bytes);
        }
        std::filesystem::rename(kept, path);
        EXPECT_EQ(table->PathStillNamesThisFile(), !another) << "back where it was";
    }
    EXPECT_EQ(table->Open(), 1);
    EXPECT_EQ(table->AddRecord(RecordOf({.title = "jam"})), 1);
    EXPECT_FALSE(table->WasReplaced());
}

TEST_F(TableFileTest, ALargeFileGrowsByManySlotsWhenEachNoteIsFlushed)
{
    const Record record = RecordOf({.title = "note"});
    const auto addAndFlush = [&] { return table->AddRecord(record) + table->Flush(); };
    EXPECT_EQ(addAndFlush() + addAndFlush() + addAndFlush(), 6);
    EXPECT_EQ(std::filesystem::file_size(path), 2625u + 3 * 3557);  // a small file holds no reserve
    for (int i = 3; i < 1100; ++i)
        ASSERT_EQ(table->AddRecord(record), 1);
    EXPECT_EQ(std::filesystem::file_size(path), 2625u + 1100 * 3557);  // neither does one that is filled in one go
    table->Flush();
    EXPECT_EQ(addAndFlush(), 2);
    EXPECT_EQ(FreeSlots(), 0);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(addAndFlush(), 2);
        SlotCounts counts;
        ASSERT_EQ(table->DescribeSlots(counts), 1);
        EXPECT_EQ(counts.live, 1102 + i);
        EXPECT_EQ(FreeSlots(), -(counts.slots - counts.live));
        EXPECT_EQ(std::filesystem::file_size(path), 2625u + (i < 64 ? 1165 : 1229) * 3557u);
    }
    EXPECT_EQ(Titles().size(), 1201u);
}

TEST_F(TableFileTest, ACountOfFreeSlotsThatLiesStoresNothing)
{
    Add({.title = "milk"});
    SetHeader([](TableHeader& header) { header.freeSlots = -5; });
    EXPECT_EQ(table->AddRecord(RecordOf({.title = "lost"})), 0);
    EXPECT_EQ(FreeSlots(), -5);
    EXPECT_EQ(table->GetChangeStamp(), 11u);
    EXPECT_EQ(Titles(), Texts{"milk"});

    SetHeader([](TableHeader& header) { header.freeSlots = 7; });
    Add({.title = "bread"});
    EXPECT_EQ(Titles(), (Texts{"milk", "bread"}));
}

TEST_F(TableFileTest, AddressesEndBelowTwoGigabytes)
{
    Add({.title = "milk"});
    // Room for a slot below the limit, none for the next: sparse, so it costs no disk.
    const std::int64_t slots = (0x7FFFFFFF - 2625) / 3557;
    table->Close();
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(2625 + (slots - 1) * 3557));
    Reopen();
    RecordAddress last = 0;
    ASSERT_EQ(table->AddRecord(RecordOf({.title = "last"}), &last), 1);
    EXPECT_EQ(last, 2625 + (slots - 1) * 3557);
    EXPECT_EQ(TitleAt(last), "last");
    EXPECT_EQ(table->AddRecord(RecordOf({.title = "one more"})), 0);
    table->Close();
    std::filesystem::resize_file(path, 0x80000000u);
    EXPECT_EQ(table->Open(), 0);
    EXPECT_EQ(table->GetOpenFailure(), OpenFailure::TooLarge);
}

TEST_F(TableFileTest, ForEachRecordReachesAllAndHidesConfidentialOnesFromOthers)
{
    for (int i = 0; i < 300; ++i)
        Add({.title = std::to_string(i), .id = static_cast<std::uint64_t>(i), .confidential = i % 3 == 0});
    table->DeleteRecord(table->FirstRecordOffset());
    const std::vector<FieldRange> fields = {{kTitleAt, 4}, {6, 8}};
    const auto count = [&](ScanScope scope) {
        int seen = 0;
        EXPECT_EQ(table->ForEachRecord(
                      fields,
                      [&](RecordAddress address, std::span<const std::byte> bytes) {
                          std::uint64_t id = 0;
                          std::memcpy(&id, bytes.data() + 4, 8);
                          EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data())), std::to_string(id));
                          EXPECT_EQ(address, 2625 + static_cast<RecordAddress>(id) * 3557);
                          ++seen;
                          return true;
                      },
                      scope),
                  1);
        return seen;
    };
    EXPECT_EQ(count(ScanScope::Visible), 299);
    SetPasswords("boss", "", "");
    EXPECT_EQ(count(ScanScope::Visible), 200);
    EXPECT_EQ(count(ScanScope::All), 299);
    const std::vector<FieldRange> outside = {{3557, 1}};
    EXPECT_EQ(table->ForEachRecord(outside, [](auto, auto) { return true; }), 0);
    int calls = 0;
    EXPECT_EQ(table->ForEachRecord(fields, [&](auto, auto) { return ++calls < 5; }), 1);
    EXPECT_EQ(calls, 5);
}

TEST_F(TableFileTest, EveryOperationOnAClosedObjectFails)
{
    TableFile closed(folder.File("missing.jot"), "");
    TableHeader header;
    CategoryBlock categories;
    SizeBlock sizes;
    Record record = RecordOf({.title = "x"});
    RecordQuery query;
    query.PrepareResults();
    query.AddAllTerm();
    SlotCounts counts;
    EXPECT_EQ(closed.GetOpenFailure(), OpenFailure::Missing);
    EXPECT_FALSE(closed.IsOpen());
    EXPECT_EQ(closed.ReadSizes(sizes) + closed.WriteSizes({1581, 1032, 3557}) + closed.ReadHeader(header), 0);
    EXPECT_EQ(closed.WriteHeader(NewHeader()) + closed.ReadCategories(categories) + closed.WriteCategories({}), 0);
    EXPECT_EQ(closed.AddRecord(record) + closed.WriteRecord(record, 2625) + closed.DeleteRecord(2625), 0);
    EXPECT_EQ(closed.ReadRecord(record, 2625) + closed.LockRecord(2625) + closed.UnlockRecord(2625), 0);
    EXPECT_EQ(closed.GetChangeStamp(), 0u);
    EXPECT_EQ(closed.GetRole(), Role::None);
    EXPECT_EQ(closed.Flush() + closed.RunQuery(query) + closed.DescribeSlots(counts), 0);
    EXPECT_EQ(query.Sort(closed, kTitleAt, kTitleWidth, CompareTitles), 0);
    closed.Close();
    EXPECT_EQ(TableFile::Exists(folder.File("missing.jot")), 0);
}

// --- files that are none of ours

struct BadFile {
    const char* name;
    std::string bytes;
    OpenFailure failure;
};

std::string Sizes(std::uint32_t header, std::uint32_t categories, std::uint32_t record)
{
    const SizeBlock sizes{header, categories, record};
    return std::string(reinterpret_cast<const char*>(&sizes), sizeof sizes);
}

TEST_F(TableFileTest, WhatIsNoTableFileIsRefusedAndLeftAsItWas)
{
    Add({.title = "milk"});
    table->Close();
    const std::string good = ReadAll(path);
    const BadFile cases[] = {
        {"empty", "", OpenFailure::NotTableFile},
        {"eleven bytes", good.substr(0, 11), OpenFailure::NotTableFile},
        {"picture", "\xFF\xD8\xFF\xE0" + std::string(5000, 'J'), OpenFailure::NotTableFile},
        {"sizes of 0", Sizes(0, 0, 0) + std::string(9000, '\0'), OpenFailure::NotTableFile},
        {"sizes of 4 GB", Sizes(~0u, ~0u, ~0u) + std::string(9000, '\0'), OpenFailure::NotTableFile},
        {"sizes that wrap round", Sizes(0xFFFFFFF4u, 12, 3557) + std::string(9000, '\0'), OpenFailure::NotTableFile},
        {"unknown record size", Sizes(1581, 1032, 3558) + good.substr(12), OpenFailure::NotTableFile},
        {"cut in the header", good.substr(0, 700), OpenFailure::Truncated},
        {"cut in the categories", good.substr(0, 2624), OpenFailure::Truncated},
    };
    for (const BadFile& bad : cases) {
        SCOPED_TRACE(bad.name);
        const std::string file = folder.File("bad.jot");
        WriteAll(file, bad.bytes);
        const OpenedTable opened = OpenTable(file, "", kNoteRecordSize);
        EXPECT_FALSE(opened);
        EXPECT_EQ(opened.failure, bad.failure);
        EXPECT_EQ(CheckAfterCrash(file, 0), 0);
        EXPECT_EQ(CheckAfterCrash(file, 1), 0);
        EXPECT_EQ(TableFile(file, "").GetOpenFailure(), bad.failure);
        EXPECT_EQ(ReadAll(file), bad.bytes);
    }
    EXPECT_EQ(folder.FileCount(), 2u);
}

TEST_F(TableFileTest, FoldersDevicesAndMissingFilesAreRefusedWithTheirReason)
{
    EXPECT_EQ(OpenTable(folder.Path(), "", kNoteRecordSize).failure, OpenFailure::NotTableFile);
    EXPECT_EQ(OpenTable("/dev/full", "", kNoteRecordSize).failure, OpenFailure::NotTableFile);
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    EXPECT_EQ(OpenTable(folder.File("pipe"), "", kNoteRecordSize).failure, OpenFailure::NotTableFile);
    const OpenedTable missing = OpenTable(folder.File("missing"), "", kNoteRecordSize);
    EXPECT_EQ(missing.failure, OpenFailure::Missing);
    EXPECT_EQ(missing.error.systemError, ENOENT);
    EXPECT_EQ(missing.error.path, folder.File("missing"));
    EXPECT_EQ(OpenTable(path, "", kContactRecordSize).failure, OpenFailure::NotTableFile);
}

TEST_F(TableFileTest, TextsWithoutTerminatorsStayInTheirFields)
{
    Record record(kNoteRecordSize, std::byte{'x'});
    Put(record, 4, std::uint8_t{1});
    Put(record, 5, std::uint8_t{0});
    Put(record, 14, std::uint8_t{0});
    ASSERT_EQ(table->AddRecord(record), 1);
    SetHeader([](TableHeader& header) { std::memset(&header.fileOwner, 'p', sizeof header.fileOwner); });
    EXPECT_EQ(table->GetRole(), Role::None);
    RecordQuery query;
    query.PrepareResults();
    query.AddTextTerm(kTextAt, kTextWidth, TermKind::EndsWith, "xx", Connective::And);
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, 1);
    EXPECT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 1);
}

}  // namespace
}  // namespace jotlet::test
