#include "core/process.h"

#include <optional>
#include <utility>

#include "platform/base/calendar.h"
#include "platform/base/paths.h"
#include "skin/fonts.h"
#include "skin/sound.h"

namespace jotlet {
namespace {

constexpr std::string_view kSection = "Preference";

struct Process {
    std::string moduleName = "Jotlet";
    std::string commandLine;
};

Process& TheProcess()
{
    // Named and asked before there is any window.
    static Process process;
    return process;
}

// On unless the key says exactly "0".
int ReadSwitch(const IniFile& settings, std::string_view key)
{
    return settings.IniReadText(kSection, key) == "0" ? 0 : 1;
}

}  // namespace

const std::string& GetModuleName()
{
    return TheProcess().moduleName;
}

const std::string& GetCommandLineText()
{
    return TheProcess().commandLine;
}

void SetProcessNames(std::string moduleName, std::string commandLine)
{
    TheProcess().moduleName = std::move(moduleName);
    TheProcess().commandLine = std::move(commandLine);
}

std::string FrameClassName()
{
    return "MarlinWndApp_" + GetModuleName();
}

void LoadSharedResources()
{
    const IniFile settings = GetSuiteIniPath();
    SetSoundEnabled(ReadSwitch(settings, "Sound"));
    SetAnimationEnabled(ReadSwitch(settings, "Annimation"));
    SetSplashEnabled(ReadSwitch(settings, "Splash"));
    if (int lastYear = 0; settings.IniReadInt(kSection, "LastYear", lastYear))
        SetCalendarLastYear(lastYear);
}

void FreeSharedResources()
{
    FreeFonts();
}

}  // namespace jotlet
