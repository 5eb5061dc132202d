#include "interchange/engine/import_text.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "engine_fixture.h"
#include "platform/base/files.h"

namespace jotlet::test {
namespace {

std::string Utf16(std::u16string_view text, bool bigEndian = false)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const char pair[] = {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
        bytes += {pair[bigEndian ? 0 : 1], pair[bigEndian ? 1 : 0]};
    }
    return bytes;
}

TEST(ImportTextTest, WhereTheFirstLineEndsInLfEachLoneLfBecomesCrLf)
{
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"a\n\nb", "a\r\n\r\nb"},
        {"a\r\nb\nc\r\n", "a\r\nb\nc\r\n"},
        {"a\rb", "a\rb"},
        {"", ""},
        // Line ends of a cell say nothing of the file's, and a quote opens a cell only where one begins.
        {"\"a\r\nb\",c\nd\n", "\"a\r\nb\",c\r\nd\r\n"},
        {"\"a\nb\"\t\"\"\r\nd\n", "\"a\nb\"\t\"\"\r\nd\n"},
        {"\"a\"\"\r\n,\",\"b\"\n\"c\r\n\"\n", "\"a\"\"\r\n,\",\"b\"\r\n\"c\r\n\"\r\n"},
        {"5\" nail,x\ny,\"z\r\n\"\n", "5\" nail,x\r\ny,\"z\r\n\"\r\n"},
        {"\"open\r\nx\n", "\"open\r\nx\n"},
        {"\"open\nx\n", "\"open\r\nx\r\n"},
        {std::string_view("a\0,b\nc\0\n", 9), "a,b\r\nc\r\n"},  // behind a zero byte nothing would be seen
        {"\xEF\xBB\xBF\"a\",b\r\n", "\"a\",b\r\n"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(PrepareImportText(std::string(text)), expected);
    EXPECT_EQ(PrepareImportText("a\nb\n", LineEnds::CrLf), "a\nb\n");
}

TEST(ImportTextTest, Utf16BecomesUtf8AndWhatIsBrokenInItIsReplaced)
{
    const std::string bad = "\xEF\xBF\xBD";
    const std::pair<std::u16string, std::string> cases[] = {
        {u"M\u00FC,\u07FF\u0800\uFFFF\U00010000\U0010FFFF\n",
         "M\xC3\xBC,\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\r\n"},
        {{0xD800, u'a'}, bad + "a"},
        {{0xDC00, u'a'}, bad + "a"},
        {{0xDBFF, 0xE000}, bad + "\xEE\x80\x80"},
        {{u'a', 0xD800}, "a" + bad},
        {u"", ""},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(PrepareImportText(Utf16(text, false)), expected);
        EXPECT_EQ(PrepareImportText(Utf16(text, true)), expected);
    }
    EXPECT_EQ(PrepareImportText("\xFF\xFEz"), bad);
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
    EXPECT_TRUE(PrepareImportText(Utf16(text)) == expected);
}

TEST(ImportTextTest, AFileIsReadWhoeverHoldsItAndWhatIsNoneSaysSo)
{
    const TempFolder folder;
    const std::string path = folder.File("in.csv");
    WriteAll(path, "\xEF\xBB\xBFTitle\nmilk\n");
    const FileHandleOwner held(FileOpen(path, FileAccess::ReadWrite, FileSharing::None));  // by a spreadsheet
    DelimitedReader reader;
    EXPECT_TRUE(LoadImportText(reader, path));
    EXPECT_EQ(reader.Text(), "Title\r\nmilk\r\n");
    EXPECT_EQ(LoadImportText(reader, folder.File("missing.csv")).detail.kind, FileErrorKind::Missing);
    EXPECT_EQ(reader.Text(), "");
    EXPECT_EQ(reader.LoadText(path), 1);
    EXPECT_EQ(reader.Text(), "\xEF\xBB\xBFTitle\nmilk\n") << "as it stands";
    EXPECT_EQ(reader.LoadText(folder.File("missing.csv")), 0);
    EXPECT_EQ(reader.Text(), "");
    for (const std::string& noFile : {folder.Path(), std::string("/dev/zero")})
        EXPECT_EQ(LoadImportText(reader, noFile).detail.kind, FileErrorKind::NotRegularFile);

    std::string head;
    EXPECT_TRUE(ReadImportHead(path, 5, head));
    EXPECT_EQ(head, "\xEF\xBB\xBFTi");
    EXPECT_TRUE(ReadImportHead(path, 5000, head));
    EXPECT_EQ(head.size(), 14u);
    // A file that claims to be huge is refused before it is read.
    ASSERT_EQ(truncate(path.c_str(), off_t{3} << 30), 0);
    EXPECT_EQ(LoadImportText(reader, path).error, ImportFileError::TooLarge);
    EXPECT_TRUE(ReadImportHead(path, 16, head));
}

// Samples of what a spreadsheet writes (samples/README). Doubled quotes stay doubled, and the spreadsheet dropped the
// tab of "tabhere" itself.
TEST(ImportTextTest, EveryFormOfASpreadsheetsTextGivesTheRowsOfTheSheet)
{
    Rows sheet = {{"Subject", "Notes Body", "Color", "Category"},
                  {"plain", "text", "1", "Calls"},
                  {"comma, inside", "a;b", "2", "Ideas"},
                  {"line\r\nbreak", "two\r\nlines", "3", ""},
                  {"quote \"\"inside\"\"", "\"\"all\"\"", "0", "Test"},
                  {"M\xC3\xBCll \xE2\x82\xAC", "\xF0\x9F\x98\x80 ok", "4", "Personal"},
                  {"", "only text", "", ""},
                  {"007", "=1+1", "1.5", "Clients"},
                  {"tabhere", " blanks ", "-1", "Travel"}};
    for (const std::string name : {"comma", "all-quoted", "utf16", "tab", "windows-1252"}) {
        SCOPED_TRACE(name);
        DelimitedReader reader;
        ASSERT_TRUE(LoadImportText(reader, JOTLET_SOURCE_DIR "/tests/interchange/samples/calc-" + name + ".csv"));
        reader.separator = DelimitedReader::DetectSeparator(reader.Text());
        EXPECT_EQ(reader.separator, name == "tab" ? '\t' : ',');
        if (name == "windows-1252")  // its bytes stay; what has none was a question mark already
            sheet[5] = {"M\xFCll \x80", "? ok", "4", "Personal"};
        EXPECT_EQ(ReadRows(reader), sheet);
        EXPECT_FALSE(reader.HasIncompleteEnd());
    }
}

}  // namespace
}  // namespace jotlet::test
