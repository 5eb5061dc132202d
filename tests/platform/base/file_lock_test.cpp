#include "platform/base/file_lock.h"

#include "support/forked_process.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

class FileLockTest : public testing::Test {
protected:
    FileLockTest() : path(folder.File("file"))
    {
        WriteAll(path, "x");
        first.Reset(FileOpen(path));
        second.Reset(FileOpen(path));
    }
    TempFolder folder;
    std::string path;
    FileHandleOwner first, second;
};

TEST_F(FileLockTest, ASecondOpeningInThisProcessIsAStranger)
{
    FileLock mine;
    FileLock theirs;
    ASSERT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 0), LockOutcome::Taken);
    EXPECT_EQ(theirs.TakeExclusive(second.Get(), kMutationByte, 0), LockOutcome::Refused);
    EXPECT_EQ(theirs.TakeShared(second.Get(), kMutationByte, 5), LockOutcome::Refused);
    EXPECT_FALSE(theirs.IsHeld());
    EXPECT_EQ(theirs.TakeExclusive(second.Get(), kMutationByte + 1, 0), LockOutcome::Taken);  // bytes are independent
    mine.Release();
    EXPECT_EQ(theirs.TakeShared(second.Get(), kMutationByte, 0), LockOutcome::Taken);
    EXPECT_EQ(mine.TakeShared(first.Get(), kMutationByte, 0), LockOutcome::Taken);
}

TEST_F(FileLockTest, ClosingOneHandleKeepsTheLocksOfAnother)
{
    FileLock mine;
    ASSERT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 0), LockOutcome::Taken);
    FileClose(FileOpen(path));
    FileLock theirs;
    EXPECT_EQ(theirs.TakeExclusive(second.Get(), kMutationByte, 0), LockOutcome::Refused);
}

TEST_F(FileLockTest, EndsWithItsObjectAndTravelsWithAMove)
{
    FileLock theirs;
    {
        FileLock mine;
        ASSERT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 0), LockOutcome::Taken);
        const FileLock moved = std::move(mine);
        EXPECT_EQ(theirs.TakeExclusive(second.Get(), kMutationByte, 0), LockOutcome::Refused);
    }
    EXPECT_EQ(theirs.TakeExclusive(second.Get(), kMutationByte, 0), LockOutcome::Taken);
}

TEST_F(FileLockTest, AnotherProcessIsKeptOutUntilItsHolderEndsHowever)
{
    ForkedProcess holder([&](Line& line) {
        const FileHandleOwner file(FileOpen(path));
        FileLock lock;
        line.Say(lock.TakeExclusive(file.Get(), kMutationByte, 0) == LockOutcome::Taken ? "held" : "refused");
        line.Hear();
        return 0;
    });
    EXPECT_EQ(holder.Talk().Hear(), "held");
    FileLock mine;
    EXPECT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 5), LockOutcome::Refused);
    holder.Kill();
    EXPECT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 1000), LockOutcome::Taken);
}

TEST_F(FileLockTest, AWaiterGetsTheLockWhenItIsGivenBack)
{
    FileLock mine;
    ASSERT_EQ(mine.TakeExclusive(first.Get(), kMutationByte, 0), LockOutcome::Taken);
    ForkedProcess waiter([&](Line& line) {
        const FileHandleOwner file(FileOpen(path));
        FileLock lock;
        line.Say("waiting");
        return lock.TakeExclusive(file.Get(), kMutationByte, 10'000) == LockOutcome::Taken ? 0 : 1;
    });
    waiter.Talk().Hear();
    mine.Release();
    EXPECT_EQ(waiter.Wait(), 0);
}

TEST_F(FileLockTest, AHandleThatIsNoGoodFails)
{
    FileLock lock;
    EXPECT_EQ(lock.TakeExclusive(999'999, kMutationByte, 0), LockOutcome::Failed);
}

}  // namespace
}  // namespace jotlet::test
