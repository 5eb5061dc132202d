// What the tests of the application share: a program folder of their own, and ways to answer what it asks.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "notes/model/note_file.h"
#include "platform/base/paths.h"
#include "platform/desktop/dialog.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/test_input.h"
#include "skin/skin_bitmaps.h"
#include "skin/sound.h"
#include "store/passwords.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"
#include "support/window_test.h"

namespace jotlet {

// A program folder that holds nothing but what a test puts there, private runtime and data folders, no animation, and
// message boxes, choosers and shell calls that are kept instead of shown.
class CoreTest : public WindowTest {
protected:
    CoreTest()
    {
        test::UsePortableProgram(folder.Path());
        std::filesystem::create_directory(folder.File("run"));
        std::filesystem::permissions(folder.File("run"), std::filesystem::perms::owner_all);
        SetAnimationEnabled(0);
    }
    ~CoreTest() override
    {
        ServeEvents();
        FreeSkin();
        SetAnimationEnabled(1);
        SetSoundEnabled(1);
        SetProgramPath("");
    }

    std::string Setting(std::string_view key) const
    {
        return GetModuleIniPath().IniReadText("Preference", key).value_or("");
    }
    std::string DefaultFile() const { return PathFromSettings(Setting("DefaulFile")); }
    std::string SuiteSetting(std::string_view key) const
    {
        return GetSuiteIniPath().IniReadText("Preference", key).value_or("");
    }
    void SetSuite(std::string_view key, std::string_view value)
    {
        GetSuiteIniPath().IniWriteText("Preference", key, value);
    }

    // A note file with the example notes and these passwords.
    std::string MakeNotes(const std::string& name, const NetworkPasswords& passwords = {})
    {
        std::filesystem::create_directories(folder.File("Works"));
        const std::string path = folder.File("Works/" + name);
        EXPECT_EQ(CreateNoteFile(path, WithExamples::Yes), 1);
        std::string none;
        if (!passwords.owner.empty()) {
            EXPECT_EQ(SetNetworkPasswords(path, none, passwords), 1);
        }
        return path;
    }

    test::TempFolder folder;
    test::ScopedVariable runtime{"XDG_RUNTIME_DIR", folder.File("run")};
    test::ScopedVariable data{"XDG_DATA_HOME", folder.File("data")};
    ScopedAnswers boxes;
    std::deque<std::string> chosenFiles;  // next answers of the file chooser; none left: Cancel
    std::vector<FileDialogRequest> choosers;
    ScopedFileAnswer chooser{[this](const FileDialogRequest& request) -> std::optional<std::string> {
        choosers.push_back(request);
        if (chosenFiles.empty())
            return std::nullopt;
        std::string next = chosenFiles.front();
        chosenFiles.pop_front();
        return next;
    }};
    std::vector<std::string> shell;
    ScopedShellHook hook{[this](std::string_view verb, std::string_view target) {
        shell.push_back(std::string(verb) + " " + std::string(target));
    }};
};

}  // namespace jotlet
