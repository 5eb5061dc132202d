// The document's life through the whole program: start, New, Open, Save As, passwords, and what happens when a file
// cannot be used.
#include "core/new_file_dialog.h"
#include "core/password_dialogs.h"
#include "core/start_file.h"
#include "module_fixture.h"
#include "platform/base/file_system.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StartTest : public ModuleTest {
protected:
    static std::uint32_t OpenCount(const std::string& path)
    {
        TableHeader header{};
        TableFile(path, "").ReadHeader(header);
        return header.openCount - 1;  // without this look
    }
    static std::int64_t LiveNotes(const std::string& path)
    {
        SlotCounts counts;
        TableFile(path, "").DescribeSlots(counts);
        return counts.live;
    }
    static void TypeName(WindowHandle d, std::string_view name)
    {
        TestType(DialogItem(d, NewFileDialog::kNameId), name);
        TestPushItem(d, kIdOk);
    }
};

TEST_F(StartTest, TheFirstRunMakesItsFileWithTheExamples)
{
    Start();
    const std::string path = folder.File("Works/jotlet.jot");
    EXPECT_EQ(OpenPath(), path);
    EXPECT_EQ(Title(), "Jotlet : jotlet.jot");
    EXPECT_EQ(Setting("DefaulFile"), path);
    EXPECT_EQ(Setting("RecordExample"), "1");
    EXPECT_EQ(LiveNotes(path), 4);
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
    EXPECT_THAT(boxes.texts, IsEmpty());
    EXPECT_EQ(OpenCount(path), 1u);
    End();
    EXPECT_EQ(OpenCount(path), 0u) << "closed cleanly";
    EXPECT_EQ(Setting("PaneId"), "1");
}

TEST_F(StartTest, AFileOfTheCommandLineDoesNotBecomeTheDefault)
{
    const std::string mine = MakeNotes("mine.jot");
    const std::string other = MakeNotes("other.jot");
    StoreDefaultFile(mine);
    Start(other);
    EXPECT_EQ(OpenPath(), other);
    EXPECT_EQ(Setting("DefaulFile"), mine);
}

TEST_F(StartTest, WithoutAFileTheUserMakesOneOrTheProgramEnds)
{
    StoreDefaultFile(folder.File("gone.jot"));
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    Start();
    EXPECT_FALSE(Open());
    End();

    WhenModal([](WindowHandle d) { TypeName(d, "fresh"); });
    Start();
    EXPECT_EQ(OpenPath(), folder.File("Works/fresh.jot"));
    EXPECT_EQ(Setting("DefaulFile"), folder.File("Works/fresh.jot"));
}

TEST_F(StartTest, AWrongPasswordAtTheStartIsToldAndANewFileOffered)
{
    StoreDefaultFile(MakeNotes("secret.jot", {"boss", "", "guest"}));
    WhenModal([](WindowHandle password) {
        WhenModal([](WindowHandle newFile) {
            EXPECT_EQ(WindowTitle(newFile), "Create New File");
            TestPushItem(newFile, kIdCancel);
        });
        TestType(DialogItem(password, PasswordDialog::kPasswordId), "boos");
        TestPushItem(password, kIdOk);
    });
    Start();
    EXPECT_FALSE(Open());
    EXPECT_THAT(boxes.texts, ElementsAre("Program can't open this file. Incorrect password."));
}

TEST_F(StartTest, AFileWhoseCopyWasKilledIsRepairedAndOpened)
{
    const std::string path = MakeNotes("mine.jot");
    {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(12 + 1018);
        file.put(3);  // three copies never said goodbye
        file.seekp(kFirstRecordOffset + 5);
        file.put(1);  // one of them held the first note
    }
    StoreDefaultFile(path);
    Start();
    EXPECT_EQ(OpenPath(), path);
    EXPECT_EQ(OpenCount(path), 1u);
    EXPECT_EQ(module->GetNoteFile()->LockRecord(kFirstRecordOffset), 1);
    module->GetNoteFile()->UnlockRecord(kFirstRecordOffset);
}

class ReplaceTest : public StartTest {
protected:
    ReplaceTest() { Start(); }
    const std::string first = folder.File("Works/jotlet.jot");
};

TEST_F(ReplaceTest, NewReplacesTheOpenFileAndCancelDoesNot)
{
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    Command(kCmdNewFile);
    EXPECT_EQ(OpenPath(), first);
    WhenModal([](WindowHandle d) {
        TestPushItem(d, NewFileDialog::kExamplesId);
        TypeName(d, "empty.txt");
    });
    Command(kCmdNewFile);
    EXPECT_EQ(Title(), "Jotlet : empty.txt.jot");
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 0);
    EXPECT_EQ(OpenCount(first), 0u);
    EXPECT_EQ(Setting("DefaulFile"), folder.File("Works/empty.txt.jot"));
}

TEST_F(ReplaceTest, OpenShowsTheOtherFileWithItsFirstNoteSelected)
{
    const std::string other = MakeNotes("other notes \xC3\xA9.jot");
    chosenFiles = {other};
    Command(kCmdOpenFile);
    EXPECT_EQ(OpenPath(), other);
    EXPECT_EQ(Title(), "Jotlet : other notes \xC3\xA9.jot");
    EXPECT_EQ(Setting("DefaulFile"), other);
    EXPECT_EQ(module->GetWorkPane().GetList().GetSelected(), 0);
    EXPECT_EQ(FocusedWindow(), module->GetWorkPane().GetList().Grid().window);
}

TEST_F(ReplaceTest, WhatCannotBeOpenedLeavesTheOpenFileAsItIs)
{
    test::WriteAll(folder.File("letter.jot"), "Dear Sir");
    const std::string secret = MakeNotes("secret.jot", {"boss", "aide", "guest"});
    chosenFiles = {folder.File("gone.jot"), folder.File("letter.jot"), secret};
    Command(kCmdOpenFile);
    Command(kCmdOpenFile);
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    Command(kCmdOpenFile);
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("does not exist"), HasSubstr("This file is not a Jotlet file."),
                                         HasSubstr("Incorrect password")));
    EXPECT_EQ(OpenPath(), first);
    EXPECT_EQ(Title(), "Jotlet : jotlet.jot");
    EXPECT_EQ(Setting("DefaulFile"), first);
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
}

TEST_F(ReplaceTest, TheOpenFileCanBeOpenedAgain)
{
    chosenFiles = {first};
    Command(kCmdOpenFile);
    EXPECT_EQ(OpenPath(), first);
    EXPECT_EQ(OpenCount(first), 1u);
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
}

TEST_F(ReplaceTest, SaveAsGoesOnWithTheOldFile)
{
    chosenFiles = {folder.File("copy.jot")};
    Command(kCmdSaveAs);
    EXPECT_EQ(OpenPath(), first);
    EXPECT_EQ(Title(), "Jotlet : jotlet.jot");
    EXPECT_EQ(Setting("DefaulFile"), first);
    EXPECT_EQ(LiveNotes(folder.File("copy.jot")), 4);
}

TEST_F(ReplaceTest, NewPasswordsKeepThisCopyOwner)
{
    WhenModal([](WindowHandle d) {
        TestType(DialogItem(d, NetworkPasswordsDialog::kOwnerId), "boss");
        WhenModal([](WindowHandle verify) {
            TestType(DialogItem(verify, NetworkPasswordsDialog::kOwnerId), "boss");
            TestPushItem(verify, kIdOk);
        });
        TestPushItem(d, kIdOk);
    });
    Command(kCmdPasswords);
    EXPECT_EQ(module->GetNoteFile()->GetRole(), Role::Owner);
    EXPECT_EQ(TableFile(first, "").GetRole(), Role::Assistant);
}

TEST_F(ReplaceTest, WhateverCallFailsNewGivesAWholeFileOrLeavesTheOpenOne)
{
    bool succeeded = false;
    for (int failAt = 1; failAt < 60 && !succeeded; ++failAt) {
        const std::string name = "n" + std::to_string(failAt);
        const std::string path = folder.File("Works/" + name + ".jot");
        const std::string before = OpenPath();
        test::FailingFileSystem failing;
        failing.failAt = failAt;
        failing.andAllBehind = true;
        WhenModal([&](WindowHandle d) {
            TypeName(d, name);
            if (IsWindow(d))
                TestPushItem(d, kIdCancel);  // it was told that the file cannot be made
        });
        {
            const ScopedFileSystem scoped(failing);
            Command(kCmdNewFile);
        }
        SCOPED_TRACE("call " + std::to_string(failAt) + " " + failing.failedCall);
        succeeded = failing.changes < failAt;
        ASSERT_TRUE(OpenPath() == path || OpenPath() == before);
        EXPECT_EQ(module->GetNoteFile()->GetRole(), Role::Owner) << "the open file is usable";
        EXPECT_EQ(Setting("DefaulFile"), OpenPath());
        EXPECT_EQ(Title(), "Jotlet : " + OpenPath().substr(OpenPath().rfind('/') + 1));
        if (OpenPath() == before) {
            EXPECT_FALSE(boxes.texts.empty()) << "the user was told";
        }
        if (std::filesystem::exists(path)) {
            EXPECT_TRUE(TableFile(path, "").IsOpen()) << "never half a file";
        }
        boxes.texts.clear();
    }
    EXPECT_TRUE(succeeded) << "the last round had no failure";
}

TEST_F(ReplaceTest, HelpOpensItsPageAndSaysWhenThereIsNone)
{
    Command(kCmdHelpContents);
    EXPECT_THAT(boxes.texts, ElementsAre("Help file '" + folder.File("Help/notes.htm") + "'\r\ndoes not exist."));
    std::filesystem::create_directory(folder.File("Help"));
    test::WriteAll(folder.File("Help/notes.htm"), "<html></html>");
    Command(kCmdHelpContents);
    EXPECT_THAT(shell, testing::Contains("open " + folder.File("Help/notes.htm")));
}

TEST_F(ReplaceTest, ExitClosesTheWindowAndRemembersItsPlace)
{
    const Rect place = WindowRect(module->window);
    Command(kCmdExit);
    EXPECT_FALSE(Open());
    EXPECT_EQ(Setting("WPLeft"), std::to_string(place.left));
    EXPECT_EQ(Setting("WPBottom"), std::to_string(place.bottom));
}

}  // namespace
}  // namespace jotlet
