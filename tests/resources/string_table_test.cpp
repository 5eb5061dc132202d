#include "resources/string_table.h"

#include <gtest/gtest.h>

namespace jotlet {

namespace {

TEST(StringTableTest, TextsComeByNumberAndUnknownNumbersAreEmpty)
{
    EXPECT_EQ(LoadStringResource(102), "Program can't do this. You don't have permission.");
    EXPECT_EQ(LoadStringResource(113), "This file alredy exists.\r\nPlease selact another file name.");
    EXPECT_EQ(LoadStringResource(3052), "&Print Report..\tCtrl+P");
    EXPECT_EQ(LoadStringResource(4025), "In Jotlet, longer and more detailed texts can be entered.");
    for (const int unknown : {-1, 0, 99, 112, 143, 2009, 2044, 3015, 4026, 1 << 30})
        EXPECT_EQ(LoadStringResource(unknown), "") << unknown;
}

// Callers hand a text to whatever wants a zero-terminated one.
TEST(StringTableTest, EveryTextIsTerminatedBehindItsEnd)
{
    int count = 0;
    for (int id = 0; id < 5000; ++id) {
        const std::string_view text = LoadStringResource(id);
        if (text.empty())
            continue;
        ++count;
        EXPECT_EQ(text.data()[text.size()], '\0') << id;
    }
    EXPECT_GT(count, 0);
}

}  // namespace

}  // namespace jotlet
