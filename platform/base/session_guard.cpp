#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "platform/base/session.h"

namespace jotlet {

namespace {

std::string LockFileName(std::string_view name)
{
    std::string out;
    for (const char c : name) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                           c == '-' || c == '.';
        out += plain ? c : '_';
    }
    return out + ".lock";
}

}  // namespace

SessionGuard::~SessionGuard()
{
    Release();
}

GuardResult SessionGuard::Take(std::string_view name)
{
    Release();
    const std::string folder = SessionFolder();
    if (folder.empty())
        return GuardResult::Failed;
    // The file stays when the lock goes: were it removed, two copies could each lock a file of this name. Programs that
    // we start must not inherit the lock.
    const std::string path = folder + '/' + LockFileName(name);
    const int opened = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (opened < 0)
        return GuardResult::Failed;
    int locked = -1;
    do {
        locked = flock(opened, LOCK_EX | LOCK_NB);
    } while (locked != 0 && errno == EINTR);
    if (locked != 0) {
        const bool inUse = errno == EWOULDBLOCK;
        close(opened);
        return inUse ? GuardResult::InUse : GuardResult::Failed;
    }
    fd = opened;
    return GuardResult::Taken;
}

void SessionGuard::Release()
{
    if (fd >= 0)
        close(fd);
    fd = -1;
}

}  // namespace jotlet
