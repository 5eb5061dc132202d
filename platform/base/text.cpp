#include "platform/base/text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace jotlet {

namespace {

constexpr unsigned char Byte(char c)
{
    return static_cast<unsigned char>(c);
}

// Length of the valid UTF-8 sequence that `text` begins with; 0 when it begins with something else.
std::size_t SequenceLength(std::string_view text)
{
    if (text.empty())
        return 0;
    const unsigned char lead = Byte(text[0]);
    if (lead < 0x80)
        return 1;
    std::size_t length = 0;
    // The second byte's range keeps out long forms, surrogates and what lies above U+10FFFF.
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0;
        if (lead == 0xED)
            high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (text.size() < length || Byte(text[1]) < low || Byte(text[1]) > high)
        return 0;
    for (std::size_t i = 2; i < length; ++i)
        if ((Byte(text[i]) & 0xC0) != 0x80)
            return 0;
    return length;
}

// Windows-1252 for 0x80 to 0x9F. Its five holes show as the replacement character.
constexpr std::array<char16_t, 32> kWindows1252High = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                                       0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

// For bytes from 0x80 on.
char32_t OfWindows1252(unsigned char byte)
{
    return byte >= 0xA0 ? byte : kWindows1252High[byte - 0x80];
}

void AppendWindows1252(std::string& out, unsigned char byte)
{
    const char32_t code = OfWindows1252(byte);
    if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    }
    out += static_cast<char>(0x80 | (code & 0x3F));
}

std::string WithLineBreaks(std::string_view text, std::string_view lineBreak)
{
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') {
            out += text[i];
            continue;
        }
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
        out += lineBreak;
    }
    return out;
}

}  // namespace

std::string_view FieldText(std::span<const char> field)
{
    const std::string_view whole(field.data(), field.size());
    return whole.substr(0, whole.find('\0'));
}

void StoreText(std::span<char> field, std::string_view text)
{
    if (field.empty())
        return;
    // The text may lie in the field itself, so it is moved before anything is cleared.
    const std::string_view kept = CutText(text.substr(0, text.find('\0')), field.size() - 1);
    if (!kept.empty())
        std::memmove(field.data(), kept.data(), kept.size());
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(kept.size()), field.end(), '\0');
}

std::string_view CutText(std::string_view text, std::size_t maxBytes)
{
    if (text.size() <= maxBytes)
        return text;
    // A sequence that the cut would split begins at most three bytes before it.
    for (std::size_t back = 1; back <= 3 && back <= maxBytes; ++back)
        if (SequenceLength(text.substr(maxBytes - back)) > back)
            return text.substr(0, maxBytes - back);
    return text.substr(0, maxBytes);
}

bool IsValidUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::size_t FirstCharacter(std::string_view text, char32_t& point)
{
    const std::size_t length = SequenceLength(text);
    if (length <= 1) {
        point = length == 1 ? Byte(text[0]) : OfWindows1252(Byte(text[0]));
        return 1;
    }
    point = Byte(text[0]) & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i)
        point = point << 6 | (Byte(text[i]) & 0x3F);
    return length;
}

std::string DecodeForDisplay(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length > 0)
            out += text.substr(0, length);
        else
            AppendWindows1252(out, Byte(text[0]));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return out;
}

std::string ToCrLf(std::string_view text)
{
    return WithLineBreaks(text, "\r\n");
}

std::string ToLf(std::string_view text)
{
    return WithLineBreaks(text, "\n");
}

std::string LowerAscii(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), FoldAscii);
    return out;
}

bool EqualsFolded(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && CompareFolded(a, b) == 0;
}

int CompareFolded(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i)
        if (const int order = Byte(FoldAscii(a[i])) - Byte(FoldAscii(b[i])); order != 0)
            return order;
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::string_view TrimBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return text.substr(0, 0);
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace jotlet
