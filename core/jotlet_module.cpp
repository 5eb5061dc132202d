#include "core/jotlet_module.h"

#include <algorithm>

#include "core/document_commands.h"
#include "core/file_type.h"
#include "core/general_options_dialog.h"
#include "core/process.h"
#include "core/start_file.h"
#include "interchange/import_command.h"
#include "interchange/report_command.h"
#include "net/e_book_dialog.h"
#include "net/internet_events_command.h"
#include "net/server_setup.h"
#include "notes/check_alarms.h"
#include "notes/tell_outcome.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/about_dialog.h"
#include "toolkit/pane_list.h"

namespace jotlet {
namespace {

constexpr std::string_view kSuiteName = "Pinwell";
constexpr std::string_view kIntroName = "Intro";
constexpr std::string_view kWorkName = "Work";
constexpr int kWorkPane = 1;

constexpr int kAlarmTimer = 106;
constexpr Milliseconds kAlarmPeriod{120'000};

constexpr PaneColours kIntroColours{.barColour = 212,
                                    .barTextColour = 0xFFFFFF,
                                    .backColour = 0x43E7FF,
                                    .ringColour = 45040,
                                    .shadowColour = 566775,
                                    .innerRingColour = 32497,
                                    .headerColour = 3155764};

constexpr PaneColours WorkColours()
{
    PaneColours colours = kIntroColours;
    colours.backColour = 0xC0FFFF;
    return colours;
}

}  // namespace

// One command: what the module does itself, or where it goes.
struct JotletModule::Row {
    enum Way { Own, ToWork, ToWorkWhileShown, Nothing };
    enum Needs { NoFile, NoteFile };
    int command;
    Way way;
    Handler handler = nullptr;
    Needs needs = NoFile;
};

const JotletModule::Row* JotletModule::FindRow(int command)
{
    using M = JotletModule;
    static constexpr Row kRows[] = {
        {kCommandNewNote, Row::ToWork},
        {kCommandEditNote, Row::ToWorkWhileShown},
        {kCommandDeleteNote, Row::ToWorkWhileShown},
        {kCommandFind, Row::ToWorkWhileShown},
        {kCommandNewFile, Row::Own, &M::NewFile},
        {kCommandOpenFile, Row::Own, &M::OpenFile},
        {kCommandOptions, Row::Own, &M::Options},
        {kCommandPasswords, Row::Own, &M::Passwords, Row::NoteFile},
        {kCommandCompact, Row::Own, &M::Compact},
        {kCommandExit, Row::Own, &M::Exit},
        {kCommandContacts, Row::Own, &M::Contacts},
        {1015, Row::Nothing},
        {kCommandAbout, Row::Own, &M::About},
        {1018, Row::Nothing},
        {1019, Row::Nothing},
        {kCommandUndoDelete, Row::ToWorkWhileShown},
        {kCommandCut, Row::ToWorkWhileShown},
        {kCommandCopy, Row::ToWorkWhileShown},
        {kCommandPaste, Row::ToWorkWhileShown},
        {kCommandInternetEvents, Row::ToWorkWhileShown},
        {kCommandServerSetup, Row::Own, &M::ServerSetup, Row::NoteFile},
        {kCommandSaveAs, Row::Own, &M::SaveAs, Row::NoteFile},
        {kCommandOpenAttachment, Row::ToWorkWhileShown},
        {kCommandPrintReport, Row::Own, &M::PrintReport, Row::NoteFile},
        {kCommandImport, Row::Own, &M::Import, Row::NoteFile},
        {kCommandExport, Row::Own, &M::Export, Row::NoteFile},
        {kCommandWhoHasFile, Row::Own, &M::WhoHasFile, Row::NoteFile},
    };
    const auto* row = std::ranges::find(kRows, command, &Row::command);
    return row == std::end(kRows) ? nullptr : row;
}

JotletModule::JotletModule()
    : MainFrame(std::string(kSuiteName)),
      introPane(std::make_unique<IntroPane>(kIntroColours, std::string(kIntroName), GetModuleName())),
      workPane(std::make_unique<NotesPane>(WorkColours(), std::string(kWorkName)))
{
    workPane->editGroupEvent = EditGroupEvent;
    workPane->fileLost = [this] { OnFileLost(); };
    workPane->driveAnswers = [this](bool answers) { OnDriveAnswers(answers); };
}

JotletModule::~JotletModule()
{
    StorePaneIndex(GetCurrentPaneIndex());
    workPane.reset();
    introPane.reset();
    if (noteFile)
        noteFile->Close();
    StopTimer(window, kAlarmTimer);
}

MessageParam JotletModule::OnCreate(WndMessage& record)
{
    introPane->Create(this);
    workPane->Create(this);
    StartTimer(window, kAlarmTimer, kAlarmPeriod);
    return MainFrame::OnCreate(record);
}

MessageParam JotletModule::OnCreated(WndMessage&)
{
    RegisterFileType(kNoteExtension);
    SwitchPane(StoredPaneIndex(), Animate::No);
    if (!OpenStartFile())
        Close();
    return 0;
}

MessageParam JotletModule::OnTimer(WndMessage& record)
{
    MainFrame::OnTimer(record);
    if (record.wParam == kAlarmTimer && noteFile && driveAnswers)
        CheckAlarms(*noteFile, *this);
    return 0;
}

void JotletModule::ShowHelp(int)
{
    OpenHelpPage("notes.htm", false);
}

MessageParam JotletModule::OnCommand(WndMessage& record)
{
    const Row* row = FindRow(LowWord(record.wParam));
    if (!row)
        return MainFrame::OnCommand(record);
    switch (row->way) {
        case Row::Nothing:
            return 0;
        case Row::Own:
            if (row->needs != Row::NoteFile || !RefuseSilentDrive(window, noteFile.get()))
                (this->*row->handler)();
            return 0;
        case Row::ToWorkWhileShown:
            if (GetCurrentPaneIndex() != kWorkPane)
                return MainFrame::OnCommand(record);
            break;
        case Row::ToWork:
            break;
    }
    PostToPane(kWorkName, record);
    return 0;
}

void JotletModule::FocusPane()
{
    if (MarlinPane* pane = GetCurrentPane())
        pane->OnEntered();
}

void JotletModule::Options()
{
    RunGeneralOptions(this);
}

void JotletModule::Exit()
{
    Close();
}

void JotletModule::About()
{
    AboutDialog dialog;
    dialog.DoModal(this, about_dialog_ids::kDialog);
    FocusPane();
}

void JotletModule::Contacts()
{
    ShowEBook(this);
}

void JotletModule::ServerSetup()
{
    if (ServerSetupCommand(noteFile.get(), this) && noteFile)
        SetFileTitle(noteFile->Path());
}

void JotletModule::PrintReport()
{
    if (noteFile)
        ReportCommand(this, ReportKind::Report, *noteFile, workPane->SelectedId());
}

void JotletModule::Export()
{
    if (noteFile)
        ReportCommand(this, ReportKind::Export, *noteFile, workPane->SelectedId());
}

void JotletModule::Import()
{
    if (noteFile && RunImport(this, *noteFile) > 0)
        workPane->GetList().RefreshNow();
}

}  // namespace jotlet
