// What people wait for when they work with many notes, as contests with SQLite.
#pragma once

#include <string>
#include <vector>

#include "bench/contest.h"

namespace jotlet {

// The contests work in files of `folder`, which must live as long as they do.
std::vector<Contest> MakeNotesContests(const std::string& folder);

}  // namespace jotlet
