// The system's files, with a chosen call failing: the nth one that changes a file, or every call of one kind.
#pragma once

#include <fcntl.h>

#include <cerrno>
#include <string>
#include <string_view>

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

    bool failSyncs = false;  // every sync fails and writes go on, as on a drive that is full or gone behind its cache
    bool failReads = false;  // every ReadAt gives EIO
    int failRead = 0;        // the nth ReadAt (from 1) and all behind it give EIO
    int reads = 0;           // counted so far while failRead is set
    int lockFailure = 0;     // every Lock gives this errno
    bool locksStayHere = false;
    bool isRemote = false;
    bool replacesOpen = true;
    int openForWritingFailure = 0;  // every Open that asks for more than reading gives this errno

    int Open(const std::string& path, int flags, unsigned mode) override
    {
        if (openForWritingFailure && (flags & O_ACCMODE) != O_RDONLY) {
            errno = openForWritingFailure;
            return -1;
        }
        return real.Open(path, flags, mode);
    }
    void Close(int handle) override { real.Close(handle); }
    std::int64_t Read(int handle, std::span<std::byte> buffer) override { return real.Read(handle, buffer); }
    std::int64_t Write(int handle, std::span<const std::byte> buffer) override
    {
        return Fails("write") ? -1 : real.Write(handle, buffer);
    }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        if (failReads || (failRead > 0 && ++reads >= failRead)) {
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
    int ChangeOwner(int handle, std::uint32_t user, std::uint32_t group) override
    {
        return real.ChangeOwner(handle, user, group);
    }
    int ChangeMode(int handle, unsigned mode) override { return real.ChangeMode(handle, mode); }
    int GetAttribute(int handle, const std::string& name, std::string& value) override
    {
        return real.GetAttribute(handle, name, value);
    }
    int SetAttribute(int handle, const std::string& name, const std::string& value) override
    {
        return real.SetAttribute(handle, name, value);
    }
    int RemoveAttribute(int handle, const std::string& name) override { return real.RemoveAttribute(handle, name); }
    int ListAttributes(int handle, std::vector<std::string>& names) override
    {
        return real.ListAttributes(handle, names);
    }
    int IdentifyAtServer(int handle, FileIdentity& out) override { return real.IdentifyAtServer(handle, out); }
    int IdentifyPathAtServer(const std::string& path, FileIdentity& out) override
    {
        return real.IdentifyPathAtServer(path, out);
    }
    int OpenAgain(int handle, int flags) override { return real.OpenAgain(handle, flags); }
    void ForgetPages(int handle) override { real.ForgetPages(handle); }
    Drive DriveUnder(int) override
    {
        return {.isCoherent = !isRemote, .locksTravel = !locksStayHere, .replacesOpen = replacesOpen};
    }
    bool IsLocal(int handle) override { return !isRemote && !locksStayHere && real.IsLocal(handle); }

private:
    bool Fails(const char* call)
    {
        ++changes;
        if (changes != failAt && !(andAllBehind && failAt > 0 && changes > failAt) &&
            !(failSyncs && std::string_view(call).starts_with("sync")))
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
