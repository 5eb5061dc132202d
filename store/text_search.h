// Text tests that ignore letter case, on fields as they lie in a record. For the store's own use. The searches fold
// every script (platform/base/case_fold.h), the comparison A to Z alone. Nothing is allocated, and no byte outside the
// field is used, also when the field has no terminator or changes meanwhile.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/base/case_fold.h"

namespace jotlet {

// The text that is looked for, folded.
struct Needle {
    std::array<std::uint8_t, 500 * kFoldGrowth> bytes{};
    std::size_t length = 0;
    bool isAscii = true;

    // Take the bytes up to a terminator, at most 499. For the searches:
    static Needle Of(std::span<const std::byte> text);
    // For BeginsWithAscii:
    static Needle OfAscii(std::span<const std::byte> text);
};

// Bytes of the text in the field, up to a terminator or the field's end.
std::size_t TextLength(const std::byte* field, std::size_t size);
// Searches in a text of `length` bytes, at most a record's size.
bool ContainsFolded(const std::byte* text, std::size_t length, const Needle& needle);
bool BeginsWithFolded(const std::byte* text, std::size_t length, const Needle& needle);
bool EndsWithFolded(const std::byte* text, std::size_t length, const Needle& needle);
// Whether the bytes begin with the needle but for the case of A to Z.
bool BeginsWithAscii(const std::byte* text, std::size_t length, const Needle& needle);

}  // namespace jotlet
