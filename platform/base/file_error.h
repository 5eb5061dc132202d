// What went wrong with a file, for whoever tells the user: a kind to branch on, and what was done to which path.
// No texts for people here; they are made by the dialog or the command line tool that shows them.
#pragma once

#include <string>

namespace jotlet {

enum class FileErrorKind {
    None,
    Missing,         // no such file, or a folder on the way is missing
    Busy,            // another opening holds it in a way that excludes this one
    Permission,      // the file or its folder may not be read or written, or lies on a read-only file system
    NoSpace,         // disk full, quota, or the largest file size reached
    NotRegularFile,  // a folder, a device, a pipe or a socket
    NoAnswer,        // the drive doesn't answer, or its connection was lost; later it may work
    NotOurs,         // replacing it would take it from its owner, or from people who share it
    Io,              // everything else that the system refuses
};

struct FileError {
    FileErrorKind kind = FileErrorKind::None;
    std::string operation;  // "open", "read", "write", "sync", "rename", "lock", ...
    std::string path;
    int systemError = 0;  // errno, 0 when the refusal is our own

    explicit operator bool() const { return kind != FileErrorKind::None; }
};

// The kind that an errno stands for; None for 0.
FileErrorKind FileErrorKindOf(int systemError);

}  // namespace jotlet
