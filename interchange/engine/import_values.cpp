#include "interchange/engine/import_values.h"

#include <algorithm>
#include <cstring>

#include "platform/base/profile.h"
#include "platform/base/text.h"

namespace jotlet {

namespace {

constexpr std::size_t kLongestPart = 255;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Takes a run of digits from the start of `text`. False when there is none.
bool TakeNumber(std::string_view& text, int& number)
{
    std::size_t length = 0;
    while (length < std::min(text.size(), kLongestPart) && IsDigit(text[length]))
        ++length;
    if (length == 0)
        return false;
    number = TextToInt(text.substr(0, length));
    text.remove_prefix(length);
    return true;
}

void SkipToDigit(std::string_view& text)
{
    while (!text.empty() && !IsDigit(text.front()))
        text.remove_prefix(1);
}

int ToNumber(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    return start == std::string_view::npos ? 0 : TextToInt(text.substr(start));
}

bool SaysMorning(std::string_view rest)
{
    std::size_t looked = 0;
    for (const char c : rest) {
        if (c == ' ')
            continue;
        if (++looked > kLongestPart)
            break;
        if (c == 'a' || c == 'A')
            return true;
    }
    return false;
}

template <typename Value>
bool ReadValue(std::span<const std::byte> place, Value& value)
{
    if (place.size() < sizeof value)
        return false;
    std::memcpy(&value, place.data(), sizeof value);
    return true;
}

template <typename Value>
int WriteValue(std::span<std::byte> place, const Value& value)
{
    if (place.size() < sizeof value)
        return 0;
    std::memcpy(place.data(), &value, sizeof value);
    return 1;
}

int StoreDate(std::span<std::byte> place, std::string_view text)
{
    DateValue date;
    return ParseImportDate(text, date) == 1 ? WriteValue(place, date) : 0;
}

int StoreTime(std::span<std::byte> place, std::string_view text)
{
    TimeValue time;
    if (!ReadValue(place, time) || ParseImportTime(text, time) != 1)
        return 0;
    return WriteValue(place, time);
}

int StoreBytes(std::span<std::byte> place, std::string_view text)
{
    std::ranges::copy(std::as_bytes(std::span(text)).first(std::min(text.size(), place.size())), place.begin());
    return 1;
}

int StoreInto(ImportType type, std::span<std::byte> place, std::string_view text)
{
    switch (type) {
        case ImportType::Bytes:
            return StoreBytes(place, text);
        case ImportType::Number2:
        case ImportType::Number:
            return WriteValue(place, std::int32_t{ToNumber(text)});
        case ImportType::Date:
            return StoreDate(place, text);
        case ImportType::Time:
            return StoreTime(place, text);
        case ImportType::Text:
            StoreText({reinterpret_cast<char*>(place.data()), place.size()}, text);
            return 1;
    }
    return 0;
}

}  // namespace

int ParseImportDate(std::string_view text, DateValue& date)
{
    DateValue parsed;
    if (!TakeNumber(text, parsed.month))
        return 0;
    SkipToDigit(text);
    if (!TakeNumber(text, parsed.day))
        return 0;
    SkipToDigit(text);
    if (!TakeNumber(text, parsed.year))
        return 0;
    date = parsed;
    return 1;
}

int ParseImportTime(std::string_view text, TimeValue& time)
{
    int hour = 0;
    int minute = 0;
    if (!TakeNumber(text, hour))
        return 0;
    SkipToDigit(text);
    if (!TakeNumber(text, minute) || text.empty())
        return 0;
    time.halfDay = SaysMorning(text) ? kBeforeNoon : kAfterNoon;
    time.hour = time.halfDay == kAfterNoon && hour == 12 ? 0 : hour;
    time.minute = minute;
    return 1;
}

int StoreField(std::span<const ImportField> fields, int column, std::string_view text, std::span<std::byte> record)
{
    for (const ImportField& field : fields) {
        if (!field.mapped || field.column != column)
            continue;
        if (field.offset > record.size() || field.size > record.size() - field.offset)
            return 0;
        return StoreInto(field.type, record.subspan(field.offset, field.size), text);
    }
    return 1;
}

}  // namespace jotlet
