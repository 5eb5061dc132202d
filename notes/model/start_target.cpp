#include "notes/model/start_target.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "platform/base/text.h"

namespace jotlet {
namespace {

struct CodeRange {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr std::array kHidden = {
    CodeRange{0x0000, 0x001F},    // controls, line breaks
    CodeRange{0x007F, 0x00A0},    // controls, the blank that is none
    CodeRange{0x00AD, 0x00AD},    // soft hyphen
    CodeRange{0x061C, 0x061C},    // direction of letters
    CodeRange{0x115F, 0x1160},    // fillers without a glyph
    CodeRange{0x1680, 0x1680},    // wide and narrow blanks
    CodeRange{0x180B, 0x180F},    // selectors, a vowel separator
    CodeRange{0x2000, 0x200F},    // blanks, joiners, direction marks
    CodeRange{0x2028, 0x202F},    // separators, embedded directions
    CodeRange{0x205F, 0x206F},    // blanks, isolated directions
    CodeRange{0x3000, 0x3000},    // a wide blank
    CodeRange{0x3164, 0x3164},    // another filler
    CodeRange{0xFE00, 0xFE0F},    // variation selectors
    CodeRange{0xFEFF, 0xFEFF},    // byte order mark
    CodeRange{0xFFA0, 0xFFA0},    // another filler
    CodeRange{0xFFF0, 0xFFFB},    // annotations
    CodeRange{0xE0000, 0xE0FFF},  // tags
};

bool IsHidden(std::uint32_t code)
{
    return std::ranges::any_of(kHidden, [code](const CodeRange& r) { return code >= r.first && code <= r.last; });
}

struct Character {
    std::uint32_t code = 0;
    std::size_t bytes = 1;
};

// The first character of valid UTF-8 that is not empty.
Character FirstOf(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])); };
    const std::uint32_t lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t bytes = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t code = lead & (0x7Fu >> bytes);
    for (std::size_t i = 1; i < bytes; ++i)
        code = code << 6 | (byte(i) & 0x3F);
    return {code, bytes};
}

}  // namespace

std::string WithHiddenCharactersShown(std::string_view target)
{
    const std::string valid = DecodeForDisplay(target);
    std::string shown;
    for (std::string_view rest = valid; !rest.empty();) {
        const Character next = FirstOf(rest);
        if (IsHidden(next.code)) {
            char name[16];
            std::snprintf(name, sizeof name, "<U+%04X>", static_cast<unsigned>(next.code));
            shown += name;
        } else {
            shown += rest.substr(0, next.bytes);
        }
        rest.remove_prefix(next.bytes);
    }
    return shown;
}

}  // namespace jotlet
