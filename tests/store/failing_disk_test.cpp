// What a failing disk does to locks, flushes, reserves and new files; to changes of records: table_model_test.cpp.
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

using FailingDiskTest = TableTest;

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
