#include "core/old_place.h"

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/base/paths.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSection = "Preference";
constexpr std::string_view kDefaultFile = "DefaulFile";

// In one step: what is there is whole. Nothing when there is nothing to copy, or something to copy over.
void CopyMissing(const fs::path& from, const fs::path& to)
{
    std::error_code failed;
    if (!fs::exists(from, failed) || fs::exists(to, failed))
        return;
    const fs::path fresh = to.string() + ".copying";
    fs::remove_all(fresh, failed);
    fs::copy(from, fresh, fs::copy_options::recursive | fs::copy_options::copy_symlinks, failed);
    if (!failed)
        fs::rename(fresh, to, failed);
    if (failed)
        fs::remove_all(fresh, failed);
}

// The settings last: their presence says that all is done. The file used last is from now on the copy.
void CopySettings(const fs::path& from, const fs::path& to, const std::string& oldFolder)
{
    std::error_code failed;
    const fs::path fresh = to.string() + ".copying";
    fs::copy_file(from, fresh, fs::copy_options::overwrite_existing, failed);
    if (failed)
        return;
    const IniFile settings(fresh.string());
    const std::string last = settings.IniReadText(kSection, kDefaultFile).value_or("");
    if (last.starts_with(oldFolder + '/')) {
        const std::string inside = last.substr(oldFolder.size() + 1);
        if (fs::exists(GetDataFilePath(inside), failed))
            settings.IniWriteText(kSection, kDefaultFile, inside);
    }
    fs::rename(fresh, to, failed);
}

}  // namespace

void TakeOverOldPlace()
{
    const std::string oldFolder = GetProgramFolder();
    const fs::path settings = GetModuleIniPath().Path();
    const fs::path oldSettings = fs::path(oldFolder) / settings.filename();
    std::error_code failed;
    if (IsPortable() || fs::exists(settings, failed) || !fs::exists(oldSettings, failed))
        return;
    for (const char* name : {"Works", "E-Book.tb1", "Pinwell.ini"})
        CopyMissing(fs::path(oldFolder) / name, GetDataFilePath(name));
    CopySettings(oldSettings, settings, oldFolder);
}

}  // namespace jotlet
