// Files by handle, with the sharing rules that several running copies rely on.
//
// Every handle from FileOpen or FileCreate holds a lock on one "present" byte far behind the data (file_lock.h): shared
// for a shared opening, exclusive for one without sharing. It goes with the handle, and with the process, whatever ends
// it. So "does anybody have this file open" has an answer, also after a crash and from another computer.
//
// Only regular files are opened; a folder, pipe or device is refused at once. Handles aren't inherited by programs that
// are started. A handle always belongs to the file that the path names at the end of the call: when somebody replaces
// the file meanwhile (compaction, an atomic save), the new one is opened.
//
// Units:   sizes and offsets are bytes, 64 bits wide.
// Owns:    the caller owns a handle until FileClose; FileHandleOwner does that by itself.
// Threads: any, one handle in one thread at a time.
// Errors:  nothing throws; -1 (or what the operation tells) and, where asked for, a FileError.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "platform/base/file_error.h"

namespace jotlet {

using FileHandle = int;
inline constexpr FileHandle kNoFile = -1;

enum class FileAccess { Read, ReadWrite };
enum class FileSharing { Shared, None };
enum class SeekOrigin { Begin, Current, End };

// How long an opening waits for somebody who holds the file without sharing (a compaction, a probe) before it gives up
// as Busy.
inline constexpr int kOpenPatienceMs = 10'000;

// Creates the file, or empties the one that is there; read and write access, no sharing. Fails, and leaves the old
// contents alone, when anybody has it open. The new file's mode is 0666 less the umask. Not yet durable: see
// FileFlush and FlushFolderOf.
FileHandle FileCreate(const std::string& path, FileError* error = nullptr);

// Opens a file that exists. Waits up to `patienceMs` for an opening that excludes this one.
FileHandle FileOpen(const std::string& path, FileAccess access = FileAccess::ReadWrite,
                    FileSharing sharing = FileSharing::Shared, FileError* error = nullptr,
                    int patienceMs = kOpenPatienceMs);

// Opens a file that exists for reading and writing, without sharing and without waiting. `proven` is false when locks
// stay on this machine, so that another computer may have the file open all the same. -1 (Busy) also where the file
// system has no locks at all.
FileHandle FileOpenAlone(const std::string& path, bool& proven, FileError* error = nullptr);

// Closes and gives the locks back. Nothing with kNoFile.
void FileClose(FileHandle handle);

// Bytes moved (fewer at the end of the file, or when the disk is full), or -1. At the handle's own position.
std::int64_t FileRead(FileHandle handle, void* buffer, std::size_t count);
std::int64_t FileWrite(FileHandle handle, const void* buffer, std::size_t count);
// The same at an offset, leaving the handle's position alone. True when every byte was moved.
bool FileReadWhole(FileHandle handle, std::span<std::byte> buffer, std::int64_t offset);
bool FileWriteWhole(FileHandle handle, std::span<const std::byte> buffer, std::int64_t offset);

// The new position, or -1.
std::int64_t FileSeek(FileHandle handle, std::int64_t offset, SeekOrigin origin);
// The size, or -1.
std::int64_t FileSize(FileHandle handle);
// Everything written so far is on the disk when this gives 1. 0: it may not be.
int FileFlush(FileHandle handle);
// Makes the creation, renaming or removal of `path` durable. 1 or 0.
int FlushFolderOf(const std::string& path);

// 1 when a directory entry matches the path, else -1 (not 0).
int FileExists(const std::string& path);
// 0 when the file could be opened for reading and writing by this caller alone right now, else 1: somebody has it
// open, it doesn't exist, it may not be written, or nobody can tell because locks don't leave this machine. Waits for
// nobody. A file open in this very process is busy too.
int FileIsBusy(const std::string& path);

// Closes its handle at the end of its life.
class FileHandleOwner {
public:
    FileHandleOwner() = default;
    explicit FileHandleOwner(FileHandle handle) : handle(handle) {}
    FileHandleOwner(FileHandleOwner&& other) noexcept : handle(other.Release()) {}
    FileHandleOwner& operator=(FileHandleOwner&& other) noexcept
    {
        Reset(other.Release());
        return *this;
    }
    ~FileHandleOwner() { Reset(); }

    FileHandle Get() const { return handle; }
    explicit operator bool() const { return handle != kNoFile; }
    FileHandle Release() { return std::exchange(handle, kNoFile); }
    void Reset(FileHandle next = kNoFile)
    {
        if (handle != kNoFile)
            FileClose(handle);
        handle = next;
    }

private:
    FileHandle handle = kNoFile;
};

}  // namespace jotlet
