#include "interchange/engine/import_text.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "interchange/engine/delimited_reader.h"
#include "platform/base/files.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

std::string Utf16(std::u16string_view text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST(ImportTextTest, WhereTheFirstLineEndsInLfEachLoneLfBecomesCrLf)
{
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"a\nb\n", "a\r\nb\r\n"},
        {"\n", "\r\n"},
        {"a\n\nb", "a\r\n\r\nb"},
        {"a\r\nb\nc\r\n", "a\r\nb\nc\r\n"},
        {"a\rb", "a\rb"},
        {"\r\na\n", "\r\na\n"},
        {"", ""},
        // Line ends of a cell say nothing of the file's, and a quote opens a cell only where one begins.
        {"\"a\r\nb\",c\nd\n", "\"a\r\nb\",c\r\nd\r\n"},
        {"\"a\nb\"\t\"\"\r\nd\n", "\"a\nb\"\t\"\"\r\nd\n"},
        {"\"a\"\"\r\n,\",\"b\"\n\"c\r\n\"\n", "\"a\"\"\r\n,\",\"b\"\r\n\"c\r\n\"\r\n"},
        {"5\" nail,x\ny,\"z\r\n\"\n", "5\" nail,x\r\ny,\"z\r\n\"\r\n"},
        {"\"open\r\nx\n", "\"open\r\nx\n"},
        {"\"open\nx\n", "\"open\r\nx\r\n"},
        {std::string_view("a\0,b\nc\0\n", 9), "a,b\r\nc\r\n"},  // behind a zero byte nothing would be seen
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(PrepareImportText(std::string(text)), expected);
    EXPECT_EQ(PrepareImportText("a\nb\n", LineEnds::CrLf), "a\nb\n");
}

TEST(ImportTextTest, ByteOrderMarksGoAndUtf16BecomesUtf8)
{
    EXPECT_EQ(PrepareImportText("\xEF\xBB\xBF\"a\",b\r\n"), "\"a\",b\r\n");
    const std::u16string_view text = u"M\u00FCll,\u20AC,\U0010FFFF\n";
    const std::string expected = "M\xC3\xBCll,\xE2\x82\xAC,\xF4\x8F\xBF\xBF\r\n";
    EXPECT_EQ(PrepareImportText(Utf16(text, false)), expected);
    EXPECT_EQ(PrepareImportText(Utf16(text, true)), expected);
}

TEST(ImportTextTest, BrokenUtf16IsReplacedAndNeverReadPastItsEnd)
{
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(PrepareImportText(Utf16(std::u16string{0xD800, u'a'}, false)), replaced + "a");
    EXPECT_EQ(PrepareImportText(Utf16(std::u16string{0xDC00, u'a'}, true)), replaced + "a");
    EXPECT_EQ(PrepareImportText(Utf16(std::u16string{u'a', 0xD800}, false)), "a" + replaced);
    EXPECT_EQ(PrepareImportText("\xFF\xFE"
                                "a"),
              replaced);
    EXPECT_EQ(PrepareImportText("\xFF\xFE"), "");
}

// The text grows within its own bytes: what is written must never reach what is still to be read.
TEST(ImportTextTest, ATextThatGrowsInBothStepsComesOutWhole)
{
    std::u16string text;
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        text += i % 3 == 0 ? u"\u20AC\u4E2D\n" : i % 3 == 1 ? u"\u20AC\n" : u"a\n\n";
        expected += i % 3 == 0 ? "\xE2\x82\xAC\xE4\xB8\xAD\r\n" : i % 3 == 1 ? "\xE2\x82\xAC\r\n" : "a\r\n\r\n";
    }
    EXPECT_TRUE(PrepareImportText(Utf16(text, false)) == expected);
    EXPECT_TRUE(PrepareImportText(Utf16(text + u"\u20AC", true)) == expected + "\xE2\x82\xAC");
}

class ImportFileTest : public testing::Test {
protected:
    std::string Write(std::string_view bytes)
    {
        const std::string path = folder.File("in.csv");
        WriteAll(path, bytes);
        return path;
    }

    TempFolder folder;
    DelimitedReader reader;
};

TEST_F(ImportFileTest, AFileIsReadAndPreparedWhoeverHoldsIt)
{
    const std::string path = Write("\xEF\xBB\xBFTitle\nmilk\n");
    const FileHandleOwner held(FileOpen(path, FileAccess::ReadWrite, FileSharing::None));  // by a spreadsheet
    EXPECT_TRUE(LoadImportText(reader, path));
    EXPECT_EQ(reader.Text(), "Title\r\nmilk\r\n");
    EXPECT_EQ(reader.LoadText(path), 1);
    EXPECT_EQ(reader.Text(), "\xEF\xBB\xBFTitle\nmilk\n");  // as it stands

    std::string head;
    EXPECT_TRUE(ReadImportHead(path, 5, head));
    EXPECT_EQ(head, "\xEF\xBB\xBFTi");
    EXPECT_TRUE(ReadImportHead(path, 5000, head));
    EXPECT_EQ(head.size(), 14u);
}

TEST_F(ImportFileTest, WhatIsNoFileSaysSo)
{
    reader.SetText("left over\r\n");
    ImportFileResult result = LoadImportText(reader, folder.File("missing.csv"));
    EXPECT_EQ(result.error, ImportFileError::System);
    EXPECT_EQ(result.detail.kind, FileErrorKind::Missing);
    EXPECT_EQ(reader.Text(), "");
    EXPECT_EQ(LoadImportText(reader, folder.Path()).detail.kind, FileErrorKind::NotRegularFile);
    EXPECT_EQ(LoadImportText(reader, "/dev/zero").detail.kind, FileErrorKind::NotRegularFile);
}

TEST_F(ImportFileTest, AFileThatClaimsToBeHugeIsRefusedBeforeItIsRead)
{
    const std::string path = Write("x");
    ASSERT_EQ(truncate(path.c_str(), off_t{3} << 30), 0);
    EXPECT_EQ(LoadImportText(reader, path).error, ImportFileError::TooLarge);
    std::string head;
    EXPECT_TRUE(ReadImportHead(path, 16, head));
    EXPECT_EQ(head.size(), 16u);
}

}  // namespace
}  // namespace jotlet::test
