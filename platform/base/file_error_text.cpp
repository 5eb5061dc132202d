#include "platform/base/file_error_text.h"

#include <cstring>

namespace jotlet {
namespace {

const char* TextOf(FileErrorKind kind)
{
    switch (kind) {
        case FileErrorKind::Missing:
            return "There is no such file or folder. Check the name.";
        case FileErrorKind::Busy:
            return "The file is in use by another program. Close it there, or choose another.";
        case FileErrorKind::Permission:
            return "The file or its folder may not be used. Check the permissions.";
        case FileErrorKind::NoSpace:
            return "The disk is full. Make room and try again.";
        case FileErrorKind::NotRegularFile:
            return "This is a folder or a device. Choose a file.";
        case FileErrorKind::NoAnswer:
            return "The drive does not answer. Try again when it is back.";
        case FileErrorKind::NotOurs:
            return "The file belongs to somebody else, and rewriting it would take it from its owner or from people "
                   "who share it. Ask its owner to do it.";
        case FileErrorKind::None:
        case FileErrorKind::Io:
            break;
    }
    return "The file cannot be read or written. Check the disk.";
}

}  // namespace

std::string FileErrorText(const FileError& error)
{
    return TextOf(error.kind) + SystemReason(error.systemError);
}

std::string SystemReason(int systemError)
{
    return systemError != 0 ? std::string(" (") + std::strerror(systemError) + ")" : std::string();
}

}  // namespace jotlet
