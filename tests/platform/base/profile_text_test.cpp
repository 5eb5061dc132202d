#include <gtest/gtest.h>

#include <string>

#include "platform/base/profile.h"

namespace jotlet {
namespace {

using namespace std::string_literals;

TEST(ProfileText, AValueIsFoundWhateverTheFormOfItsLine)
{
    struct Case {
        std::string text;
        std::optional<std::string> value;  // of "Key" in "Main"
    };
    for (const Case& c : {
             Case{"[Main]\nKey=1\n", "1"},
             Case{"[MAIN]\nkEY=1", "1"},
             Case{"[Main]\r\nKey=1\r\n", "1"},
             Case{"[Main]\rKey=1\rOther=2", "1"},
             Case{"\xEF\xBB\xBF[Main]\nKey=1", "1"},
             Case{" [ Main ] trailing\n \tKey \t= \ttwo words\t \n", "two words"},
             Case{"[Main]\nKey=\"  kept  \"\n", "  kept  "},
             Case{"[Main]\nKey='x'\n", "x"},
             Case{"[Main]\nKey=\"\"x\"\"\n", "\"x\""},
             Case{"[Main]\nKey=\"x'\n", "\"x'"},
             Case{"[Main]\nKey=\"\n", "\""},
             Case{"[Main]\nKey=a=b;c\n", "a=b;c"},
             Case{"[Main]\nKey=\n", ""},
             Case{"[Main]\nKey=1\nKey=2\n", "1"},
             Case{"[Other]\nKey=0\n[Main]\nKey=1\n", "1"},
             Case{"[Main]\nA=0\n[Other]\n[Main]\nKey=1\n", "1"},
             Case{"[Main\nKey=1\n", "1"},
             Case{"[Main]\nKey=a\0b\n"s, "a"},
             Case{"", std::nullopt},
             Case{"Key=1\n", std::nullopt},
             Case{"[Main]\n;Key=1\n  ; Key=1\nKey\n", std::nullopt},
             Case{"[Main]\nKey2=1\nK\0ey=1\n"s, std::nullopt},
             Case{"[Main]\n[Other]\nKey=1\n", std::nullopt},
             Case{"[Mainly]\nKey=1\n", std::nullopt},
         }) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(FindProfileValue(c.text, "Main", "Key"), c.value);
    }
}

TEST(ProfileText, SettingAKeyLeavesEveryOtherByteAsItWas)
{
    struct Case {
        std::string before;
        std::string after;  // with Key=new in Main
    };
    for (const Case& c : {
             Case{"", "[Main]\nKey=new\n"},
             Case{"; a comment\r\n\r\n[Main]\r\n  key = old ; not a comment\r\nOther=2\r\n",
                  "; a comment\r\n\r\n[Main]\r\n  key =new\r\nOther=2\r\n"},
             Case{"[Main]\nOther=2\n\n[Next]\nA=1\n", "[Main]\nOther=2\nKey=new\n\n[Next]\nA=1\n"},
             Case{"[Main]\r\n[Next]\r\n", "[Main]\r\nKey=new\r\n[Next]\r\n"},
             Case{"[Next]\rA=1", "[Next]\rA=1\r[Main]\rKey=new\r"},
             Case{"[Main]", "[Main]\nKey=new\n"},
             Case{"[Main]\nOther=2", "[Main]\nOther=2\nKey=new\n"},
             Case{"[Main]\nA=1\n[Next]\n[Main]\nB=1\n", "[Main]\nA=1\nKey=new\n[Next]\n[Main]\nB=1\n"},
             Case{"[Main]\nKey=1\nKey=2\n", "[Main]\nKey=new\nKey=2\n"},
             Case{"\xEF\xBB\xBF", "\xEF\xBB\xBF[Main]\nKey=new\n"},
             Case{"no section\0\x01\xFF"s, "no section\0\x01\xFF\n[Main]\nKey=new\n"s},
         }) {
        SCOPED_TRACE(c.before);
        EXPECT_EQ(WithProfileValue(c.before, "Main", "Key", "new"), c.after);
    }
}

TEST(ProfileText, WhatIsSetReadsBackAsItWasGiven)
{
    for (const std::string& value : {"plain"s, ""s, " blanks round it "s, "\"quoted\""s, "'quoted'"s, "\""s, "''"s,
                                     "\t"s, "a=b;[c]"s, "\xE9\xFF"s, "\u00e9"s}) {
        const std::string text = WithProfileValue("[A]\nB=1\n", "Main", "Key", value);
        EXPECT_EQ(FindProfileValue(text, "main", "key"), value) << text;
        EXPECT_EQ(FindProfileValue(text, "A", "B"), "1");
    }
}

TEST(ProfileText, AValueCannotSmuggleInALineOfItsOwn)
{
    const std::string text = WithProfileValue("", "Ma\nin", "K\rey", "1\r\n[Marlin Server]\npassword=x\0y"s);
    EXPECT_EQ(text, "[Main]\nKey=1[Marlin Server]password=xy\n");
}

TEST(ProfileText, NumbersAreReadByTheirLeadingDigits)
{
    struct Case {
        std::string_view text;
        int number;
    };
    for (const Case& c : {Case{"12", 12}, Case{"  -7px", -7}, Case{"\t\v\r 7", 7}, Case{"x7", 0}, Case{"+3", 3},
                          Case{"", 0}, Case{"yes", 0}, Case{"--1", 0}, Case{"99999999999999999999", 2147483647},
                          Case{"-99999999999999999999", -2147483647 - 1}, Case{"2147483647", 2147483647},
                          Case{"-2147483648", -2147483647 - 1}})
        EXPECT_EQ(TextToInt(c.text), c.number) << c.text;
}

}  // namespace
}  // namespace jotlet
