#include "store/compaction.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "store/open_table.h"
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

class RecordingDisplay : public ProgressDisplay {
public:
    void Open(const std::string& text, int count) override
    {
        title = text;
        stepCount = count;
        ++opened;
    }
    void Step() override { ++steps; }
    void Close() override { ++closed; }
    void ShowText(const std::string& text) override { texts.push_back(text); }

    std::string title;
    int stepCount = -1, steps = 0, opened = 0, closed = 0;
    Texts texts;
};

class CompactionTest : public TableTest {
protected:
    // Five records, the second and fourth deleted, the fifth locked; closed.
    void MakeHoles()
    {
        std::vector<RecordAddress> slots;
        for (const char* title : {"a", "b", "c", "d", "e"})
            slots.push_back(Add({.title = title, .text = std::string(title) + " text"}));
        table->DeleteRecord(slots[1]);
        table->DeleteRecord(slots[3]);
        table->LockRecord(slots[4]);
        ResumeRefresh();
        table->Close();
    }
    // As a crash leaves the counter.
    void LeaveOpenCount(std::uint32_t count)
    {
        std::string bytes = ReadAll(path);
        std::memcpy(bytes.data() + 12 + offsetof(TableHeader, openCount), &count, sizeof count);
        WriteAll(path, bytes);
    }
    RecordingDisplay display;
};

TEST_F(CompactionTest, LiveRecordsStayInOrderUnlockedAndEverythingElseIsKept)
{
    MakeHoles();
    const std::string before = ReadAll(path);
    EXPECT_EQ(CheckAfterCrash(path, 1, &display), 1);
    const std::string after = ReadAll(path);
    ASSERT_EQ(after.size(), 2625u + 3 * 3557u);
    // The front part differs in the count of free slots alone: sizes, texts, passwords, stamp, categories.
    std::string front = before.substr(0, 2625);
    std::fill_n(front.begin() + 12 + 1006, 4, '\0');
    EXPECT_EQ(after.substr(0, 2625), front);
    std::string last = before.substr(2625 + 4 * 3557, 3557);
    EXPECT_EQ(last[5], 1);
    last[5] = 0;
    EXPECT_EQ(after.substr(2625), before.substr(2625, 3557) + before.substr(2625 + 2 * 3557, 3557) + last);

    EXPECT_EQ(display.title, "Compacting \"notes.jot\"");
    EXPECT_EQ(display.stepCount, 5);
    EXPECT_EQ(display.steps, 5);
    EXPECT_EQ(display.opened + display.closed, 2);
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST_F(CompactionTest, ACleanFileIsNotTouched)
{
    MakeHoles();
    struct stat before {};
    stat(path.c_str(), &before);
    EXPECT_EQ(RepairTable(path, false, &display), RepairOutcome::Clean);
    struct stat after {};
    stat(path.c_str(), &after);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(display.opened, 0);
}

TEST_F(CompactionTest, AnUncleanFileIsRepairedByTheNextOpeningAndHalfARecordDropped)
{
    MakeHoles();
    CutBytes(100);
    LeaveOpenCount(3);
    {
        const OpenedTable opened = OpenTable(path, "", kNoteRecordSize, &display);
        ASSERT_TRUE(opened);
        EXPECT_TRUE(opened.repaired);
        TableHeader header;
        opened.table->ReadHeader(header);
        EXPECT_EQ(+header.openCount, 1u);
        EXPECT_EQ(+header.freeSlots, 0);
    }
    EXPECT_EQ(std::filesystem::file_size(path), 2625u + 2 * 3557u);
    Reopen();
    EXPECT_EQ(table->DeleteRecord(2625) + table->DeleteRecord(2625 + 3557), 2);
    table->Close();
    EXPECT_EQ(CheckAfterCrash(path, 1), 1);
    EXPECT_EQ(std::filesystem::file_size(path), 2625u) << "without live records";
}

TEST_F(CompactionTest, ALeftoverTemporaryFileIsReplacedAndALinkInItsPlaceIsNotFollowed)
{
    MakeHoles();
    WriteAll(path + ".temp", std::string(100'000, 'x'));
    EXPECT_EQ(CheckAfterCrash(path, 1), 1);
    WriteAll(path + ".temp", "of a killed compaction");
    EXPECT_EQ(CheckAfterCrash(path, 0), 1);
    EXPECT_EQ(folder.FileCount(), 1u) << "goes also where nothing is to be repaired";
    EXPECT_EQ(std::filesystem::file_size(path), 2625u + 3 * 3557u);
    WriteAll(folder.File("precious"), "precious");
    ASSERT_EQ(symlink(folder.File("precious").c_str(), (path + ".temp").c_str()), 0);
    EXPECT_EQ(CheckAfterCrash(path, 1), 1);
    EXPECT_EQ(ReadAll(folder.File("precious")), "precious");
    EXPECT_EQ(folder.FileCount(), 2u);
}

TEST_F(CompactionTest, ALinkStaysALinkAndTheFileStaysThatOfTheSamePeople)
{
    MakeHoles();
    // Read and write for the owner, read for user 1 and the group; the mask is the mode's group part.
    const std::string list(
        "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\4\0\1\0\0\0\4\0\4\0\xff\xff\xff\xff"
        "\x10\0\4\0\xff\xff\xff\xff\x20\0\0\0\xff\xff\xff\xff",
        44);
    ASSERT_EQ(symlink(path.c_str(), folder.File("link.jot").c_str()), 0);
    for (const mode_t mode : {0600u, 0660u, 0640u}) {
        SCOPED_TRACE(mode);
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        ASSERT_EQ(setxattr(path.c_str(), "user.mark", "mine", 4, 0), 0);
        if (mode == 0640) {
            ASSERT_EQ(setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0), 0);
        }
        // Looks at the file beside while the records are copied.
        class Watching : public RecordingDisplay {
        public:
            explicit Watching(std::string path) : path(std::move(path)) {}
            void Step() override
            {
                struct stat beside {};
                modes |= stat(path.c_str(), &beside) == 0 ? beside.st_mode & 07777 : 07777;
            }
            std::string path;
            mode_t modes = 0;
        } watching(path + ".temp");
        EXPECT_EQ(CheckAfterCrash(folder.File("link.jot"), 1, &watching), 1);
        EXPECT_EQ(watching.modes & ~mode, 0u) << "never open to others";
        EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link.jot")));
        EXPECT_EQ(std::filesystem::file_size(path), 2625u + 3 * 3557u);
        struct stat after {};
        stat(path.c_str(), &after);
        EXPECT_EQ(after.st_mode & 07777, mode);
        char value[64];
        EXPECT_EQ(getxattr(path.c_str(), "user.mark", value, sizeof value), 4);
        const ssize_t size = getxattr(path.c_str(), "system.posix_acl_access", value, sizeof value);
        EXPECT_EQ(size > 0 ? std::string(value, static_cast<std::size_t>(size)) : "", mode == 0640 ? list : "");
    }
}

// A disk on which the table belongs to somebody else, and where nobody can give files away.
class Colleague : public FailingFileSystem {
public:
    static constexpr std::uint32_t kUser = 1, kGroup = 1;  // Debian's "daemon"
    Colleague(const std::string& path, unsigned mode, bool mayGiveGroup) : mode(mode), mayGiveGroup(mayGiveGroup)
    {
        FailingFileSystem::IdentifyPath(path, table);
    }
    int Identify(int handle, FileIdentity& out) override
    {
        const int result = FailingFileSystem::Identify(handle, out);
        if (out.SameFile(table)) {
            out.user = kUser;
            out.group = kGroup;
            out.mode = mode;
        } else if (handle == given) {
            out.group = kGroup;
        }
        return result;
    }
    int ChangeOwner(int handle, std::uint32_t user, std::uint32_t) override
    {
        given = user == kSameOwner && mayGiveGroup ? handle : -1;
        return given == handle ? 0 : -1;
    }

private:
    FileIdentity table;
    unsigned mode;
    bool mayGiveGroup;
    int given = -1;
};

TEST_F(CompactionTest, AnotherUsersFileIsRewrittenOnlyWhereNobodyLosesOrGainsByIt)
{
    struct Case {
        unsigned mode;
        bool mayGiveGroup;
        bool kept;
    };
    for (const Case& c : {Case{0660, true, true}, Case{0660, false, false}, Case{0640, true, false},
                          Case{0600, true, false}, Case{0666, false, true}, Case{0664, false, false}}) {
        SCOPED_TRACE(testing::Message() << std::oct << c.mode << (c.mayGiveGroup ? " group" : ""));
        Reopen();
        table->Close();
        LeaveOpenCount(1);
        const std::string before = ReadAll(path);
        Colleague disk(path, c.mode, c.mayGiveGroup);
        const ScopedFileSystem scope(disk);
        {
            const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
            ASSERT_TRUE(opened);
            EXPECT_EQ(opened.repaired, c.kept);
            EXPECT_EQ(opened.repairError.kind, c.kept ? FileErrorKind::None : FileErrorKind::NotOurs);
        }
        if (!c.kept) {
            EXPECT_EQ(ReadAll(path), before);
            FileError error;
            EXPECT_EQ(RepairTable(path, true, &display, &error), RepairOutcome::Failed) << "also when asked for";
        }
        EXPECT_EQ(folder.FileCount(), 1u);
    }
}

// A server that keeps lists of its own for files, and may refuse to set one.
class ListServer : public FailingFileSystem {
public:
    ListServer(const std::string& path, std::string name, bool maySet) : name(std::move(name)), maySet(maySet)
    {
        FailingFileSystem::IdentifyPath(path, table);
    }
    int GetAttribute(int handle, const std::string& asked, std::string& value) override
    {
        if (asked != name)
            return FailingFileSystem::GetAttribute(handle, asked, value);
        FileIdentity one;
        value = Identify(handle, one) == 0 && one.SameFile(table) ? "anna reads" : given;
        return 0;
    }
    int SetAttribute(int handle, const std::string& asked, const std::string& value) override
    {
        if (asked != name)
            return FailingFileSystem::SetAttribute(handle, asked, value);
        given = maySet ? value : given;
        return maySet ? 0 : -1;
    }
    std::string given = "of the folder";

private:
    FileIdentity table;
    std::string name;
    bool maySet;
};

TEST_F(CompactionTest, AServersAccessListIsKeptOrNothingIsReplaced)
{
    for (const char* name : {"system.nfs4_acl", "system.cifs_acl"}) {
        for (const bool maySet : {true, false}) {
            Reopen();
            table->Close();
            const std::string before = ReadAll(path);
            ListServer server(path, name, maySet);
            const ScopedFileSystem scope(server);
            FileError error;
            EXPECT_EQ(RepairTable(path, true, &display, &error),
                      maySet ? RepairOutcome::Compacted : RepairOutcome::Failed);
            EXPECT_EQ(server.given, maySet ? "anna reads" : "of the folder");
            EXPECT_EQ(ReadAll(path), before);
        }
    }
}

// Every call that changes something fails once; then all from there on, as on a full disk. The file must be the old one
// or the new one each time.
TEST_F(CompactionTest, WhateverFailsTheFileIsWholeAndNoTemporaryFileStays)
{
    for (int i = 0; i < 250; ++i)
        Add({.title = std::to_string(i)});
    for (RecordAddress address = 2625; address < 2625 + 250 * 3557; address += 2 * 3557)
        table->DeleteRecord(address);
    table->Close();
    const std::string original = ReadAll(path);
    int failures = 0;
    for (const bool allBehind : {false, true}) {
        for (int failAt = 1; failAt < 40; ++failAt) {
            SCOPED_TRACE(testing::Message() << failAt << (allBehind ? " and all behind" : ""));
            WriteAll(path, original);
            FailingFileSystem disk;
            disk.failAt = failAt;
            disk.andAllBehind = allBehind;
            disk.halfWrite = failAt % 2 == 0;
            RecordingDisplay shown;
            FileError error;
            RepairOutcome outcome;
            {
                const ScopedFileSystem scope(disk);
                outcome = RepairTable(path, true, &shown, &error);
            }
            EXPECT_EQ(shown.opened, shown.closed);
            EXPECT_EQ(folder.FileCount(), 1u);
            if (outcome == RepairOutcome::Compacted) {
                EXPECT_EQ(std::filesystem::file_size(path), 2625u + 125 * 3557u);
            } else {
                ++failures;
                EXPECT_EQ(outcome, RepairOutcome::Failed);
                EXPECT_EQ(error.kind, FileErrorKind::NoSpace);
                EXPECT_EQ(ReadAll(path), original);
                EXPECT_EQ(shown.texts.size(), disk.failedCall == "rename" ? 1u : 0u);
            }
            Reopen();
            EXPECT_EQ(Titles().size(), 125u);
            table->Close();
        }
    }
    EXPECT_GT(failures, 8);
}

TEST_F(CompactionTest, ARecordThatCannotBeReadFailsTheWholeInPlaceOfBeingDropped)
{
    MakeHoles();
    const std::string before = ReadAll(path);
    class BadSpot : public FailingFileSystem {
    public:
        std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
        {
            if (offset >= kFirstRecordOffset) {
                errno = EIO;
                return -1;
            }
            return FailingFileSystem::ReadAt(handle, buffer, offset);
        }
    } disk;
    const ScopedFileSystem scope(disk);
    EXPECT_EQ(RepairTable(path, true), RepairOutcome::Failed);
    EXPECT_EQ(ReadAll(path), before);
    EXPECT_EQ(folder.FileCount(), 1u);
}

// --- places whose locks other computers don't see

TEST_F(CompactionTest, WhereLocksStayOnThisMachineNothingIsRepairedUnasked)
{
    MakeHoles();
    LeaveOpenCount(2);
    FailingFileSystem share;
    share.locksStayHere = true;
    const ScopedFileSystem scope(share);
    EXPECT_EQ(FileIsBusy(path), 1);
    EXPECT_EQ(RepairTable(path, false), RepairOutcome::Busy);
    const std::string before = ReadAll(path);
    {
        const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
        ASSERT_TRUE(opened);
        EXPECT_FALSE(opened.repaired);
        EXPECT_EQ(opened.table->LockRecord(2625), 1);
        EXPECT_EQ(opened.table->LockRecord(2625), 0);
        EXPECT_EQ(opened.table->LockRecord(2625 + 4 * 3557), 1);  // a crashed copy's
        EXPECT_EQ(opened.table->UnlockRecord(2625), 1);
        EXPECT_EQ(RepairTable(path, true), RepairOutcome::Busy);  // open on this machine
    }
    EXPECT_EQ(ReadAll(path), before);
    EXPECT_EQ(RepairTable(path, true), RepairOutcome::Compacted);  // asked for by a person
}

TEST_F(CompactionTest, WhereThereAreNoLocksTheFileWorksAndCountsAsInUse)
{
    MakeHoles();
    for (const int refusal : {EOPNOTSUPP, EINVAL}) {
        FailingFileSystem share;
        share.lockFailure = refusal;
        const ScopedFileSystem scope(share);
        EXPECT_EQ(FileIsBusy(path), 1);
        EXPECT_EQ(RepairTable(path, false), RepairOutcome::Busy);
        EXPECT_EQ(RepairTable(path, true), RepairOutcome::Busy);
        const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
        ASSERT_TRUE(opened);
        RecordAddress address = 0;
        EXPECT_EQ(opened.table->AddRecord(RecordOf({.title = "new"}), &address), 1);
        EXPECT_EQ(opened.table->LockRecord(address), 1);
        EXPECT_EQ(opened.table->LockRecord(address), 0);
        EXPECT_EQ(opened.table->DeleteRecord(address), 1);
        EXPECT_EQ(opened.table->UnlockRecord(address), 1);
    }
}

}  // namespace
}  // namespace jotlet::test
