#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/base/session.h"

namespace jotlet {

namespace {

// Made if missing; true when it is a directory of this user alone. A link of the name is not followed.
bool IsPrivateFolder(const std::string& path)
{
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        return false;
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
           (info.st_mode & 077) == 0;
}

}  // namespace

std::string SessionFolder()
{
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && runtime[0] == '/') {
        // Under sudo the variable may still name another user's directory, where a folder of ours would shut them out.
        struct stat info {};
        if (stat(runtime, &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid())
            if (std::string folder = std::string(runtime) + "/pinwell"; IsPrivateFolder(folder))
                return folder;
    }
    std::string folder = "/tmp/pinwell-" + std::to_string(geteuid());
    return IsPrivateFolder(folder) ? folder : std::string();
}

}  // namespace jotlet
