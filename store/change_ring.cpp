#include "store/change_ring.h"

#include <algorithm>

namespace jotlet {
namespace {

std::uint32_t CheckOf(const ChangeRing& ring)
{
    constexpr std::uint32_t kBasis = 2166136261u;
    constexpr std::uint32_t kPrime = 16777619u;
    std::uint32_t check = kBasis;
    for (const std::byte byte : BytesOf(ring).subspan(sizeof ring.check))
        check = (check ^ static_cast<std::uint32_t>(byte)) * kPrime;
    return check;
}

bool IsValid(const TableHeader& header)
{
    const ChangeRing& ring = header.lastChanges;
    return ring.newest == header.changeStamp && ring.count <= kRingRoom && ring.check == CheckOf(ring);
}

}  // namespace

bool SlotsChangedSince(const TableHeader& header, std::uint64_t seen, std::vector<RecordAddress>& slots)
{
    const ChangeRing& ring = header.lastChanges;
    if (header.changeStamp < seen)
        return false;
    const std::uint64_t changes = header.changeStamp - seen;
    const bool isRing = IsValid(header);
    if (changes > 0 && (!isRing || changes > ring.count))
        return false;
    // The members are packed: values, not references to them.
    for (std::uint64_t i = 0; i < changes; ++i)
        slots.push_back(RecordAddress{ring.slots[(ring.newest - i) % kRingRoom]});
    if (isRing && ring.pending != 0)
        slots.push_back(RecordAddress{ring.pending});
    return true;
}

void BeginRingAnew(TableHeader& header)
{
    header.lastChanges = {};
    header.lastChanges.newest = header.changeStamp;
    header.lastChanges.check = CheckOf(header.lastChanges);
}

namespace {

void StartFromSound(TableHeader& header)
{
    const bool isRing = IsValid(header);
    // Whoever left a change half done is gone, and it counts as one: nobody may pass it over.
    if (isRing && header.lastChanges.pending != 0)
        ++header.changeStamp;
    else if (isRing)
        return;
    BeginRingAnew(header);
}

}  // namespace

void BeginRingChange(TableHeader& header, RecordAddress slot)
{
    StartFromSound(header);
    header.lastChanges.pending = slot;
    header.lastChanges.check = CheckOf(header.lastChanges);
}

void TellRingChange(TableHeader& header, RecordAddress slot)
{
    ChangeRing& ring = header.lastChanges;
    if (ring.pending != slot)
        StartFromSound(header);
    ring.newest = ++header.changeStamp;
    ring.slots[ring.newest % kRingRoom] = slot;
    ring.count = std::min<std::uint32_t>(ring.count + 1, kRingRoom);
    ring.pending = 0;
    ring.check = CheckOf(ring);
}

}  // namespace jotlet
