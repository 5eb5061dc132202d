// The one way to put a whole new file in the place of another, or under a new name.
//
// It is written beside the file that the path leads to (a link stays a link), which nobody but its maker can read until
// it is given the old one's access, synced, renamed over the path, and the folder is synced. So the path names the
// whole old file or the whole new one at every moment, whatever ends the process or the power.
//
//   FileReplacement fresh;
//   if (fresh.Start(path) && fresh.KeepAccessOf(old) && <write to fresh.Handle()> && fresh.Finish()) ... else Error()
//
// Two that replace one file at once would each drop the other's changes: who reads before he writes holds the old file
// alone (FileOpenAlone) meanwhile. What a killed process left beside is removed by the next Start.
//
// Owns:    the new file, handle and name, until Finish; without it nothing stays behind. The handle stays open, without
//          sharing, until the object goes, so nobody can open the new file before.
// Errors:  nothing throws; false, and Error() tells.
#pragma once

#include <string>
#include <string_view>

#include "platform/base/file_error.h"
#include "platform/base/files.h"

namespace jotlet {

// The file that a path leads to; the path itself when there is nothing to follow.
std::string RealPathOf(const std::string& path);

// What the new file is called until it has its name: the path and this.
inline constexpr std::string_view kBesideSuffix = ".jotlet-new";
// For table files. Whoever finds one of these with the table alone in his hands may remove it.
inline constexpr std::string_view kTableBesideSuffix = ".temp";

// Modes that a new file can begin with, less the umask.
inline constexpr unsigned kPrivateMode = 0600;
inline constexpr unsigned kUsualMode = 0666;

class FileReplacement {
public:
    FileReplacement() = default;
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Makes the new file, empty, open for reading and writing. kUsualMode is for a file that replaces none. Waits for
    // another process that makes a file for the same path.
    bool Start(const std::string& path, std::string_view suffix = kBesideSuffix, unsigned mode = kPrivateMode);
    FileHandle Handle() const { return handle.Get(); }
    // Gives the new file what KeepAccess (file_access.h) tells. False with FileErrorKind::NotOurs: the same people
    // would not keep their access, so the old file is better left as it is.
    bool KeepAccessOf(FileHandle old);
    // The new file takes the place of the old one. False leaves the old one as it was.
    bool Finish();
    // The same where no file may stand yet; one that does fails it with EEXIST.
    bool FinishNew();

    // What is replaced, and where the new file is written; empty before Start.
    const std::string& Target() const { return target; }
    const std::string& BesidePath() const { return beside; }
    const FileError& Error() const { return error; }

private:
    enum class Rename { Over, New };

    bool Fail(const char* operation, int systemError);
    bool Make(unsigned mode);
    bool RemoveLeftover();
    bool NamesOurs() const;
    bool Place(Rename way);

    std::string target;
    std::string beside;
    bool made = false;  // `beside` is ours to remove
    FileHandleOwner handle;
    FileError error;
};

}  // namespace jotlet
