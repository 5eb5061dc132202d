// What the user reads when a file could not be used.
#pragma once

#include <string>
#include <string_view>

#include "store/table_file.h"

namespace jotlet {

// "Program can't use "%s".\r\nAccess has been denied"
std::string AccessDeniedText(std::string_view path);
std::string OpenFailureText(std::string_view path, OpenFailure failure, const FileError& error);
// A file that may only be read although its password says more.
std::string ReadOnlyText(std::string_view path, const FileError& reason);
// `doing` completes "Program can't ... "%s".", such as "save".
std::string CannotText(std::string_view path, std::string_view doing, const FileError& error);

}  // namespace jotlet
