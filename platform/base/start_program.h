// Programs started beside this one.
#pragma once

#include <string>
#include <vector>

namespace jotlet {

// Starts a program from the search path without waiting for it, and takes notice of its end whenever that comes, so
// that no dead process stays behind. False when there is no such program.
bool StartProgram(std::vector<std::string> words);

}  // namespace jotlet
