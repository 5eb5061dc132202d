#include "interchange/engine/import_values.h"

#include <gtest/gtest.h>

#include <cstring>

namespace jotlet {

namespace {

TEST(ImportValuesTest, DatesAreThreeRunsOfDigits)
{
    struct Case {
        std::string_view text;
        DateValue date;
    };
    for (const Case& c : {
             Case{"12/31/2005", {31, 12, 2005}}, Case{"1-2-5", {2, 1, 5}}, Case{"3 . 4 . 2007 and more", {4, 3, 2007}},
             Case{"99/99/99999", {99, 99, 99999}},  // no range is checked
         }) {
        SCOPED_TRACE(c.text);
        DateValue date;
        EXPECT_EQ(ParseImportDate(c.text, date), 1);
        EXPECT_EQ(date, c.date);
    }
    for (const std::string_view bad : {"", " 1/2/2005", "12/31", "12/31/", "2005", "today"}) {
        SCOPED_TRACE(bad);
        DateValue date{1, 2, 3};
        EXPECT_EQ(ParseImportDate(bad, date), 0);
        EXPECT_EQ(date, (DateValue{1, 2, 3}));
    }
    // A run stops after 255 digits, and a number beyond 32 bits is as large as it can be.
    DateValue date;
    EXPECT_EQ(ParseImportDate(std::string(511, '1'), date), 1);
    EXPECT_GT(date.month, 0);
    EXPECT_EQ(date.year, 1);
}

TEST(ImportValuesTest, TimesNeedSomethingBehindTheMinute)
{
    struct Case {
        std::string_view text;
        TimeValue time;
    };
    for (const Case& c : {
             Case{"09:30 am", {9, 30, 44, kBeforeNoon}},
             Case{"9:30A", {9, 30, 44, kBeforeNoon}},
             Case{"1:05 pm", {1, 5, 44, kAfterNoon}},
             Case{"12:05 p.m.", {0, 5, 44, kAfterNoon}},
             Case{"12:05 am", {12, 5, 44, kBeforeNoon}},
             Case{"3.15 ", {3, 15, 44, kAfterNoon}},  // blanks alone say afternoon
             Case{"13h20 Uhr", {13, 20, 44, kAfterNoon}},
         }) {
        SCOPED_TRACE(c.text);
        TimeValue time{.hour = 7, .minute = 7, .second = 44, .halfDay = 7};
        EXPECT_EQ(ParseImportTime(c.text, time), 1);
        EXPECT_EQ(time, c.time);
    }
    for (const std::string_view bad : {"", "9", "9:", "9:30", "am", ":30 am"}) {
        SCOPED_TRACE(bad);
        TimeValue time{1, 2, 3, 4};
        EXPECT_EQ(ParseImportTime(bad, time), 0);
        EXPECT_EQ(time, (TimeValue{1, 2, 3, 4}));
    }
}

class StoreFieldTest : public testing::Test {
protected:
    // A record of 64 bytes whose field stands at `offset`; the bytes round it must stay.
    int Store(ImportType type, std::uint32_t size, std::string_view text, std::uint32_t offset = 8)
    {
        const std::vector<ImportField> fields = {
            {.mapped = false, .column = 5, .offset = 0, .type = ImportType::Text, .size = 64, .name = "Unmapped"},
            {.mapped = true, .column = 5, .offset = offset, .type = type, .size = size, .name = "Field"},
            {.mapped = true, .column = 5, .offset = 0, .type = ImportType::Text, .size = 64, .name = "Later"},
        };
        record = Untouched();
        return StoreField(fields, 5, text, record);
    }
    static std::vector<std::byte> Untouched() { return std::vector<std::byte>(64, std::byte{'#'}); }
    std::string Bytes(std::size_t from, std::size_t count) const
    {
        return {reinterpret_cast<const char*>(record.data()) + from, count};
    }
    template <typename Value>
    Value Read() const
    {
        Value value;
        std::memcpy(&value, record.data() + 8, sizeof value);
        return value;
    }

    std::vector<std::byte> record;
};

TEST_F(StoreFieldTest, TextIsCutToItsFieldAtAWholeCharacter)
{
    EXPECT_EQ(Store(ImportType::Text, 6, "abcdefgh"), 1);
    EXPECT_EQ(Bytes(7, 8), std::string("#abcde\0#", 8));
    EXPECT_EQ(Store(ImportType::Text, 6, "abcd\xC3\xA4"), 1);
    EXPECT_EQ(Bytes(8, 7), std::string("abcd\0\0#", 7));
    EXPECT_EQ(Store(ImportType::Text, 0, "abc"), 1);
    EXPECT_EQ(record, Untouched());
}

TEST_F(StoreFieldTest, RawBytesTakeNoMoreThanTheTextHolds)
{
    EXPECT_EQ(Store(ImportType::Bytes, 4, "abcdef"), 1);
    EXPECT_EQ(Bytes(7, 6), "#abcd#");
    EXPECT_EQ(Store(ImportType::Bytes, 4, "a"), 1);
    EXPECT_EQ(Bytes(7, 6), "#a####");
}

TEST_F(StoreFieldTest, NumbersAreReadAsFarAsTheyGo)
{
    for (const ImportType type : {ImportType::Number, ImportType::Number2}) {
        EXPECT_EQ(Store(type, 4, " \t-12abc"), 1);
        EXPECT_EQ(Read<std::int32_t>(), -12);
        EXPECT_EQ(Store(type, 4, "abc"), 1);
        EXPECT_EQ(Read<std::int32_t>(), 0);
        EXPECT_EQ(Store(type, 4, "99999999999999999999"), 1);
        EXPECT_GT(Read<std::int32_t>(), 0);
    }
}

TEST_F(StoreFieldTest, ADateOrTimeThatCannotBeReadFailsAndChangesNothing)
{
    EXPECT_EQ(Store(ImportType::Date, 12, "2/1/2005"), 1);
    EXPECT_EQ(Read<DateValue>(), (DateValue{1, 2, 2005}));
    EXPECT_EQ(Store(ImportType::Date, 12, "soon"), 0);
    EXPECT_EQ(record, Untouched());
    EXPECT_EQ(Store(ImportType::Time, 16, "1:30 pm"), 1);
    EXPECT_EQ(Read<TimeValue>().minute, 30);
    EXPECT_EQ(Store(ImportType::Time, 16, "1:30"), 0);
    EXPECT_EQ(record, Untouched());
}

TEST_F(StoreFieldTest, NothingIsWrittenOutsideTheRecordOrTheField)
{
    EXPECT_EQ(Store(ImportType::Text, 8, "abc", 60), 0);
    EXPECT_EQ(Store(ImportType::Text, 0xFFFFFFFF, "abc", 8), 0);
    EXPECT_EQ(Store(ImportType::Text, 8, "abc", 0xFFFFFFFC), 0);
    EXPECT_EQ(Store(ImportType::Number, 2, "1"), 0);
    EXPECT_EQ(Store(ImportType::Date, 4, "1/1/2001"), 0);
    EXPECT_EQ(record, Untouched());
}

TEST_F(StoreFieldTest, AColumnWithoutAFieldIsDoneAtOnce)
{
    std::vector<std::byte> bytes(8);
    EXPECT_EQ(StoreField({}, 3, "abc", bytes), 1);
    EXPECT_EQ(bytes, std::vector<std::byte>(8));
}

}  // namespace

}  // namespace jotlet
