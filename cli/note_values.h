// The texts in which jotctl takes and gives a note's values: ids, dates, colours.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/calendar.h"

namespace jotlet {

// 16 hex digits.
std::string FormatId(std::uint64_t id);
// 1 to 16 hex digits, in either case; nothing for any other text.
std::optional<std::uint64_t> ParseId(std::string_view text);

// "2007-03-09"; nothing for a date that does not exist.
std::optional<std::string> FormatIsoDate(const DateValue& date);
// A date of the calendar; nothing for any other text.
std::optional<DateValue> ParseIsoDate(std::string_view text);

// "13:40"; nothing for a time that does not exist.
std::optional<std::string> FormatIsoTime(const TimeValue& time);

// A name of the palette ("yellow", ...), or "#RRGGBB" for another colour.
std::string FormatColour(std::uint32_t colour);

}  // namespace jotlet
