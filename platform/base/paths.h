// Where the program's files lie.
//
// Two folders matter. The program folder holds the executable and what ships beside it (Styles, Help, sounds, the
// settings file). The data folder takes everything that is written: it is the program folder itself where that can be
// written to, and $XDG_DATA_HOME/Jotlet (else ~/.local/share/Jotlet) where it cannot, as after an installation by a
// package (a program under /usr never writes there, not even as root). Reading looks in the data folder first and falls
// back on the program folder.
//
// Paths are UTF-8 with '/', folders without a trailing one.
// Nothing here changes the current folder of the process: a path that the user gave on the command line stays right.
#pragma once

#include <string>
#include <string_view>

#include "platform/base/profile.h"

namespace jotlet {

// The executable's full path; asked of the system once.
const std::string& GetProgramPath();
// Makes everything below act as if the executable stood at `path`, and asks anew whether its folder can be written to.
// An empty path goes back to the real one. For tests, and for a program run through an interpreter.
void SetProgramPath(std::string path);

std::string GetProgramFolder();
// Made on demand, with mode 0700, where it isn't the program folder.
std::string GetDataFolder();

// For reading: the file in the data folder if it is there, else `<program folder>/<fileName>`, there or not.
std::string GetProgramFilePath(std::string_view fileName);
// For writing: `<data folder>/<fileName>`.
std::string GetDataFilePath(std::string_view fileName);

// Settings of this module alone: the program's path with its extension replaced by ".ini".
IniFile GetModuleIniPath();
// Settings that all programs of the suite share.
IniFile GetSuiteIniPath(std::string_view fileName = "Pinwell.ini");

// Makes `<data folder>/Works` when it is missing. 1: it is there, 0: it cannot be made.
int EnsureWorksFolder();
// The path, and the result of EnsureWorksFolder.
int GetWorksFolder(std::string& path);
// 1 and `<data folder>/Works/<fileName>`, or 0 and an empty path when the folder cannot be made.
int GetWorksFilePath(std::string& path, std::string_view fileName);
// `<program folder>/Help/<fileName>`, or the one in the data folder if it is there.
std::string GetHelpFilePath(std::string_view fileName);

// What stands behind the last '/'; the whole text when there is none.
std::string GetBareFileName(std::string_view path);

}  // namespace jotlet
