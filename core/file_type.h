// Makes the program and its note files known to the user's desktop: a MIME type, a desktop entry and two icons under
// $XDG_DATA_HOME (~/.local/share), so that a double click on a note file in a file manager opens it here.
//
// Errors: none are told; a user whose folders cannot be written just gets no association.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jotlet {

// A file that the desktop is to have.
struct DesktopFile {
    std::string path;
    std::string contents;
};

// `path` as the first word of an Exec line: quoted, and with '%' doubled, whatever it holds.
std::string ExecWord(std::string_view path);
// `dataHome`: where the files go; `program`: the executable's full path. Empty when the program lacks its templates.
std::vector<DesktopFile> DesktopFiles(std::string_view dataHome, std::string_view program, std::string_view extension);
// Replaces, in one step each, the files that differ from what is on the disk. The number written.
int WriteDesktopFiles(const std::vector<DesktopFile>& files);

// All of it, for this program and user. Tells the desktop's own indexes when something changed. Always 1.
int RegisterFileType(std::string_view extension);

}  // namespace jotlet
