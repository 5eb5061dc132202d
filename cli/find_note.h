// One note by its id, and the complaints about ids and dates that several commands share.
#pragma once

#include <cstdint>
#include <string_view>

#include "cli/outcome.h"
#include "notes/model/note_record.h"
#include "store/table_file.h"

namespace jotlet {

// Reads the note with this id, as far as the role sees it, and gives its address. Refused, with the reason told, when
// there is none.
ExitCode FindNote(TableFile& table, std::uint64_t id, NoteRecord& note, RecordAddress& address);

ExitCode FailNotFound(std::string_view path, std::uint64_t id);
ExitCode FailId(std::string_view text);
ExitCode FailDate(std::string_view option, std::string_view text);

}  // namespace jotlet
