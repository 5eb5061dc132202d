#include "store/text_search.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "store/table_schema.h"

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

// Where a search in blocks stands.
struct Progress {
    std::size_t at = 0;       // places before this one have been looked at
    bool seesBeyond = false;  // bytes beyond ASCII stand before `at`
};

#ifdef __SSE2__
// What to set in a byte so that it equals the folded one whatever its case. Only letters have two forms.
char CaseBit(std::uint8_t folded)
{
    return folded >= 'a' && folded <= 'z' ? 0x20 : 0;
}

// Looks at 16 starting places at once: those whose first and last byte fit are compared in full. Stops before the last
// places, whose 16 bytes would reach over the end of the text, and leaves them to the caller.
bool FindInBlocks(const std::uint8_t* text, std::size_t length, const Needle& needle, Progress& progress)
{
    const std::size_t last = needle.length - 1;
    const __m128i firstByte = _mm_set1_epi8(static_cast<char>(needle.bytes[0]));
    const __m128i lastByte = _mm_set1_epi8(static_cast<char>(needle.bytes[last]));
    const __m128i firstCase = _mm_set1_epi8(CaseBit(needle.bytes[0]));
    const __m128i lastCase = _mm_set1_epi8(CaseBit(needle.bytes[last]));
    __m128i all = _mm_setzero_si128();
    std::size_t at = progress.at;
    for (; at + last + 16 <= length; at += 16) {
        const __m128i starts = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
        const __m128i ends = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at + last));
        const __m128i fits = _mm_and_si128(_mm_cmpeq_epi8(_mm_or_si128(starts, firstCase), firstByte),
                                           _mm_cmpeq_epi8(_mm_or_si128(ends, lastCase), lastByte));
        all = _mm_or_si128(all, starts);
        for (auto mask = static_cast<unsigned>(_mm_movemask_epi8(fits)); mask != 0; mask &= mask - 1)
            if (EqualFolded(text + at + std::countr_zero(mask), needle.bytes.data(), needle.length))
                return true;
    }
    progress = {at, _mm_movemask_epi8(all) != 0};
    return false;
}
#else
bool FindInBlocks(const std::uint8_t*, std::size_t, const Needle&, Progress&)
{
    return false;
}
#endif

// Byte by byte but for A to Z.
bool ContainsBytes(const std::uint8_t* text, std::size_t length, const Needle& needle, Progress& progress)
{
    if (length < needle.length)
        return false;
    if (FindInBlocks(text, length, needle, progress))
        return true;
    for (std::size_t at = progress.at; at + needle.length <= length; ++at)
        if (EqualFolded(text + at, needle.bytes.data(), needle.length))
            return true;
    return false;
}

bool IsAscii(const std::uint8_t* text, std::size_t length)
{
    return std::all_of(text, text + length, [](std::uint8_t byte) { return byte < 0x80; });
}

// Whether the bytes as they are can't tell: letters beyond ASCII have to be folded first.
bool NeedsFolding(const std::uint8_t* text, std::size_t length, const Needle& needle, const Progress& progress)
{
    if (!progress.seesBeyond && IsAscii(text + progress.at, length - progress.at))
        return false;
    return !needle.isAscii || MayFoldIntoAscii({reinterpret_cast<const char*>(text), length});
}

// Folded from a copy, since another process may be writing the text.
class FoldedText {
public:
    FoldedText(const std::byte* text, std::size_t textLength)
    {
        std::array<char, kNoteRecordSize> copy;
        std::memcpy(copy.data(), text, textLength);
        length = FoldCase({copy.data(), textLength}, bytes);
    }
    const std::uint8_t* Bytes() const { return reinterpret_cast<const std::uint8_t*>(bytes.data()); }
    std::size_t Length() const { return length; }

private:
    std::array<char, kNoteRecordSize * kFoldGrowth> bytes;
    std::size_t length;
};

bool BeginsWith(const std::uint8_t* text, std::size_t length, const Needle& needle)
{
    return needle.length <= length && EqualFolded(text, needle.bytes.data(), needle.length);
}

bool EndsWith(const std::uint8_t* text, std::size_t length, const Needle& needle)
{
    return needle.length <= length && EqualFolded(text + (length - needle.length), needle.bytes.data(), needle.length);
}

template <bool (*kTest)(const std::uint8_t*, std::size_t, const Needle&)>
bool TestFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    if (needle.isAscii && kTest(Raw(text), length, needle))
        return true;
    if (!NeedsFolding(Raw(text), length, needle, {}))
        return false;
    const FoldedText folded(text, length);
    return kTest(folded.Bytes(), folded.Length(), needle);
}

std::span<const char> TextOf(std::span<const std::byte> text)
{
    const auto chars = reinterpret_cast<const char*>(text.data());
    return {chars, strnlen(chars, std::min<std::size_t>(text.size(), 499))};
}

}  // namespace

Needle Needle::Of(std::span<const std::byte> text)
{
    Needle needle;
    const std::span<const char> chars = TextOf(text);
    needle.length =
        FoldCase({chars.data(), chars.size()}, {reinterpret_cast<char*>(needle.bytes.data()), needle.bytes.size()});
    needle.isAscii = IsAscii(needle.bytes.data(), needle.length);
    return needle;
}

Needle Needle::OfAscii(std::span<const std::byte> text)
{
    Needle needle;
    for (const char c : TextOf(text))
        needle.bytes[needle.length++] = kFold[static_cast<std::uint8_t>(c)];
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
    Progress progress;
    if (needle.isAscii && ContainsBytes(Raw(text), length, needle, progress))
        return true;
    if (!NeedsFolding(Raw(text), length, needle, progress))
        return false;
    const FoldedText folded(text, length);
    Progress anew;
    return ContainsBytes(folded.Bytes(), folded.Length(), needle, anew);
}

bool BeginsWithFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    return TestFolded<BeginsWith>(text, length, needle);
}

bool EndsWithFolded(const std::byte* text, std::size_t length, const Needle& needle)
{
    return TestFolded<EndsWith>(text, length, needle);
}

bool BeginsWithAscii(const std::byte* text, std::size_t length, const Needle& needle)
{
    return BeginsWith(Raw(text), length, needle);
}

}  // namespace jotlet
