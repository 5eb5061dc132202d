#include "interchange/engine/delimited_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <utility>

namespace jotlet {

namespace {

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

// The rules as they are told, without a thought for time: for every place where a quoted field might end, its quotes
// are counted anew.
Rows ModelRows(std::string text, char separator, char qualifier)
{
    const std::size_t size = text.size();
    if (size > 0 && text.back() != '\n' && (size < 2 || text[size - 2] != '\r'))
        text += "\r\n";
    text.resize(std::min(text.find('\0'), text.size()));
    const char quote = qualifier != '\0' ? qualifier : '"';
    Rows rows;
    std::vector<std::string> row;
    for (std::size_t at = 0, end = 0; at < text.size();) {
        const bool isQuoted = text[at] == quote;
        const std::size_t start = at + (isQuoted ? 1 : 0);
        const auto endsRecord = [&] { return text.compare(end, 2, "\r\n") == 0; };
        const auto endsField = [&] {
            const auto quotes = 1 + std::count(text.begin() + start, text.begin() + end, '"');
            return (text[end] == separator || endsRecord()) &&
                   (!isQuoted || (text[end - 1] == quote && quotes % 2 == 0));
        };
        for (end = start; end < text.size() && !endsField();)
            ++end;
        if (end >= text.size())
            break;
        row.push_back(text.substr(start, end - start - (isQuoted ? 1 : 0)));
        at = end + (endsRecord() ? 2 : 1);
        if (endsRecord())
            rows.push_back(std::exchange(row, {}));
    }
    return rows;
}

TEST(DelimitedReaderTest, AnyTextReadsAsInANaiveModel)
{
    std::mt19937 random(3);
    const std::string pieces[] = {"a",  "bc",   ",",    ",",  "\t", "\"",
                                  "\"", "\r\n", "\r\n", "\n", "\r", std::string(1, '\0')};
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t count = random() % 24; count > 0; --count)
            text += pieces[random() % (round % 8 == 0 ? 12 : 11)];
        const char separator = random() % 3 ? ',' : '\t';
        const char qualifier = random() % 3 ? '"' : '\0';
        SCOPED_TRACE(testing::PrintToString(text));
        ASSERT_EQ(ReadAll(text, separator, qualifier), ModelRows(text, separator, qualifier));
    }
}

// A few rows in the plain, so that the model is not alone in its reading.
TEST(DelimitedReaderTest, RowsAndFields)
{
    struct Case {
        std::string_view text;
        Rows rows;
    };
    for (const Case& c : {
             Case{"a,b\r\nc,d", {{"a", "b"}, {"c", "d"}}},
             Case{",,\r\n", {{"", "", ""}}},
             Case{"ab\"c,d\r\n", {{"ab\"c", "d"}}},
             Case{"\"a,b\r\nc\",x\r\n", {{"a,b\r\nc", "x"}}},
             Case{"\"a\"\"b\"\r\n", {{"a\"\"b"}}},           // doubled quotes stay doubled
             Case{"\"a\"\",b\",c\r\n", {{"a\"\",b", "c"}}},  // an odd count goes on past the separator
             Case{"\"abc\"x,\"d\"\r\n", {{"abc\"x,\"d"}}},   // a closing quote stands before a separator
             Case{"a\nb\r\n", {{"a\nb"}}},
             Case{"a\nb\n", {}},  // ends in LF: no line end is added, and none stands there
             Case{"a\r", {{"a\r"}}},
         }) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ReadAll(c.text), c.rows);
        EXPECT_EQ(ReadAll(c.text, ',', '\0'), c.rows);  // a leading double quote counts without a qualifier too
    }
}

TEST(DelimitedReaderTest, WhatStandsBehindTheLastWholeRecordIsTold)
{
    DelimitedReader reader;
    reader.SetText("a,\"b\r\nb\"\r\nc,\"d\r\ne,f\r\n");
    EXPECT_EQ(reader.CountRecords(), 1u);
    EXPECT_TRUE(reader.HasIncompleteEnd());
    EXPECT_EQ(reader.LastWholeLine(), 2u);
    EXPECT_EQ(reader.NextRecord(), 0);
    reader.SetText("a,b\r\n");
    EXPECT_EQ(reader.CountRecords(), 1u);
    EXPECT_FALSE(reader.HasIncompleteEnd());
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
