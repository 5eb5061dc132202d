// The same drive, the same moment, another program.
#pragma once

#include <string>

namespace jotlet {

// 10,000 notes in a note file and in a SQLite database (rollback journal, synchronous=FULL) in the folder `server`,
// which this host sees at `mount` and another at `foreignMount`. Prints two ratios of medians, Jotlet to SQLite: adding
// a note, and after a foreign change a refresh to reading all titles in their order. "- -" where SQLite cannot do it.
int Rival(const std::string& server, const std::string& mount, const std::string& foreignMount,
          const std::string& file);

}  // namespace jotlet
