// Text without regard to letter case, in every script: Unicode's full case folding, which belongs to no language.
// "Straße" and "STRASSE" fold alike, as do the three sigmas. What is folded is what is shown: bytes that are no UTF-8
// count as Windows-1252 (text.h).
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace jotlet {

// No text grows by more than this factor.
inline constexpr std::size_t kFoldGrowth = 3;

// Writes the folded text, UTF-8 without a terminator, to `out`, which has room for kFoldGrowth times `text`. The number
// of bytes written. Allocates nothing.
std::size_t FoldCase(std::string_view text, std::span<char> out);

// True when characters beyond ASCII may fold into letters of ASCII, as the sharp s does. Quick.
bool MayFoldIntoAscii(std::string_view text);

}  // namespace jotlet
