// Drives that have stopped answering.
//
// A call on a file of such a drive may wait for hours, and nothing ends that wait. Who watches a file from a thread of
// its own (store/stamp_watch.h) says here that the drive is silent. From then on every call of this process on what
// lies in the file's folder fails at once with ETIMEDOUT, whoever makes it, until the drive is said to answer again. A
// call that was on its way before goes on waiting. While no drive is silent this costs nothing.
//
// Threads: any.
#pragma once

#include <string>
#include <vector>

#include "platform/base/files.h"

namespace jotlet {

class FileSystem;

// The folders that a file is reached by: the one in `path` and, where a link leads elsewhere, the real one. Asks nobody
// but this system.
std::vector<std::string> FoldersOf(const std::string& path, FileHandle handle);

// For its own lifetime the drive under these folders counts as silent. Several may say so of one folder.
class SilentDrive {
public:
    explicit SilentDrive(std::vector<std::string> folders);
    ~SilentDrive();
    SilentDrive(const SilentDrive&) = delete;
    SilentDrive& operator=(const SilentDrive&) = delete;

private:
    std::vector<std::string> folders;
};

// Whether calls on `path` are refused at present.
bool IsOnSilentDrive(const std::string& path);

// For its own lifetime the calls of this thread reach silent drives all the same: for who watches.
class AskSilentDrives {
public:
    AskSilentDrives();
    ~AskSilentDrives();
    AskSilentDrives(const AskSilentDrives&) = delete;
    AskSilentDrives& operator=(const AskSilentDrives&) = delete;
};

// For Files(): true when a drive is silent and this thread is none that asks all the same; and what then stands before
// the file system in use.
bool AreDrivesRefused();
FileSystem& RefusingFiles();

}  // namespace jotlet
