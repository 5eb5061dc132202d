#include "platform/base/profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "platform/base/text.h"

namespace jotlet {

namespace {

// A copy that stops while it holds the lock keeps the others from writing for this long, and no longer.
constexpr std::chrono::seconds kLockPatience{5};
constexpr char kCredentialSection[] = "Marlin Server";
constexpr char kCredentialKey[] = "password";

class FileHandle {
public:
    explicit FileHandle(int fd) : fd(fd) {}
    ~FileHandle()
    {
        if (fd >= 0)
            close(fd);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    int Get() const { return fd; }
    explicit operator bool() const { return fd >= 0; }

private:
    int fd;
};

// The whole of a regular file; nothing when it isn't one, is too large, or cannot be read.
std::optional<std::string> ReadWhole(int fd)
{
    struct stat info {};
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size < 0 ||
        static_cast<std::size_t>(info.st_size) > kMaxProfileBytes)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(info.st_size), '\0');
    std::size_t have = 0;
    while (have < text.size()) {
        const ssize_t got = pread(fd, text.data() + have, text.size() - have, static_cast<off_t>(have));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        have += static_cast<std::size_t>(got);
    }
    text.resize(have);
    return text;
}

enum class LockResult { Held, NoLocksHere, Busy };

LockResult LockWhole(int fd)
{
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    const auto until = std::chrono::steady_clock::now() + kLockPatience;
    for (auto wait = std::chrono::microseconds(200);; wait = std::min(wait * 2, std::chrono::microseconds(10000))) {
        if (fcntl(fd, F_OFD_SETLK, &range) == 0)
            return LockResult::Held;
        if (errno != EACCES && errno != EAGAIN && errno != EINTR)
            return LockResult::NoLocksHere;
        if (std::chrono::steady_clock::now() >= until)
            return LockResult::Busy;
        std::this_thread::sleep_for(wait);
    }
}

// Opens (and makes) the file and locks it. The lock is on the file itself: as writers replace the file, who got the
// lock looks whether the path still names what it locked.
int OpenLocked(const std::string& path)
{
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600);
        if (fd < 0)
            return -1;
        struct stat opened {};
        struct stat named {};
        const bool regular = fstat(fd, &opened) == 0 && S_ISREG(opened.st_mode);
        if (!regular || LockWhole(fd) == LockResult::Busy) {
            close(fd);
            return -1;
        }
        if (stat(path.c_str(), &named) == 0 && named.st_ino == opened.st_ino && named.st_dev == opened.st_dev)
            return fd;
        close(fd);
    }
    return -1;
}

bool WriteWhole(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t put = write(fd, text.data(), text.size());
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

void SyncFolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const FileHandle handle(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle)
        fsync(handle.Get());
}

// Puts `text` in the place of the file that `old` describes. Called with the lock held, so the name beside it is free
// for this process; what a killed one left there is removed.
bool ReplaceFile(const std::string& path, std::string_view text, const struct stat& old, mode_t mode)
{
    const std::string beside = path + ".new";
    unlink(beside.c_str());
    const FileHandle file(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file)
        return false;
    // The owner first: a change of owner may clear mode bits. Somebody else's file, written by the administrator, stays
    // theirs; where that is not allowed, the file becomes ours.
    if (old.st_uid != geteuid() || old.st_gid != getegid())
        if (fchown(file.Get(), old.st_uid, old.st_gid) != 0)
            mode &= ~static_cast<mode_t>(077);
    const bool written = fchmod(file.Get(), mode) == 0 && WriteWhole(file.Get(), text) && fsync(file.Get()) == 0 &&
                         rename(beside.c_str(), path.c_str()) == 0;
    if (!written)
        unlink(beside.c_str());
    else
        SyncFolderOf(path);
    return written;
}

// A link to a settings file stays a link: what it names is replaced.
std::string RealPath(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

}  // namespace

std::optional<std::string> ReadProfileFile(const std::string& path)
{
    if (path.empty())
        return std::nullopt;
    // Not blocking, so that a pipe of this name cannot hold the program.
    const FileHandle file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return file ? ReadWhole(file.Get()) : std::nullopt;
}

std::optional<std::string> IniFile::IniReadText(std::string_view section, std::string_view key) const
{
    for (const std::string& source : {path, fallbackPath}) {
        const auto text = ReadProfileFile(source);
        if (!text)
            continue;
        // An empty value is as good as none, but the user's own empty line hides what was shipped.
        if (auto value = FindProfileValue(*text, section, key))
            return value->empty() ? std::nullopt : value;
    }
    return std::nullopt;
}

int IniFile::IniReadText(std::string_view section, std::string_view key, std::span<char> out) const
{
    const auto value = IniReadText(section, key);
    StoreText(out, value ? *value : std::string_view());
    return value ? 1 : 0;
}

int IniFile::IniReadInt(std::string_view section, std::string_view key, int& out) const
{
    const auto value = IniReadText(section, key);
    if (!value)
        return 0;
    out = TextToInt(*value);
    return 1;
}

int IniFile::IniWriteText(std::string_view section, std::string_view key, std::string_view value) const
{
    if (path.empty())
        return 0;
    const std::string target = RealPath(path);
    const FileHandle file(OpenLocked(target));
    struct stat old {};
    if (!file || fstat(file.Get(), &old) != 0)
        return 0;
    const auto before = ReadWhole(file.Get());
    if (!before)
        return 0;
    const std::string after = WithProfileValue(*before, section, key, value);
    if (after.size() > kMaxProfileBytes)
        return 0;
    mode_t mode = old.st_mode & 0777;
    if (const auto password = FindProfileValue(after, kCredentialSection, kCredentialKey);
        password && !password->empty())
        mode &= 0700;
    if (after == *before) {
        // Nothing to write, but a file that others could read does not stay so.
        if (mode != (old.st_mode & 0777))
            fchmod(file.Get(), mode);
        return 1;
    }
    return ReplaceFile(target, after, old, mode) ? 1 : 0;
}

int IniFile::IniWriteInt(std::string_view section, std::string_view key, int value) const
{
    return IniWriteText(section, key, std::to_string(value));
}

}  // namespace jotlet
