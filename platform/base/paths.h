// Where the program's files lie.
//
// Two folders matter. The program folder holds the executable and what ships beside it (Styles, Help, sounds, the
// settings file); a build or an update may replace anything there. The data folder takes everything that is written:
// $XDG_DATA_HOME/Jotlet (else ~/.local/share/Jotlet), or the program folder where a file named "portable" lies beside
// the program. Reading looks in the data folder first and falls back on the program folder.
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
// True with a file named "portable" beside the program, in a folder that can be written to.
bool IsPortable();
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

// How settings name a file: from the data folder where it lies in there, so that a data folder that is moved or copied
// uses its own files; else by its full path. And back.
std::string PathForSettings(const std::string& path);
std::string PathFromSettings(const std::string& stored);

// What stands behind the last '/'; the whole text when there is none.
std::string GetBareFileName(std::string_view path);

}  // namespace jotlet
