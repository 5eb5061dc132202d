#include "core/file_copy.h"

#include <cerrno>
#include <filesystem>

#include "platform/base/file_access.h"
#include "platform/base/file_system.h"
#include "platform/base/replace_file.h"
#include "platform/base/text.h"
#include "store/compaction.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

FileError Refused(const char* operation, const std::string& path, int systemError)
{
    return {FileErrorKindOf(systemError), operation, path, systemError};
}

// The copy of a file that stands nowhere yet is for the people who had the original; where that can't be, for its
// maker.
bool GiveAccess(FileReplacement& copy, FileHandle source, FileHandle target)
{
    return target == kNoFile ? KeepAccess(source, copy.Handle()) || Files().ChangeMode(copy.Handle(), kPrivateMode) == 0
                             : copy.KeepAccessOf(target);
}

}  // namespace

bool IsSameFile(const std::string& a, const std::string& b)
{
    std::error_code ignored;
    return EqualsFolded(a, b) || fs::equivalent(a, b, ignored);
}

CopyOutcome CopyTable(TableFile& source, const std::string& target, ProgressDisplay* progress, FileError* error)
{
    FileError ignored;
    FileError& failed = error ? *error : ignored;
    if (IsSameFile(source.Path(), target))
        return CopyOutcome::SameFile;
    // Held to the end, so that nobody can begin to work in a file that is about to go.
    FileHandleOwner old;
    if (FileExists(target) == 1) {
        bool proven = false;
        old.Reset(FileOpenAlone(target, proven));
        if (!old || !proven)
            return CopyOutcome::InUse;
    }
    source.Flush();
    const FileHandleOwner from(FileOpen(source.Path(), FileAccess::Read, FileSharing::Shared, &failed));
    if (!from)
        return CopyOutcome::Failed;
    FileReplacement copy;
    if (!copy.Start(target, kTableBesideSuffix) || !GiveAccess(copy, from.Get(), old.Get())) {
        failed = copy.Error() ? copy.Error() : Refused("write", target, errno);
        return CopyOutcome::Failed;
    }
    if (!WriteCompacted(from.Get(), copy.Handle(), target, progress)) {
        failed = Refused("write", copy.BesidePath(), errno);
        return CopyOutcome::Failed;
    }
    const bool isThere = static_cast<bool>(old);
    // Some drives may lose a file that is replaced while it is open, by us, too.
    if (isThere && !Files().IsLocal(old.Get()) && !Files().DriveUnder(old.Get()).replacesOpen)
        old.Reset();
    if (!(isThere ? copy.Finish() : copy.FinishNew())) {
        failed = copy.Error();
        return CopyOutcome::Failed;
    }
    return CopyOutcome::Done;
}

}  // namespace jotlet
