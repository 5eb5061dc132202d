#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

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

// For a process that finds no folder to meet others in.
class OwnFolder {
public:
    OwnFolder() : path("/tmp/pinwell-" + std::to_string(geteuid()) + "-XXXXXX"), owner(getpid())
    {
        if (!mkdtemp(path.data()))
            path.clear();
    }
    ~OwnFolder()
    {
        std::error_code ignored;
        if (!path.empty() && owner == getpid())
            std::filesystem::remove_all(path, ignored);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    std::string path;

private:
    pid_t owner;
};

std::string SharedFolder()
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

}  // namespace

std::string SessionFolder()
{
    std::string folder = SharedFolder();
    if (!folder.empty())
        return folder;
    static const OwnFolder own;
    return own.path;
}

bool IsSessionShared()
{
    return !SharedFolder().empty();
}

}  // namespace jotlet
