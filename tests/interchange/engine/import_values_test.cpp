#include "interchange/engine/import_values.h"

#include <gtest/gtest.h>

#include <cstring>

namespace jotlet {
namespace {

TEST(ImportValuesTest, DatesAreThreeRunsOfDigits)
{
    const std::string longest(255, '1');
    const DateValue untouched = {1, 2, 3};
    const std::pair<std::string, DateValue> cases[] = {
        {"12/31/2005", {31, 12, 2005}},
        {"3 . 4 . 2007 and more", {4, 3, 2007}},
        {"99/99/99999", {99, 99, 99999}},       // no range is checked
        {longest + "23", {23, 0x7FFFFFFF, 0}},  // a run stops after 255 digits: no third one
        {longest + "2/3", {2, 0x7FFFFFFF, 3}},
        {"", untouched},
        {" 1/2/2005", untouched},
        {"12/31/", untouched},
        {"2005", untouched},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        DateValue date = untouched;
        const bool isRead = expected != untouched && expected.year != 0;
        EXPECT_EQ(ParseImportDate(text, date), isRead ? 1 : 0);
        EXPECT_EQ(date, isRead ? expected : untouched);
    }
}

TEST(ImportValuesTest, TimesNeedSomethingBehindTheMinute)
{
    const TimeValue untouched = {1, 2, 44, 4};
    const std::string late(255, 'x');
    const std::pair<std::string, TimeValue> cases[] = {
        {"09:30 am", {9, 30, 44, kBeforeNoon}},
        {"9:30A", {9, 30, 44, kBeforeNoon}},
        {"12:05 p.m.", {0, 5, 44, kAfterNoon}},
        {"12:05 am", {12, 5, 44, kBeforeNoon}},
        {"3.15 ", {3, 15, 44, kAfterNoon}},  // blanks alone say afternoon
        {"3:15" + late + "a", {3, 15, 44, kAfterNoon}},
        {"3:15 " + late.substr(1) + "a", {3, 15, 44, kBeforeNoon}},
        {"", untouched},
        {"9:", untouched},
        {"9:30", untouched},
        {":30 am", untouched},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        TimeValue time = untouched;
        EXPECT_EQ(ParseImportTime(text, time), expected == untouched ? 0 : 1);
        EXPECT_EQ(time, expected);
    }
}

// A record of 40 bytes of '#'. What a refused text leaves, and what stands round a field, stays.
TEST(ImportValuesTest, ATextGoesIntoItsFieldOrNowhere)
{
    constexpr ImportType kNumber = ImportType::Number;
    struct Case {
        ImportType type;
        std::uint32_t offset;
        std::uint32_t size;
        std::string text;
        int result;
        std::string written;  // at the offset
    };
    const auto bytes = [](auto... numbers) {
        const std::int32_t values[] = {numbers...};
        return std::string(reinterpret_cast<const char*>(values), sizeof values);
    };
    for (const Case& c : {
             Case{ImportType::Text, 8, 6, "abcdefgh", 1, std::string("abcde\0", 6)},
             Case{ImportType::Text, 8, 6, "abcd\xC3\xA4", 1, std::string("abcd\0\0", 6)},
             Case{ImportType::Text, 8, 0, "abc", 1, ""},
             Case{ImportType::Text, 34, 6, "abc", 1, std::string("abc\0\0\0", 6)},
             Case{ImportType::Text, 35, 6, "abc", 0, ""},
             Case{ImportType::Text, 8, 0xFFFFFFFF, "abc", 0, ""},
             Case{ImportType::Text, 0xFFFFFFFC, 8, "abc", 0, ""},
             Case{ImportType::Bytes, 8, 4, "abcdef", 1, "abcd"},
             Case{ImportType::Bytes, 8, 4, "a", 1, "a"},
             Case{kNumber, 8, 4, " \t-12abc", 1, bytes(-12)},
             Case{ImportType::Number2, 8, 4, "abc", 1, bytes(0)},
             Case{kNumber, 8, 4, "99999999999999999999", 1, bytes(0x7FFFFFFF)},
             Case{kNumber, 8, 4, " ", 1, bytes(0)},
             Case{kNumber, 8, 3, "1", 0, ""},
             Case{ImportType::Date, 8, 12, "2/1/2005", 1, bytes(1, 2, 2005)},
             Case{ImportType::Date, 8, 12, "soon", 0, ""},
             Case{ImportType::Date, 8, 11, "1/1/2001", 0, ""},
             Case{ImportType::Time, 8, 16, "1:30 pm", 1, bytes(1, 30, 0x23232323, kAfterNoon)},
             Case{ImportType::Time, 8, 16, "1:30", 0, ""},
             Case{ImportType::Time, 8, 15, "1:30 pm", 0, ""},
         }) {
        SCOPED_TRACE(c.text + " at " + std::to_string(c.offset) + " in " + std::to_string(c.size));
        const ImportField fields[] = {{false, 5, 0, ImportType::Text, 40, "Unmapped"},
                                      {true, 5, c.offset, c.type, c.size, "Field"},
                                      {true, 5, 0, ImportType::Text, 40, "Later"}};
        std::string record(40, '#');
        EXPECT_EQ(StoreField(fields, 5, c.text, std::as_writable_bytes(std::span(record))), c.result);
        EXPECT_EQ(record, std::string(40, '#').replace(c.written.empty() ? 0 : c.offset, c.written.size(), c.written));
        EXPECT_EQ(StoreField(fields, 6, c.text, std::as_writable_bytes(std::span(record))), 1) << "no such column";
    }
}

}  // namespace
}  // namespace jotlet
