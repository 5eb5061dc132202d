// Two openers of one file. Every test runs with both in this process and with the second in another.
#include "store/open_table.h"
#include "support/table_opener.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

class TwoOpeners : public TableTest, public testing::WithParamInterface<Opener> {
protected:
    TwoOpeners()
    {
        address = Add({.title = "milk", .id = 1});
        second = MakeOpener(GetParam(), path);
    }
    TableFile& First() { return *table; }
    TableOpener& Second() { return *second; }

    RecordAddress address = 0;
    std::unique_ptr<TableOpener> second;
};

TEST_P(TwoOpeners, SecondEditorIsRefusedWhileTheFirstHoldsTheNote)
{
    ASSERT_EQ(First().LockRecord(address), 1);
    EXPECT_EQ(Second().LockRecord(address), 0);
    EXPECT_EQ(First().LockRecord(address), 0);  // not even its own holder gets it twice
    EXPECT_EQ(First().UnlockRecord(address), 1);
    EXPECT_EQ(Second().LockRecord(address), 1);
    EXPECT_EQ(First().LockRecord(address), 0);
    EXPECT_EQ(Second().UnlockRecord(address), 1);
    EXPECT_EQ(Second().UnlockRecord(address), 0);
}

TEST_P(TwoOpeners, TakingALockTellsNobody)
{
    const std::uint64_t stamp = Second().GetChangeStamp();
    First().LockRecord(address);
    First().UnlockRecord(address);
    EXPECT_EQ(Second().GetChangeStamp(), stamp);
    ASSERT_EQ(First().WriteRecord(RecordOf({.title = "bread"}), address), 1);
    EXPECT_EQ(Second().GetChangeStamp(), stamp + 1);
}

TEST_P(TwoOpeners, UnlockingADeletedNoteLeavesTheLockOfTheNewOneInItsSlot)
{
    ASSERT_EQ(First().LockRecord(address), 1);
    ASSERT_EQ(First().DeleteRecord(address), 1);
    EXPECT_EQ(Second().LockRecord(address), 0);  // a free slot can't be locked
    ASSERT_EQ(Second().AddRecord(2), address);
    ASSERT_EQ(Second().LockRecord(address), 1);
    EXPECT_EQ(First().UnlockRecord(address), 0);
    EXPECT_EQ(First().LockRecord(address), 0);
    EXPECT_EQ(Second().UnlockRecord(address), 1);
    EXPECT_EQ(First().LockRecord(address), 1);
    EXPECT_EQ(First().UnlockRecord(address), 1);
}

TEST_P(TwoOpeners, AFileInUseIsBusyAndNeverRepaired)
{
    EXPECT_EQ(FileIsBusy(path), 1);
    table.reset();
    EXPECT_EQ(FileIsBusy(path), 1);
    EXPECT_EQ(CheckAfterCrash(path, 0), 0);
    EXPECT_EQ(CheckAfterCrash(path, 1), 0);
    EXPECT_EQ(Second().OpenCount(), 1u);
    second.reset();
    EXPECT_EQ(FileIsBusy(path), 0);
    EXPECT_EQ(CheckAfterCrash(path, 0), 1);
}

TEST_P(TwoOpeners, WhatACrashedCopyHeldIsFreeAtOnceAndClearedAfterTheNextStart)
{
    ASSERT_EQ(Second().LockRecord(address), 1);
    Second().Vanish();
    EXPECT_EQ(First().LockRecord(address), 1);
    EXPECT_EQ(First().LockRecord(address), 0);
    Add({.title = "bread", .id = 5});
    table.reset();

    const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    ASSERT_TRUE(opened);
    EXPECT_TRUE(opened.repaired);
    EXPECT_EQ(opened.table->LockRecord(address), 1);
    TableHeader header;
    opened.table->ReadHeader(header);
    EXPECT_EQ(+header.openCount, 1u);
    SlotCounts counts;
    ASSERT_EQ(opened.table->DescribeSlots(counts), 1);
    EXPECT_EQ(counts.live, 2);
}

INSTANTIATE_TEST_SUITE_P(Where, TwoOpeners, testing::Values(Opener::SameProcess, Opener::OtherProcess),
                         [](const auto& info) {
                             return info.param == Opener::SameProcess ? "SameProcess" : "OtherProcess";
                         });

using RefreshSwitchTest = TableTest;

TEST_F(RefreshSwitchTest, IsOffFromALockToItsUnlockAndOneResumeEndsAll)
{
    const RecordAddress address = Add({.title = "milk"});
    EXPECT_TRUE(IsRefreshEnabled());
    ASSERT_EQ(table->LockRecord(address), 1);
    EXPECT_FALSE(IsRefreshEnabled());
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
    EXPECT_EQ(table->LockRecord(address + 3557), 0);
    EXPECT_TRUE(IsRefreshEnabled());
}

}  // namespace
}  // namespace jotlet::test
