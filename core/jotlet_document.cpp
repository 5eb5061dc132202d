// The part of JotletModule that opens, makes and replaces the note file.
#include "core/document_commands.h"
#include "core/file_messages.h"
#include "core/jotlet_module.h"
#include "core/new_file_dialog.h"
#include "core/process.h"
#include "core/start_file.h"
#include "notes/model/note_file.h"
#include "platform/base/paths.h"
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
    } else if (start.source != StartSource::AskUser) {
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
    PresentFile();
    if (opened.table)
        opened.table->Close();
    SetFileTitle(path);
    if (opened.cutTailBytes > 0)
        ShowTextMessage(window, "The file ends inside a note. This last note can't be shown; all others are complete.");
    return true;
}

void JotletModule::PresentFile()
{
    workPane->OnFileOpened(noteFile.get());
    workPane->GetList().SetTopRow(0);
    FocusPane();
}

void JotletModule::SetFileTitle(const std::string& path)
{
    SetWindowTitle(window, GetModuleName() + " : " + GetBareFileName(path));
}

bool JotletModule::RunNewFileDialog(std::string& path)
{
    NewFileDialog dialog{std::string(kNoteExtension)};
    if (dialog.DoModal(this, NewFileDialog::kTemplate) != 1)
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

}  // namespace jotlet
