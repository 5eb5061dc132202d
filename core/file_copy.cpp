#include "core/file_copy.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <memory>

#include "platform/base/file_system.h"
#include "platform/base/files.h"
#include "platform/base/text.h"
#include "store/compaction.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunk = std::size_t{1} << 18;

FileError Refused(const char* operation, const std::string& path, int systemError)
{
    return {FileErrorKindOf(systemError), operation, path, systemError};
}

bool CopyBytes(FileHandle from, FileHandle to)
{
    const auto buffer = std::make_unique<std::array<std::byte, kChunk>>();
    for (;;) {
        const std::int64_t got = FileRead(from, buffer->data(), buffer->size());
        if (got <= 0)
            return got == 0 && FileFlush(to) == 1;
        std::int64_t put = 0;
        while (put < got) {
            const std::int64_t moved = FileWrite(to, buffer->data() + put, static_cast<std::size_t>(got - put));
            if (moved <= 0) {
                if (moved == 0)
                    errno = ENOSPC;
                return false;
            }
            put += moved;
        }
    }
}

// The copy under its temporary name. False: nothing is left.
bool WriteTemporary(const std::string& source, const std::string& temporary, FileError& error)
{
    const FileHandleOwner from(FileOpen(source, FileAccess::Read, FileSharing::Shared, &error));
    if (!from)
        return false;
    Files().Remove(temporary);  // whatever a killed copy left there, a link perhaps
    FileHandleOwner to(FileCreate(temporary, &error));
    if (!to) {
        Files().Remove(temporary);
        return false;
    }
    errno = 0;
    if (CopyBytes(from.Get(), to.Get()))
        return true;
    error = Refused("write", temporary, errno ? errno : EIO);
    to.Reset();
    Files().Remove(temporary);
    return false;
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
    if (FileExists(target) == 1 && FileIsBusy(target))
        return CopyOutcome::InUse;
    source.Flush();
    const std::string temporary = target + ".temp" + std::to_string(getpid());
    if (!WriteTemporary(source.Path(), temporary, failed))
        return CopyOutcome::Failed;
    if (Files().Rename(temporary, target) != 0) {
        failed = Refused("rename", target, errno);
        Files().Remove(temporary);
        return CopyOutcome::Failed;
    }
    FlushFolderOf(target);
    CheckAfterCrash(target, 1, progress);
    return CopyOutcome::Done;
}

}  // namespace jotlet
