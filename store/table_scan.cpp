#include "store/table_scan.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace jotlet {
namespace {

constexpr std::int64_t kSlotsPerRead = 100;
constexpr std::size_t kVisitBatch = 128;
constexpr std::size_t kActiveAt = offsetof(RecordPrefix, active);
constexpr std::size_t kLockedAt = offsetof(RecordPrefix, locked);
constexpr std::size_t kConfidentialAt = offsetof(RecordPrefix, confidential);

}  // namespace

TableScan::TableScan(const TableFile& file) : file(file)
{
    LookAtFile();
}

TableScan::TableScan(const TableFile& file, Remembered)
    : file(file), ready(true), remembered(true), slotCount(file.memory.SlotCount())
{
}

TableScan::TableScan(const TableFile& file, std::span<const AskedField> fields) : file(file)
{
    TableHeader now;
    if (!file.Recall(fields, TableFile::WhenUnknown::ReadAll, now)) {
        LookAtFile();
        return;
    }
    header = now;
    ready = remembered = true;
    slotCount = file.memory.SlotCount();
}

void TableScan::LookAtFile()
{
    if (!file.IsOpen())
        return;
    const std::int64_t size = file.file.Size();
    if (size < file.FirstRecordOffset())
        return;
    // What lies beyond the reach of addresses can't be asked for and isn't looked at.
    const std::int64_t reach = std::min<std::int64_t>(size, std::numeric_limits<RecordAddress>::max());
    slotCount = (reach - file.FirstRecordOffset()) / file.recordSize;
    cutTailBytes = (size - file.FirstRecordOffset()) % file.recordSize;
    mapped = slotCount > 0 &&
             file.mapping.Cover(file.file.Get(),
                                static_cast<std::size_t>(file.FirstRecordOffset() + slotCount * file.recordSize));
    ready = true;
}

std::int64_t TableScan::IndexOf(RecordAddress address) const
{
    return (address - file.FirstRecordOffset()) / static_cast<std::int64_t>(file.recordSize);
}

void TableScan::StopMapping()
{
    mapped = false;
    file.mapping.Drop();
}

SlotRun TableScan::MappedRun(std::int64_t from, std::int64_t to) const
{
    const std::int64_t offset = file.FirstRecordOffset() + from * file.recordSize;
    return {file.mapping.Bytes().data() + offset, std::min(to, slotCount) - from, static_cast<RecordAddress>(offset),
            file.recordSize};
}

bool TableScan::ReadRun(std::int64_t from, std::int64_t to, SlotRun& run)
{
    // What is called on the way may have made the memory forget.
    remembered = remembered && file.memory.IsFilled() && from < file.memory.SlotCount();
    if (remembered) {
        chunk.resize(file.recordSize);
        run = {chunk.data(), 1, static_cast<RecordAddress>(file.FirstRecordOffset() + from * file.recordSize),
               file.recordSize};
        file.memory.CopyTo(from, chunk);
        return true;
    }
    chunk.resize(static_cast<std::size_t>(kSlotsPerRead * file.recordSize));
    const std::int64_t offset = file.FirstRecordOffset() + from * file.recordSize;
    run = {chunk.data(), std::min(kSlotsPerRead, to - from), static_cast<RecordAddress>(offset), file.recordSize};
    return file.Load(std::span(chunk).first(static_cast<std::size_t>(run.count * file.recordSize)), offset);
}

int TableFile::ForEachRecord(std::span<const FieldRange> fields,
                             const std::function<bool(RecordAddress, std::span<const std::byte>)>& visit,
                             ScanScope scope) const
{
    if (!IsOpen())
        return 0;
    std::size_t width = 0;
    for (const FieldRange& field : fields) {
        if (!IsInRecord(field))
            return 0;
        width += field.size;
    }
    const bool showConfidential = scope == ScanScope::All || SeesConfidential(GetRole());
    std::vector<AskedField> asked;
    for (const FieldRange& field : fields)
        asked.push_back({field});
    TableScan scan(*this, asked);
    if (!scan.IsReady())
        return 0;
    // Copied in batches, so that `visit` never runs while the view is being touched.
    std::vector<std::byte> copies(width * kVisitBatch);
    std::vector<RecordAddress> addresses(kVisitBatch);
    bool allRead = true;
    for (std::int64_t from = 0; from < scan.SlotCount(); from += kVisitBatch) {
        std::size_t count = 0;
        const std::int64_t to = std::min<std::int64_t>(from + kVisitBatch, scan.SlotCount());
        const auto gather = [&](const SlotRun& run) {
            for (std::int64_t i = 0; i < run.count; ++i) {
                const std::byte* slot = run.Slot(i);
                if (slot[kActiveAt] != std::byte{1} || (slot[kConfidentialAt] != std::byte{0} && !showConfidential))
                    continue;
                std::byte* copy = copies.data() + count * width;
                for (const FieldRange& field : fields) {
                    std::memcpy(copy, slot + field.offset, field.size);
                    copy += field.size;
                }
                addresses[count++] = run.Address(i);
            }
            return true;
        };
        allRead = scan.Run(
                      from, to, [&] { count = 0; }, gather) &&
                  allRead;
        for (std::size_t i = 0; i < count; ++i)
            if (!visit(addresses[i], std::span(copies).subspan(i * width, width)))
                return 1;
    }
    return allRead ? 1 : 0;
}

int TableFile::DescribeSlots(SlotCounts& out) const
{
    TableScan scan(*this);
    SlotCounts counts;
    counts.slots = scan.SlotCount();
    counts.cutTailBytes = scan.CutTailBytes();
    const auto count = [&](const SlotRun& run) {
        for (std::int64_t i = 0; i < run.count; ++i) {
            const std::byte* slot = run.Slot(i);
            const bool live = slot[kActiveAt] == std::byte{1};
            counts.live += live;
            counts.locked += live && slot[kLockedAt] == std::byte{1};
        }
        return true;
    };
    if (!scan.Run(
            0, scan.SlotCount(), [&] { counts.live = counts.locked = 0; }, count))
        return 0;
    out = counts;
    return 1;
}

}  // namespace jotlet
