// JotletModule: the application object. It owns the two panes and the one open note file, decides which file that is,
// and answers the commands that concern whole files.
//
// State:   no file (before OnCreated has run), file open, closing. There is no unsaved state: every note is written
// when
//          its dialog ends.
// Errors:  each failure is told to the user; the file that was open stays open.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/main_frame.h"
#include "notes/model/note_file.h"
#include "notes/notes_pane.h"
#include "store/open_table.h"
#include "toolkit/intro_pane.h"

namespace jotlet {

class JotletModule : public MainFrame {
public:
    JotletModule();
    // Writes the number of the pane that was showing, and closes the file.
    ~JotletModule() override;

    NotesPane& GetWorkPane() { return *workPane; }
    IntroPane& GetIntroPane() { return *introPane; }
    // Null while no file is open.
    TableFile* GetNoteFile() { return noteFile.get(); }

    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCreated(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    void ShowHelp(int context) override;

private:
    using Handler = void (JotletModule::*)();
    struct Row;
    static const Row* FindRow(int command);

    // The document (jotlet_document.cpp).
    bool OpenStartFile();
    bool OpenInPlaceOf(const std::string& missing);
    // Makes the file when it is missing, repairs it when its last user went away, opens it. On a failure the reason is
    // told and the file that was open stays.
    bool OpenOrCreateNoteFile(const std::string& path, const std::string& password, WithExamples examples);
    bool RunNewFileDialog(std::string& path);
    // The new file becomes the one that the next start opens, and the title shows it.
    bool TakeOver(const std::string& path, const std::string& password, WithExamples examples);
    void OnFileLost();
    std::optional<std::string> PasswordFor(const std::string& path);
    void PresentFile();
    void SetFileTitle(const std::string& path);
    void OnDriveAnswers(bool answers);
    void FocusPane();

    // Commands.
    void NewFile();
    void OpenFile();
    void SaveAs();
    void Compact();
    void Passwords();
    void WhoHasFile();
    void Options();
    void Exit();
    void About();
    void Contacts();
    void ServerSetup();
    void PrintReport();
    void Import();
    void Export();

    std::unique_ptr<IntroPane> introPane;
    std::unique_ptr<NotesPane> workPane;
    std::unique_ptr<TableFile> noteFile;
    // What the open file's path was last seen to lead to instead of it; all 0: nowhere.
    std::optional<FileIdentity> lostTo;
    bool driveAnswers = true;
};

}  // namespace jotlet
