// Locks on single bytes of a file, taken around work that several running copies share.
//
// They are record locks owned by the open file description (F_OFD_SETLK). So a second opening of the same file in this
// process is a stranger like any other process, closing one handle never drops the lock of another, and whatever ends
// the process, a kill included, gives them back. They are advisory: only who asks is kept out. They travel over NFS
// and SMB unless the mount keeps them local, which Drive::locksTravel tells.
//
// The bytes lie far behind any data, so that no reader or writer ever meets them, also where locks are mandatory.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/base/files.h"

namespace jotlet {

// Held shared by every opening, exclusively by who must be alone with the file.
inline constexpr std::int64_t kPresentByte = std::int64_t{1} << 40;
// Held exclusively for the moment of a read-change-write.
inline constexpr std::int64_t kMutationByte = kPresentByte + 1;

// Held exclusively by who edits the record: this byte and the record's address.
inline constexpr std::int64_t kFirstRecordByte = std::int64_t{1} << 41;
// Held exclusively by each copy that has entered itself in the list of copies: this byte and its place there.
inline constexpr std::int64_t kFirstCopyByte = std::int64_t{1} << 42;

// How long a read-change-write waits for its turn before it fails. Turns last microseconds, so a holder that is slower
// than this is stopped, or a server doesn't answer.
inline constexpr int kMutationPatienceMs = 10'000;

enum class LockOutcome {
    Taken,
    Refused,      // somebody else holds it, for longer than the caller would wait
    Unsupported,  // the file system has no such locks; work goes on as if it were alone
    Failed,       // the call failed (errno), so nobody knows; the work must not be done
};

// Holds a lock from Take to the end of its own life; then unlocks.
// Takes `byte` of the file for as long as the handle is open, asking again and again for up to `patienceMs` (0: once).
LockOutcome LockForHandleLife(FileHandle handle, std::int64_t byte, bool exclusive, int patienceMs);

class FileLock {
public:
    FileLock() = default;
    FileLock(FileLock&& other) noexcept : handle(std::exchange(other.handle, kNoFile)), byte(other.byte) {}
    FileLock& operator=(FileLock&&) = delete;
    ~FileLock() { Release(); }

    // Asks again and again for up to `patienceMs`; 0 asks once. Gives back what it held before.
    LockOutcome TakeExclusive(FileHandle handle, std::int64_t byte, int patienceMs);
    void Release();

private:
    FileHandle handle = kNoFile;  // not owned
    std::int64_t byte = 0;
};

}  // namespace jotlet
