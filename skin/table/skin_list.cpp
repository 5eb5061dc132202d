#include "skin/table/skin_list.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/base/paths.h"
#include "platform/base/profile.h"
#include "platform/base/text.h"

namespace jotlet {

namespace {

constexpr std::string_view kSection = "Preference";
constexpr std::string_view kCurrentKey = "CurrSkin";
constexpr std::size_t kMaxNameBytes = 254;
constexpr std::size_t kMaxFileNameBytes = 259;
// A folder of more files than this is looked at no further.
constexpr std::size_t kMaxFolderEntries = 20'000;

bool IsRegularFile(const std::string& path)
{
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// In byte order, so that the same folder gives the same answers everywhere.
std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    if (DIR* walk = opendir(folder.c_str())) {
        while (const dirent* entry = readdir(walk)) {
            names.emplace_back(entry->d_name);
            if (names.size() == kMaxFolderEntries)
                break;
        }
        closedir(walk);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// One step down from `folder`: the name as given, else the first that differs in case alone; empty when there is none.
std::string StepInto(const std::string& folder, std::string_view name)
{
    std::string path = folder + '/' + std::string(name);
    struct stat info {};
    if (stat(path.c_str(), &info) == 0)
        return path;
    for (const std::string& other : NamesIn(folder))
        if (EqualsFolded(other, name))
            return folder + '/' + other;
    return {};
}

// The user's own first. Where the program folder can be written to, the two are one.
std::vector<std::string> StylesFolders()
{
    std::vector<std::string> folders{GetDataFilePath("Styles")};
    if (std::string shipped = GetStylesFolder(); shipped != folders[0])
        folders.push_back(std::move(shipped));
    return folders;
}

bool IsBareName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}

bool IsSkinFileName(std::string_view name)
{
    constexpr std::string_view ending = ".ini";
    return !name.starts_with('.') && name.size() > ending.size() &&
           EqualsFolded(name.substr(name.size() - ending.size()), ending);
}

std::optional<std::string> SkinName(const std::string& path)
{
    const auto text = ReadProfileFile(path);
    auto name = text ? FindProfileValue(*text, kSection, "name") : std::nullopt;
    if (!name || name->empty())
        return std::nullopt;
    return std::string(CutText(*name, kMaxNameBytes));
}

}  // namespace

std::string GetStylesFolder()
{
    return GetProgramFolder() + "/Styles";
}

std::vector<SkinEntry> ListSkins()
{
    std::vector<SkinEntry> skins;
    for (const std::string& folder : StylesFolders())
        for (const std::string& file : NamesIn(folder)) {
            if (skins.size() == kMaxSkins)
                break;
            if (!IsSkinFileName(file) || FindSkin(skins, file) >= 0)
                continue;
            if (auto name = SkinName(folder + '/' + file))
                skins.push_back({std::move(*name), file});
        }
    std::stable_sort(skins.begin(), skins.end(),
                     [](const SkinEntry& a, const SkinEntry& b) { return CompareFolded(a.skinName, b.skinName) < 0; });
    return skins;
}

std::string GetCurrentSkinFile()
{
    const auto chosen = GetSuiteIniPath().IniReadText(kSection, kCurrentKey);
    return std::string(chosen ? CutText(*chosen, kMaxFileNameBytes) : kDefaultSkinFile);
}

int SetCurrentSkinFile(std::string_view skinFile)
{
    return GetSuiteIniPath().IniWriteText(kSection, kCurrentKey, skinFile);
}

int FindSkin(const std::vector<SkinEntry>& skins, std::string_view skinFile)
{
    for (std::size_t i = 0; i < skins.size(); ++i)
        if (EqualsFolded(skins[i].skinFile, skinFile))
            return static_cast<int>(i);
    return -1;
}

std::string FindSkinPath(std::string_view skinFile)
{
    if (!IsBareName(skinFile))
        return {};
    for (const std::string& folder : StylesFolders())
        if (std::string path = StepInto(folder, skinFile); !path.empty() && IsRegularFile(path))
            return path;
    return {};
}

void GetSkinBitmapPath(std::string& fileName, std::string_view folder, std::string_view skinPath)
{
    std::string below = std::string(folder) + '/' + std::exchange(fileName, {});
    std::replace(below.begin(), below.end(), '\\', '/');
    const std::size_t slash = skinPath.rfind('/');
    if (slash == std::string_view::npos || below.starts_with("//") || folder.starts_with('/') ||
        folder.starts_with('\\'))
        return;
    std::string path(skinPath.substr(0, slash));
    for (std::size_t begin = 0; begin <= below.size();) {
        const std::size_t end = std::min(below.find('/', begin), below.size());
        const std::string_view step = std::string_view(below).substr(begin, end - begin);
        begin = end + 1;
        if (step.empty() || step == ".")
            continue;
        if (!IsBareName(step))
            return;
        path = StepInto(path, step);
        if (path.empty())
            return;
    }
    if (IsRegularFile(path))
        fileName = path;
}

}  // namespace jotlet
