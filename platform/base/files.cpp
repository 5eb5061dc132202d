#include "platform/base/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"

namespace jotlet {
namespace {

// How often the file may be replaced under our hands before we call it busy.
constexpr int kMaxReopens = 100;
// A drive's client may go on naming a replaced file for a second or so.
constexpr auto kStaleNap = std::chrono::milliseconds(20);
constexpr int kMaxStale = 75;

FileHandle Fail(FileError* error, FileErrorKind kind, const char* operation, const std::string& path, int systemError)
{
    if (error)
        *error = FileError{kind, operation, path, systemError};
    return kNoFile;
}

FileHandle FailWithErrno(FileError* error, const char* operation, const std::string& path)
{
    const int reason = errno;
    return Fail(error, FileErrorKindOf(reason), operation, path, reason);
}

struct Opening {
    int flags = 0;
    FileSharing sharing = FileSharing::Shared;
    int patienceMs = 0;
};

// Opens, locks the present byte, and makes sure that the path still names what was opened: whoever held the file alone
// meanwhile may have put another one in its place.
FileHandle OpenPresent(const std::string& path, const Opening& opening, LockOutcome& outcome, FileError* error)
{
    for (int attempt = 0; attempt < kMaxReopens; ++attempt) {
        FileHandleOwner handle(Files().Open(path, opening.flags, 0666));
        if (!handle)
            return FailWithErrno(error, "open", path);
        FileIdentity opened;
        if (Files().Identify(handle.Get(), opened) != 0)
            return FailWithErrno(error, "open", path);
        if (!opened.isRegular)
            return Fail(error, FileErrorKind::NotRegularFile, "open", path, 0);
        outcome =
            LockForHandleLife(handle.Get(), kPresentByte, opening.sharing == FileSharing::None, opening.patienceMs);
        if (outcome == LockOutcome::Refused)
            return Fail(error, FileErrorKind::Busy, "open", path, 0);
        if (outcome == LockOutcome::Failed && errno == ESTALE && attempt < kMaxStale) {
            std::this_thread::sleep_for(kStaleNap);
            continue;
        }
        if (outcome == LockOutcome::Failed)
            return FailWithErrno(error, "lock", path);
        FileIdentity named;
        if (Files().IdentifyPath(path, named) != 0) {
            if (errno != ENOENT || !(opening.flags & O_CREAT))
                return FailWithErrno(error, "open", path);
            continue;
        }
        if (named.SameFile(opened))
            return handle.Release();
    }
    return Fail(error, FileErrorKind::Busy, "open", path, 0);
}

}  // namespace

FileHandle FileCreate(const std::string& path, FileError* error)
{
    // Emptied only once we are alone with it, so not by O_TRUNC.
    LockOutcome outcome{};
    FileHandleOwner handle(OpenPresent(path, {O_RDWR | O_CREAT, FileSharing::None, 0}, outcome, error));
    if (handle && FileSize(handle.Get()) != 0 && Files().Truncate(handle.Get(), 0) != 0)
        return FailWithErrno(error, "truncate", path);
    return handle.Release();
}

FileHandle FileOpen(const std::string& path, FileAccess access, FileSharing sharing, FileError* error, int patienceMs)
{
    LockOutcome outcome{};
    return OpenPresent(path, {access == FileAccess::Read ? O_RDONLY : O_RDWR, sharing, patienceMs}, outcome, error);
}

FileHandle FileOpenAlone(const std::string& path, bool& proven, FileError* error)
{
    LockOutcome outcome{};
    FileHandleOwner handle(OpenPresent(path, {O_RDWR, FileSharing::None, 0}, outcome, error));
    if (!handle)
        return kNoFile;
    if (outcome != LockOutcome::Taken)
        return Fail(error, FileErrorKind::Busy, "lock", path, 0);
    proven = Files().DriveUnder(handle.Get()).locksTravel;
    return handle.Release();
}

void FileClose(FileHandle handle)
{
    if (handle != kNoFile)
        Files().Close(handle);
}

std::int64_t FileRead(FileHandle handle, void* buffer, std::size_t count)
{
    return Files().Read(handle, {static_cast<std::byte*>(buffer), count});
}

std::int64_t FileWrite(FileHandle handle, const void* buffer, std::size_t count)
{
    return Files().Write(handle, {static_cast<const std::byte*>(buffer), count});
}

bool FileReadWhole(FileHandle handle, std::span<std::byte> buffer, std::int64_t offset)
{
    while (!buffer.empty()) {
        const std::int64_t moved = Files().ReadAt(handle, buffer, offset);
        if (moved <= 0)
            return false;
        buffer = buffer.subspan(static_cast<std::size_t>(moved));
        offset += moved;
    }
    return true;
}

bool FileWriteWhole(FileHandle handle, std::span<const std::byte> buffer, std::int64_t offset)
{
    while (!buffer.empty()) {
        const std::int64_t moved = Files().WriteAt(handle, buffer, offset);
        if (moved <= 0)
            return false;
        buffer = buffer.subspan(static_cast<std::size_t>(moved));
        offset += moved;
    }
    return true;
}

std::int64_t FileSeek(FileHandle handle, std::int64_t offset, SeekOrigin origin)
{
    const int whence = origin == SeekOrigin::Begin ? SEEK_SET : origin == SeekOrigin::Current ? SEEK_CUR : SEEK_END;
    return Files().Seek(handle, offset, whence);
}

std::int64_t FileSize(FileHandle handle)
{
    return Files().Size(handle);
}

int FileFlush(FileHandle handle)
{
    return Files().Sync(handle) == 0 ? 1 : 0;
}

int FlushFolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    return Files().SyncFolder(folder) == 0 ? 1 : 0;
}

int FileExists(const std::string& path)
{
    FileIdentity identity;
    return Files().IdentifyPath(path, identity) == 0 ? 1 : -1;
}

int FileIsBusy(const std::string& path)
{
    bool proven = false;
    const FileHandleOwner alone(FileOpenAlone(path, proven));
    return alone && proven ? 0 : 1;
}

}  // namespace jotlet
