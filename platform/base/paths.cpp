#include "platform/base/paths.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>

namespace jotlet {

namespace {

struct ProgramPlace {
    std::string path;
    std::string folder;
    bool portable = false;
};

// Found out once: a program does not move while it runs.
std::optional<ProgramPlace> place;

std::string FolderOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

std::string Join(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (path.empty() || path.back() != '/')
        path += '/';
    return path += name;
}

bool IsFolder(const std::string& path)
{
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool FileIsThere(const std::string& path)
{
    struct stat info {};
    return stat(path.c_str(), &info) == 0;
}

ProgramPlace PlaceOf(std::string path)
{
    ProgramPlace found;
    found.folder = FolderOf(path);
    found.path = std::move(path);
    found.portable = FileIsThere(Join(found.folder, "portable")) && access(found.folder.c_str(), W_OK | X_OK) == 0;
    return found;
}

const ProgramPlace& Place()
{
    if (!place) {
        std::error_code error;
        std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
        if (error)
            path = "./jotlet";
        // What the system says of an executable that was replaced while it runs.
        constexpr std::string_view deleted = " (deleted)";
        if (path.ends_with(deleted) && !FileIsThere(path))
            path.resize(path.size() - deleted.size());
        place = PlaceOf(std::move(path));
    }
    return *place;
}

std::string UserDataHome()
{
    if (const char* home = std::getenv("XDG_DATA_HOME"); home != nullptr && home[0] == '/')
        return home;
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/')
        return Join(home, ".local/share");
    const passwd* user = getpwuid(geteuid());
    return Join(user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/", ".local/share");
}

// Makes `path` and what is missing above it, for this user alone.
bool MakeFolders(const std::string& path)
{
    if (IsFolder(path))
        return true;
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), 0700);
    mkdir(path.c_str(), 0700);
    return IsFolder(path);
}

IniFile IniBeside(std::string_view fileName)
{
    std::string written = GetDataFilePath(fileName);
    std::string shipped = Join(Place().folder, fileName);
    if (written == shipped)
        return IniFile(std::move(written));
    return IniFile(std::move(written), std::move(shipped));
}

}  // namespace

const std::string& GetProgramPath()
{
    return Place().path;
}

void SetProgramPath(std::string path)
{
    if (path.empty())
        place.reset();
    else
        place = PlaceOf(std::move(path));
}

std::string GetProgramFolder()
{
    return Place().folder;
}

bool IsPortable()
{
    return Place().portable;
}

std::string GetDataFolder()
{
    if (IsPortable())
        return Place().folder;
    std::string folder = Join(UserDataHome(), "Jotlet");
    // A failure shows at the first write into it.
    MakeFolders(folder);
    return folder;
}

std::string GetProgramFilePath(std::string_view fileName)
{
    std::string written = GetDataFilePath(fileName);
    return FileIsThere(written) ? written : Join(Place().folder, fileName);
}

std::string GetDataFilePath(std::string_view fileName)
{
    return Join(GetDataFolder(), fileName);
}

IniFile GetModuleIniPath()
{
    const std::string name = GetBareFileName(Place().path);
    const std::size_t dot = name.rfind('.');
    return IniBeside(name.substr(0, dot == 0 ? std::string::npos : dot) + ".ini");
}

IniFile GetSuiteIniPath(std::string_view fileName)
{
    return IniBeside(fileName);
}

int EnsureWorksFolder()
{
    const std::string folder = GetDataFilePath("Works");
    if (IsFolder(folder))
        return 1;
    return mkdir(folder.c_str(), 0777) == 0 || (errno == EEXIST && IsFolder(folder)) ? 1 : 0;
}

int GetWorksFolder(std::string& path)
{
    path = GetDataFilePath("Works");
    return EnsureWorksFolder();
}

int GetWorksFilePath(std::string& path, std::string_view fileName)
{
    if (GetWorksFolder(path) != 1) {
        path.clear();
        return 0;
    }
    path = Join(path, fileName);
    return 1;
}

std::string GetHelpFilePath(std::string_view fileName)
{
    return GetProgramFilePath(Join("Help", fileName));
}

std::string PathForSettings(const std::string& path)
{
    const std::string inside = Join(GetDataFolder(), "");
    return path.size() > inside.size() && path.starts_with(inside) ? path.substr(inside.size()) : path;
}

std::string PathFromSettings(const std::string& stored)
{
    return stored.empty() || stored.front() == '/' ? stored : GetDataFilePath(stored);
}

std::string GetBareFileName(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

}  // namespace jotlet
