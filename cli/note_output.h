// A note as jotctl shows it: JSON for scripts, plain text for people.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "notes/model/note_record.h"
#include "store/record_address.h"

namespace jotlet {

// The stable form. Texts are valid UTF-8, their line breaks as stored (CR LF); a date or time that does not exist is
// null.
nlohmann::ordered_json NoteToJson(const NoteRecord& note, RecordAddress address);

// One line: id, date, colour, category and title, with tabs between them.
std::string NoteLine(const NoteRecord& note);
// All that the note holds, a line a value, then its text.
std::string NotePage(const NoteRecord& note);

// The JSON text with a line end, whatever bytes the values hold.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace jotlet
