#pragma once

#include <cstdint>

namespace jotlet {

// Byte offset of a record's slot from the start of its table file. Stays that record's for as long as somebody has the
// file open: slots never move, only compaction moves them. After a delete and a reuse of the slot it holds another
// record, so who keeps an address across a refresh compares `uniqueId`. Stored nowhere on disk. 0 is no address.
using RecordAddress = std::int32_t;

// A record as its user chose it, so that a command never meets another one that has taken its slot since.
struct ChosenRecord {
    RecordAddress address = 0;
    std::uint64_t id = 0;
};

}  // namespace jotlet
