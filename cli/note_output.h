// A note as jotctl shows it to people. For scripts: json_output.h.
#pragma once

#include <string>

#include "notes/model/note_record.h"

namespace jotlet {

// One line: id, date, colour, category and title, with tabs between them.
std::string NoteLine(const NoteRecord& note);
// All that the note holds, a line a value, then its text.
std::string NotePage(const NoteRecord& note);

}  // namespace jotlet
