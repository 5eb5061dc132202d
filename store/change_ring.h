// What the header tells of the last changes, so that a copy that knows the file as it was need not read all of it
// again.
//
// Who changes a table on a drive writes the ring with the stamp, in one write. Who doesn't (an older program, a copy on
// the server's own disk) leaves a ring whose newest stamp is not the file's: it tells nothing then, and the next who
// writes one begins it anew. A slot whose bytes change before the stamp does is named as pending first, so that one
// left half changed by a kill is told, too; a slot behind the last one needs no telling, since the file has grown.
//
// Units: slots are record addresses.
#pragma once

#include <vector>

#include "store/record_address.h"
#include "store/table_schema.h"

namespace jotlet {

// The slots that differ from what they held when the stamp was `seen`, perhaps one of them twice. False when the ring
// doesn't reach back as far as that.
bool SlotsChangedSince(const TableHeader& header, std::uint64_t seen, std::vector<RecordAddress>& slots);

// Names the slot that is going to be changed.
void BeginRingChange(TableHeader& header, RecordAddress slot);
// Raises the stamp by 1 for a change of the slot, and tells it.
void TellRingChange(TableHeader& header, RecordAddress slot);
// Tells nothing of what was before the present stamp.
void BeginRingAnew(TableHeader& header);

}  // namespace jotlet
