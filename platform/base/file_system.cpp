#include "platform/base/file_system.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/base/file_mount.h"

namespace jotlet {
namespace {

template <typename Call>
auto Repeated(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

FileIdentity IdentityOf(const struct stat& status)
{
    FileIdentity identity;
    identity.device = status.st_dev;
    identity.inode = status.st_ino;
    identity.size = status.st_size;
    identity.mode = status.st_mode & 07777;
    identity.isRegular = S_ISREG(status.st_mode);
    return identity;
}

class SystemFiles final : public FileSystem {
public:
    int Open(const std::string& path, int flags, unsigned mode) override
    {
        // Without O_NONBLOCK a pipe would wait here for somebody at its other end.
        return Repeated([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, mode); });
    }
    void Close(int handle) override { ::close(handle); }
    std::int64_t Read(int handle, std::span<std::byte> buffer) override
    {
        return Repeated([&] { return ::read(handle, buffer.data(), buffer.size()); });
    }
    std::int64_t Write(int handle, std::span<const std::byte> buffer) override
    {
        return Repeated([&] { return ::write(handle, buffer.data(), buffer.size()); });
    }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        return Repeated([&] { return ::pread(handle, buffer.data(), buffer.size(), offset); });
    }
    std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) override
    {
        return Repeated([&] { return ::pwrite(handle, buffer.data(), buffer.size(), offset); });
    }
    std::int64_t Seek(int handle, std::int64_t offset, int origin) override { return ::lseek(handle, offset, origin); }
    int Truncate(int handle, std::int64_t size) override
    {
        return Repeated([&] { return ::ftruncate(handle, size); });
    }
    int Sync(int handle) override
    {
        return Repeated([&] { return ::fdatasync(handle); });
    }
    int SyncMapped(std::span<const std::byte> pages) override
    {
        return Repeated([&] { return ::msync(const_cast<std::byte*>(pages.data()), pages.size(), MS_SYNC); });
    }
    void StartWriting(int handle, std::int64_t offset, std::int64_t size) override
    {
        [[maybe_unused]] const int hint = ::sync_file_range(handle, offset, size, SYNC_FILE_RANGE_WRITE);
    }
    int SyncFolder(const std::string& folder) override
    {
        const int handle = Open(folder, O_RDONLY | O_DIRECTORY, 0);
        if (handle < 0)
            return -1;
        const int result = Repeated([&] { return ::fsync(handle); });
        const int reason = errno;
        ::close(handle);
        errno = reason;
        // Some network file systems have nothing to sync in a folder and say so.
        return result == 0 || reason == EINVAL || reason == ENOTSUP ? 0 : -1;
    }
    int Rename(const std::string& from, const std::string& to) override { return ::rename(from.c_str(), to.c_str()); }
    int RenameNew(const std::string& from, const std::string& to) override
    {
        const int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
        if (result == 0 || (errno != EINVAL && errno != ENOSYS))
            return result;
        if (::link(from.c_str(), to.c_str()) == 0) {
            ::unlink(from.c_str());
            return 0;
        }
        if (errno == EEXIST)
            return -1;
        // No way to do it in one step here: look first, which leaves a gap that only such file systems have.
        if (::access(to.c_str(), F_OK) == 0) {
            errno = EEXIST;
            return -1;
        }
        return ::rename(from.c_str(), to.c_str());
    }
    int Remove(const std::string& path) override { return ::unlink(path.c_str()); }
    std::int64_t Size(int handle) override
    {
        // Nothing but the size: who asks for times makes the next write store a finer one, which costs a journal entry.
        struct statx status {};
        return ::statx(handle, "", AT_EMPTY_PATH, STATX_SIZE, &status) == 0 ? static_cast<std::int64_t>(status.stx_size)
                                                                            : -1;
    }
    int Identify(int handle, FileIdentity& out) override
    {
        struct stat status {};
        if (::fstat(handle, &status) != 0)
            return -1;
        out = IdentityOf(status);
        return 0;
    }
    int IdentifyPath(const std::string& path, FileIdentity& out) override
    {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0)
            return -1;
        out = IdentityOf(status);
        return 0;
    }
    int Lock(int handle, std::int64_t byte, LockMode mode) override
    {
        struct flock range {};
        range.l_type = mode == LockMode::Shared ? F_RDLCK : mode == LockMode::Exclusive ? F_WRLCK : F_UNLCK;
        range.l_whence = SEEK_SET;
        range.l_start = byte;
        range.l_len = 1;
        return Repeated([&] { return ::fcntl(handle, F_OFD_SETLK, &range); });
    }
    void CopyOwnership(int from, int to) override
    {
        struct stat status {};
        if (::fstat(from, &status) != 0)
            return;
        // The owner first: a change of owner may take mode bits away.
        [[maybe_unused]] const int owner = ::fchown(to, status.st_uid, status.st_gid);
        [[maybe_unused]] const int mode = ::fchmod(to, status.st_mode & 07777);
    }
    bool LocksReachEverybody(int handle) override { return MountSharesLocks(handle); }
    bool IsLocal(int handle) override { return MountIsLocal(handle); }
};

FileSystem* replaced = nullptr;

}  // namespace

FileSystem& RealFileSystem()
{
    static SystemFiles files;
    return files;
}

FileSystem& Files()
{
    return replaced ? *replaced : RealFileSystem();
}

ScopedFileSystem::ScopedFileSystem(FileSystem& files) : before(replaced)
{
    replaced = &files;
}

ScopedFileSystem::~ScopedFileSystem()
{
    replaced = before;
}

}  // namespace jotlet
