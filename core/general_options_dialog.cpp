#include "core/general_options_dialog.h"

#include <span>
#include <string>

#include "platform/base/paths.h"
#include "platform/base/session.h"
#include "platform/base/start_program.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "toolkit/records/record_list_view.h"

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
    StartProgram({kTrayProgram});
}

}  // namespace

int RunGeneralOptions(MarlinWnd* frame)
{
    GeneralOptionsDialog dialog;
    dialog.DoModal(frame, general_options_ids::kDialog);
    BroadcastToCopies(kBroadcastSettingsChanged, static_cast<std::int64_t>(frame ? frame->window : 0));
    return 1;
}

MessageParam GeneralOptionsDialog::OnInitDialog(WndMessage&)
{
    const IniFile file = GetSuiteIniPath();
    for (const Setting& box : std::span(settings).first<3>())
        CheckItem(window, box.id, IsSet(file, box.key));
    if (TrayRuns()) {
        CheckItem(window, general_options_ids::kTray, true);
        Enable(general_options_ids::kTray, false);
    }
    for (int seconds = 1; seconds <= kLongestRefresh; ++seconds)
        AddRow(window, general_options_ids::kRefresh, std::to_string(seconds) + " sec.");
    int refresh = kDefaultRefresh;
    file.IniReadInt(kSection, "NetworkRefresh", refresh);
    SelectRow(window, general_options_ids::kRefresh, refresh >= 1 && refresh <= kLongestRefresh ? refresh - 1 : -1);
    for (Setting& setting : settings) {
        setting.read = file.IniReadText(kSection, setting.key);
        setting.shown = Shown(setting);
    }
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

std::string GeneralOptionsDialog::Shown(const Setting& setting) const
{
    if (setting.id == general_options_ids::kRefresh)
        return std::to_string(SelectedRow(window, general_options_ids::kRefresh) + 1);
    return Checked(setting.id) ? "1" : "0";
}

void GeneralOptionsDialog::Accept()
{
    const IniFile file = GetSuiteIniPath();
    // What another copy changed meanwhile, and the user here did not, stays as that copy left it.
    const auto store = [&](const Setting& setting) {
        const std::string chosen = Shown(setting);
        const std::optional<std::string> now = file.IniReadText(kSection, setting.key);
        if (chosen == setting.shown && now != setting.read)
            return now.value_or("1");
        file.IniWriteText(kSection, setting.key, chosen);
        return chosen;
    };
    SetSoundEnabled(store(settings[0]) == "1" ? 1 : 0);
    SetAnimationEnabled(store(settings[1]) == "1" ? 1 : 0);
    store(settings[2]);
    store(settings[3]);
    RecordListView::RestartAllRefreshTimers();
    if (Checked(general_options_ids::kTray) && IsEnabled(DialogItem(window, general_options_ids::kTray)) && !TrayRuns())
        StartTray();
    EndDialog(1);
}

}  // namespace jotlet
