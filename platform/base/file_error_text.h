// What to tell a person about a file error: what is wrong and what to do, with the system's reason where there is one.
#pragma once

#include <string>

#include "platform/base/file_error.h"

namespace jotlet {

std::string FileErrorText(const FileError& error);
// " (No space left on device)", or nothing for 0.
std::string SystemReason(int systemError);

}  // namespace jotlet
