#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "notes/model/import_fields.h"
#include "platform/base/calendar.h"

// From the text of a source field to the value in a record.

namespace jotlet {

// Three runs of digits, the first at the very start: month, day, year. No range is checked. 1, or 0 and `date`
// unchanged when one is missing.
int ParseImportDate(std::string_view text, DateValue& date);

// Hour at the very start, minute, and behind it something that tells the half-day: morning when there is an "a" in
// either case. `second` stays. 1, or 0 and `time` unchanged.
int ParseImportTime(std::string_view text, TimeValue& time);

// Converts the text into the first field that `column` is mapped to; columns without one count as done. 1, or 0 when
// the text is no value of that field's type or the field lies outside the record.
int StoreField(std::span<const ImportField> fields, int column, std::string_view text, std::span<std::byte> record);

}  // namespace jotlet
