// Save As, without its dialog.
#include "core/file_copy.h"
#include <sys/stat.h>

#include "core_fixture.h"
#include "platform/base/file_system.h"
#include "store/open_table.h"
#include "store/record_query.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

class FileCopyTest : public CoreTest {
protected:
    FileCopyTest() : source(MakeNotes("notes.jot")), target(folder.File("Works/copy.jot")), file(source, "") {}

    CopyOutcome Copy() { return CopyTable(file, target, nullptr, &error); }
    SlotCounts CountsOf(const std::string& path)
    {
        SlotCounts counts;
        TableFile(path, "").DescribeSlots(counts);
        return counts;
    }
    TableHeader HeaderOf(const std::string& path)
    {
        TableHeader header{};
        TableFile(path, "").ReadHeader(header);
        return header;
    }

    std::size_t FilesInWorks() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.File("Works")), {}));
    }

    std::string source;
    std::string target;
    TableFile file;
    FileError error;
};

TEST_F(FileCopyTest, TheCopyHoldsTheNotesWithoutCountersAndLocksOfTheOpenFile)
{
    RecordQuery all;
    all.PrepareResults();
    all.AddAllTerm();
    ASSERT_EQ(file.RunQuery(all), 1);
    ASSERT_EQ(all.resultCount, 4);
    ASSERT_EQ(file.DeleteRecord(all.Results()[0]), 1);
    ASSERT_EQ(file.LockRecord(all.Results()[1]), 1);

    EXPECT_EQ(Copy(), CopyOutcome::Done);
    const SlotCounts counts = CountsOf(target);
    EXPECT_EQ(counts.slots, 3);
    EXPECT_EQ(counts.live, 3);
    EXPECT_EQ(counts.locked, 0);
    EXPECT_EQ(+HeaderOf(target).freeSlots, 0);
    EXPECT_EQ(+HeaderOf(target).openCount, 1u) << "this look alone";
    EXPECT_EQ(CountsOf(source).slots, 4) << "the open file stays as it is";
    file.UnlockRecord(all.Results()[1]);
}

TEST_F(FileCopyTest, APrivateFilesCopyIsPrivateAndAReplacedFileKeepsItsModeAndIsHeldMeanwhile)
{
    struct Asking : ProgressDisplay {
        explicit Asking(std::string path) : path(std::move(path)) {}
        void Open(const std::string&, int) override {}
        void Step() override { busy |= FileIsBusy(path) == 1; }
        void Close() override {}
        void ShowText(const std::string&) override {}
        std::string path;
        bool busy = false;
    } asking(target);
    ASSERT_EQ(chmod(source.c_str(), 0600), 0);
    for (const unsigned mode : {0600u, 0664u}) {
        if (mode != 0600) {
            test::WriteAll(target, "something else");
            ASSERT_EQ(chmod(target.c_str(), mode), 0);
            asking.busy = false;
        }
        EXPECT_EQ(CopyTable(file, target, &asking, &error), CopyOutcome::Done);
        EXPECT_TRUE(asking.busy);
        EXPECT_EQ(CountsOf(target).live, 4);
        FileIdentity made;
        ASSERT_EQ(Files().IdentifyPath(target, made), 0);
        EXPECT_EQ(made.mode, mode);
    }
}

TEST_F(FileCopyTest, OntoItselfOntoAFileInUseOrIntoNowhereIsRefused)
{
    const std::string before = test::ReadAll(source);
    const auto works = [&](const char* name) { return folder.File(std::string("Works/") + name); };
    std::filesystem::create_hard_link(source, works("other name.jot"));
    std::filesystem::create_symlink(source, works("link.jot"));
    const TableFile holder(MakeNotes("used.jot"), "");
    for (const auto& [name, outcome] : {std::pair(source, CopyOutcome::SameFile),
                                        {works("NOTES.JOT"), CopyOutcome::SameFile},
                                        {works("other name.jot"), CopyOutcome::SameFile},
                                        {works("link.jot"), CopyOutcome::SameFile},
                                        {works("../Works/notes.jot"), CopyOutcome::SameFile},
                                        {works("used.jot"), CopyOutcome::InUse},
                                        {works(""), CopyOutcome::InUse},
                                        {folder.File(std::string(300, 'x')), CopyOutcome::Failed},
                                        {folder.File("nowhere/copy.jot"), CopyOutcome::Failed}})
        EXPECT_EQ(CopyTable(file, name, nullptr, &error), outcome) << name;
    EXPECT_EQ(error.kind, FileErrorKind::Missing);
    EXPECT_EQ(test::ReadAll(source), before);
    EXPECT_EQ(CountsOf(holder.Path()).live, 4);
}

TEST_F(FileCopyTest, AtEveryFailingCallTheTargetIsTheOldFileOrTheWholeCopy)
{
    const std::string old = "the file that was there";
    for (int failAt = 1; failAt < 60; ++failAt) {
        test::WriteAll(target, old);
        test::FailingFileSystem failing;
        failing.failAt = failAt;
        failing.andAllBehind = true;
        CopyOutcome outcome;
        {
            const ScopedFileSystem scoped(failing);
            outcome = Copy();
        }
        SCOPED_TRACE("call " + std::to_string(failAt) + " " + failing.failedCall);
        const bool whole = test::ReadAll(target) != old;
        EXPECT_EQ(outcome == CopyOutcome::Done, whole);
        if (whole) {
            EXPECT_EQ(CountsOf(target).live, 4);
        }
        EXPECT_EQ(FilesInWorks(), 2u) << "nothing temporary stays";
        EXPECT_EQ(CountsOf(source).live, 4);
        if (failing.changes < failAt)
            break;
    }
}

}  // namespace
}  // namespace jotlet
