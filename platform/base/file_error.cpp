#include "platform/base/file_error.h"

#include <cerrno>

namespace jotlet {

FileErrorKind FileErrorKindOf(int systemError)
{
    switch (systemError) {
        case 0:
            return FileErrorKind::None;
        case ENOENT:
        case ENOTDIR:
            return FileErrorKind::Missing;
        case EBUSY:
        case ETXTBSY:
        case EAGAIN:
            return FileErrorKind::Busy;
        case EACCES:
        case EPERM:
        case EROFS:
            return FileErrorKind::Permission;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return FileErrorKind::NoSpace;
        case EISDIR:
        case ENXIO:
        case ENODEV:
            return FileErrorKind::NotRegularFile;
        case ETIMEDOUT:
        case ESTALE:
        case EHOSTDOWN:
        case EHOSTUNREACH:
        case ENETDOWN:
        case ENETUNREACH:
        case ENETRESET:
        case ENOTCONN:
        case ECONNABORTED:
        case ECONNREFUSED:
        case ECONNRESET:
        case ESHUTDOWN:
        case EREMOTEIO:
            return FileErrorKind::NoAnswer;
        default:
            return FileErrorKind::Io;
    }
}

}  // namespace jotlet
