#include "store/text_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace jotlet::test {
namespace {

struct Letter {
    std::string text;
    std::string folded;
};

// Letters of several scripts with what Unicode's folding makes of them, and bytes that are shown as Windows-1252
// (with a blank behind them, so that none becomes part of another character). The first ten are plain.
const Letter kLetters[] = {{"a", "a"},
                           {"A", "a"},
                           {"s", "s"},
                           {"S", "s"},
                           {"k", "k"},
                           {"i", "i"},
                           {" ", " "},
                           {"@", "@"},
                           {"`", "`"},
                           {"Z", "z"},
                           {"ä", "ä"},
                           {"Ä", "ä"},
                           {"\xC4 ", "ä "},
                           {"ß", "ss"},
                           {"ẞ", "ss"},
                           {"\xDF ", "ss "},
                           {"ж", "ж"},
                           {"Ж", "ж"},
                           {"σ", "σ"},
                           {"ς", "σ"},
                           {"Σ", "σ"},
                           {"\u212A", "k"},
                           {"ſ", "s"},
                           {"İ", "i\u0307"},
                           {"ﬁ", "fi"},
                           {"Ⱥ", "ⱥ"},
                           {"𐐀", "𐐨"},
                           {"中", "中"},
                           {"\x80 ", "€ "},
                           {"ΐ", "ι\u0308\u0301"},
                           {"\u0149", "\u02BCn"},
                           {"ǰ", "j\u030C"}};

std::span<const std::byte> Bytes(const std::string& text)
{
    return std::as_bytes(std::span(text));
}

TEST(TextSearchTest, EveryTestAnswersAsOnTextsFoldedLetterByLetter)
{
    std::mt19937 random(17);
    const auto make = [&](std::size_t letters, bool plain, std::string& folded) {
        std::string text;
        for (; letters > 0; --letters) {
            const Letter& letter = kLetters[random() % (plain ? 10 : std::size(kLetters))];
            text += letter.text;
            folded += letter.folded;
        }
        return text;
    };
    int found = 0;
    for (int round = 0; round < 60'000; ++round) {
        std::string folded;
        std::string sought;
        const std::string text = make(random() % (round % 16 == 0 ? 60 : 8), round % 3 == 0, folded);
        const Needle needle = Needle::Of(Bytes(make(random() % 4, round % 2 == 0, sought)));
        const std::byte* bytes = Bytes(text).data();
        SCOPED_TRACE(text + " | " + sought);
        ASSERT_EQ(ContainsFolded(bytes, text.size(), needle), folded.find(sought) != std::string::npos);
        ASSERT_EQ(BeginsWithFolded(bytes, text.size(), needle), folded.starts_with(sought));
        ASSERT_EQ(EndsWithFolded(bytes, text.size(), needle), folded.ends_with(sought));
        found += folded.find(sought) != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(found, 10'000);
}

// The two promises on which the quick way and the fixed buffers stand.
TEST(TextSearchTest, NoCharacterGrowsBeyondTheFactorOrBecomesAsciiUnnoticed)
{
    for (char32_t point = 0x80; point < 0x110000; ++point) {
        if (point >= 0xD800 && point < 0xE000)
            continue;
        std::string text;
        if (point >= 0x10000)
            text = {static_cast<char>(0xF0 | point >> 18), static_cast<char>(0x80 | (point >> 12 & 0x3F))};
        else if (point >= 0x800)
            text = {static_cast<char>(0xE0 | point >> 12)};
        else
            text = {static_cast<char>(0xC0 | point >> 6)};
        if (point >= 0x800)
            text += static_cast<char>(0x80 | (point >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (point & 0x3F));
        char folded[64];
        const std::size_t length = FoldCase(text, folded);
        ASSERT_LE(length, kFoldGrowth * text.size()) << std::hex << +point;
        const bool isAscii =
            std::any_of(folded, folded + length, [](char c) { return static_cast<signed char>(c) >= 0; });
        ASSERT_TRUE(!isAscii || MayFoldIntoAscii(text)) << std::hex << +point;
    }
}

}  // namespace
}  // namespace jotlet::test
