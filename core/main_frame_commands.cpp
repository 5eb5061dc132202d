// The part of MainFrame that turns keys, menus and broadcasts into work.
#include <array>

#include "core/main_frame.h"
#include "core/process.h"
#include "core/skins_dialog.h"
#include "platform/base/paths.h"
#include "platform/base/session.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "skin/skin_bitmaps.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "toolkit/pane_list.h"
#include "toolkit/records/record_list_view.h"

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
constexpr std::array<KeyCommand, kCommandKeyDelete - kCommandKeyNew + 1> kKeyCommands = {{
    {kCommandNewNote, 0},
    {kCommandFind, 0},
    {kCommandNewFile, 0},
    {kCommandOpenFile, 0},
    {kCommandPrintReport, 0},
    {kCommandHelpContents, 0},
    {kCommandFileMenu, 0},
    {kCommandHelpMenu, 0},
    {kCommandShowPane, 0},
    {kCommandShowPane, 1},
    {kCommandCut, 0},
    {kCommandCopy, 0},
    {kCommandPaste, 0},
    {kCommandUndoDelete, 0},
    {kCommandOpenAttachment, 0},
    {kCommandEditNote, 0},
    {kCommandDeleteNote, 0},
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
    RecordListView::RestartAllRefreshTimers();
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
    if (command >= kCommandKeyNew && command <= kCommandKeyDelete) {
        PostCommandOfKey(command);
        return 0;
    }
    if (command >= kCommandFirstSkin && command <= kCommandLastSkin) {
        ChooseSkinFromMenu(command);
        return 0;
    }
    switch (command) {
        case kCommandShowPane:
            SwitchPane(static_cast<int>(record.lParam), Animate::Yes);
            break;
        case kCommandFileMenu:
            ShowFileMenu();
            break;
        case kCommandHelpMenu:
            ShowHelpMenu();
            break;
        case kCommandHelpContents:
            ShowHelp(0);
            break;
        case kCommandSuiteWeb:
            OpenDocument(kSuiteWeb);
            break;
        case kCommandCompanyWeb:
            OpenDocument(kCompanyWeb);
            break;
        case kCommandOffer:
            OpenHelpPage("kestrel.htm", true);
            break;
        case kCommandSkins:
            ShowSkinDialog(this);
            break;
        default:
            break;
    }
    return 0;
}

void MainFrame::PostCommandOfKey(int code)
{
    if (code == kCommandKeyShowSecondPane && GetCurrentPaneIndex() != 0)
        return;
    if (code == kCommandKeyCut && GetCurrentPaneIndex() != 1)
        return;
    if (code == kCommandKeyReturn && ReturnGoesToFocus()) {
        SendTo(FocusedWindow(), kWmKeyDown, kKeyReturn, 0);
        return;
    }
    const KeyCommand& key = kKeyCommands[static_cast<std::size_t>(code - kCommandKeyNew)];
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
    PopUpUnder(kCommandFileMenu, {
                                     FromString(kStringNewFile, kCommandNewFile),
                                     FromString(kStringOpenFile, kCommandOpenFile),
                                     kSeparator,
                                     FromString(kStringSaveAs, kCommandSaveAs),
                                     FromString(kStringCompact, kCommandCompact),
                                     kSeparator,
                                     FromString(kStringImport, kCommandImport),
                                     FromString(kStringExport, kCommandExport),
                                     kSeparator,
                                     FromString(kStringPrintReport, kCommandPrintReport),
                                     kSeparator,
                                     FromString(kStringPasswords, kCommandPasswords),
                                     {.text = "&Who has this file...", .command = kCommandWhoHasFile},
                                     kSeparator,
                                     FromString(kStringContacts, kCommandContacts),
                                     FromString(kStringServerSetup, kCommandServerSetup),
                                     FromString(kStringOptions, kCommandOptions),
                                     kSeparator,
                                     {.text = "Ski&ns...", .command = kCommandSkins},
                                     kSeparator,
                                     FromString(kStringExit, kCommandExit),
                                 });
}

void MainFrame::ShowHelpMenu()
{
    PopUpUnder(kCommandHelpMenu, {
                                     FromString(kStringHelpContents, kCommandHelpContents),
                                     kSeparator,
                                     {.text = "&Company Web", .command = kCommandCompanyWeb},
                                     {.text = "&Pinwell Web", .command = kCommandSuiteWeb},
                                     kSeparator,
                                     {.text = "Try Kestrel Planner", .command = kCommandOffer},
                                     kSeparator,
                                     FromString(kStringAbout, kCommandAbout),
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
                           .command = kCommandFirstSkin + i,
                           .greyed = i == current,
                           .checked = i == current});
    }
    TrackPopupMenu(window, entries, CursorPosition(), MenuButton::LeftOrRight);
}

void MainFrame::ChooseSkinFromMenu(int command)
{
    const auto index = static_cast<std::size_t>(command - kCommandFirstSkin);
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
