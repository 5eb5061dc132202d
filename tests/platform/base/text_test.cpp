#include "platform/base/text.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace jotlet {
namespace {

using namespace std::string_literals;

TEST(Text, AFieldIsReadUpToItsTerminatorOrItsWidth)
{
    EXPECT_EQ(FieldText(std::array{'a', 'b', '\0', 'x'}), "ab");
    EXPECT_EQ(FieldText(std::array{'a', 'b', 'c'}), "abc");
    EXPECT_EQ(FieldText(std::span<const char>()), "");
    std::string field = "  note\0\0"s;
    StoreText(field, TrimBlanks(FieldText(field)));
    EXPECT_EQ(field, "note\0\0\0\0"s) << "a field can be stored into itself";
}

TEST(Text, AStoredTextIsZeroFilledAndNeverEndsInsideACharacter)
{
    const std::pair<std::string, std::string> rows[] = {
        {"ab", "ab\0\0\0"s},
        {"abcdef", "abc\0"s},
        {"ab\u00e9", "ab\0\0"s},
        {"ab\u00e9", "ab\u00e9\0"s},
        {"a\u20ac", "a\0\0\0"s},
        {"\U0001F600", "\0\0\0\0"s},
        {"\U0001F600", "\U0001F600\0"s},
        {"ab\0cd"s, "ab\0\0\0\0"s},
        {"x", ""},
        {"x", "\0"s},
        {"a\xE9\xE9\xE9", "a\xE9\xE9\0"s}};  // old bytes are cut byte by byte
    for (const auto& [text, stored] : rows) {
        std::string field(stored.size(), '#');
        StoreText(field, text);
        EXPECT_EQ(field, stored);
    }
    EXPECT_EQ(CutText("\x80\x80\x80\x80", 3), "\x80\x80\x80");
}

TEST(Text, OnlyWholeShortestFormSequencesAreUtf8)
{
    for (const std::string_view good : {"", "plain", "\u00e9\u20ac\U0001F600", "\xF4\x8F\xBF\xBF", "\xED\x9F\xBF"})
        EXPECT_TRUE(IsValidUtf8(good)) << good;
    for (const std::string_view bad :
         {"\xE9", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "a\x80", "\xFF"})
        EXPECT_FALSE(IsValidUtf8(bad)) << bad;
}

TEST(Text, BytesThatAreNoUtf8ShowAsWindows1252)
{
    EXPECT_EQ(DecodeForDisplay("caf\u00e9"), "caf\u00e9");
    EXPECT_EQ(DecodeForDisplay("caf\xE9"), "caf\u00e9");
    EXPECT_EQ(DecodeForDisplay("\x80 5, \x93quoted\x94"), "\u20ac 5, \u201cquoted\u201d");
    EXPECT_EQ(DecodeForDisplay("\u00e9\xE9\u20ac\xE2\x82"), "\u00e9\u00e9\u20ac\u00e2\u201a");
    EXPECT_EQ(DecodeForDisplay("\x81\xFF"), "\uFFFD\u00ff");
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_TRUE(IsValidUtf8(DecodeForDisplay(all)));
}

TEST(Text, EveryKindOfLineBreakBecomesOneOfTheWantedKind)
{
    EXPECT_EQ(ToCrLf("a\nb\r\nc\rd\n\ne\r"), "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n");
    EXPECT_EQ(ToLf("a\nb\r\nc\rd\n\ne\r"), "a\nb\nc\nd\n\ne\n");
    EXPECT_EQ(ToCrLf("\r\r\n\n"), "\r\n\r\n\r\n");
}

TEST(Text, FoldingTouchesAsciiLettersAlone)
{
    EXPECT_EQ(LowerAscii("AZ[az\xC3\x89"), "az[az\xC3\x89");
    EXPECT_TRUE(EqualsFolded("CurrSkin", "cURRsKIN"));
    EXPECT_FALSE(EqualsFolded("a", "ab"));
    EXPECT_LT(CompareFolded("Apple", "banana"), 0);
    EXPECT_GT(CompareFolded("\xE9", "z"), 0);
    EXPECT_LT(CompareFolded("ab", "ABC"), 0);
}

}  // namespace
}  // namespace jotlet
