// Keys of records in a form that sorts quickly. For the store's own use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/field_comparators.h"
#include "store/record_address.h"

namespace jotlet {

// A record and the first 16 bytes of its key, as two numbers that order like the comparator. Equal numbers are equal
// keys, unless the key is a longer text.
struct SortEntry {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::uint32_t index = 0;
};

// Bytes that the comparator reads of a key, however short the key is said to be; 0 for one that keeps to the size.
std::size_t BytesRead(FieldComparator comparator);

// Sorts `addresses` by their keys, which lie one behind the other in `keys`, each `keySize` bytes and never less than
// the comparator reads. Equal keys keep their order. Folds texts in place.
void SortByKeys(std::vector<RecordAddress>& addresses, std::vector<std::byte>& keys, std::size_t keySize,
                FieldComparator comparator);

}  // namespace jotlet
