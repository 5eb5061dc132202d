// What an alarm or an attachment starts, as a person must see it before it starts.
#pragma once

#include <string>
#include <string_view>

namespace jotlet {

// Valid UTF-8 in which everything has a visible form: line breaks and other control characters, and the characters that
// turn, join or hide their neighbours, stand as "<U+202E>". Two targets that start different things never look the same
// for want of a glyph.
std::string WithHiddenCharactersShown(std::string_view target);

}  // namespace jotlet
