// Every system call on files goes through here, so that a test can make any of them fail.
//
// Results are those of the system: -1 and errno on failure. No call retries a short count; an interrupted call (EINTR)
// is repeated. Nothing throws.
// Threads: one for ReplaceFileSystem; the calls themselves hold no state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/base/file_mount.h"

namespace jotlet {

// A file's identity on this machine, and what the store needs to know of it.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;  // nanoseconds, by the server's clock; from the ...AtServer calls alone
    unsigned mode = 0;
    std::uint64_t links = 1;  // names that it has
    std::uint32_t user = 0;
    std::uint32_t group = 0;
    bool isRegular = false;

    bool SameFile(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
};

// For ChangeOwner: this one stays.
inline constexpr std::uint32_t kSameOwner = ~std::uint32_t{0};

enum class LockMode { Shared, Exclusive, Unlock };

class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual int Open(const std::string& path, int flags, unsigned mode) = 0;
    virtual void Close(int handle) = 0;
    virtual std::int64_t Read(int handle, std::span<std::byte> buffer) = 0;
    virtual std::int64_t Write(int handle, std::span<const std::byte> buffer) = 0;
    virtual std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) = 0;
    virtual std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) = 0;
    virtual std::int64_t Seek(int handle, std::int64_t offset, int origin) = 0;
    virtual int Truncate(int handle, std::int64_t size) = 0;
    virtual int Sync(int handle) = 0;  // fdatasync
    // fdatasync of the pages of a mapping alone, with whatever the file system needs to find them again.
    virtual int SyncMapped(std::span<const std::byte> pages) = 0;
    // Lets the disk begin with these bytes; promises nothing.
    virtual void StartWriting(int handle, std::int64_t offset, std::int64_t size) = 0;
    virtual int SyncFolder(const std::string& folder) = 0;  // makes a create, rename or remove in it durable
    virtual int Rename(const std::string& from, const std::string& to) = 0;     // replaces `to` in one step
    virtual int RenameNew(const std::string& from, const std::string& to) = 0;  // EEXIST when `to` is there
    virtual int Remove(const std::string& path) = 0;
    virtual std::int64_t Size(int handle) = 0;
    virtual int Identify(int handle, FileIdentity& out) = 0;                   // fstat
    virtual int IdentifyPath(const std::string& path, FileIdentity& out) = 0;  // stat, follows links
    // One byte, without waiting, owned by the open file description (F_OFD_SETLK). EAGAIN: somebody else holds it.
    virtual int Lock(int handle, std::int64_t byte, LockMode mode) = 0;
    virtual int ChangeOwner(int handle, std::uint32_t user, std::uint32_t group) = 0;  // fchown
    virtual int ChangeMode(int handle, unsigned mode) = 0;                             // fchmod
    // Extended attributes; the access list is one. ENODATA: there is none of the name. ENOTSUP: none here at all.
    virtual int GetAttribute(int handle, const std::string& name, std::string& value) = 0;
    virtual int SetAttribute(int handle, const std::string& name, const std::string& value) = 0;
    virtual int RemoveAttribute(int handle, const std::string& name) = 0;
    virtual int ListAttributes(int handle, std::vector<std::string>& names) = 0;
    // fstat, answered by the server and not from what this machine remembers.
    virtual int IdentifyAtServer(int handle, FileIdentity& out) = 0;
    virtual int IdentifyPathAtServer(const std::string& path, FileIdentity& out) = 0;
    // One more opening of the same file with the same access; `flags` are added.
    virtual int OpenAgain(int handle, int flags) = 0;
    // Forgets what this machine keeps of the file's bytes, so that the next read asks the server.
    virtual void ForgetPages(int handle) = 0;
    virtual Drive DriveUnder(int handle) = 0;
    // True when the file lies on this machine, so that a mapping shows what other processes write.
    virtual bool IsLocal(int handle) = 0;
};

// The system's own calls.
FileSystem& RealFileSystem();
// The one in use: the system's own, unless a test has put another in its place; with the calls on drives that don't
// answer refused (silent_drive.h).
FileSystem& Files();
// The same with nothing refused.
FileSystem& UnguardedFiles();

// Puts `files` (not owned) in place of the present one for its own lifetime.
class ScopedFileSystem {
public:
    explicit ScopedFileSystem(FileSystem& files);
    ~ScopedFileSystem();
    ScopedFileSystem(const ScopedFileSystem&) = delete;
    ScopedFileSystem& operator=(const ScopedFileSystem&) = delete;

private:
    FileSystem* before;
};

}  // namespace jotlet
