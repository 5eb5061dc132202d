#include "platform/base/silent_drive.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

std::atomic<int> silentDrives{0};
thread_local int asksAnyway = 0;

struct Silence {
    std::mutex guard;
    std::vector<std::string> folders;
};

Silence& TheSilence()
{
    static Silence silence;
    return silence;
}

bool LiesIn(const std::string& path, const std::string& folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string FolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos || slash == 0 ? std::string() : path.substr(0, slash);
}

// The name that the system remembers of an open file; no drive is asked for it.
std::string NameOf(FileHandle handle)
{
    std::array<char, PATH_MAX> name;
    const ssize_t size = readlink(("/proc/self/fd/" + std::to_string(handle)).c_str(), name.data(), name.size());
    return size > 0 ? std::string(name.data(), static_cast<std::size_t>(size)) : std::string();
}

class Refusing final : public FileSystem {
public:
    int Open(const std::string& path, int flags, unsigned mode) override
    {
        return Refuses(path) ? -1 : Below().Open(path, flags, mode);
    }
    // The system may ask the drive before it closes.
    void Close(int handle) override
    {
        if (!Refuses(handle)) {
            Below().Close(handle);
            return;
        }
        try {
            std::thread([handle] { RealFileSystem().Close(handle); }).detach();
        } catch (const std::system_error&) {
            // It stays open to the end of the process.
        }
    }
    std::int64_t Read(int handle, std::span<std::byte> buffer) override
    {
        return Refuses(handle) ? -1 : Below().Read(handle, buffer);
    }
    std::int64_t Write(int handle, std::span<const std::byte> buffer) override
    {
        return Refuses(handle) ? -1 : Below().Write(handle, buffer);
    }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        return Refuses(handle) ? -1 : Below().ReadAt(handle, buffer, offset);
    }
    std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) override
    {
        return Refuses(handle) ? -1 : Below().WriteAt(handle, buffer, offset);
    }
    std::int64_t Seek(int handle, std::int64_t offset, int origin) override
    {
        return Refuses(handle) ? -1 : Below().Seek(handle, offset, origin);
    }
    int Truncate(int handle, std::int64_t size) override
    {
        return Refuses(handle) ? -1 : Below().Truncate(handle, size);
    }
    int Sync(int handle) override { return Refuses(handle) ? -1 : Below().Sync(handle); }
    // Files on drives are not mapped.
    int SyncMapped(std::span<const std::byte> pages) override { return Below().SyncMapped(pages); }
    void StartWriting(int handle, std::int64_t offset, std::int64_t size) override
    {
        if (!Refuses(handle))
            Below().StartWriting(handle, offset, size);
    }
    int SyncFolder(const std::string& folder) override { return Refuses(folder) ? -1 : Below().SyncFolder(folder); }
    int Rename(const std::string& from, const std::string& to) override
    {
        return Refuses(from) || Refuses(to) ? -1 : Below().Rename(from, to);
    }
    int RenameNew(const std::string& from, const std::string& to) override
    {
        return Refuses(from) || Refuses(to) ? -1 : Below().RenameNew(from, to);
    }
    int Remove(const std::string& path) override { return Refuses(path) ? -1 : Below().Remove(path); }
    std::int64_t Size(int handle) override { return Refuses(handle) ? -1 : Below().Size(handle); }
    int Identify(int handle, FileIdentity& out) override
    {
        return Refuses(handle) ? -1 : Below().Identify(handle, out);
    }
    int IdentifyPath(const std::string& path, FileIdentity& out) override
    {
        return Refuses(path) ? -1 : Below().IdentifyPath(path, out);
    }
    int Lock(int handle, std::int64_t byte, LockMode mode) override
    {
        return Refuses(handle) ? -1 : Below().Lock(handle, byte, mode);
    }
    int ChangeOwner(int handle, std::uint32_t user, std::uint32_t group) override
    {
        return Refuses(handle) ? -1 : Below().ChangeOwner(handle, user, group);
    }
    int ChangeMode(int handle, unsigned mode) override
    {
        return Refuses(handle) ? -1 : Below().ChangeMode(handle, mode);
    }
    int GetAttribute(int handle, const std::string& name, std::string& value) override
    {
        return Refuses(handle) ? -1 : Below().GetAttribute(handle, name, value);
    }
    int SetAttribute(int handle, const std::string& name, const std::string& value) override
    {
        return Refuses(handle) ? -1 : Below().SetAttribute(handle, name, value);
    }
    int RemoveAttribute(int handle, const std::string& name) override
    {
        return Refuses(handle) ? -1 : Below().RemoveAttribute(handle, name);
    }
    int ListAttributes(int handle, std::vector<std::string>& names) override
    {
        return Refuses(handle) ? -1 : Below().ListAttributes(handle, names);
    }
    int IdentifyAtServer(int handle, FileIdentity& out) override
    {
        return Refuses(handle) ? -1 : Below().IdentifyAtServer(handle, out);
    }
    int IdentifyPathAtServer(const std::string& path, FileIdentity& out) override
    {
        return Refuses(path) ? -1 : Below().IdentifyPathAtServer(path, out);
    }
    int OpenAgain(int handle, int flags) override { return Refuses(handle) ? -1 : Below().OpenAgain(handle, flags); }
    void ForgetPages(int handle) override
    {
        if (!Refuses(handle))
            Below().ForgetPages(handle);
    }
    Drive DriveUnder(int handle) override
    {
        return Refuses(handle) ? DriveOfMount({}, {}) : Below().DriveUnder(handle);
    }
    bool IsLocal(int handle) override { return !Refuses(handle) && Below().IsLocal(handle); }

private:
    static FileSystem& Below() { return UnguardedFiles(); }
    static bool Refuses(const std::string& path)
    {
        if (!IsOnSilentDrive(path))
            return false;
        errno = ETIMEDOUT;
        return true;
    }
    static bool Refuses(int handle) { return Refuses(NameOf(handle)); }
};

}  // namespace

std::vector<std::string> FoldersOf(const std::string& path, FileHandle handle)
{
    std::vector<std::string> folders;
    for (const std::string& folder : {FolderOf(path), FolderOf(NameOf(handle))})
        if (folder.starts_with('/') && std::ranges::find(folders, folder) == folders.end())
            folders.push_back(folder);
    return folders;
}

SilentDrive::SilentDrive(std::vector<std::string> folderList) : folders(std::move(folderList))
{
    Silence& silence = TheSilence();
    const std::lock_guard lock(silence.guard);
    silence.folders.insert(silence.folders.end(), folders.begin(), folders.end());
    ++silentDrives;
}

SilentDrive::~SilentDrive()
{
    Silence& silence = TheSilence();
    const std::lock_guard lock(silence.guard);
    for (const std::string& folder : folders)
        silence.folders.erase(std::ranges::find(silence.folders, folder));
    --silentDrives;
}

bool IsOnSilentDrive(const std::string& path)
{
    if (silentDrives.load(std::memory_order_relaxed) == 0)
        return false;
    Silence& silence = TheSilence();
    const std::lock_guard lock(silence.guard);
    return std::ranges::any_of(silence.folders, [&](const std::string& folder) { return LiesIn(path, folder); });
}

AskSilentDrives::AskSilentDrives()
{
    ++asksAnyway;
}

AskSilentDrives::~AskSilentDrives()
{
    --asksAnyway;
}

bool AreDrivesRefused()
{
    return silentDrives.load(std::memory_order_relaxed) != 0 && asksAnyway == 0;
}

FileSystem& RefusingFiles()
{
    static Refusing files;
    return files;
}

}  // namespace jotlet
