#include "interchange/engine/report_target.h"

#include <fcntl.h>

#include <cerrno>
#include <span>

#include "platform/base/file_system.h"

namespace jotlet {

namespace {

constexpr std::size_t kWriteChunk = std::size_t{1} << 18;

}  // namespace

ReportTarget::ReportTarget(const std::string& givenPath) : path(RealPathOf(givenPath))
{
    if (path.empty()) {
        Fail("create", ENOENT);
        return;
    }
    FileIdentity there;
    if (Files().IdentifyPath(path, there) != 0) {
        StartFresh(kUsualMode);
    } else if (there.isRegular) {
        old.Reset(FileOpen(path, FileAccess::ReadWrite, FileSharing::None, &error, 0));
        if (old && StartFresh(kPrivateMode) && !fresh.KeepAccessOf(old.Get()))
            error = fresh.Error();
    } else {
        // The opening does not wait for a reader, but the writes do.
        straight.Reset(Files().Open(path, O_WRONLY, 0));
        if (!straight || fcntl(straight.Get(), F_SETFL, O_WRONLY) != 0)
            Fail("open", errno);
    }
}

bool ReportTarget::StartFresh(unsigned mode)
{
    return fresh.Start(path, kBesideSuffix, mode) || Fail("create", fresh.Error().systemError);
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
        const std::int64_t written = Files().Write(straight ? straight.Get() : fresh.Handle(), rest);
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
    if (straight || fresh.Finish())
        return true;
    return Fail(fresh.Error().operation.c_str(), fresh.Error().systemError);
}

}  // namespace jotlet
