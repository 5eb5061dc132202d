#include "store/field_comparators.h"

#include <cstring>

namespace jotlet {
namespace {

template <typename Value>
Value Load(const std::byte* field)
{
    Value value;
    std::memcpy(&value, field, sizeof value);
    return value;
}

template <typename Value>
int CompareNumbers(const std::byte* first, const std::byte* second)
{
    const auto a = Load<Value>(first);
    const auto b = Load<Value>(second);
    return (a > b) - (a < b);
}

}  // namespace

int CompareInt8(const std::byte* first, const std::byte* second, std::size_t)
{
    return CompareNumbers<std::int8_t>(first, second);
}

int CompareInt32(const std::byte* first, const std::byte* second, std::size_t)
{
    return CompareNumbers<std::int32_t>(first, second);
}

int CompareInt64(const std::byte* first, const std::byte* second, std::size_t)
{
    return CompareNumbers<std::int64_t>(first, second);
}

int CompareFloat(const std::byte* first, const std::byte* second, std::size_t)
{
    const auto a = Load<double>(first);
    const auto b = Load<double>(second);
    if (!(a >= b))
        return -1;
    return a != b ? 1 : 0;
}

int CompareFloat8(const std::byte* first, const std::byte* second, std::size_t size)
{
    return CompareFloat(first, second, size);
}

int CompareFloat12(const std::byte* first, const std::byte* second, std::size_t size)
{
    return CompareFloat(first, second, size);
}

int CompareTimes(const std::byte* first, const std::byte* second, std::size_t)
{
    const int a = TimeSlot(Load<TimeValue>(first));
    const int b = TimeSlot(Load<TimeValue>(second));
    return (a > b) - (a < b);
}

FieldComparator ComparatorOf(ValueType type)
{
    switch (type) {
        case ValueType::Int32:
        case ValueType::Int32Alternative:
            return CompareInt32;
        case ValueType::Float:
            return CompareFloat;
        case ValueType::Text:
            return CompareTitles;
        case ValueType::Date:
            return CompareDates;
        case ValueType::Time:
            return CompareTimes;
        case ValueType::Float12:
            return CompareFloat12;
        case ValueType::Float8:
            return CompareFloat8;
        case ValueType::Int8:
            return CompareInt8;
        case ValueType::Int64:
            return CompareInt64;
    }
    return nullptr;
}

std::size_t FixedSizeOf(ValueType type)
{
    switch (type) {
        case ValueType::Int32:
        case ValueType::Int32Alternative:
            return 4;
        case ValueType::Float:
        case ValueType::Float8:
        case ValueType::Float12:
        case ValueType::Int64:
            return 8;
        case ValueType::Date:
            return sizeof(DateValue);
        case ValueType::Time:
            return sizeof(TimeValue);
        case ValueType::Int8:
            return 1;
        case ValueType::Text:
            return 0;
    }
    return 0;
}

}  // namespace jotlet
