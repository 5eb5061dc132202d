// A read-only view of a file's bytes without copying them, for scans that need little of much.
//
// It shows what other processes write at once, so no byte may be trusted to stay: read a length or a terminator once,
// and stay within bounds that were checked. When the file shrinks or its disk fails under the view, a touch would end
// the process with SIGBUS; so bytes are touched only inside Guarded, which turns that into `false`.
//
// Only files on this machine can be mapped (FileSystem::IsLocal); elsewhere Cover refuses, and the caller reads.
// Threads: one thread at a time for each object; Guarded may run in several threads at once on different objects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "platform/base/files.h"

namespace jotlet {

class FileMapping {
public:
    FileMapping() = default;
    ~FileMapping() { Drop(); }
    FileMapping(const FileMapping&) = delete;
    FileMapping& operator=(const FileMapping&) = delete;

    // Makes the view show the first `size` bytes of the file, which must be its present size or less. False when the
    // file can't be mapped. Cheap when the view has that size already.
    bool Cover(FileHandle handle, std::size_t size);
    void Drop();
    // Takes the pages out of this process's memory; the view stays, and its next touch brings them back from the
    // system's cache.
    void LetGoOfPages() const;
    // Makes what was written to these bytes of the file, by whatever handle, durable. Costs less than a flush of the
    // file when other parts of it have changed too. False when the view doesn't show them, or they may not be on the
    // disk.
    bool FlushPart(std::size_t offset, std::size_t size) const;
    std::span<const std::byte> Bytes() const { return {start, length}; }

    // Runs `work` (called with no arguments) and gives true; false when a byte of this view could not be read, in
    // which case `work` was left at that point. It is left by a jump: `work` must own nothing while it touches the
    // view (no growing containers, no locks, no objects with destructors).
    template <typename Work>
    bool Guarded(Work&& work) const
    {
        using Plain = std::remove_reference_t<Work>;
        return RunGuarded([](void* context) { (*static_cast<Plain*>(context))(); }, &work);
    }

private:
    bool RunGuarded(void (*work)(void*), void* context) const;

    const std::byte* start = nullptr;
    std::size_t length = 0;
};

}  // namespace jotlet
