#include "cli/note_values.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "notes/model/palette.h"

namespace jotlet {
namespace {

template <typename Number>
bool ParseWhole(std::string_view digits, int base, Number& out)
{
    if (digits.empty() || digits.front() == '-' || digits.front() == '+')
        return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), out, base);
    return error == std::errc() && end == digits.data() + digits.size();
}

template <typename... Values>
std::string Format(const char* format, Values... values)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

}  // namespace

std::string FormatId(std::uint64_t id)
{
    return Format("%016llx", static_cast<unsigned long long>(id));
}

std::optional<std::uint64_t> ParseId(std::string_view text)
{
    std::uint64_t id = 0;
    if (text.size() > 16 || !ParseWhole(text, 16, id))
        return std::nullopt;
    return id;
}

std::optional<std::string> FormatIsoDate(const DateValue& date)
{
    if (date.year < 0 || date.year > 9999 || !IsValidDate(date.day, date.month, date.year))
        return std::nullopt;
    return Format("%04d-%02d-%02d", date.year, date.month, date.day);
}

std::optional<DateValue> ParseIsoDate(std::string_view text)
{
    DateValue date;
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !ParseWhole(text.substr(0, 4), 10, date.year) ||
        !ParseWhole(text.substr(5, 2), 10, date.month) || !ParseWhole(text.substr(8, 2), 10, date.day) ||
        DayNumberOf(date) < 0)
        return std::nullopt;
    return date;
}

std::optional<std::string> FormatIsoTime(const TimeValue& time)
{
    if (time.hour < 0 || time.hour > 11 || time.minute < 0 || time.minute > 59 || time.halfDay < kBeforeNoon ||
        time.halfDay > kAfterNoon)
        return std::nullopt;
    return Format("%02d:%02d", time.hour + (time.halfDay == kAfterNoon ? 12 : 0), time.minute);
}

std::string FormatColour(std::uint32_t colour)
{
    if (const std::optional<std::string_view> name = ColourName(colour))
        return std::string(*name);
    return Format("#%02X%02X%02X", colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
}

}  // namespace jotlet
