// Where a letter leads in a list of notes.
#pragma once

#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

// The first result whose title begins with a byte not below the letter, in upper case for A to Z and signed, as the
// letter bar has it: the last one when none comes up to it, -1 for an empty result.
int FindTitleFrom(const TableFile& file, const RecordQuery& query, char letter);

// The first result whose title begins with the character, in either case and in every script; -1 when there is none.
int FindTitleWith(const TableFile& file, const RecordQuery& query, char32_t character);

}  // namespace jotlet
