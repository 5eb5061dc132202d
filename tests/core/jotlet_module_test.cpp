// The document's life through the whole program: start, New, Open, Save As, passwords, and what happens when a file
// cannot be used.
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "core/new_file_dialog.h"
#include "core/password_dialogs.h"
#include "core/start_file.h"
#include "module_fixture.h"
#include "platform/base/file_system.h"
#include "platform/base/process_identity.h"
#include "platform/base/text.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "store/copies.h"
#include "support/child_process.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

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
        TestType(DialogItem(d, new_file_dialog_ids::kName), name);
        TestPushItem(d, kIdOk);
    }
};

TEST_F(StartTest, TheFirstRunMakesItsFileWithTheExamples)
{
    Start();
    const std::string path = folder.File("Works/jotlet.jot");
    EXPECT_EQ(OpenPath(), path);
    EXPECT_EQ(Title(), "Jotlet : jotlet.jot");
    EXPECT_EQ(DefaultFile(), path);
    EXPECT_EQ(Setting("RecordExample"), "1");
    EXPECT_EQ(LiveNotes(path), 4);
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
    EXPECT_THAT(boxes.texts, IsEmpty());
    EXPECT_EQ(OpenCount(path), 1u);
    End();
    EXPECT_EQ(OpenCount(path), 0u) << "closed cleanly";
    EXPECT_EQ(Setting("PaneId"), "1");
}

TEST_F(StartTest, WithoutAFileOrWithAWrongPasswordTheUserMakesAnotherOrTheProgramEnds)
{
    const std::string secret = MakeNotes("secret.jot", {"boss", "", "guest"});
    for (const std::string& last : {folder.File("gone.jot"), secret}) {
        StoreDefaultFile(last);
        const auto cancel = [](WindowHandle newFile) {
            EXPECT_EQ(WindowTitle(newFile), "Create New File");
            TestPushItem(newFile, kIdCancel);
        };
        WhenModal([&](WindowHandle d) {
            if (last != secret)
                return cancel(d);
            WhenModal(cancel);
            TestType(DialogItem(d, password_dialog_ids::kPassword), "boos");
            TestPushItem(d, kIdOk);
        });
        Start();
        EXPECT_FALSE(Open());
        End();
    }
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("The note file that was used last is not there"),
                                         "Program can't open this file. Incorrect password."));
    StoreDefaultFile(folder.File("gone.jot"));
    WhenModal([](WindowHandle d) { TypeName(d, "fresh"); });
    Start();
    EXPECT_EQ(OpenPath(), folder.File("Works/fresh.jot"));
    EXPECT_EQ(DefaultFile(), folder.File("Works/fresh.jot"));
    End();
    const std::string other = MakeNotes("other.jot");
    Start(other);
    EXPECT_EQ(OpenPath(), other);
    EXPECT_EQ(DefaultFile(), folder.File("Works/fresh.jot")) << "a file of the command line is no default";
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
    Command(kCommandNewFile);
    EXPECT_EQ(OpenPath(), first);
    WhenModal([](WindowHandle d) {
        TestPushItem(d, new_file_dialog_ids::kExamples);
        TypeName(d, "empty.txt");
    });
    Command(kCommandNewFile);
    EXPECT_EQ(Title(), "Jotlet : empty.txt.jot");
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 0);
    EXPECT_EQ(OpenCount(first), 0u);
    EXPECT_EQ(DefaultFile(), folder.File("Works/empty.txt.jot"));
}

TEST_F(ReplaceTest, OpenShowsTheOtherFileAndWhatCannotBeOpenedLeavesTheOpenOne)
{
    test::WriteAll(folder.File("letter.jot"), "Dear Sir");
    const std::string secret = MakeNotes("secret.jot", {"boss", "aide", "guest"});
    chosenFiles = {folder.File("gone.jot"), folder.File("letter.jot"), secret};
    Command(kCommandOpenFile);
    Command(kCommandOpenFile);
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    Command(kCommandOpenFile);
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("does not exist"), HasSubstr("This file is not a Jotlet file."),
                                         HasSubstr("Incorrect password")));
    const std::string other = MakeNotes("other notes \xC3\xA9.jot");
    NotesList& list = module->GetWorkPane().GetList();
    for (const std::string& path : {first, other, other}) {
        EXPECT_EQ(OpenPath(), path);
        EXPECT_EQ(Title(), "Jotlet : " + path.substr(path.rfind('/') + 1));
        EXPECT_EQ(DefaultFile(), path);
        EXPECT_EQ(OpenCount(path), 1u);
        EXPECT_EQ(list.GetCount(), 4);
        chosenFiles = {other};  // the second time the open file again
        Command(kCommandOpenFile);
        EXPECT_EQ(list.GetSelected(), 0);
        EXPECT_EQ(FocusedWindow(), list.Grid().window);
    }
    chosenFiles = {folder.File("copy.jot")};
    Command(kCommandSaveAs);
    EXPECT_EQ(OpenPath(), other) << "Save As goes on with the old file";
    EXPECT_EQ(LiveNotes(folder.File("copy.jot")), 4);
    WhenModal([](WindowHandle d) {
        TestType(DialogItem(d, network_passwords_ids::kOwner), "boss");
        WhenModal([](WindowHandle verify) {
            TestType(DialogItem(verify, verify_passwords_ids::kOwner), "boss");
            TestPushItem(verify, kIdOk);
        });
        TestPushItem(d, kIdOk);
    });
    Command(kCommandPasswords);
    EXPECT_EQ(module->GetNoteFile()->GetRole(), Role::Owner) << "this copy stays owner";
    EXPECT_EQ(TableFile(other, "").GetRole(), Role::Assistant);
}

TEST_F(ReplaceTest, WhateverCallFailsNewGivesAWholeFileOrLeavesTheOpenOne)
{
    bool succeeded = false;
    for (int failAt = 1; failAt < 60 && !succeeded; ++failAt) {
        const std::string name = "n" + std::to_string(failAt);
        const std::string path = folder.File("Works/" + name + ".jot");
        const std::string before = OpenPath();
        const std::string defaultBefore = DefaultFile();
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
            Command(kCommandNewFile);
        }
        SCOPED_TRACE("call " + std::to_string(failAt) + " " + failing.failedCall);
        succeeded = failing.changes < failAt;
        ASSERT_TRUE(OpenPath() == path || OpenPath() == before);
        EXPECT_EQ(module->GetNoteFile()->GetRole(), Role::Owner) << "the open file is usable";
        EXPECT_THAT(DefaultFile(), testing::AnyOf(OpenPath(), defaultBefore)) << "the settings' disk fails too";
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

TEST_F(ReplaceTest, AFileThatAnotherProgramReplacesIsToldAndOpenedAnew)
{
    const std::string backup = MakeNotes("backup.jot");
    TableFile(backup, "").DeleteRecord(kFirstRecordOffset);
    const auto tick = [&] {
        module->GetWorkPane().GetList().RefreshNow();
        ServeEvents();
    };
    std::filesystem::rename(first, folder.File("Works/kept"));
    tick();
    tick();
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("removed or renamed"))) << "once";
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
    std::filesystem::rename(backup, first);
    tick();
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("removed or renamed"), HasSubstr("replaced")));
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 3);
    EXPECT_TRUE(module->GetNoteFile()->PathStillNamesThisFile());
    tick();
    EXPECT_EQ(boxes.texts.size(), 2u);
}

TEST_F(ReplaceTest, TheMenuTellsWhoHasTheFileAndWhichNoteHeEdits)
{
    Command(kCommandWhoHasFile);
    ASSERT_THAT(boxes.texts, ElementsAre(HasSubstr("Nobody else has \"jotlet.jot\" open.")));
    NoteRecord note{};
    ASSERT_EQ(module->GetNoteFile()->ReadRecord(BytesOf(note), kFirstRecordOffset), 1);
    const std::string title(FieldText(note.title));
    test::Signal edits;
    test::Signal enough;
    test::ChildProcess other([&] {
        TableFile file(first, "");
        return file.EnterListOfCopies() && file.LockRecord(kFirstRecordOffset) == 1 && edits.Give() && enough.Await()
                   ? 0
                   : 1;
    });
    ASSERT_TRUE(edits.Await());
    Command(kCommandWhoHasFile);
    EXPECT_THAT(boxes.texts[1], AllOf(HasSubstr("open in 2 windows"), HasSubstr(UserName() + " at " + HostName()),
                                      HasSubstr("(this window)"), HasSubstr(", editing \"" + title)));
    note.confidential = 1;
    std::string password;
    EXPECT_EQ(module->GetNoteFile()->WriteRecord(BytesOf(note), kFirstRecordOffset), 1);
    EXPECT_EQ(SetNetworkPasswords(first, password, {"boss", "", "guest"}), 1);
    module->GetNoteFile()->SetPassword("guest");
    Command(kCommandWhoHasFile);
    EXPECT_THAT(boxes.texts[2], AllOf(HasSubstr(", editing a note"), Not(HasSubstr(title))));
    enough.Give();
    EXPECT_EQ(other.Wait(), 0);
    End();
    EXPECT_FALSE(std::filesystem::exists(CopyListPath(first)));
}

TEST_F(StartTest, WhereNoTurnsCanBeTakenTheUserIsToldWhyHeMayOnlyRead)
{
    struct : test::FailingFileSystem {
        int Open(const std::string& name, int flags, unsigned mode) override
        {
            errno = EACCES;
            return name.ends_with(".turn") ? -1 : FailingFileSystem::Open(name, flags, mode);
        }
    } drive;
    drive.locksStayHere = true;
    StoreDefaultFile(MakeNotes("mine.jot"));
    const ScopedFileSystem scope(drive);
    Start();
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
    EXPECT_THAT(boxes.texts,
                ElementsAre(AllOf(HasSubstr("can be read, but not changed"), HasSubstr("Permission denied"))));
    End();
}

// A drive whose reads wait, but for the window's own.
struct StuckDrive : test::FailingFileSystem {
    StuckDrive() { isRemote = true; }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        if (std::this_thread::get_id() != window) {
            std::unique_lock lock(guard);
            waiting += 1;
            change.wait(lock, [this] { return !isStuck; });
            waiting -= 1;
            if (isAway) {
                errno = ENOTCONN;
                return -1;
            }
        }
        return FailingFileSystem::ReadAt(handle, buffer, offset);
    }
    int IdentifyPath(const std::string& path, FileIdentity& identity) override
    {
        errno = ENOTCONN;
        return isAway && std::this_thread::get_id() != window ? -1 : FailingFileSystem::IdentifyPath(path, identity);
    }
    void Set(bool stuck, bool away)
    {
        const std::lock_guard lock(guard);
        isStuck = stuck;
        isAway = away;
        change.notify_all();
    }
    int Waiting()
    {
        const std::lock_guard lock(guard);
        return waiting;
    }

    const std::thread::id window = std::this_thread::get_id();
    std::mutex guard;
    std::condition_variable change;
    bool isStuck = false;
    std::atomic<bool> isAway = false;
    int waiting = 0;
};

TEST_F(StartTest, ADriveThatDoesNotAnswerLeavesTheWindowAliveAndIsTold)
{
    static StuckDrive drive;  // a look may outlive the test
    const std::string path = MakeNotes("mine.jot");
    StoreDefaultFile(path);
    const ScopedFileSystem scope(drive);
    Start();
    NotesList& list = module->GetWorkPane().GetList();
    const auto tick = [&](int timer) { list.Send(kWmTimer, timer, 0); };
    const auto shows = [&](const std::string& title) {
        return ServeUntil([&] { return Title() == "Jotlet : mine.jot" + title; }, std::chrono::seconds(5));
    };
    const auto follows = [&](const std::string& title, int notes) {
        tick(RecordListView::kRefreshTimerId);
        return shows(title) && ServeUntil([&] { return list.GetCount() == notes; }, std::chrono::seconds(5));
    };
    const auto waits = [&](int count) {
        return ServeUntil([&] { return drive.Waiting() == count; }, std::chrono::seconds(5));
    };
    const auto removeOne = [&](RecordAddress at) { return TableFile(path, "").DeleteRecord(kFirstRecordOffset + at); };
    constexpr const char* kSilent = " - the drive does not answer";

    EXPECT_EQ(removeOne(0), 1);
    EXPECT_TRUE(follows("", 3));

    drive.Set(true, false);
    for (int i = 0; i < 3; ++i)
        tick(RecordListView::kRefreshTimerId);
    EXPECT_TRUE(waits(1)) << "one look at a time";
    EXPECT_EQ(Title(), "Jotlet : mine.jot") << "not before it has had its time";
    EXPECT_EQ(removeOne(kNoteRecordSize), 1) << "another copy's change meanwhile";
    tick(RecordListView::kPatienceTimerId);
    EXPECT_TRUE(shows(kSilent));
    EXPECT_EQ(drive.Waiting(), 1);

    drive.Set(false, false);
    EXPECT_TRUE(shows("") && ServeUntil([&] { return list.GetCount() == 2; }, std::chrono::seconds(5)));

    drive.Set(false, true);
    EXPECT_TRUE(follows(kSilent, 2)) << "an answer that it is gone";
    drive.Set(false, false);
    EXPECT_TRUE(follows("", 2));

    drive.Set(true, false);
    tick(RecordListView::kRefreshTimerId);
    EXPECT_TRUE(waits(1));
    End();
    EXPECT_EQ(drive.Waiting(), 1) << "the look is left to itself";
    drive.Set(false, false);
    EXPECT_TRUE(waits(0));
}

TEST_F(ReplaceTest, HelpOpensItsPageAndExitRemembersThePlace)
{
    Command(kCommandHelpContents);
    EXPECT_THAT(boxes.texts, ElementsAre("Help file '" + folder.File("Help/notes.htm") + "'\r\ndoes not exist."));
    std::filesystem::create_directory(folder.File("Help"));
    test::WriteAll(folder.File("Help/notes.htm"), "<html></html>");
    Command(kCommandHelpContents);
    EXPECT_THAT(shell, testing::Contains("open " + folder.File("Help/notes.htm")));
    EXPECT_TRUE(std::filesystem::exists(folder.File("data/applications/jotlet.desktop"))) << "known to the desktop";
    const Rect place = WindowRect(module->window);
    Command(kCommandExit);
    EXPECT_FALSE(Open());
    EXPECT_EQ(Setting("WPLeft"), std::to_string(place.left));
    EXPECT_EQ(Setting("WPBottom"), std::to_string(place.bottom));
}

}  // namespace
}  // namespace jotlet
