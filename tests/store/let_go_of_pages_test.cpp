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

using LetGoOfPagesTest = TableTest;

TEST_F(LetGoOfPagesTest, AQueryHoldsTheFileInMemoryOnlyUntilItsPagesAreGivenBack)
{
    constexpr int kNotes = 3000;
    constexpr std::int64_t kBytes = std::int64_t{kNotes} * kNoteRecordSize;
    for (int i = 0; i < kNotes; ++i)
        Add({.title = "note " + std::to_string(i)});
    Reopen();
    RecordQuery query;
    query.PrepareResults();
    query.AddAllTerm();
    const std::int64_t before = SharedBytes();
    ASSERT_EQ(table->RunQuery(query), 1);
    ASSERT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 1);
    if (SharedBytes() - before < kBytes / 2)
        GTEST_SKIP() << "files are not mapped here";
    table->LetGoOfPages();
    EXPECT_LT(SharedBytes() - before, kBytes / 4);
    ASSERT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, kNotes);
    EXPECT_EQ(query.Resort(), 1);
}

}  // namespace
}  // namespace jotlet::test
