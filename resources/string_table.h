#pragma once

#include <string_view>

namespace jotlet {

// The program's texts by number. A number without a text gives an empty view.
// The view stays valid for the life of the process and is followed by a terminating zero.
std::string_view LoadStringResource(int id);

}  // namespace jotlet
