// Who has the open note file: a sentence for each copy of the program, for the File menu.
#pragma once

#include <string>

#include "store/table_file.h"

namespace jotlet {

// The other copies and this one: user, computer, since when, and the titles of the notes being edited, as far as the
// role of `file` may see them. Reads a file that may lie on a slow drive.
std::string WhoHasFileText(const TableFile& file);

}  // namespace jotlet
