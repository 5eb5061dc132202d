#include "platform/base/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "platform/base/file_mount.h"
#include "platform/base/file_system.h"
#include "support/failing_file_system.h"
#include "support/forked_process.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

class FilesTest : public testing::Test {
protected:
    FilesTest() : path(folder.File("file")) {}
    TempFolder folder;
    std::string path;
};

TEST_F(FilesTest, ReadsWritesAndSeeks)
{
    EXPECT_EQ(FileExists(path), -1);
    FileHandleOwner file(FileCreate(path));
    ASSERT_TRUE(file);
    EXPECT_EQ(FileExists(path), 1);
    EXPECT_EQ(FileExists(folder.Path()), 1);
    EXPECT_EQ(system(("test ! -e /proc/self/fd/" + std::to_string(file.Get())).c_str()), 0) << "nobody inherits it";
    EXPECT_EQ(FileWrite(file.Get(), "hello world", 11), 11);
    EXPECT_EQ(FileSeek(file.Get(), -5, SeekOrigin::End), 6);
    char text[20] = {};
    EXPECT_EQ(FileRead(file.Get(), text, sizeof text), 5);
    EXPECT_STREQ(text, "world");
    EXPECT_EQ(FileRead(file.Get(), text, sizeof text), 0);
    EXPECT_EQ(FileSeek(file.Get(), -1, SeekOrigin::Begin), -1);
    EXPECT_EQ(FileSize(file.Get()), 11);
    EXPECT_EQ(FileFlush(file.Get()), 1);
    EXPECT_EQ(FlushFolderOf(path), 1);
    EXPECT_FALSE(FileReadWhole(file.Get(), std::as_writable_bytes(std::span(text)), 0));
    EXPECT_EQ(FileRead(kNoFile, text, 1), -1);
    EXPECT_EQ(FileWrite(kNoFile, text, 1), -1);
    EXPECT_EQ(FileSize(kNoFile), -1);
    EXPECT_EQ(FileFlush(kNoFile), 0);
    FileClose(kNoFile);
}

TEST_F(FilesTest, AFileIsBusyWhileAnybodyHasItOpenAndIsThenNotEmptied)
{
    EXPECT_EQ(FileIsBusy(path), 1);  // missing
    WriteAll(path, "precious");
    EXPECT_EQ(FileIsBusy(path), 0);
    FileError error;
    {
        const FileHandleOwner first(FileOpen(path, FileAccess::Read));
        EXPECT_TRUE(FileHandleOwner(FileOpen(path)));
        EXPECT_EQ(FileIsBusy(path), 1);
        EXPECT_EQ(FileCreate(path, &error), kNoFile);
        EXPECT_EQ(error.kind, FileErrorKind::Busy);
        EXPECT_EQ(ReadAll(path), "precious");
    }
    ForkedProcess other([&](Line& line) {
        const FileHandleOwner file(FileOpen(path));
        line.Say("open");
        line.Hear();
        return 0;
    });
    other.Talk().Hear();
    EXPECT_EQ(FileIsBusy(path), 1);
    other.Kill();
    EXPECT_EQ(FileIsBusy(path), 0);  // whatever ended it
    EXPECT_EQ(FileIsBusy(folder.Path()), 1);
    const FileHandleOwner made(FileCreate(path));
    EXPECT_EQ(FileSize(made.Get()), 0);
    EXPECT_EQ(FileOpen(path, FileAccess::ReadWrite, FileSharing::Shared, &error, 0), kNoFile);
    EXPECT_EQ(error.kind, FileErrorKind::Busy);
}

TEST_F(FilesTest, WhoWaitedForAFileThatIsReplacedGetsTheNewOne)
{
    WriteAll(path, "old");
    WriteAll(folder.File("new"), "new");
    auto alone = std::make_unique<FileHandleOwner>(FileOpen(path, FileAccess::ReadWrite, FileSharing::None));
    ForkedProcess other([&](Line& line) {
        line.Say("ready");
        const FileHandleOwner file(FileOpen(path));
        char text[4] = {};
        FileRead(file.Get(), text, 3);
        line.Say(text);
        return 0;
    });
    EXPECT_EQ(other.Talk().Hear(), "ready");
    std::filesystem::rename(folder.File("new"), path);
    alone.reset();
    EXPECT_EQ(other.Talk().Hear(), "new");
}

TEST_F(FilesTest, TheReasonOfARefusalIsTold)
{
    struct Case {
        std::string path;
        FileErrorKind kind;
    };
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    for (const Case& c :
         {Case{folder.File("missing"), FileErrorKind::Missing},
          Case{folder.File("missing/file"), FileErrorKind::Missing}, Case{folder.Path(), FileErrorKind::NotRegularFile},
          Case{folder.File("pipe"), FileErrorKind::NotRegularFile}, Case{"/dev/full", FileErrorKind::NotRegularFile}}) {
        SCOPED_TRACE(c.path);
        FileError error;
        EXPECT_EQ(FileOpen(c.path, FileAccess::ReadWrite, FileSharing::Shared, &error), kNoFile);
        EXPECT_EQ(error.kind, c.kind);
        EXPECT_EQ(error.path, c.path);
    }
    for (const auto& [number, kind] : {std::pair{EACCES, FileErrorKind::Permission},
                                       {EROFS, FileErrorKind::Permission},
                                       {ENOSPC, FileErrorKind::NoSpace},
                                       {EDQUOT, FileErrorKind::NoSpace},
                                       {EIO, FileErrorKind::Io},
                                       {0, FileErrorKind::None}})
        EXPECT_EQ(FileErrorKindOf(number), kind) << number;
}

TEST_F(FilesTest, AFailedLockCallIsNoProofThatThereAreNoLocks)
{
    WriteAll(path, "x");
    FailingFileSystem share;
    const ScopedFileSystem scope(share);
    for (const int failure : {EOPNOTSUPP, ENOSYS, EINVAL, ENOLCK, EIO, ETIMEDOUT, ESTALE}) {
        SCOPED_TRACE(failure);
        share.lockFailure = failure;
        const bool noLocksHere = failure == EOPNOTSUPP || failure == ENOSYS || failure == EINVAL;
        FileError error;
        EXPECT_EQ(FileIsBusy(path), 1);
        const FileHandleOwner opened(FileOpen(path, FileAccess::ReadWrite, FileSharing::Shared, &error, 0));
        EXPECT_EQ(static_cast<bool>(opened), noLocksHere);
        EXPECT_EQ(error.systemError, noLocksHere ? 0 : failure);
        EXPECT_EQ(static_cast<bool>(FileHandleOwner(FileCreate(folder.File("export.csv")))), noLocksHere);
    }
}

TEST(FileMountTest, MountsTellWhereTheirLocksGoAndWhatTheyCache)
{
    struct Case {
        const char *type, *options;
        bool locksTravel, isCoherent;
    };
    for (const Case& c :
         {Case{"nfs4", "rw,vers=4.2,hard,local_lock=none,addr=10.0.0.1", true, false},
          Case{"nfs", "rw,vers=3,nolock,local_lock=all", false, false},
          Case{"nfs", "rw,local_lock=posix", false, false}, Case{"nfs", "rw,local_lock=flock", true, false},
          Case{"cifs", "rw,vers=3.1.1,nobrl", false, false}, Case{"cifs", "rw,vers=3.1.1,nobrlx", true, false},
          Case{"smb3", "rw", true, false}, Case{"fuse.glusterfs", "rw", true, false},
          Case{"fuse.ceph", "rw", true, false}, Case{"fuse.sshfs", "rw,user_id=0", false, false},
          Case{"fuseblk", "rw", true, true}, Case{"9p", "rw", false, false},
          Case{"gfs2", "rw,localflocks", false, true}, Case{"gfs2", "rw", true, true}, Case{"", "", false, false}}) {
        SCOPED_TRACE(testing::Message() << c.type << " " << c.options);
        EXPECT_EQ(DriveOfMount(c.type, c.options).locksTravel, c.locksTravel);
        EXPECT_EQ(DriveOfMount(c.type, c.options).isCoherent, c.isCoherent);
    }
}

TEST(FileMountTest, TheMountOfADeviceIsFoundByItsNumbers)
{
    const std::string mounts =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw,discard\n"
        "90 22 0:45 /share /home/a\\040b rw,relatime - cifs //server/share rw,nobrl,vers=3.0\n"
        "91 22 0:4 / /short rw";
    std::string_view type, options;
    ASSERT_TRUE(FindMount(mounts, 0, 45, type, options));
    EXPECT_EQ(type, "cifs");
    EXPECT_EQ(options, "rw,nobrl,vers=3.0");
    ASSERT_TRUE(FindMount(mounts, 8, 1, type, options));
    EXPECT_EQ(type, "ext4");
    EXPECT_FALSE(FindMount(mounts, 0, 4, type, options));
    EXPECT_FALSE(FindMount("", 8, 1, type, options));
}

}  // namespace
}  // namespace jotlet::test
