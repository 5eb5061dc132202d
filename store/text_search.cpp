#include "store/text_search.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace jotlet {
namespace {

constexpr std::array<std::uint8_t, 256> MakeFoldTable()
{
    std::array<std::uint8_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = static_cast<std::uint8_t>(i >= 'A' && i <= 'Z' ? i + ('a' - 'A') : i);
    return table;
}
constexpr std::array<std::uint8_t, 256> kFold = MakeFoldTable();

bool EqualFolded(const std::uint8_t* text, const std::uint8_t* folded, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i)
        if (kFold[text[i]] != folded[i])
            return false;
    return true;
}

const std::uint8_t* Raw(const std::byte* text)
{
    return reinterpret_cast<const std::uint8_t*>(text);
}

#ifdef __SSE2__
// What to set in a byte so that it equals the folded one whatever its case. Only letters have two forms.
char CaseBit(std::uint8_t folded)
{
    return folded >= 'a' && folded <= 'z' ? 0x20 : 0;
}

// Looks at 16 starting places at once: those whose first and last byte fit are compared in full. Stops before the last
// places, whose 16 bytes would reach over the end of the text, and leaves them to the caller.
bool FindInBlocks(const std::uint8_t* text, std::size_t length, const Needle& needle, std::size_t& at)
{
    const std::size_t last = needle.length - 1;
    const __m128i firstByte = _mm_set1_epi8(static_cast<char>(needle.bytes[0]));
    const __m128i lastByte = _mm_set1_epi8(static_cast<char>(needle.bytes[last]));
    const __m128i firstCase = _mm_set1_epi8(CaseBit(needle.bytes[0]));
    const __m128i lastCase = _mm_set1_epi8(CaseBit(needle.bytes[last]));
    for (; at + last + 16 <= length; at += 16) {
        const __m128i starts = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
        const __m128i ends = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at + last));
        const __m128i fits = _mm_and_si128(_mm_cmpeq_epi8(_mm_or_si128(starts, firstCase), firstByte),
                                           _mm_cmpeq_epi8(_mm_or_si128(ends, lastCase), lastByte));
        for (auto mask = static_cast<unsigned>(_mm_movemask_epi8(fits)); mask != 0; mask &= mask - 1)
            if (EqualFolded(text + at + std::countr_zero(mask), needle.bytes.data(), needle.length))
                return true;
    }
    return false;
}
#else
bool FindInBlocks(const std::uint8_t*, std::size_t, const Needle&, std::size_t&)
{
    return false;
}
#endif

}  // namespace

Needle Needle::Of(std::span<const std::byte> text)
{
    Needle needle;
    for (const std::byte byte : text.first(std::min(text.size(), needle.bytes.size() - 1))) {
        if (byte == std::byte{0})
            break;
        needle.bytes[needle.length++] = kFold[std::to_integer<std::uint8_t>(byte)];
    }
    return needle;
}

std::size_t TextLength(const std::byte* field, std::size_t size)
{
    return strnlen(reinterpret_cast<const char*>(field), size);
}

bool ContainsFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    if (needle.length == 0)
        return true;
    if (length < needle.length)
        return false;
    std::size_t at = 0;
    if (FindInBlocks(Raw(text), length, needle, at))
        return true;
    for (; at + needle.length <= length; ++at)
        if (EqualFolded(Raw(text) + at, needle.bytes.data(), needle.length))
            return true;
    return false;
}

bool BeginsWithFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    return needle.length <= length && EqualFolded(Raw(text), needle.bytes.data(), needle.length);
}

bool EndsWithFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    return needle.length <= length &&
           EqualFolded(Raw(text) + (length - needle.length), needle.bytes.data(), needle.length);
}

}  // namespace jotlet
