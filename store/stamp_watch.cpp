#include "store/stamp_watch.h"

#include <cerrno>

#include "platform/base/file_system.h"
#include "store/table_file.h"

namespace jotlet {

StampWatch::StampWatch(const TableFile& table)
    : identity(table.identity),
      file(table.IsOpen() ? Files().OpenAgain(table.file.Get(), 0) : kNoFile),
      path(table.Path())
{
}

bool StampWatch::Look(std::uint64_t& stamp, FileError& error) const
{
    errno = EBADF;
    if (file && file.Read(BytesOf(stamp), kStampAt))
        return true;
    error = {FileErrorKindOf(errno), "read", path, errno};
    return false;
}

StampWatch::PathState StampWatch::LookAtPath() const
{
    FileIdentity named;
    if (Files().IdentifyPath(path, named) == 0)
        return named.SameFile(identity) ? PathState::ThisFile : PathState::Elsewhere;
    return errno == ENOENT || errno == ENOTDIR ? PathState::Elsewhere : PathState::Unknown;
}

}  // namespace jotlet
