// The system's files, with a chosen call failing: the nth one that changes a file, or every call of one kind.
#pragma once

#include <cerrno>
#include <string>

#include "platform/base/file_system.h"

namespace jotlet::test {

class FailingFileSystem : public FileSystem {
public:
    // Counts calls that change or sync something; the `failAt`th (from 1) fails, and with `andAllBehind` all later
    // ones.
    int failAt = 0;
    bool andAllBehind = false;
    int failure = ENOSPC;
    // A failing write moves half of its bytes first, as on a full disk.
    bool halfWrite = false;
    int changes = 0;  // counted so far
    std::string failedCall;

    bool failReads = false;  // every ReadAt gives EIO
    int lockFailure = 0;     // every Lock gives this errno
    bool locksStayHere = false;
    bool isRemote = false;

    int Open(const std::string& path, int flags, unsigned mode) override { return real.Open(path, flags, mode); }
    void Close(int handle) override { real.Close(handle); }
    std::int64_t Read(int handle, std::span<std::byte> buffer) override { return real.Read(handle, buffer); }
    std::int64_t Write(int handle, std::span<const std::byte> buffer) override
    {
        return Fails("write") ? -1 : real.Write(handle, buffer);
    }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        if (failReads) {
            errno = EIO;
            return -1;
        }
        return real.ReadAt(handle, buffer, offset);
    }
    std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) override
    {
        if (afterHalf || Fails("write")) {
            // The first failing call is cut short; the one for the rest then fails outright.
            if (halfWrite && !afterHalf && buffer.size() > 1) {
                afterHalf = true;
                return real.WriteAt(handle, buffer.first(buffer.size() / 2), offset);
            }
            afterHalf = false;
            errno = failure;
            return -1;
        }
        return real.WriteAt(handle, buffer, offset);
    }
    std::int64_t Seek(int handle, std::int64_t offset, int origin) override
    {
        return real.Seek(handle, offset, origin);
    }
    int Truncate(int handle, std::int64_t size) override
    {
        return Fails("truncate") ? -1 : real.Truncate(handle, size);
    }
    int Sync(int handle) override { return Fails("sync") ? -1 : real.Sync(handle); }
    int SyncMapped(std::span<const std::byte> pages) override
    {
        return Fails("sync part") ? -1 : real.SyncMapped(pages);
    }
    void StartWriting(int handle, std::int64_t offset, std::int64_t size) override
    {
        real.StartWriting(handle, offset, size);
    }
    int SyncFolder(const std::string& folder) override { return Fails("sync folder") ? -1 : real.SyncFolder(folder); }
    int Rename(const std::string& from, const std::string& to) override
    {
        return Fails("rename") ? -1 : real.Rename(from, to);
    }
    int RenameNew(const std::string& from, const std::string& to) override
    {
        return Fails("rename") ? -1 : real.RenameNew(from, to);
    }
    int Remove(const std::string& path) override { return real.Remove(path); }
    std::int64_t Size(int handle) override { return real.Size(handle); }
    int Identify(int handle, FileIdentity& out) override { return real.Identify(handle, out); }
    int IdentifyPath(const std::string& path, FileIdentity& out) override { return real.IdentifyPath(path, out); }
    int Lock(int handle, std::int64_t byte, LockMode mode) override
    {
        if (lockFailure) {
            errno = lockFailure;
            return -1;
        }
        return real.Lock(handle, byte, mode);
    }
    void CopyOwnership(int from, int to) override { real.CopyOwnership(from, to); }
    bool LocksReachEverybody(int handle) override { return !locksStayHere && real.LocksReachEverybody(handle); }
    bool IsLocal(int handle) override { return !isRemote && real.IsLocal(handle); }

private:
    bool Fails(const char* call)
    {
        ++changes;
        if (changes != failAt && !(andAllBehind && failAt > 0 && changes > failAt))
            return false;
        if (failedCall.empty())
            failedCall = call;
        errno = failure;
        return true;
    }

    FileSystem& real = RealFileSystem();
    bool afterHalf = false;
};

}  // namespace jotlet::test
