// Walks over the slots of a table: from a mapping where the file is on this machine; from the table's memory on a
// drive, when the fields that are wanted of it can be kept; else by reading 100 slots at a time. For the store's own
// use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <type_traits>

#include "store/table_file.h"

namespace jotlet {

// Neighbouring whole slots in memory.
struct SlotRun {
    const std::byte* first = nullptr;
    std::int64_t count = 0;
    RecordAddress address = 0;  // of the first slot
    std::uint32_t recordSize = 0;

    const std::byte* Slot(std::int64_t index) const { return first + index * recordSize; }
    RecordAddress Address(std::int64_t index) const { return static_cast<RecordAddress>(address + index * recordSize); }
    // Fetches bytes of a slot further on into the cache, while this one is being looked at.
    void FetchAhead(std::int64_t index, std::uint32_t offset, std::uint32_t size = 1) const
    {
        if (index + kDistance >= count)
            return;
        const std::byte* bytes = Slot(index + kDistance) + offset;
        for (std::uint32_t at = 0; at < size; at += kCacheLine)
            __builtin_prefetch(bytes + at);
    }

private:
    static constexpr std::int64_t kDistance = 6;
    static constexpr std::uint32_t kCacheLine = 64;
};

class TableScan {
public:
    // Looks at the size of the file once: slots that are added later don't take part.
    explicit TableScan(const TableFile& file);
    // Delivers no more than these fields and the record's prefix.
    TableScan(const TableFile& file, std::span<const AskedField> fields);
    // What the memory holds, without asking whether it has changed. Only of one that is filled.
    static TableScan OfMemory(const TableFile& file) { return TableScan(file, Remembered{}); }

    // False when the size can't be had.
    bool IsReady() const { return ready; }
    bool IsMapped() const { return mapped; }
    // The table's header as it was asked for, where one was.
    const TableHeader* Header() const { return header ? &*header : nullptr; }
    std::int64_t SlotCount() const { return slotCount; }
    std::int64_t CutTailBytes() const { return cutTailBytes; }
    std::int64_t IndexOf(RecordAddress address) const;

    // Calls `visit(const SlotRun&)` for the slots from `from` up to `to`, until it gives false. False when something
    // could not be read; what could be read has been visited.
    //
    // `visit` may be left by a jump and then be called again from the start, after `restart()`: it must own nothing
    // and grow nothing (FileMapping::Guarded).
    template <typename Restart, typename Visit>
    bool Run(std::int64_t from, std::int64_t to, Restart&& restart, Visit&& visit)
    {
        if (!ready)
            return false;
        if (from >= to)
            return true;
        SlotRun run;
        if (mapped) {
            run = MappedRun(from, to);
            if (file.mapping.Guarded([&] { visit(static_cast<const SlotRun&>(run)); }))
                return true;
            StopMapping();
            restart();
        }
        bool allRead = true;
        for (std::int64_t at = from; at < to; at += run.count) {
            if (!ReadRun(at, to, run)) {
                allRead = false;
                continue;
            }
            if (!visit(static_cast<const SlotRun&>(run)))
                break;
        }
        return allRead;
    }

    // Reads instead of mapping from here on, so that `visit` may do what it likes.
    void StopMapping();

private:
    struct Remembered {};
    TableScan(const TableFile& file, Remembered);
    void LookAtFile();
    SlotRun MappedRun(std::int64_t from, std::int64_t to) const;
    // The next chunk. On false `run.count` still tells how many slots to pass over.
    bool ReadRun(std::int64_t from, std::int64_t to, SlotRun& run);

    const TableFile& file;
    bool ready = false;
    bool mapped = false;
    bool remembered = false;
    std::optional<TableHeader> header;
    std::int64_t slotCount = 0;
    std::int64_t cutTailBytes = 0;
    std::vector<std::byte> chunk;
};

}  // namespace jotlet
