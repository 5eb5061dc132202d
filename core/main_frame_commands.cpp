// The part of MainFrame that turns keys, menus and broadcasts into work.
#include <array>

#include "core/commands.h"
#include "core/main_frame.h"
#include "core/process.h"
#include "core/skins_dialog.h"
#include "platform/base/paths.h"
#include "platform/base/session.h"
#include "platform/desktop/menu.h"
#include "resources/string_table.h"
#include "skin/skin_bitmaps.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "toolkit/marlin_wnd_list_view.h"
#include "toolkit/pane_list.h"

namespace jotlet {
namespace {

constexpr std::string_view kSuiteWeb = "https://www.pinwell.example/";
constexpr std::string_view kCompanyWeb = "https://company.pinwell.example/";
constexpr int kMenuGap = 4;  // between the bar's item and its menu

// What each code of the accelerator table becomes.
struct KeyCommand {
    int command;
    int value;
};
constexpr std::array<KeyCommand, kCmdLastKey - kCmdFirstKey + 1> kKeyCommands = {{
    {kCmdNewNote, 0},
    {kCmdFind, 0},
    {kCmdNewFile, 0},
    {kCmdOpenFile, 0},
    {kCmdPrintReport, 0},
    {kCmdHelpContents, 0},
    {kCmdFileMenu, 0},
    {kCmdHelpMenu, 0},
    {kCmdShowPane, 0},
    {kCmdShowPane, 1},
    {kCmdCut, 0},
    {kCmdCopy, 0},
    {kCmdPaste, 0},
    {kCmdUndoDelete, 0},
    {kCmdOpenAttachment, 0},
    {kCmdEditNote, 0},
    {kCmdDeleteNote, 0},
}};

MenuEntry FromString(int stringId, int command)
{
    return {.text = std::string(LoadStringResource(stringId)), .command = command};
}

const MenuEntry kSeparator{};

// A name from a file, in which '&' marks no key.
std::string MenuText(std::string_view name)
{
    std::string text;
    for (const char c : name)
        text.append(c == '&' ? 2 : 1, c);
    return text;
}

}  // namespace

MessageParam MainFrame::Dispatch(WndMessage& record)
{
    if (record.message != kUniqueMessage)
        return MarlinWnd::Dispatch(record);
    switch (record.wParam) {
        case kBroadcastSettingsChanged:
            OnSettingsChanged(record.lParam);
            break;
        case kBroadcastSkinChanged:
            OnSkinChanged();
            break;
        case kBroadcastComeUp:
            if (GetCommandLineText().empty())
                BringProgramToForeground(window, TakeActivationToken());
            break;
        default:
            break;
    }
    return 0;
}

// The copy in which they were changed has taken them over already.
void MainFrame::OnSettingsChanged(MessageParam sender)
{
    if (sender == static_cast<MessageParam>(window))
        return;
    const IniFile settings = GetSuiteIniPath();
    if (int value = 0; settings.IniReadInt("Preference", "Sound", value))
        SetSoundEnabled(value);
    if (int value = 0; settings.IniReadInt("Preference", "Annimation", value))
        SetAnimationEnabled(value);
    MarlinWndListView::RestartAllRefreshTimers();
}

void MainFrame::OnSkinChanged()
{
    ReloadSkin();
    Invalidate(nullptr, 1);
    if (paneBar)
        paneBar->Invalidate(nullptr, 1);
    DrawFrame();
}

MessageParam MainFrame::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    if (command >= kCmdFirstKey && command <= kCmdLastKey) {
        PostCommandOfKey(command);
        return 0;
    }
    if (command >= kCmdFirstSkin && command <= kCmdLastSkin) {
        ChooseSkinFromMenu(command);
        return 0;
    }
    switch (command) {
        case kCmdShowPane:
            SwitchPane(static_cast<int>(record.lParam), Animate::Yes);
            break;
        case kCmdFileMenu:
            ShowFileMenu();
            break;
        case kCmdHelpMenu:
            ShowHelpMenu();
            break;
        case kCmdHelpContents:
            ShowHelp(0);
            break;
        case kCmdSuiteWeb:
            OpenDocument(kSuiteWeb);
            break;
        case kCmdCompanyWeb:
            OpenDocument(kCompanyWeb);
            break;
        case kCmdOffer:
            OpenHelpPage("kestrel.htm", true);
            break;
        case kCmdSkins:
            ShowSkinDialog(this);
            break;
        default:
            break;
    }
    return 0;
}

void MainFrame::PostCommandOfKey(int code)
{
    if (code == kCmdKeyShowSecondPane && GetCurrentPaneIndex() != 0)
        return;
    if (code == kCmdKeyCut && GetCurrentPaneIndex() != 1)
        return;
    if (code == kCmdKeyReturn && ReturnGoesToFocus()) {
        SendTo(FocusedWindow(), kWmKeyDown, kKeyReturn, 0);
        return;
    }
    const KeyCommand& key = kKeyCommands[static_cast<std::size_t>(code - kCmdFirstKey)];
    PostRequest(window, kWmCommand, key.command, key.value);
}

// A bar that has the focus is worked by Return like by Space.
bool MainFrame::ReturnGoesToFocus() const
{
    const MarlinWnd* focused = FromHandle(FocusedWindow());
    return focused && focused->UsesReturnKey();
}

void MainFrame::PopUpUnder(int barCommand, const std::vector<MenuEntry>& entries)
{
    Rect item;
    if (toolBar->GetItemRect(barCommand, item) == MarlinToolBar::kNoItem)
        return;
    RectToScreen(toolBar->window, item);
    TrackPopupMenu(window, entries, {item.left, item.bottom + kMenuGap});
}

void MainFrame::ShowFileMenu()
{
    PopUpUnder(kCmdFileMenu, {
                                 FromString(3006, kCmdNewFile),
                                 FromString(3007, kCmdOpenFile),
                                 kSeparator,
                                 FromString(3019, kCmdSaveAs),
                                 FromString(3013, kCmdCompact),
                                 kSeparator,
                                 FromString(3050, kCmdImport),
                                 FromString(3051, kCmdExport),
                                 kSeparator,
                                 FromString(3052, kCmdPrintReport),
                                 kSeparator,
                                 FromString(3009, kCmdPasswords),
                                 {.text = "&Who has this file...", .command = kCmdWhoHasFile},
                                 kSeparator,
                                 FromString(3014, kCmdContacts),
                                 FromString(3016, kCmdServerSetup),
                                 FromString(3008, kCmdOptions),
                                 kSeparator,
                                 {.text = "Ski&ns...", .command = kCmdSkins},
                                 kSeparator,
                                 FromString(3010, kCmdExit),
                             });
}

void MainFrame::ShowHelpMenu()
{
    PopUpUnder(kCmdHelpMenu, {
                                 FromString(3011, kCmdHelpContents),
                                 kSeparator,
                                 {.text = "&Company Web", .command = kCmdCompanyWeb},
                                 {.text = "&Pinwell Web", .command = kCmdSuiteWeb},
                                 kSeparator,
                                 {.text = "Try Kestrel Planner", .command = kCmdOffer},
                                 kSeparator,
                                 FromString(3012, kCmdAbout),
                             });
}

void MainFrame::PopUpSkins()
{
    offeredSkins = ListSkins();
    if (offeredSkins.empty())
        return;
    const int current = FindSkin(offeredSkins, GetCurrentSkinFile());
    std::vector<MenuEntry> entries;
    for (int i = 0; i < static_cast<int>(offeredSkins.size()); ++i) {
        entries.push_back({.text = MenuText(offeredSkins[static_cast<std::size_t>(i)].skinName),
                           .command = kCmdFirstSkin + i,
                           .greyed = i == current,
                           .checked = i == current});
    }
    TrackPopupMenu(window, entries, CursorPosition(), MenuButton::LeftOrRight);
}

void MainFrame::ChooseSkinFromMenu(int command)
{
    const auto index = static_cast<std::size_t>(command - kCmdFirstSkin);
    if (index < offeredSkins.size())
        ChooseSkin(offeredSkins[index].skinFile);
}

MessageParam MainFrame::OnRButtonDown(WndMessage&)
{
    PopUpSkins();
    return 0;
}

MessageParam MainFrame::OnNcRButtonDown(WndMessage&)
{
    PopUpSkins();
    return 0;
}

}  // namespace jotlet
