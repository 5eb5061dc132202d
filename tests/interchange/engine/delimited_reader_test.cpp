#include "interchange/engine/delimited_reader.h"

#include <algorithm>
#include <chrono>
#include <random>

#include "engine_fixture.h"

namespace jotlet::test {
namespace {

Rows ReadText(std::string_view text, char separator = ',', char qualifier = '"')
{
    DelimitedReader reader;
    reader.separator = separator;
    reader.qualifier = qualifier;
    reader.SetText(std::string(text));
    return ReadRows(reader);
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
        ASSERT_EQ(ReadText(text, separator, qualifier), ModelRows(text, separator, qualifier));
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

TEST(DelimitedReaderTest, SeparatorAndQualifierAreSeenInTheText)
{
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title\tText, long"), '\t');
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title,Text\t"), ',');
    EXPECT_EQ(DelimitedReader::DetectSeparator("Title;Text"), ',');
    EXPECT_EQ(DelimitedReader::DetectQualifier("\"Title\""), '"');
    EXPECT_EQ(DelimitedReader::DetectQualifier("Title,\"x\""), '\0');
}

// It would take hours if bytes were counted again for every candidate; the limit is generous for a slow machine.
TEST(DelimitedReaderTest, TimeIsLinearWhateverTheTextHolds)
{
    const auto start = std::chrono::steady_clock::now();
    std::string candidates = "\"";  // a candidate every third byte, and the count is never even there
    for (int i = 0; i < 1'000'000; ++i)
        candidates += "\"\",";
    EXPECT_EQ(ReadText(candidates), Rows{});
    EXPECT_EQ(ReadText(std::string(100'000, ','))[0].size(), 100'001u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace jotlet::test
