// What a failing disk does to locks, flushes, reserves and new files; to changes of records: table_model_test.cpp.
#include <algorithm>
#include <filesystem>

#include "store/open_table.h"
#include "store/record_hold.h"
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

class FailingDiskTest : public TableTest {
protected:
    void Restore(const std::string& bytes)
    {
        const FileHandleOwner file(FileOpen(path));
        FileWriteWhole(file.Get(), std::as_bytes(std::span(bytes)), 0);
        std::filesystem::resize_file(path, bytes.size());
    }
};

// From the nth call on the drive is gone; the text stays with the caller, who tries again when it is back.
TEST_F(FailingDiskTest, ADriveThatVanishesInAnyCallOfAnAddHoldsTheRecordOnceInTheEnd)
{
    const RecordAddress first = Add({.title = "milk"});
    for (const bool intoFreeSlot : {false, true}) {
        if (intoFreeSlot) {
            Add({.title = "milk"});
            table->DeleteRecord(first);
        }
        table->Flush();
        const std::string original = ReadAll(path);
        FailingFileSystem drive;
        drive.isRemote = drive.andAllBehind = true;
        drive.failure = ETIMEDOUT;
        const ScopedFileSystem scope(drive);
        const Record bread = RecordOf({.title = "bread", .id = 7});
        for (int failAt = 1; drive.failedCall.empty() == (failAt == 1); ++failAt) {
            SCOPED_TRACE(testing::Message() << failAt << (intoFreeSlot ? ", a free slot" : ""));
            ASSERT_LT(failAt, 20);
            drive.failAt = 0;
            Restore(original);
            TableFile remote(path, "");
            drive.failedCall.clear();
            drive.changes = 0;
            drive.failAt = failAt;
            const SaveResult saved = AddSaved(remote, bread);
            drive.failAt = 0;
            if (!drive.failedCall.empty()) {
                EXPECT_EQ(saved.error.kind, FileErrorKind::NoAnswer);
                EXPECT_TRUE(AddSaved(remote, bread));
            }
            Texts titles = Titles();
            std::ranges::sort(titles);
            EXPECT_EQ(titles, (Texts{"bread", "milk"}));
            SlotCounts counts;
            EXPECT_EQ(remote.DescribeSlots(counts), 1);
            EXPECT_EQ(counts.cutTailBytes, 0);
            EXPECT_GE(+Header().freeSlots, counts.live - counts.slots) << "never more than there are";
        }
        Restore(original);
    }
}

TEST_F(FailingDiskTest, AnAddIsConfirmedWhereTurnsAreTakenByAFile)
{
    FailingFileSystem drive;
    drive.isRemote = drive.locksStayHere = true;
    const ScopedFileSystem scope(drive);
    TableFile remote(path, "");
    EXPECT_TRUE(AddSaved(remote, RecordOf({.title = "bread"})));
}

TEST_F(FailingDiskTest, WhereNobodyMayWriteATableOpensForReadingAlone)
{
    Add({.title = "milk"});
    table->Close();
    struct Case {
        int reason;
        bool isRemote, opens;
    };
    for (const Case& one :
         {Case{EROFS, false, true}, {EROFS, true, true}, {EACCES, true, true}, {EACCES, false, false}}) {
        SCOPED_TRACE(testing::Message() << one.reason << " " << one.isRemote);
        FailingFileSystem drive;
        drive.isRemote = one.isRemote;
        drive.openForWritingFailure = one.reason;
        const ScopedFileSystem scope(drive);
        OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
        ASSERT_EQ(opened.table != nullptr, one.opens);
        if (!one.opens) {
            EXPECT_EQ(opened.failure, OpenFailure::Permission);
            continue;
        }
        EXPECT_EQ(opened.readOnly.systemError, one.reason);
        EXPECT_FALSE(opened.repairError);
        EXPECT_EQ(opened.table->GetRole(), Role::Reader);
        EXPECT_EQ(opened.table->AddRecord(RecordOf({.title = "bread"})), 0);
        SlotCounts counts;
        EXPECT_EQ(opened.table->DescribeSlots(counts), 1);
        EXPECT_EQ(counts.live, 1);
    }
}

TEST_F(FailingDiskTest, ALockThatCannotBeWrittenIsNotTaken)
{
    const RecordAddress address = Add({.title = "milk"});
    FailingFileSystem disk;
    disk.failAt = 1;
    {
        const ScopedFileSystem scope(disk);
        EXPECT_EQ(table->LockRecord(address), 0);
        EXPECT_TRUE(IsRefreshEnabled());
    }
    EXPECT_EQ(table->LockRecord(address), 1);
    disk.changes = 0;
    {
        const ScopedFileSystem scope(disk);
        EXPECT_EQ(table->UnlockRecord(address), 1);  // tried again
        EXPECT_TRUE(IsRefreshEnabled());
        ASSERT_EQ(table->LockRecord(address), 1);
        disk.changes = 0;
        disk.andAllBehind = true;
        EXPECT_EQ(table->UnlockRecord(address), 0);
        EXPECT_EQ(table->GetLastError().systemError, ENOSPC);
    }
    EXPECT_EQ(table->LockRecord(address), 1);  // the byte that stayed stands for nobody
    table->UnlockRecord(address);
    table->Close();
    EXPECT_EQ(RepairTable(path, false), RepairOutcome::Compacted);
}

TEST_F(FailingDiskTest, AFileIsCreatedWholeOrNotAtAll)
{
    const std::string fresh = folder.File("fresh.jot");
    for (int failAt = 1; failAt < 12; ++failAt) {
        SCOPED_TRACE(failAt);
        FailingFileSystem disk;
        disk.failAt = failAt;
        int created = 0;
        {
            TableFile made(fresh, "");
            const ScopedFileSystem scope(disk);
            created = CreateNotes(made);
        }
        EXPECT_EQ(folder.FileCount(), TableFile::Exists(fresh) ? 2u : 1u);
        if (TableFile::Exists(fresh)) {
            EXPECT_TRUE(TableFile(fresh, "").IsOpen());
            std::filesystem::remove(fresh);
        } else {
            EXPECT_EQ(created, 0);
        }
    }
}

TEST_F(FailingDiskTest, AFailedFlushIsTold)
{
    Add({.title = "milk"});
    FailingFileSystem disk;
    disk.failAt = 1;
    const ScopedFileSystem scope(disk);
    EXPECT_EQ(table->Flush(), 0);
    EXPECT_EQ(table->Flush(), 1);
    // With the file mapped, a flush reaches for the changed record alone.
    EXPECT_EQ(Titles(), Texts{"milk"});
    for (int i = 0; i < 3; ++i) {
        Add({.title = "bread"});
        disk.changes = 0;
        disk.failAt = 1;
        disk.failedCall.clear();
        EXPECT_EQ(table->Flush(), 0);
        EXPECT_EQ(disk.failedCall, "sync part");
        EXPECT_EQ(table->Flush(), 1);
    }
}

TEST_F(FailingDiskTest, AReserveThatFindsNoRoomLeavesRoomForTheRecord)
{
    const Record record = RecordOf({.title = "note"});
    std::vector<std::byte> many;
    for (int i = 0; i < 200; ++i)
        many.insert(many.end(), record.begin(), record.end());
    std::vector<RecordAddress> addresses;
    for (int i = 0; i < 6; ++i)
        ASSERT_EQ(table->AddRecords(many, addresses), 1);
    Add({.title = "one"});
    table->Flush();
    FailingFileSystem disk;
    disk.failAt = 1;
    disk.halfWrite = true;
    const auto size = std::filesystem::file_size(path);
    {
        const ScopedFileSystem scope(disk);
        EXPECT_EQ(table->AddRecord(record), 1);
    }
    EXPECT_EQ(disk.failedCall, "write");
    EXPECT_EQ(std::filesystem::file_size(path), size + 3557);
    EXPECT_EQ(FreeSlots(), 0);
    EXPECT_EQ(Titles().size(), 1202u);
}

}  // namespace
}  // namespace jotlet::test
