#include "store/sort_keys.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "platform/base/text.h"

namespace jotlet {
namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::size_t kPrefix = 16;

template <typename Value>
Value Load(const std::byte* field)
{
    Value value;
    std::memcpy(&value, field, sizeof value);
    return value;
}

std::uint64_t KeyOf(std::int64_t value)
{
    return static_cast<std::uint64_t>(value) ^ kSignBit;
}

// What is no number comes first. Both zeros are one key.
std::uint64_t KeyOf(double value)
{
    if (std::isnan(value))
        return 0;
    const auto bits = std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value);
    return bits & kSignBit ? ~bits : bits | kSignBit;
}

std::uint64_t FirstBytes(const std::byte* text)
{
    auto bytes = Load<std::uint64_t>(text);
    if constexpr (std::endian::native == std::endian::little)
        bytes = __builtin_bswap64(bytes);
    return bytes;
}

// Folds the text and zeroes what is behind its end, so that its bytes order like the text.
void FoldInPlace(std::byte* text, std::size_t size)
{
    const std::size_t length = strnlen(reinterpret_cast<const char*>(text), size);
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<std::byte>(FoldAscii(static_cast<char>(text[i])));
    std::memset(text + length, 0, size - length);
}

void MakeTextEntry(std::byte* key, std::size_t size, SortEntry& entry)
{
    FoldInPlace(key, size);
    std::byte start[kPrefix] = {};
    std::memcpy(start, key, std::min(size, kPrefix));
    entry.high = FirstBytes(start);
    entry.low = FirstBytes(start + 8);
}

using NumberKey = std::uint64_t (*)(const std::byte*);

// For the comparators whose order a number can hold; nullptr for others. `size` is what the comparator reads.
NumberKey NumberKeyOf(FieldComparator comparator, std::size_t& size)
{
    size = 8;
    if (comparator == CompareInt64)
        return [](const std::byte* key) { return KeyOf(Load<std::int64_t>(key)); };
    if (comparator == CompareFloat || comparator == CompareFloat8 || comparator == CompareFloat12)
        return [](const std::byte* key) { return KeyOf(Load<double>(key)); };
    size = 4;
    if (comparator == CompareInt32)
        return [](const std::byte* key) { return KeyOf(std::int64_t{Load<std::int32_t>(key)}); };
    size = 1;
    if (comparator == CompareInt8)
        return [](const std::byte* key) { return KeyOf(std::int64_t{Load<std::int8_t>(key)}); };
    size = sizeof(DateValue);
    if (comparator == CompareDates)
        return [](const std::byte* key) { return KeyOf(std::int64_t{DayNumberOf(Load<DateValue>(key))}); };
    size = sizeof(TimeValue);
    if (comparator == CompareTimes)
        return [](const std::byte* key) { return KeyOf(std::int64_t{TimeSlot(Load<TimeValue>(key))}); };
    size = 0;
    return nullptr;
}

}  // namespace

std::size_t BytesRead(FieldComparator comparator)
{
    std::size_t size = 0;
    NumberKeyOf(comparator, size);
    return size;
}

void SortByKeys(std::vector<RecordAddress>& addresses, std::vector<std::byte>& keys, std::size_t keySize,
                FieldComparator comparator)
{
    const auto keyAt = [&](std::size_t index) { return keys.data() + index * keySize; };
    std::vector<SortEntry> entries(addresses.size());
    for (std::uint32_t i = 0; i < entries.size(); ++i)
        entries[i].index = i;

    std::size_t numberSize = 0;
    const NumberKey number = NumberKeyOf(comparator, numberSize);
    if (number) {
        for (SortEntry& entry : entries)
            entry.high = number(keyAt(entry.index));
        std::sort(entries.begin(), entries.end(), [](const SortEntry& a, const SortEntry& b) {
            return a.high != b.high ? a.high < b.high : a.index < b.index;
        });
    } else if (comparator == CompareTitles) {
        for (SortEntry& entry : entries)
            MakeTextEntry(keyAt(entry.index), keySize, entry);
        const std::size_t rest = keySize > kPrefix ? keySize - kPrefix : 0;
        std::sort(entries.begin(), entries.end(), [&](const SortEntry& a, const SortEntry& b) {
            if (a.high != b.high)
                return a.high < b.high;
            if (a.low != b.low)
                return a.low < b.low;
            const int compared = rest ? std::memcmp(keyAt(a.index) + kPrefix, keyAt(b.index) + kPrefix, rest) : 0;
            return compared != 0 ? compared < 0 : a.index < b.index;
        });
    } else {
        // A merge sort, which stays in bounds whatever a comparator answers.
        std::stable_sort(entries.begin(), entries.end(), [&](const SortEntry& a, const SortEntry& b) {
            return comparator(keyAt(a.index), keyAt(b.index), keySize) < 0;
        });
    }

    std::vector<RecordAddress> sorted(addresses.size());
    for (std::size_t i = 0; i < sorted.size(); ++i)
        sorted[i] = addresses[entries[i].index];
    addresses.swap(sorted);
}

}  // namespace jotlet
