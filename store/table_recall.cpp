// How TableFile keeps its memory of a drive's file in step with the file.
#include <algorithm>

#include "store/change_ring.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr std::int64_t kSlotsPerRead = 100;

}  // namespace

void TableFile::ExpectQueriesFor(std::span<const FieldRange> fields)
{
    for (const FieldRange& field : fields)
        if (const AskedField asked{field}; IsOpen() && !IsOnThisMachine() && IsInRecord(field))
            memory.Want({&asked, 1});
}

bool TableFile::Recall(std::span<const AskedField> fields, WhenUnknown then, TableHeader& header) const
{
    if (!IsOpen() || IsOnThisMachine())
        return false;
    const bool isKept = memory.Keeps(fields);
    const auto isInRecord = [this](const AskedField& field) { return IsInRecord(field.range); };
    if (!std::ranges::all_of(fields, isInRecord))
        return false;
    if (!isKept && (then == WhenUnknown::GiveUp || !memory.Want(fields)))
        return false;
    // The header before all else: what changes from now on has a later stamp.
    if (!LoadHeader(header))
        return false;
    const std::int64_t behindFront = file.Size(SizeAsked::AfterRead) - FirstRecordOffset();
    if (behindFront < 0)
        return false;
    const std::int64_t slotCount = behindFront / recordSize;
    if (isKept && RememberChanges(header, slotCount))
        return true;
    if (then == WhenUnknown::GiveUp || !memory.Begin(slotCount))
        return false;
    if (!ReadSlotsIntoMemory(0, slotCount)) {
        memory.Forget();
        return false;
    }
    memory.StandFor(header.changeStamp);
    return true;
}

// False when all has to be read.
bool TableFile::RememberChanges(const TableHeader& header, std::int64_t slotCount) const
{
    std::vector<RecordAddress> changed;
    if (!SlotsChangedSince(header, memory.Stamp(), changed))
        return false;
    std::vector<std::int64_t> slots;
    for (const RecordAddress address : changed) {
        const std::int64_t inside = std::int64_t{address} - FirstRecordOffset();
        if (inside < 0 || inside % recordSize != 0)
            return false;
        slots.push_back(inside / recordSize);
    }
    for (std::int64_t slot = memory.SlotCount(); slot < slotCount; ++slot)
        slots.push_back(slot);
    memory.Resize(slotCount);
    std::ranges::sort(slots);
    slots.erase(std::unique(slots.begin(), slots.end()), slots.end());
    // A slot that was added and cut off again is none.
    std::erase_if(slots, [&](std::int64_t slot) { return slot >= slotCount; });
    for (std::size_t first = 0; first < slots.size();) {
        std::size_t end = first + 1;
        while (end < slots.size() && slots[end] == slots[end - 1] + 1)
            ++end;
        if (!ReadSlotsIntoMemory(slots[first], slots[end - 1] + 1)) {
            memory.Forget();
            return false;
        }
        first = end;
    }
    memory.StandFor(header.changeStamp);
    return true;
}

bool TableFile::ReadSlotsIntoMemory(std::int64_t from, std::int64_t to) const
{
    std::vector<std::byte> chunk(static_cast<std::size_t>(std::min(kSlotsPerRead, to - from) * recordSize));
    for (std::int64_t at = from; at < to; at += kSlotsPerRead) {
        const std::int64_t count = std::min(kSlotsPerRead, to - at);
        const std::int64_t offset = FirstRecordOffset() + at * recordSize;
        const auto read = std::span(chunk).first(static_cast<std::size_t>(count * recordSize));
        if (!Load(read, offset))
            return false;
        for (std::int64_t i = 0; i < count; ++i)
            if (!memory.Put(at + i, static_cast<RecordAddress>(offset + i * recordSize),
                            read.subspan(static_cast<std::size_t>(i * recordSize), recordSize)))
                return false;
    }
    return true;
}

}  // namespace jotlet
