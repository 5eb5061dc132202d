// How two values of a field compare: below, at or above 0. One routine a value type; all take pointers into records, at
// any alignment, and the field's size. CompareDates and CompareTitles stand in platform/base/calendar.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/base/calendar.h"

namespace jotlet {

// What a field holds. Given by every caller of a query; never renumber.
enum class ValueType : std::int8_t {
    Int32 = 1,
    Int32Alternative = 2,  // as Int32
    Float = 3,             // 64 bits
    Text = 4,              // zero-terminated in its width
    Date = 5,              // DateValue
    Time = 6,              // TimeValue
    Float12 = 7,           // the first 8 of 12 bytes
    Float8 = 8,
    Int8 = 9,
    Int64 = 10,
};

int CompareInt8(const std::byte* first, const std::byte* second, std::size_t size);
int CompareInt32(const std::byte* first, const std::byte* second, std::size_t size);
int CompareInt64(const std::byte* first, const std::byte* second, std::size_t size);
// -1 unless the first is at least the second, 1 if they differ, else 0: what is no number comes before everything.
int CompareFloat(const std::byte* first, const std::byte* second, std::size_t size);
int CompareFloat8(const std::byte* first, const std::byte* second, std::size_t size);
int CompareFloat12(const std::byte* first, const std::byte* second, std::size_t size);
// By 5-minute slot: seconds don't count, and 10:01 equals 10:04.
int CompareTimes(const std::byte* first, const std::byte* second, std::size_t size);

// The comparator of a value type; nullptr for a number outside 1 to 10.
FieldComparator ComparatorOf(ValueType type);
// Bytes that the comparator reads of a field, whatever the term says; 0 for Text, which reads at most the field's size.
std::size_t FixedSizeOf(ValueType type);

}  // namespace jotlet
