#include "platform/base/replace_file.h"

#include <fcntl.h>
#include <stdlib.h>

#include <cerrno>
#include <memory>

#include "platform/base/file_access.h"
#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "platform/base/silent_drive.h"

namespace jotlet {
namespace {

// How often the name beside may be taken by somebody else before we call the file busy.
constexpr int kMaxAttempts = 100;

bool PathNames(const std::string& path, FileHandle handle)
{
    FileIdentity named;
    FileIdentity opened;
    return Files().IdentifyPath(path, named) == 0 && Files().Identify(handle, opened) == 0 && named.SameFile(opened);
}

}  // namespace

std::string RealPathOf(const std::string& path)
{
    if (IsOnSilentDrive(path))
        return path;
    const std::unique_ptr<char, decltype(&free)> resolved(realpath(path.c_str(), nullptr), &free);
    return resolved ? resolved.get() : path;
}

FileReplacement::~FileReplacement()
{
    if (made && NamesOurs())
        Files().Remove(beside);
}

bool FileReplacement::Fail(const char* operation, int systemError)
{
    error = {FileErrorKindOf(systemError), operation, beside, systemError};
    return false;
}

bool FileReplacement::Start(const std::string& path, std::string_view suffix, unsigned mode)
{
    target = RealPathOf(path);
    beside = target + std::string(suffix);
    for (int attempt = 0; attempt < kMaxAttempts && !error; ++attempt) {
        if (Make(mode))
            return true;
        if (!error)
            RemoveLeftover();
    }
    if (!error)
        Fail("create", EBUSY);
    return false;
}

// False without an error: somebody else's file has the name.
bool FileReplacement::Make(unsigned mode)
{
    handle.Reset(Files().Open(beside, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode));
    if (!handle) {
        if (errno != EEXIST)
            Fail("create", errno);
        return false;
    }
    // Somebody who takes it for a leftover may hold it for a moment and remove it.
    const LockOutcome locked = LockForHandleLife(handle.Get(), kPresentByte, true, 0);
    if (locked == LockOutcome::Failed) {
        Fail("lock", errno);
        Files().Remove(beside);
        return false;
    }
    made = locked != LockOutcome::Refused && NamesOurs();
    return made;
}

// A file that nobody holds was left behind by a process that was killed. It is removed and not emptied: it may be a
// link to something that isn't ours.
bool FileReplacement::RemoveLeftover()
{
    const FileHandleOwner left(Files().Open(beside, O_RDWR | O_NOFOLLOW, 0));
    if (!left && errno == ENOENT)
        return true;
    if (left) {
        if (LockForHandleLife(left.Get(), kPresentByte, true, kOpenPatienceMs) == LockOutcome::Refused)
            return Fail("create", EBUSY);
        if (!PathNames(beside, left.Get()))
            return true;
    }
    return Files().Remove(beside) == 0 || errno == ENOENT || Fail("remove", errno);
}

bool FileReplacement::NamesOurs() const
{
    return PathNames(beside, handle.Get());
}

bool FileReplacement::KeepAccessOf(FileHandle old)
{
    if (KeepAccess(old, handle.Get()))
        return true;
    error = {FileErrorKind::NotOurs, "replace", target, 0};
    return false;
}

bool FileReplacement::Place(Rename way)
{
    if (Files().Sync(handle.Get()) != 0)
        return Fail("sync", errno);
    // Where locks don't reach everybody, another may have taken our file for a leftover.
    if (!NamesOurs())
        return Fail("rename", EBUSY);
    if ((way == Rename::Over ? Files().Rename(beside, target) : Files().RenameNew(beside, target)) != 0)
        return Fail("rename", errno);
    made = false;
    // A failure here is none of the file's: after a power failure the name may be the old file's again.
    FlushFolderOf(target);
    return true;
}

bool FileReplacement::Finish()
{
    return Place(Rename::Over);
}

bool FileReplacement::FinishNew()
{
    return Place(Rename::New);
}

}  // namespace jotlet
