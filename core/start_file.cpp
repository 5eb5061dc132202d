#include "core/start_file.h"

#include <filesystem>

#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

constexpr std::string_view kSection = "Preference";
constexpr std::string_view kDefaultFile = "DefaulFile";
constexpr std::string_view kExamples = "RecordExample";
constexpr std::string_view kPane = "PaneId";

bool Exists(const std::string& path)
{
    return FileExists(path) == 1;
}

// `jotlet.jot` for a program called Jotlet or jotlet.exe; only the file's own name is turned to lower case.
std::string DefaultFileName(std::string_view extension)
{
    const std::string base = std::filesystem::path(GetProgramPath()).stem().string();
    return LowerAscii(base + "." + std::string(extension));
}

}  // namespace

StartFile FindStartFile(std::string_view commandLine, std::string_view extension)
{
    const std::string asked(commandLine);
    if (!asked.empty() && Exists(asked))
        return {StartSource::CommandLine, asked};

    const auto last = GetModuleIniPath().IniReadText(kSection, kDefaultFile);
    if (last) {
        const std::string path = PathFromSettings(*last);
        return Exists(path) ? StartFile{StartSource::Default, path} : StartFile{StartSource::AskUser, path};
    }

    std::string first;
    if (!GetWorksFilePath(first, DefaultFileName(extension)) || Exists(first))
        return {};
    return {StartSource::FirstRun, first};
}

void StoreDefaultFile(std::string_view path)
{
    GetModuleIniPath().IniWriteText(kSection, kDefaultFile, PathForSettings(std::string(path)));
}

bool WantsExamples()
{
    return GetModuleIniPath().IniReadText(kSection, kExamples).value_or("1") == "1";
}

void StoreWantsExamples(bool wanted)
{
    GetModuleIniPath().IniWriteText(kSection, kExamples, wanted ? "1" : "0");
}

int StoredPaneIndex()
{
    int index = 1;
    GetModuleIniPath().IniReadInt(kSection, kPane, index);
    return index;
}

void StorePaneIndex(int index)
{
    GetModuleIniPath().IniWriteInt(kSection, kPane, index);
}

}  // namespace jotlet
