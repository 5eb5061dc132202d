#include "interchange/engine/report_target.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <random>
#include <span>

#include "platform/base/file_system.h"

namespace jotlet {

namespace {

constexpr std::size_t kWriteChunk = std::size_t{1} << 18;
constexpr int kNameAttempts = 16;

// The file that a link leads to; the path itself when there is nothing to follow.
std::string Resolve(const std::string& path)
{
    const std::unique_ptr<char, decltype(&free)> real(realpath(path.c_str(), nullptr), &free);
    return real ? real.get() : path;
}

std::string NameBeside(const std::string& path)
{
    std::random_device device;
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, ".%08x", static_cast<unsigned>(device()));
    return path + suffix;
}

}  // namespace

ReportTarget::ReportTarget(const std::string& givenPath) : path(Resolve(givenPath))
{
    if (path.empty()) {
        Fail("create", ENOENT);
        return;
    }
    FileIdentity there;
    if (Files().IdentifyPath(path, there) != 0) {
        OpenBeside(0666);
        return;
    }
    if (S_ISDIR(there.mode)) {
        error = {FileErrorKind::NotRegularFile, "create", path, EISDIR};
        return;
    }
    if (!there.isRegular) {
        // The opening does not wait for a reader, but the writes do.
        handle = Files().Open(path, O_WRONLY, 0);
        if (handle < 0 || fcntl(handle, F_SETFL, O_WRONLY) != 0)
            Fail("open", errno);
        return;
    }
    old.Reset(FileOpen(path, FileAccess::ReadWrite, FileSharing::None, &error, 0));
    if (old)
        OpenBeside(there.mode & 0777);
}

ReportTarget::~ReportTarget()
{
    if (handle >= 0)
        Files().Close(handle);
    if (!writtenPath.empty())
        Files().Remove(writtenPath);
}

bool ReportTarget::OpenBeside(unsigned mode)
{
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string name = NameBeside(path);
        handle = Files().Open(name, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (handle >= 0) {
            writtenPath = name;
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return Fail("create", errno);
}

bool ReportTarget::Fail(const char* operation, int systemError)
{
    if (!error)
        error = {FileErrorKindOf(systemError), operation, path, systemError};
    return false;
}

bool ReportTarget::Append(std::string_view text)
{
    if (error)
        return false;
    pending += text;
    return pending.size() < kWriteChunk || WriteOut();
}

bool ReportTarget::WriteOut()
{
    std::span<const std::byte> rest = std::as_bytes(std::span(pending));
    while (!rest.empty()) {
        const std::int64_t written = Files().Write(handle, rest);
        if (written <= 0)
            return Fail("write", written < 0 ? errno : ENOSPC);
        rest = rest.subspan(static_cast<std::size_t>(written));
    }
    pending.clear();
    return true;
}

bool ReportTarget::Finish()
{
    if (error || !WriteOut())
        return false;
    if (writtenPath.empty())
        return true;
    if (Files().Sync(handle) != 0)
        return Fail("sync", errno);
    Files().Close(handle);
    handle = kNoFile;
    if (Files().Rename(writtenPath, path) != 0)
        return Fail("rename", errno);
    writtenPath.clear();
    return true;
}

}  // namespace jotlet
