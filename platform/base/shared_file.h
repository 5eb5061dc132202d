// A file that other computers write too, read and written so that what is seen is what the server has.
//
// On a disk of this machine these are plain reads and writes. On a drive whose client keeps a cache they go round it:
// reads use an uncached descriptor (or a new one, where the client caches behind each), sizes are asked of the server,
// and what was written is at the server after Settle. Under a lock that everybody takes, all of it is then the truth of
// that moment; without one a read is the truth of the moment it was answered in.
//
// Units:   offsets and sizes are bytes.
// Owns:    its descriptors. The locks are on Get(), and go with it.
// Threads: one; another SharedFile on the same file may be used by another thread.
// Errors:  nothing throws; false or -1, and errno.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/base/file_mount.h"
#include "platform/base/files.h"

namespace jotlet {

// What a caller knows when it asks for a size.
enum class SizeAsked {
    Anytime,
    AfterRead,  // it has just read from the file, in the same turn
};

class SharedFile {
public:
    SharedFile() = default;
    // Takes the handle over. Of a file on this machine nothing is asked but where it lies.
    explicit SharedFile(FileHandle handle) { Reset(handle); }
    ~SharedFile() { Reset(); }
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    void Reset(FileHandle next = kNoFile);
    // Gives the handle up without closing it.
    FileHandle Release();
    FileHandle Get() const { return handle.Get(); }
    explicit operator bool() const { return handle.Get() != kNoFile; }
    const Drive& GetDrive() const { return drive; }
    // The drive's locks turned out to stay on this machine.
    void LocksStayHere() { drive.locksTravel = false; }

    // Between these two nobody else writes the file, so that what was learned of it stays true: its size, where the
    // caller has just asked the server for it (else -1), and a descriptor that asked once.
    void BeginTurn(std::int64_t size);
    void EndTurn();

    // True when every byte was moved.
    bool Read(std::span<std::byte> buffer, std::int64_t offset) const;
    bool Write(std::span<const std::byte> buffer, std::int64_t offset);
    // Brings what was written to the server. True at once where it is there already.
    bool Settle();
    // -1 on a failure.
    std::int64_t Size(SizeAsked when = SizeAsked::Anytime) const;

    // The read and the size, once, of a handle that stays the caller's.
    static bool ReadFrom(FileHandle handle, std::span<std::byte> buffer, std::int64_t offset);
    static std::int64_t SizeOf(FileHandle handle);

private:
    bool ReadAround(std::span<std::byte> buffer, std::int64_t offset) const;
    // The descriptor that asks the server; opened when it is first needed. `opened` holds it where it is for one use.
    FileHandle Uncached(FileHandleOwner& opened) const;

    FileHandleOwner handle;
    mutable FileHandleOwner uncached;
    mutable bool hasUncached = true;  // false: the drive knows none, and pages are forgotten instead
    Drive drive;
    bool isUnsettled = false;
    bool isInTurn = false;
    mutable FileHandleOwner turnView;  // until the first write, behind which its cache may lie
    std::int64_t turnSize = -1;
    mutable std::int64_t lastSize = 0;
};

}  // namespace jotlet
