// Compares what the hosts' journals confirm with the bytes that lie at the server.
#pragma once

#include <string>
#include <vector>

namespace jotlet {

// What must hold besides the notes themselves.
enum class Strictness {
    AfterKills,  // a slot may be free and not counted, a record locked by the dead, addresses from before a repair
    Sound,       // counters equal the slots, nothing is locked
    Unmoved,     // and every note lies where it was put
};

// Prints one line: changes confirmed, then the faults by kind: lost, doubled, moved, put back, stuck, counters. The
// story of each of the first faults goes to standard error. 0 without a fault, 1 with one, 3 when the file is
// unreadable.
int Check(const std::string& file, Strictness strictness, const std::vector<std::string>& journals);

}  // namespace jotlet
