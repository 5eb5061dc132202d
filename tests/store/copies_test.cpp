// Who has a file open, as others are told; and files whose locks stay on each machine.
#include "store/copies.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "store/open_table.h"
#include "store/stamp_watch.h"
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

using CopiesTest = TableTest;

TEST_F(CopiesTest, CopiesAreListedWithWhatTheyEditWhileTheyHaveTheFileOpen)
{
    for (const bool locksStayHere : {false, true}) {
        SCOPED_TRACE(locksStayHere);
        FailingFileSystem drive;
        drive.locksStayHere = locksStayHere;
        const ScopedFileSystem scope(drive);
        chmod(path.c_str(), 0640);
        Reopen();
        const RecordAddress address = Add({.title = "milk"});
        EXPECT_EQ(CopiesOf(path).size(), locksStayHere ? 1u : 0u);
        {
            TableFile other(path, "");
            EXPECT_TRUE(table->EnterListOfCopies() && other.EnterListOfCopies());
            ASSERT_EQ(other.LockRecord(address), 1);
            EXPECT_EQ(table->LockRecord(address), 0);
            const std::vector<CopyInfo> copies = CopiesOf(path);
            ASSERT_EQ(copies.size(), 2u);
            EXPECT_EQ(copies[0].process, getpid());
            EXPECT_FALSE(copies[0].user.empty() || copies[0].host.empty());
            EXPECT_EQ(copies[0].editing.size(), 0u);
            EXPECT_EQ(copies[1].editing, std::vector<RecordAddress>{address});
            struct stat list {};
            ASSERT_EQ(stat(CopyListPath(path).c_str(), &list), 0);
            EXPECT_EQ(list.st_mode & 0777u, 0640u);
            other.UnlockRecord(address);
            EXPECT_EQ(CopiesOf(path)[1].editing.size(), 0u);
        }
        EXPECT_EQ(CopiesOf(path).size(), 1u);
        table->Close();
        EXPECT_EQ(folder.FileCount(), 1u);
    }
}

TEST_F(CopiesTest, WhereNoTurnsCanBeTakenTheFileIsOnlyReadAndTheReasonTold)
{
    const RecordAddress address = Add({.title = "milk"});
    table->Close();
    const std::string before = ReadAll(path);
    struct : FailingFileSystem {
        int Open(const std::string& name, int flags, unsigned mode) override
        {
            errno = EACCES;
            return (flags & O_CREAT) != 0 ? -1 : FailingFileSystem::Open(name, flags, mode);
        }
    } drive;
    drive.locksStayHere = true;
    const ScopedFileSystem scope(drive);
    const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.readOnly.systemError, EACCES);
    EXPECT_EQ(opened.table->GetRole(), Role::Reader);
    Record record = RecordOf({.title = "bread"});
    EXPECT_EQ(opened.table->AddRecord(record) + opened.table->WriteRecord(record, address) +
                  opened.table->DeleteRecord(address) + opened.table->LockRecord(address),
              0);
    EXPECT_EQ(opened.table->ReadRecord(record, address), 1);
    EXPECT_EQ(ReadAll(path), before);
}

TEST_F(CopiesTest, ATableFindsBackAfterTheDriveHasForgottenIt)
{
    const RecordAddress address = Add({.title = "milk"});
    struct : FailingFileSystem {
        bool isAway = false;
        std::set<int> forgotten;
        int Lock(int handle, std::int64_t byte, LockMode mode) override
        {
            return Fails(handle) ? -1 : FailingFileSystem::Lock(handle, byte, mode);
        }
        std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
        {
            return Fails(handle) ? -1 : FailingFileSystem::ReadAt(handle, buffer, offset);
        }
        int Open(const std::string& name, int flags, unsigned mode) override
        {
            errno = EHOSTDOWN;
            return isAway ? -1 : Fresh(FailingFileSystem::Open(name, flags, mode));
        }
        int OpenAgain(int handle, int flags) override
        {
            return Fresh(FailingFileSystem::OpenAgain(handle, flags & ~O_DIRECT));
        }
        bool Fails(int handle)
        {
            errno = ESTALE;
            return forgotten.contains(handle);
        }
        int Fresh(int handle)
        {
            forgotten.erase(handle);
            return handle;
        }
    } drive;
    drive.isRemote = true;
    const ScopedFileSystem scope(drive);
    Reopen();
    EXPECT_TRUE(table->EnterListOfCopies());
    const StampWatch watch(*table);
    std::uint64_t stamp = 0;
    FileError error;
    EXPECT_TRUE(watch.Look(stamp, error));
    EXPECT_EQ(stamp, 11u);
    ASSERT_EQ(table->LockRecord(address), 1);
    Record bread = RecordOf({.title = "bread"});
    bread[5] = std::byte{1};
    drive.isAway = true;
    for (int handle = 0; handle < 1000; ++handle)
        drive.forgotten.insert(handle);
    EXPECT_FALSE(watch.Look(stamp, error));
    EXPECT_EQ(error.kind, FileErrorKind::NoAnswer);
    EXPECT_EQ(table->WriteRecord(bread, address), 0);
    EXPECT_EQ(table->GetLastError().kind, FileErrorKind::NoAnswer);
    drive.isAway = false;  // what was opened before stays forgotten
    EXPECT_EQ(table->WriteRecord(bread, address), 1);
    ASSERT_EQ(CopiesOf(path).size(), 1u);
    EXPECT_EQ(CopiesOf(path)[0].editing, std::vector<RecordAddress>{address});
    EXPECT_EQ(table->UnlockRecord(address), 1);
    EXPECT_EQ(TitleAt(address), "bread");
    EXPECT_EQ(+Header().openCount, 1u);
}

}  // namespace
}  // namespace jotlet::test
