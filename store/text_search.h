// Text tests that ignore the case of A to Z, on fields as they lie in a record. For the store's own use.
// Nothing is copied, and no byte outside the field is used, also when the field has no terminator or changes meanwhile.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace jotlet {

// The text that is looked for, folded.
struct Needle {
    std::array<std::uint8_t, 500> bytes{};
    std::size_t length = 0;

    // Takes the bytes up to a terminator, at most 499.
    static Needle Of(std::span<const std::byte> text);
};

// Bytes of the text in the field, up to a terminator or the field's end.
std::size_t TextLength(const std::byte* field, std::size_t size);
// Tests on a text of `length` bytes.
bool ContainsFolded(const std::byte* text, std::size_t length, const Needle& needle);
bool BeginsWithFolded(const std::byte* text, std::size_t length, const Needle& needle);
bool EndsWithFolded(const std::byte* text, std::size_t length, const Needle& needle);

}  // namespace jotlet
