// Rules for 8-bit text. Stored bytes are UTF-8; bytes that aren't are old Windows-1252 text, shown as such and kept as
// they are until the field is edited. A stored text sits in a field of fixed width, ends at the first zero byte or at
// the field's end, and never ends inside a character. Nothing here allocates more than a small multiple of its input.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace jotlet {

// The text in a field: up to the first zero byte or the whole width. Points into `field`.
std::string_view FieldText(std::span<const char> field);

// Writes `text` up to its first zero byte into `field`, cut at the last whole character that leaves room for the
// terminator, and zero-fills what is behind it. An empty field stays as it is.
void StoreText(std::span<char> field, std::string_view text);

// The longest beginning of `text` of at most `maxBytes` bytes that does not end inside a UTF-8 character. Bytes that
// are no UTF-8 count as characters of their own.
std::string_view CutText(std::string_view text, std::size_t maxBytes);

// Whole, shortest-form UTF-8 sequences up to U+10FFFF without surrogates.
bool IsValidUtf8(std::string_view text);

// The character with which `text`, which isn't empty, begins on the screen. The number of bytes that it takes.
std::size_t FirstCharacter(std::string_view text, char32_t& point);

// Valid UTF-8 for the screen: valid sequences as they are, every other byte as Windows-1252.
std::string DecodeForDisplay(std::string_view text);

// Each line break (CR LF, or a CR or LF alone) as CR LF, and as LF.
std::string ToCrLf(std::string_view text);
std::string ToLf(std::string_view text);

// ASCII only; the bytes of other characters stay as they are.
constexpr char FoldAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
std::string LowerAscii(std::string_view text);
bool EqualsFolded(std::string_view a, std::string_view b);
// Below 0, 0 or above 0: order of the folded bytes, taken as unsigned.
int CompareFolded(std::string_view a, std::string_view b);

// Without the blanks and tabs at both ends. Points into `text`.
std::string_view TrimBlanks(std::string_view text);

}  // namespace jotlet
