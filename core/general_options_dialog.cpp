#include "core/general_options_dialog.h"

#include <spawn.h>

#include <string>

#include "platform/base/paths.h"
#include "platform/base/session.h"
#include "skin/sound.h"
#include "toolkit/marlin_wnd_list_view.h"

extern char** environ;

namespace jotlet {
namespace {

constexpr std::string_view kSection = "Preference";
constexpr int kLongestRefresh = 120;
constexpr int kDefaultRefresh = 2;
// The suite's tray application: the name that it holds while it runs, and its program.
constexpr std::string_view kTrayName = "ClassMarlinTray";
constexpr const char* kTrayProgram = "pinwell";

bool IsSet(const IniFile& settings, std::string_view key)
{
    return settings.IniReadText(kSection, key).value_or("1") == "1";
}

bool TrayRuns()
{
    SessionGuard probe;
    return probe.Take(kTrayName) == GuardResult::InUse;
}

// From the search path; a program that isn't there gives no message.
void StartTray()
{
    std::string name = kTrayProgram;
    char* arguments[] = {name.data(), nullptr};
    pid_t child = 0;
    posix_spawnp(&child, kTrayProgram, nullptr, nullptr, arguments, environ);
}

}  // namespace

int RunGeneralOptions(MarlinWnd* frame)
{
    GeneralOptionsDialog dialog;
    dialog.DoModal(frame, GeneralOptionsDialog::kTemplate);
    BroadcastToCopies(kBroadcastSettingsChanged, static_cast<std::int64_t>(frame ? frame->window : 0));
    return 1;
}

MessageParam GeneralOptionsDialog::OnInitDialog(WndMessage&)
{
    const IniFile settings = GetSuiteIniPath();
    CheckItem(window, kSoundId, IsSet(settings, "Sound"));
    CheckItem(window, kAnimationId, IsSet(settings, "Annimation"));
    CheckItem(window, kSplashId, IsSet(settings, "Splash"));
    if (TrayRuns()) {
        CheckItem(window, kTrayId, true);
        Enable(kTrayId, false);
    }
    for (int seconds = 1; seconds <= kLongestRefresh; ++seconds)
        AddRow(window, kRefreshId, std::to_string(seconds) + " sec.");
    int refresh = kDefaultRefresh;
    settings.IniReadInt(kSection, "NetworkRefresh", refresh);
    SelectRow(window, kRefreshId, refresh >= 1 && refresh <= kLongestRefresh ? refresh - 1 : -1);
    CentreOverParent();
    return 1;
}

MessageParam GeneralOptionsDialog::OnCommand(WndMessage& record)
{
    if (LowWord(record.wParam) != kIdOk)
        return MarlinDialog::OnCommand(record);
    Accept();
    return 1;
}

void GeneralOptionsDialog::Accept()
{
    const IniFile settings = GetSuiteIniPath();
    const auto store = [&](std::string_view key, int id) {
        settings.IniWriteText(kSection, key, Checked(id) ? "1" : "0");
        return Checked(id) ? 1 : 0;
    };
    SetSoundEnabled(store("Sound", kSoundId));
    SetAnimationEnabled(store("Annimation", kAnimationId));
    store("Splash", kSplashId);
    settings.IniWriteInt(kSection, "NetworkRefresh", SelectedRow(window, kRefreshId) + 1);
    MarlinWndListView::RestartAllRefreshTimers();
    if (Checked(kTrayId) && IsEnabled(DialogItem(window, kTrayId)) && !TrayRuns())
        StartTray();
    EndDialog(1);
}

}  // namespace jotlet
