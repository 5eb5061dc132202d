// The part of JotletModule that opens, makes and replaces the note file.
#include "core/document_commands.h"
#include "core/file_messages.h"
#include "core/jotlet_module.h"
#include "core/new_file_dialog.h"
#include "core/process.h"
#include "core/start_file.h"
#include "core/who_has_file.h"
#include "notes/model/note_file.h"
#include "platform/base/file_error_text.h"
#include "platform/base/file_system.h"
#include "platform/base/paths.h"
#include "platform/desktop/application.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/compact_progress_dialog.h"
#include "toolkit/pane_list.h"

namespace jotlet {

// False when there is no file to work on and the user made none: the program is to end.
bool JotletModule::OpenStartFile()
{
    const StartFile start = FindStartFile(GetCommandLineText(), kNoteExtension);
    if (start.source == StartSource::FirstRun) {
        if (OpenOrCreateNoteFile(start.path, {}, WithExamples::Yes)) {
            StoreDefaultFile(start.path);
            StoreWantsExamples(true);
            return true;
        }
    } else if (start.source == StartSource::AskUser) {
        if (!start.path.empty() && OpenInPlaceOf(start.path))
            return true;
    } else {
        const auto password = AskFilePasswordAndTell(this, start.path);
        if (password && OpenOrCreateNoteFile(start.path, *password, WithExamples::Yes))
            return true;
    }
    for (std::string path; RunNewFileDialog(path);) {
        if (TakeOver(path, {}, WantsExamples() ? WithExamples::Yes : WithExamples::No))
            return true;
    }
    return false;
}

// The file used last is gone: moved, renamed, or on a drive that isn't there.
bool JotletModule::OpenInPlaceOf(const std::string& missing)
{
    if (ShowBox(window,
                "The note file that was used last is not there:\r\n\"" + missing +
                    "\"\r\nOpen another one? \"No\" makes a new file.",
                GetModuleName(), BoxIcon::Question, BoxButtons::YesNo) != Answer::Yes)
        return false;
    const auto chosen = ChooseFileToOpen(this);
    return chosen && TakeOver(chosen->path, chosen->password, WithExamples::No);
}

bool JotletModule::OpenOrCreateNoteFile(const std::string& path, const std::string& password, WithExamples examples)
{
    CompactProgressDialog progress(this);
    OpenedTable opened = OpenNoteFile(path, password, examples, &progress);
    if (!opened) {
        ShowTextMessage(window, OpenFailureText(path, opened.failure, opened.error));
        return false;
    }
    // The panes look at the new file before the old one goes.
    noteFile.swap(opened.table);
    driveAnswers = true;
    PresentFile();
    // Only for others to see: without the list everything else goes on.
    noteFile->EnterListOfCopies();
    if (opened.table)
        opened.table->Close();
    SetFileTitle(path);
    if (opened.readOnly)
        ShowTextMessage(window, ReadOnlyText(path, opened.readOnly));
    if (opened.repairError)
        ShowTextMessage(window,
                        "The last program that had this file open did not close it, and it can't be repaired "
                        "now. Your work goes on as usual.\r\n" +
                            FileErrorText(opened.repairError));
    if (opened.cutTailBytes > 0)
        ShowTextMessage(window, "The file ends inside a note. This last note can't be shown; all others are complete.");
    return true;
}

// Another program has put a file in the place of the open one, or has taken it away; told at a tick of the refresh.
// While a window is open nothing is done: it may be working on the file. Each change of the path is told once.
void JotletModule::OnFileLost()
{
    if (ModalDepth() > 0 || !noteFile || noteFile->PathStillNamesThisFile())
        return;
    const std::string path = noteFile->Path();
    FileIdentity now;
    const bool there = Files().IdentifyPath(path, now) == 0;
    if (lostTo && lostTo->SameFile(now))
        return;
    lostTo = now;
    if (!there) {
        ShowTextMessage(window, "The note file was removed or renamed by another program:\r\n\"" + path +
                                    "\"\r\nIts notes are still shown, but nothing can be changed until it is back.");
        return;
    }
    if (!noteFile->IsMountedAnew())
        ShowTextMessage(window, "The note file was replaced by another program:\r\n\"" + path +
                                    "\"\r\nIt is opened anew. What was done in the old file since is not in it.");
    const auto password = PasswordFor(path);
    if (password && OpenOrCreateNoteFile(path, *password, WithExamples::No))
        lostTo.reset();
}

// The one in use where it still fits.
std::optional<std::string> JotletModule::PasswordFor(const std::string& path)
{
    if (TableFile(path, noteFile->Password()).GetRole() != Role::None)
        return noteFile->Password();
    return AskFilePasswordAndTell(this, path);
}

void JotletModule::PresentFile()
{
    workPane->OnFileOpened(noteFile.get());
    workPane->GetList().SetTopRow(0);
    FocusPane();
}

void JotletModule::SetFileTitle(const std::string& path)
{
    SetWindowTitle(
        window, GetModuleName() + " : " + GetBareFileName(path) + (driveAnswers ? "" : " - the drive does not answer"));
}

void JotletModule::OnDriveAnswers(bool answers)
{
    driveAnswers = answers;
    if (noteFile)
        SetFileTitle(noteFile->Path());
}

bool JotletModule::RunNewFileDialog(std::string& path)
{
    NewFileDialog dialog{std::string(kNoteExtension)};
    if (dialog.DoModal(this, new_file_dialog_ids::kDialog) != 1)
        return false;
    path = dialog.Path();
    return true;
}

bool JotletModule::TakeOver(const std::string& path, const std::string& password, WithExamples examples)
{
    if (!OpenOrCreateNoteFile(path, password, examples))
        return false;
    StoreDefaultFile(path);
    workPane->GetList().SelectItem(0);
    return true;
}

void JotletModule::NewFile()
{
    if (std::string path; RunNewFileDialog(path))
        TakeOver(path, {}, WantsExamples() ? WithExamples::Yes : WithExamples::No);
    FocusPane();
}

void JotletModule::OpenFile()
{
    if (const auto chosen = ChooseFileToOpen(this))
        TakeOver(chosen->path, chosen->password, WithExamples::No);
    FocusPane();
}

void JotletModule::SaveAs()
{
    if (noteFile)
        SaveAsCommand(this, *noteFile);
    FocusPane();
}

void JotletModule::Compact()
{
    CompactCommand(this);
    FocusPane();
}

void JotletModule::Passwords()
{
    if (noteFile) {
        std::string password = noteFile->Password();
        if (RunNetworkPasswords(this, noteFile->Path(), password))
            noteFile->SetPassword(password);
    }
    FocusPane();
}

void JotletModule::WhoHasFile()
{
    if (noteFile)
        ShowBox(window, WhoHasFileText(*noteFile), GetModuleName(), BoxIcon::Information, BoxButtons::Ok);
    FocusPane();
}

}  // namespace jotlet
