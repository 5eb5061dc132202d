// Import, export and report of 10,000 notes.
#pragma once

#include <string>
#include <vector>

#include "bench/contest.h"

namespace jotlet {

// The files are made in `folder`.
std::vector<Contest> MakeInterchangeContests(const std::string& folder);

}  // namespace jotlet
