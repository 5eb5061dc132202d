#include "interchange/engine/delimited_reader.h"

#include <gtest/gtest.h>

#include <chrono>

namespace jotlet {

namespace {

using namespace std::string_literals;

using Rows = std::vector<std::vector<std::string>>;

Rows ReadAll(std::string_view text, char separator = ',', char qualifier = '"')
{
    DelimitedReader reader;
    reader.separator = separator;
    reader.qualifier = qualifier;
    reader.SetText(std::string(text));
    Rows rows;
    while (reader.NextRecord() == 1) {
        reader.Rewind();
        std::vector<std::string>& row = rows.emplace_back();
        int code = DelimitedReader::kField;
        while (code == DelimitedReader::kField) {
            code = reader.NextField();
            EXPECT_NE(code, DelimitedReader::kNoMore) << "a record ended before its last field";
            row.emplace_back(reader.Field());
        }
    }
    return rows;
}

struct Case {
    std::string_view text;
    Rows rows;
};

TEST(DelimitedReaderTest, RowsAndPlainFields)
{
    for (const Case& c : {
             Case{"", {}},
             Case{"a", {{"a"}}},
             Case{"a,b\r\n", {{"a", "b"}}},
             Case{"a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
             Case{"a,b\r\nc,d", {{"a", "b"}, {"c", "d"}}},
             Case{",,", {{"", "", ""}}},
             Case{",,\r\n", {{"", "", ""}}},
             Case{"\r\n\r\n", {{""}, {""}}},
             Case{" a , b \r\n", {{" a ", " b "}}},
             Case{"ab\"c,d\r\n", {{"ab\"c", "d"}}},
         }) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ReadAll(c.text), c.rows);
        EXPECT_EQ(ReadAll(c.text, ',', '\0'), c.rows);
    }
}

TEST(DelimitedReaderTest, QuotedFields)
{
    for (const Case& c : {
             Case{"\"a,b\"", {{"a,b"}}},
             Case{"\"a,b\r\nc\",x\r\n", {{"a,b\r\nc", "x"}}},
             Case{"\"\",\"\"\r\n", {{"", ""}}},
             Case{"\"a\"\"b\"\r\n", {{"a\"\"b"}}},                // doubled quotes stay doubled
             Case{"\"a\"\",b\",c\r\n", {{"a\"\",b", "c"}}},       // an odd count goes on past the separator
             Case{"\"abc\"x,\"d\"\r\n", {{"abc\"x,\"d"}}},        // a closing quote stands before a separator
             Case{"\"x\" ,y\r\n\"z\"\r\n", {{"x\" ,y\r\n\"z"}}},  // also when the next line has to give it
             Case{"\"\"\"\"\r\n", {{"\"\""}}},
         }) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ReadAll(c.text), c.rows);
        EXPECT_EQ(ReadAll(c.text, ',', '\0'), c.rows);  // a leading double quote counts without a qualifier too
    }
}

TEST(DelimitedReaderTest, OnlyCrLfEndsARecord)
{
    for (const Case& c : {
             Case{"a\nb\r\n", {{"a\nb"}}},
             Case{"a\rb\r\n", {{"a\rb"}}},
             Case{"a\r\r\nb\r\n", {{"a\r"}, {"b"}}},
             Case{"a\nb\n", {}},  // ends in LF: no line end is added, and none stands there
             Case{"a\nb", {{"a\nb"}}},
             Case{"a\rb", {}},  // the last but one byte is CR: none is added
             Case{"a\r", {{"a\r"}}},
             Case{"\n", {}},
         }) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ReadAll(c.text), c.rows);
    }
}

TEST(DelimitedReaderTest, AnUnclosedQuoteEndsTheDataAndKeepsWhatCameBefore)
{
    EXPECT_EQ(ReadAll("a,b\r\nc,\"d\r\ne,f\r\n"), (Rows{{"a", "b"}}));
    DelimitedReader reader;
    reader.SetText("a,b\r\nc,\"d\r\ne,f\r\n");
    EXPECT_EQ(reader.CountRecords(), 1u);
    EXPECT_TRUE(reader.HasIncompleteEnd());
    EXPECT_EQ(reader.NextRecord(), 0);

    reader.SetText("a,b\r\n");
    EXPECT_EQ(reader.CountRecords(), 1u);
    EXPECT_FALSE(reader.HasIncompleteEnd());
}

TEST(DelimitedReaderTest, AZeroByteEndsTheTextAndIsTold)
{
    DelimitedReader reader;
    reader.SetText("a,b\r\nc\0d\r\n"s);
    EXPECT_TRUE(reader.HasTextBehindZero());
    EXPECT_EQ(reader.Text(), "a,b\r\nc");
    EXPECT_EQ(reader.CountRecords(), 1u);
    reader.SetText("a,b\r\n");
    EXPECT_FALSE(reader.HasTextBehindZero());
}

TEST(DelimitedReaderTest, TabsSeparateWhenTold)
{
    EXPECT_EQ(ReadAll("a,b\t\"c\td\"\r\n", '\t'), (Rows{{"a,b", "c\td"}}));
}

TEST(DelimitedReaderTest, RewindGoesToTheStartOfTheRecordAndNotOfTheText)
{
    DelimitedReader reader;
    reader.SetText("a,b\r\nc,d\r\n");
    reader.NextRecord();
    reader.NextRecord();
    for (int round = 0; round < 2; ++round) {
        reader.Rewind();
        ASSERT_EQ(reader.NextField(), DelimitedReader::kField);
        EXPECT_EQ(reader.Field(), "c");
    }
    EXPECT_EQ(reader.NextField(), DelimitedReader::kLastFieldOfRecord);
    EXPECT_EQ(reader.NextField(), DelimitedReader::kNoMore);
    EXPECT_EQ(reader.Field(), "d");
}

TEST(DelimitedReaderTest, DetectsSeparatorAndQualifier)
{
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title\tText, long"), '\t');
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title,Text\t"), ',');
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title;Text"), ',');
    EXPECT_EQ(DelimitedReader::DetectQualifier("\"Title\""), '"');
    EXPECT_EQ(DelimitedReader::DetectQualifier("Title,\"x\""), '\0');
    EXPECT_EQ(DelimitedReader::DetectQualifier(""), '\0');
}

// What python's csv module writes for the same rows, dialect by dialect: excel, excel-tab, unix with CR LF.
TEST(DelimitedReaderTest, FilesOfOtherPrograms)
{
    const Rows rows = {{"Title", "Text"}, {"Milk, bread", "two\nlines"}, {"plain", "1"}};
    EXPECT_EQ(ReadAll("Title,Text\r\n\"Milk, bread\",\"two\nlines\"\r\nplain,1\r\n"), rows);
    EXPECT_EQ(ReadAll("Title\tText\r\nMilk, bread\t\"two\nlines\"\r\nplain\t1\r\n", '\t'), rows);
    EXPECT_EQ(ReadAll("\"Title\",\"Text\"\r\n\"Milk, bread\",\"two\nlines\"\r\n\"plain\",\"1\"\r\n"), rows);
    // A quote that was doubled on the way out keeps both.
    EXPECT_EQ(ReadAll("\"say \"\"hello\"\"\",x\r\n"), (Rows{{"say \"\"hello\"\"", "x"}}));
}

// Each of these would take hours if bytes were counted again for every candidate; the limit is generous for a slow
// machine with sanitizers.
TEST(DelimitedReaderTest, TimeIsLinearWhateverTheTextHolds)
{
    constexpr std::size_t kSize = 4 << 20;
    const auto start = std::chrono::steady_clock::now();

    std::string candidates = "\"";  // a candidate every third byte, and the count is never even there
    while (candidates.size() < kSize)
        candidates += "\"\",";
    EXPECT_EQ(ReadAll(candidates), Rows{});

    std::string columns;
    for (int i = 0; i < 100'000; ++i)
        columns += "x,";
    const Rows wide = ReadAll(columns);
    ASSERT_EQ(wide.size(), 1u);
    EXPECT_EQ(wide[0].size(), 100'001u);

    EXPECT_EQ(ReadAll(std::string(kSize, 'x'))[0][0].size(), kSize);
    EXPECT_EQ(ReadAll('"' + std::string(kSize, '\n') + "\"\r\n")[0][0].size(), kSize);
    EXPECT_EQ(ReadAll(std::string(kSize, '\r') + "\n").size(), 1u);

    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(DelimitedReaderTest, AFileThatCannotBeReadLeavesNothingOfTheOneBefore)
{
    DelimitedReader reader;
    reader.SetText("a,b\r\n");
    EXPECT_EQ(reader.LoadText("/no/such/file.csv"), 0);
    EXPECT_EQ(reader.Text(), "");
    EXPECT_EQ(reader.NextRecord(), 0);
}

}  // namespace

}  // namespace jotlet
