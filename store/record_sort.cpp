// Sorting a query's results: the keys are gathered once, from the mapping or with as few reads as there can be, then
// sorted in memory.
#include <algorithm>
#include <cstring>

#include "store/record_query.h"
#include "store/sort_keys.h"
#include "store/table_file.h"
#include "store/table_scan.h"

namespace jotlet {
namespace {

// Up to here one read a record is less than one read of the file.
constexpr std::size_t kFewResults = 100;

// The keys of `addresses`, which all lie in `run`. May run on a mapping.
void CopyKeys(const SlotRun& run, std::span<const RecordAddress> addresses, FieldRange field, std::byte* keys)
{
    constexpr std::size_t kDistance = 12;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        if (i + kDistance < addresses.size())
            __builtin_prefetch(run.first + (addresses[i + kDistance] - run.address) + field.offset);
        std::memcpy(keys + i * field.size, run.first + (addresses[i] - run.address) + field.offset, field.size);
    }
}

// Picks the keys out of one walk over the file. The results of a scan are in file order; those of a sort aren't, so the
// caller gives them in order.
bool ScanKeys(TableScan& scan, std::span<const RecordAddress> ordered, FieldRange field, std::byte* keys)
{
    std::size_t next = 0;
    std::size_t missed = 0;
    const auto pick = [&](const SlotRun& run) {
        // What lay in a chunk that could not be read.
        for (; next < ordered.size() && ordered[next] < run.address; ++next)
            ++missed;
        const std::size_t first = next;
        const std::int64_t end = run.address + run.count * run.recordSize;
        while (next < ordered.size() && ordered[next] < end)
            ++next;
        CopyKeys(run, ordered.subspan(first, next - first), field, keys + first * field.size);
        return next < ordered.size();
    };
    const bool allRead = scan.Run(
        0, scan.SlotCount(), [&] { next = missed = 0; }, pick);
    return allRead && missed == 0 && next == ordered.size();
}

}  // namespace

int RecordQuery::Sort(TableFile& file, std::uint32_t keyOffset, std::uint32_t keySize, FieldComparator comparator)
{
    sortFile = &file;
    sortKeyOffset = keyOffset;
    sortKeySize = keySize;
    sortComparator = comparator;
    if (seenStamp == kNoStamp)
        seenStamp = file.memory.IsFilled() ? file.memory.Stamp() : file.GetChangeStamp();
    return SortResults(file);
}

int RecordQuery::Resort()
{
    return sortFile && sortComparator ? SortResults(*sortFile) : 0;
}

AskedField RecordQuery::SortField() const
{
    const auto reads = static_cast<std::uint32_t>(BytesRead(sortComparator));
    return {{sortKeyOffset, std::max(sortKeySize, reads)}, sortComparator == CompareTitles};
}

int RecordQuery::SortResults(TableFile& file)
{
    if (!file.IsOpen() || !sortComparator || sortKeySize == 0)
        return 0;
    const AskedField asked = SortField();
    const FieldRange field = asked.range;
    if (!file.IsInRecord(field))
        return 0;
    const auto count = static_cast<std::size_t>(results ? resultCount : 0);
    if (count < 2)
        return 1;
    std::vector<RecordAddress> ordered(results.get(), results.get() + count);
    // In file order, so that equal keys end in file order and a walk meets them one after the other.
    if (!std::is_sorted(ordered.begin(), ordered.end()))
        std::sort(ordered.begin(), ordered.end());

    const auto isSlot = [&](RecordAddress address) {
        return (address - file.FirstRecordOffset()) % static_cast<RecordAddress>(file.RecordSize()) == 0;
    };
    if (ordered.front() < file.FirstRecordOffset() || !std::all_of(ordered.begin(), ordered.end(), isSlot))
        return 0;

    std::vector<std::byte> keys(count * field.size);
    bool allRead = true;
    // The keys as the query that found these results saw them.
    const bool isKept = file.memory.Keeps({&asked, 1});
    TableScan scan = isKept                ? TableScan::OfMemory(file)
                     : count < kFewResults ? TableScan(file)
                                           : TableScan(file, {&asked, 1});
    if (isKept || scan.IsMapped() || count >= kFewResults) {
        allRead = ScanKeys(scan, ordered, field, keys.data());
    } else {
        for (std::size_t i = 0; i < count; ++i)
            allRead = file.Load(std::span(keys).subspan(i * field.size, field.size),
                                std::int64_t{ordered[i]} + field.offset) &&
                      allRead;
    }
    SortByKeys(ordered, keys, field.size, sortComparator);
    std::copy(ordered.begin(), ordered.end(), results.get());
    return allRead ? 1 : 0;
}

}  // namespace jotlet
