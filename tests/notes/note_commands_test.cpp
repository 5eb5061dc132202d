// The commands of the notes pane: what they ask, tell, play and show, and that what notes/commands/ makes of it reaches
// the file.

#include "net/core/send_record.h"
#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "store/record_hold.h"
#include "support/failing_file_system.h"
#include "support/outbox_file.h"
#include "toolkit/drag_commands.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace note_editor_ids;

constexpr const char* kAskDelete = "Do you want to delete this Jotlet text ?";
constexpr const char* kAskNotify =
    "You have made changes to a group event. Would you like to notify the participants and resource managers of these "
    "changes ?";

class NoteCommands : public NotesFixture {
protected:
    // The next editor gets this in front of its text and ends with `button`.
    static void AnswerEditor(std::string_view text, int button = kIdOk)
    {
        WhenModal([=](WindowHandle editor) {
            FocusItem(editor, kTextEdit);
            TestType(DialogItem(editor, kTextEdit), text);
            TestPushItem(editor, button);
        });
    }
    void DropOnBin()
    {
        pane->Send(kWmCommand, NotesPane::kBinId, kBinDropped);
        ServeEvents();
    }
    void DropOnDay(DateValue day, int how)
    {
        pane->Send(kWmCommand, MakeParam(NotesPane::kCalendarId, how), reinterpret_cast<MessageParam>(&day));
        ServeEvents();
    }
    bool ListHasFocus()
    {
        const bool has = FocusedWindow() == Grid();
        FocusWindow(pane->GetBin().window);
        ServeEvents();
        return has;
    }
};

TEST_F(NoteCommands, EachCommandReachesTheFileIsHeardAndLeavesTheFocusOnTheList)
{
    Add({.title = "milk", .date = {1, 2, 2004}});
    Show();
    AnswerEditor("tea", kIdCancel);
    Command(kCommandNewNote);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_EQ(Stored().size(), 1u);
    AnswerEditor("tea");
    Command(kCommandNewNote);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_EQ(pane->SelectedId(), StoredNote("Untitled").uniqueId.Get());
    DateValue today;
    Today(today);
    EXPECT_EQ(StoredNote("Untitled").date.Get(), today);

    Select("milk");
    AnswerEditor("more ");
    Command(kCommandEditNote);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_EQ(FieldText(StoredNote("milk").text), "more text");
    EXPECT_EQ(StoredNote("milk").date.Get(), pane->GetPaneDate()) << "it moves to the day of the pane";
    const auto id = StoredNote("milk").uniqueId.Get();
    EXPECT_EQ(pane->SelectedId(), id);
    EXPECT_EQ(StoredNote("milk").locked, 0);
    EXPECT_THAT(played, ElementsAre("add.wav", "add.wav"));

    played.clear();
    Command(kCommandCopy);
    EXPECT_TRUE(ListHasFocus());
    Command(kCommandCut);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_THAT(Titles(), ElementsAre("Untitled"));
    Command(kCommandPaste);
    EXPECT_TRUE(ListHasFocus());
    Command(kCommandUndoDelete);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_THAT(StoredTitles(), ElementsAre("milk", "Untitled", "milk")) << "the slot is taken again";
    EXPECT_NE(Stored()[0].uniqueId.Get(), id);
    EXPECT_EQ(Stored()[2].uniqueId.Get(), id);
    Command(kCommandUndoDelete);
    EXPECT_EQ(Titles().size(), 3u) << "the bin is empty again";

    ScopedAnswers answers({Answer::No, Answer::Yes});
    Select("Untitled");
    for (const std::size_t left : {3u, 2u}) {
        Command(kCommandDeleteNote);
        EXPECT_TRUE(ListHasFocus());
        EXPECT_EQ(Titles().size(), left);
    }
    EXPECT_THAT(answers.texts, ElementsAre(kAskDelete, kAskDelete));
    EXPECT_THAT(played, ElementsAre("copy.wav", "delete.wav", "add.wav", "bindel.wav"));

    played.clear();
    pane->GetList().SelectItem(0);
    const auto moved = pane->SelectedId();
    DropOnDay({5, 5, 2015}, kDragMoveDrop);
    EXPECT_TRUE(ListHasFocus());
    EXPECT_EQ(pane->SelectedId(), moved);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{5, 5, 2015}));
    DropOnDay({6, 5, 2015}, kDragCopyDrop);
    EXPECT_EQ(Stored().size(), 3u);
    EXPECT_NE(pane->SelectedId(), moved);
    DropOnBin();
    EXPECT_TRUE(ListHasFocus());
    EXPECT_EQ(Titles().size(), 2u);
    EXPECT_EQ(answers.texts.size(), 2u) << "the bin does not ask";
    EXPECT_THAT(played, ElementsAre("move.wav", "add.wav"));
    for (const int command : {kBinDropped, kBinDropped})
        pane->Send(kWmCommand, NotesPane::kBinId, command);
    DropOnDay({5, 5, 2015}, kDragMoveDrop);
    EXPECT_EQ(answers.beeps, 3) << "nothing is selected";
}

TEST_F(NoteCommands, ReadersAndNotesThatSomebodyElseHoldsAreRefusedByMessage)
{
    const auto address = Add({.title = "milk"});
    SetPasswords();
    Show("boss");
    const std::function<void()> commands[] = {[&] { Command(kCommandEditNote); },
                                              [&] { Command(kCommandDeleteNote); },
                                              [&] { DropOnBin(); },
                                              [&] {
                                                  DropOnDay({5, 5, 2015}, kDragMoveDrop);
                                              },
                                              [&] {
                                                  DropOnDay({5, 5, 2015}, kDragCopyDrop);
                                              },
                                              [&] { Command(kCommandCut); },
                                              [&] { Command(kCommandCopy); }};
    for (const char* expected : {kBeingEdited, kNoPermission}) {
        TableFile other(path, "boss");
        std::optional<RecordHold> hold;
        if (expected == kBeingEdited)
            hold.emplace(other, address);
        else
            file->SetPassword("look");
        ResumeRefresh();  // the switch belongs to the other copy's process
        for (std::size_t i = 0; i < std::size(commands); ++i) {
            ScopedAnswers answers({Answer::Yes});
            Select("milk");
            commands[i]();
            const bool silent = expected == kBeingEdited && i >= 5;  // cut and copy pass over it
            EXPECT_EQ(answers.texts, std::vector<std::string>(silent ? 0 : 1, expected)) << i;
        }
    }
    ScopedAnswers answers;
    for (const int command : {kCommandNewNote, kCommandOpenAttachment, kCommandMoveToDay})
        Command(command);
    EXPECT_EQ(answers.texts, std::vector<std::string>(3, kNoPermission));
    NoteRecord copied = StoredNote("milk");
    NoteClipboard().Store(BytesOf(copied), kCommandCopy);
    Command(kCommandPaste);
    EXPECT_EQ(answers.texts.size(), 3u);
    EXPECT_THAT(StoredTitles(), ElementsAre("milk"));
}

TEST_F(NoteCommands, WhatAnotherUserHidOrDeletedLeavesTheBoard)
{
    const auto hidden = Add({.title = "milk"});
    const auto gone = Add({.title = "tea", .category = "shop"});
    SetPasswords();
    Show("help");
    Select("tea");
    EXPECT_THAT(pane->GetList().ItemDetail(1), testing::EndsWith(", category shop"));
    TableFile(path, "boss").DeleteRecord(gone);
    EXPECT_EQ(pane->GetList().ItemName(1), "Record is deleted by another user.");
    ScopedAnswers answers({Answer::Ok, Answer::Yes});
    Command(kCommandEditNote);
    EXPECT_THAT(answers.texts, ElementsAre(kBeingEdited));
    Select("milk");
    Change(hidden, [](NoteRecord& note) { note.confidential = 1; });
    Command(kCommandEditNote);
    EXPECT_EQ(answers.texts.size(), 1u);
    EXPECT_THAT(Titles(), IsEmpty());
    EXPECT_EQ(StoredNote("milk").locked, 0);
}

TEST_F(NoteCommands, ARoleLostWhileTheEditorIsOpenKeepsTheTextInIt)
{
    Add({.title = "milk"});
    SetPasswords();
    Show("help");
    Select("milk");
    ScopedAnswers answers;
    bool stillOpen = false;
    WhenModal([&](WindowHandle editor) {
        EXPECT_FALSE(IsEnabled(DialogItem(editor, kConfidentialBox))) << "only the owner marks a note confidential";
        std::string owner = "boss";
        SetNetworkPasswords(path, owner, {.owner = "boss", .assistant = "changed", .reader = "look"});
        TestType(DialogItem(editor, kTextEdit), "precious");
        TestPushItem(editor, kIdOk);
        stillOpen = TopModal() == editor && ItemText(editor, kTextEdit) == "precioustext";
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandEditNote);
    EXPECT_TRUE(stillOpen);
    EXPECT_THAT(answers.texts, ElementsAre(kNoPermission));
    EXPECT_EQ(FieldText(StoredNote("milk").text), "text");
}

TEST_F(NoteCommands, AGroupEventAsksWhetherToTellItsPeopleAndIsFrozenUntilTheyAreTold)
{
    Change(Add({.title = "party"}), [](NoteRecord& note) {
        note.eventState = 2;
        note.eventStatus = kStatusChange;
    });
    const auto id = StoredNote("party").uniqueId;
    const test::OutboxFile outbox(path);
    outbox.Put("ann", kSendAccepted, id);
    Show();
    ScopedAnswers answers;
    struct Case {
        std::function<void()> command;
        std::vector<Answer> answers;
        std::vector<std::string> asked, people;
    };
    const auto edit = [&](int button) {
        return [=, this] {
            AnswerEditor("x", button);
            Command(kCommandEditNote);
        };
    };
    const auto remove = [&] { Command(kCommandDeleteNote); };
    for (const Case& c :
         {Case{edit(kIdCancel), {}, {}, {"ann:3"}}, Case{edit(kIdOk), {Answer::No}, {kAskNotify}, {"ann:3"}},
          Case{edit(kIdOk), {Answer::Yes}, {kAskNotify}, {"ann:1"}},
          Case{remove, {Answer::Yes, Answer::Yes}, {kAskDelete, kAskNotify}, {"ann:8"}}}) {
        answers.texts.clear();
        answers.answers.assign(c.answers.begin(), c.answers.end());
        Select("party");
        c.command();
        EXPECT_EQ(answers.texts, c.asked);
        EXPECT_EQ(outbox.People(id), c.people);
    }
    EXPECT_EQ(StoredNote("party").eventState, kEventWithdrawn);
    for (const int command : {kCommandEditNote, kCommandCut}) {
        Select("party");
        Command(command);
    }
    EXPECT_EQ(answers.beeps, 2);
    EXPECT_TRUE(NoteClipboard().IsEmpty());

    std::filesystem::remove(outbox.Path());
    std::filesystem::create_directory(outbox.Path());
    answers.texts.clear();
    answers.answers = {Answer::No};
    Select("party");
    DropOnBin();
    EXPECT_THAT(answers.texts, ElementsAre(kAskNotify, HasSubstr(outbox.Path())));
    EXPECT_THAT(StoredTitles(), IsEmpty());
}

TEST_F(NoteCommands, AFailedDeleteOrCutLeavesTheNoteAndSaysSo)
{
    const auto address = Add({.title = "milk"});
    Show();
    for (const int command : {kCommandDeleteNote, kCommandCut}) {
        Select("milk");
        ScopedAnswers answers({Answer::Yes});
        test::FailingFileSystem disk;
        {
            // The lock is written first; what comes behind it fails.
            disk.failAt = 2;
            disk.andAllBehind = true;
            const ScopedFileSystem failing(disk);
            Command(command);
        }
        ASSERT_FALSE(answers.texts.empty());
        EXPECT_THAT(answers.texts.back(), HasSubstr("could not be written"));
        EXPECT_THAT(StoredTitles(), ElementsAre("milk"));
        EXPECT_TRUE(BinSlot().IsEmpty());
        EXPECT_TRUE(NoteClipboard().IsEmpty());
        Change(address, [](NoteRecord& note) { note.locked = 0; });  // the lock could not be given back either
    }
}

TEST_F(NoteCommands, AttachmentsOpenWithTheDesktopsProgram)
{
    Change(Add({.title = "plan"}), [](NoteRecord& note) {
        note.attachmentKind = kAttachmentUrl;
        StoreText(note.attachmentPath, "https://pinwell.example/plan");
    });
    Add({.title = "plain"});
    Show();
    for (const char* title : {"plain", "plan"}) {
        Select(title);
        Command(kCommandOpenAttachment);
    }
    EXPECT_THAT(opened, ElementsAre("https://pinwell.example/plan"));
}

TEST_F(NoteCommands, AChangeOfAnotherCopyShowsAtTheTickWithNothingSelectedButNotWhileANoteIsHeld)
{
    const auto address = Add({.title = "milk"});
    Show();
    const auto tick = [this] {
        pane->GetList().Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
        ServeEvents();
        return pane->GetList().GetCount();
    };
    Select("milk");
    WhenModal([&](WindowHandle editor) {
        Add({.title = "apples"});
        EXPECT_EQ(tick(), 1);
        EXPECT_EQ(TableFile(path, "").LockRecord(address), 0);
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandEditNote);
    EXPECT_THAT(Titles(), ElementsAre("apples", "milk"));
    EXPECT_EQ(pane->SelectedId(), StoredNote("milk").uniqueId.Get());
    ResumeRefresh();
    Add({.title = "bread"});
    EXPECT_EQ(tick(), 3);
    EXPECT_EQ(pane->GetList().GetSelected(), -1);
    ScopedAnswers answers({Answer::Yes});
    Command(kCommandDeleteNote);
    EXPECT_EQ(Stored().size(), 3u) << "Delete does nothing until something is selected again";
}

}  // namespace
}  // namespace jotlet
