#include "store/stamp_watch.h"

#include <algorithm>
#include <cerrno>

#include "platform/base/file_system.h"
#include "platform/base/silent_drive.h"
#include "store/table_file.h"

namespace jotlet {

StampWatch::StampWatch(const TableFile& table)
    : identity(table.identity),
      file(table.IsOpen() ? Files().OpenAgain(table.file.Get(), 0) : kNoFile),
      path(table.Path()),
      folders(FoldersOf(table.Path(), table.file.Get()))
{
}

bool StampWatch::Look(std::uint64_t& stamp, FileError& error) const
{
    const AskSilentDrives asks;
    errno = EBADF;
    if (file && file.Read(BytesOf(stamp), kStampAt))
        return true;
    error = {FileErrorKindOf(errno), "read", path, errno};
    return false;
}

StampWatch::PathState StampWatch::LookAtPath() const
{
    const AskSilentDrives asks;
    FileIdentity named;
    if (Files().IdentifyPath(path, named) == 0)
        return named.SameFile(identity) ? PathState::ThisFile : PathState::Elsewhere;
    if (errno != ENOENT && errno != ENOTDIR)
        return PathState::Unknown;
    return IsMounted() ? PathState::Elsewhere : PathState::Unmounted;
}

bool StampWatch::IsMounted() const
{
    FileIdentity found;
    for (std::string folder = folders.empty() ? path : folders.back(); !folder.empty();) {
        if (Files().IdentifyPath(folder, found) == 0)
            return found.device == identity.device;
        folder.erase(std::min(folder.rfind('/'), folder.size()));
    }
    return false;
}

}  // namespace jotlet
