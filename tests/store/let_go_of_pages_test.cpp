// A board of many notes must not keep its file in memory.
#include <unistd.h>

#include <fstream>

#include "table_fixture.h"

namespace jotlet::test {
namespace {

// What this process holds of files, in bytes.
std::int64_t SharedBytes()
{
    std::int64_t whole = 0;
    std::int64_t resident = 0;
    std::int64_t shared = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident >> shared;
    return shared * sysconf(_SC_PAGESIZE);
}

TEST(LetGoOfPagesTest, AQueryHoldsTheFileInMemoryOnlyUntilItsPagesAreGivenBack)
{
    constexpr int kNotes = 3000;
    constexpr std::int64_t kBytes = std::int64_t{kNotes} * kNoteRecordSize;
    const TempFolder folder;
    const std::string path = folder.File("notes.jot");
    {
        TableFile file(path, "");
        ASSERT_EQ(CreateNotes(file), 1);
        for (int i = 0; i < kNotes; ++i)
            ASSERT_EQ(file.AddRecord(RecordOf({.title = "note " + std::to_string(i)})), 1);
    }
    TableFile file(path, "");
    RecordQuery query;
    query.PrepareResults();
    query.AddAllTerm();
    const std::int64_t before = SharedBytes();
    ASSERT_EQ(file.RunQuery(query), 1);
    ASSERT_EQ(query.Sort(file, kTitleAt, kTitleWidth, CompareTitles), 1);
    if (SharedBytes() - before < kBytes / 2)
        GTEST_SKIP() << "files are not mapped here";

    file.LetGoOfPages();
    EXPECT_LT(SharedBytes() - before, kBytes / 4);
    ASSERT_EQ(file.RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, kNotes);
    EXPECT_EQ(query.Resort(), 1);
}

}  // namespace
}  // namespace jotlet::test
