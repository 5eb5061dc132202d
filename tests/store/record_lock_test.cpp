// Locks of a copy that crashes, and the refresh switch that goes with a lock.
#include "store/open_table.h"
#include "support/forked_process.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

using RecordLockTest = TableTest;

TEST_F(RecordLockTest, WhatAKilledCopyHeldIsFreeAtOnceAndClearedAfterTheNextStart)
{
    const RecordAddress address = Add({.title = "milk"});
    ForkedProcess other([&](Line& line) {
        TableFile copy(path, "");
        line.Say(std::to_string(copy.LockRecord(address)));
        line.Hear();
        return 0;
    });
    ASSERT_EQ(other.Talk().Hear(), "1");
    EXPECT_EQ(table->LockRecord(address), 0);
    table->Close();
    EXPECT_EQ(FileIsBusy(path), 1);
    EXPECT_EQ(CheckAfterCrash(path, 0) + CheckAfterCrash(path, 1), 0) << "a file in use is never repaired";
    ASSERT_EQ(table->Open(), 1);
    other.Kill();
    EXPECT_EQ(table->LockRecord(address), 1);
    EXPECT_EQ(table->LockRecord(address), 0);
    table.reset();
    EXPECT_EQ(FileIsBusy(path), 0);

    const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    ASSERT_TRUE(opened);
    EXPECT_TRUE(opened.repaired);
    EXPECT_EQ(opened.table->LockRecord(address), 1);
    TableHeader header;
    opened.table->ReadHeader(header);
    EXPECT_EQ(+header.openCount, 1u);
}

TEST_F(RecordLockTest, UnlockingADeletedNoteLeavesTheLockOfTheNewOneInItsSlot)
{
    const RecordAddress address = Add({.title = "milk"});
    TableFile other(path, "");
    RecordAddress added = 0;
    ASSERT_EQ(table->LockRecord(address) + table->DeleteRecord(address), 2);
    ASSERT_EQ(other.AddRecord(RecordOf({.title = "bread"}), &added), 1);
    ASSERT_EQ(added, address);
    ASSERT_EQ(other.LockRecord(address), 1);
    EXPECT_EQ(table->UnlockRecord(address) + table->LockRecord(address), 0);
    EXPECT_EQ(other.UnlockRecord(address), 1);
    EXPECT_EQ(table->LockRecord(address) + table->UnlockRecord(address), 2);
}

TEST_F(RecordLockTest, RefreshIsOffFromALockToItsUnlockAndOneResumeEndsAll)
{
    const RecordAddress address = Add({.title = "milk"});
    ASSERT_EQ(table->LockRecord(address), 1);
    {
        const RefreshPause pause;
        EXPECT_FALSE(IsRefreshEnabled());
    }
    EXPECT_FALSE(IsRefreshEnabled());  // put back as it was found
    SuspendRefresh();
    EXPECT_EQ(table->UnlockRecord(address), 1);
    EXPECT_TRUE(IsRefreshEnabled());
    {
        const RefreshPause pause;
        EXPECT_FALSE(IsRefreshEnabled());
        EXPECT_EQ(table->UnlockRecord(address), 0);  // nothing to unlock, and on all the same
        EXPECT_TRUE(IsRefreshEnabled());
        SuspendRefresh();
    }
    EXPECT_TRUE(IsRefreshEnabled());
}

}  // namespace
}  // namespace jotlet::test
