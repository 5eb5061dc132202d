#include "platform/base/case_fold.h"

#include <utf8proc.h>

#include <array>
#include <cstdint>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "platform/base/text.h"

namespace jotlet {
namespace {

constexpr std::size_t kMostFolded = 4;  // characters that one can become

std::size_t FoldCharacter(char32_t point, char* out)
{
    std::array<utf8proc_int32_t, kMostFolded> folded;
    int boundary = 0;
    const utf8proc_ssize_t count = utf8proc_decompose_char(static_cast<utf8proc_int32_t>(point), folded.data(),
                                                           kMostFolded, UTF8PROC_CASEFOLD, &boundary);
    std::size_t written = 0;
    for (utf8proc_ssize_t i = 0; i < count; ++i)
        written += static_cast<std::size_t>(utf8proc_encode_char(folded[static_cast<std::size_t>(i)],
                                                                 reinterpret_cast<utf8proc_uint8_t*>(out + written)));
    return written;
}

// What most texts beyond ASCII are made of: the characters of two bytes, folded once.
struct ShortFold {
    std::array<char, 6> bytes;
    std::uint8_t length;
};
constexpr char32_t kShortEnd = 0x800;

const std::array<ShortFold, kShortEnd>& ShortFolds()
{
    static const auto folds = [] {
        std::array<ShortFold, kShortEnd> made{};
        for (char32_t point = 0x80; point < kShortEnd; ++point)
            made[point].length = static_cast<std::uint8_t>(FoldCharacter(point, made[point].bytes.data()));
        return made;
    }();
    return folds;
}

constexpr unsigned char Byte(char c)
{
    return static_cast<unsigned char>(c);
}

// How the characters begin that may fold into letters of ASCII.
constexpr std::pair<std::uint8_t, std::uint8_t> kAsciiHolders[] = {
    {0xC3, 0x9F},  // the sharp s
    {0xC4, 0xB0},  // I with a dot
    {0xC5, 0x89},  // n behind an apostrophe
    {0xC5, 0xBF},  // the long s
    {0xC7, 0xB0},  // j with a caron
    {0xE1, 0xBA},  // letters that lose a mark, the capital sharp s
    {0xE2, 0x84},  // the Kelvin sign
    {0xEF, 0xAC},  // ff, fi, fl, st in one
};
constexpr std::uint8_t kSharpS1252 = 0xDF;

}  // namespace

std::size_t FoldCase(std::string_view text, std::span<char> out)
{
    const std::array<ShortFold, kShortEnd>& shortFolds = ShortFolds();
    std::size_t written = 0;
    for (std::size_t at = 0; at < text.size();) {
        const unsigned char lead = Byte(text[at]);
        if (lead < 0x80) {
            out[written++] = FoldAscii(text[at++]);
        } else if (lead >= 0xC2 && lead < 0xE0 && at + 1 < text.size() && (Byte(text[at + 1]) & 0xC0) == 0x80) {
            const ShortFold& fold = shortFolds[(lead & 0x1Fu) << 6 | (Byte(text[at + 1]) & 0x3Fu)];
            for (std::uint8_t i = 0; i < fold.length; ++i)
                out[written++] = fold.bytes[i];
            at += 2;
        } else {
            char32_t point = 0;
            at += FirstCharacter(text.substr(at), point);
            written += FoldCharacter(point, out.data() + written);
        }
    }
    return written;
}

bool MayFoldIntoAscii(std::string_view text)
{
    std::size_t at = 0;
#ifdef __SSE2__
    const auto are = [](__m128i bytes, std::uint8_t value) {
        return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(value)));
    };
    for (; at + 17 <= text.size(); at += 16) {
        const __m128i leads = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        const __m128i nexts = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at + 1));
        __m128i found = are(leads, kSharpS1252);
        for (const auto& [lead, next] : kAsciiHolders)
            found = _mm_or_si128(found, _mm_and_si128(are(leads, lead), are(nexts, next)));
        if (_mm_movemask_epi8(found) != 0)
            return true;
    }
#endif
    for (; at < text.size(); ++at) {
        const unsigned char next = at + 1 < text.size() ? Byte(text[at + 1]) : 0;
        for (const auto& holder : kAsciiHolders)
            if (Byte(text[at]) == kSharpS1252 || holder == std::pair{Byte(text[at]), next})
                return true;
    }
    return false;
}

}  // namespace jotlet
