#include "platform/base/file_system.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/base/silent_drive.h"

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

// Nothing of times, unless somebody wants them: who asks for times makes the next write store a finer one, which costs
// a journal entry.
constexpr unsigned kIdentityMask =
    STATX_TYPE | STATX_MODE | STATX_INO | STATX_SIZE | STATX_NLINK | STATX_UID | STATX_GID;

int Ask(int handle, const char* path, int flags, unsigned mask, FileIdentity& out)
{
    struct statx status {};
    if (::statx(handle, path, flags, mask, &status) != 0)
        return -1;
    out.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    out.inode = status.stx_ino;
    out.size = static_cast<std::int64_t>(status.stx_size);
    out.modified = status.stx_mtime.tv_sec * 1'000'000'000LL + status.stx_mtime.tv_nsec;
    out.mode = status.stx_mode & 07777u;
    out.links = status.stx_nlink;
    out.user = status.stx_uid;
    out.group = status.stx_gid;
    out.isRegular = S_ISREG(status.stx_mode);
    return 0;
}

// Calls `fill` with room for what it says it needs, until that was enough: it may grow in between.
template <typename Fill>
int FillText(std::string& text, Fill fill)
{
    for (;;) {
        const ssize_t wanted = fill(nullptr, 0);
        if (wanted < 0)
            return -1;
        text.resize(static_cast<std::size_t>(wanted));
        const ssize_t got = wanted > 0 ? fill(text.data(), text.size()) : 0;
        if (got >= 0) {
            text.resize(static_cast<std::size_t>(got));
            return 0;
        }
        if (errno != ERANGE)
            return -1;
    }
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
        struct statx status {};
        return ::statx(handle, "", AT_EMPTY_PATH, STATX_SIZE, &status) == 0 ? static_cast<std::int64_t>(status.stx_size)
                                                                            : -1;
    }
    int Identify(int handle, FileIdentity& out) override { return Ask(handle, "", AT_EMPTY_PATH, kIdentityMask, out); }
    int IdentifyPath(const std::string& path, FileIdentity& out) override
    {
        return Ask(AT_FDCWD, path.c_str(), 0, kIdentityMask, out);
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
    int ChangeOwner(int handle, std::uint32_t user, std::uint32_t group) override
    {
        return ::fchown(handle, user, group);
    }
    int ChangeMode(int handle, unsigned mode) override { return ::fchmod(handle, mode); }
    int GetAttribute(int handle, const std::string& name, std::string& value) override
    {
        return FillText(value,
                        [&](char* out, std::size_t room) { return ::fgetxattr(handle, name.c_str(), out, room); });
    }
    int SetAttribute(int handle, const std::string& name, const std::string& value) override
    {
        return ::fsetxattr(handle, name.c_str(), value.data(), value.size(), 0);
    }
    int RemoveAttribute(int handle, const std::string& name) override { return ::fremovexattr(handle, name.c_str()); }
    int ListAttributes(int handle, std::vector<std::string>& names) override
    {
        std::string list;
        if (FillText(list, [&](char* out, std::size_t room) { return ::flistxattr(handle, out, room); }) != 0)
            return -1;
        for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1)
            names.emplace_back(list.c_str() + at);
        return 0;
    }
    int IdentifyAtServer(int handle, FileIdentity& out) override
    {
        return Ask(handle, "", AT_EMPTY_PATH | AT_STATX_FORCE_SYNC, kIdentityMask | STATX_MTIME, out);
    }
    int IdentifyPathAtServer(const std::string& path, FileIdentity& out) override
    {
        return Ask(AT_FDCWD, path.c_str(), AT_STATX_FORCE_SYNC, kIdentityMask | STATX_MTIME, out);
    }
    int OpenAgain(int handle, int flags) override
    {
        const int access = ::fcntl(handle, F_GETFL) & O_ACCMODE;
        return Open("/proc/self/fd/" + std::to_string(handle), access | flags, 0);
    }
    void ForgetPages(int handle) override
    {
        ::posix_fadvise(handle, 0, 0, POSIX_FADV_DONTNEED);
        // Changes nothing, but a drive's client can't know.
        ::fallocate(handle, FALLOC_FL_KEEP_SIZE, 0, 1);
    }
    Drive DriveUnder(int handle) override { return DriveOf(handle); }
    bool IsLocal(int handle) override { return MountIsLocal(handle); }
};

FileSystem* replaced = nullptr;

}  // namespace

FileSystem& RealFileSystem()
{
    static SystemFiles files;
    return files;
}

FileSystem& UnguardedFiles()
{
    return replaced ? *replaced : RealFileSystem();
}

FileSystem& Files()
{
    return AreDrivesRefused() ? RefusingFiles() : UnguardedFiles();
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
