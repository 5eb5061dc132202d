// Each command of the notes pane, seen in the file, with a second user on the same file.

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "support/forked_process.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr int kTextEdit = 103;
constexpr int kTitleEdit = 200;
constexpr int kConfidentialBox = 105;

class NoteCommands : public NotesFixture {
protected:
    // The next editor gets this title and text and is confirmed.
    void AnswerEditor(std::string title, std::string text)
    {
        WhenModal([=](WindowHandle editor) {
            SetItemTextOf(editor, kTitleEdit, "");
            FocusItem(editor, kTitleEdit);
            TestType(DialogItem(editor, kTitleEdit), title);
            FocusItem(editor, kTextEdit);
            TestType(DialogItem(editor, kTextEdit), text);
            TestPushItem(editor, kIdOk);
        });
    }
    void CancelEditor()
    {
        WhenModal([](WindowHandle editor) { TestPushItem(editor, kIdCancel); });
    }
    void SetPasswords(const NetworkPasswords& passwords)
    {
        std::string current;
        ASSERT_EQ(SetNetworkPasswords(path, current, passwords), 1);
        ownerPassword = passwords.owner;
    }
};

TEST_F(NoteCommands, NewStoresWhatWasTypedAndSelectsIt)
{
    Add({.title = "bread"});
    Show();
    AnswerEditor("apples", "two of them");
    Command(kCommandNewNote);
    EXPECT_THAT(Titles(), ElementsAre("apples", "bread"));
    EXPECT_EQ(pane->GetList().GetSelected(), 0);
    EXPECT_EQ(FieldText(StoredNote("apples").text), "two of them");
    EXPECT_EQ(StoredNote("apples").locked, 0);

    CancelEditor();
    Command(kCommandNewNote);
    EXPECT_EQ(Stored().size(), 2u);
}

TEST_F(NoteCommands, EditMovesTheNoteToThePaneDateAndGivesTheLockBack)
{
    const auto address = Add({.title = "milk", .date = {1, 2, 2004}});
    Show();
    Select("milk");
    AnswerEditor("Milk", "more ");
    Command(kCommandEditNote);
    const NoteRecord note = StoredNote("Milk");
    EXPECT_EQ(FieldText(note.text), "more text");
    EXPECT_EQ(note.date.Get(), pane->GetPaneDate());
    TableFile other(path, "");
    EXPECT_EQ(other.LockRecord(address), 1);
    EXPECT_EQ(pane->GetList().GetSelected(), 0);
}

TEST_F(NoteCommands, ANoteThatSomebodyElseEditsIsRefusedWithAMessage)
{
    const auto address = Add({.title = "milk"});
    Show();
    TableFile other(path, "");
    ASSERT_EQ(other.LockRecord(address), 1);
    ResumeRefresh();  // the switch belongs to the other copy's process
    for (const int command : {kCommandEditNote, kCommandDeleteNote}) {
        ScopedAnswers answers({Answer::Ok, Answer::Yes});
        Select("milk");
        Command(command);
        EXPECT_THAT(answers.texts,
                    ElementsAre("Program can't edit this entry. It is being edited by another user. Try again."));
    }
    {
        ScopedAnswers answers;
        Command(kCommandCut);
        Command(kCommandCopy);
        EXPECT_THAT(answers.texts, IsEmpty());
    }
    EXPECT_TRUE(NoteClipboard().IsEmpty());
    EXPECT_THAT(StoredTitles(), ElementsAre("milk"));
}

TEST_F(NoteCommands, DeleteAsksAndFillsTheBinAndUndoBringsTheSameNoteBack)
{
    Add({.title = "milk", .category = "Calls"});
    Show();
    Select("milk");
    const NoteRecord before = StoredNote("milk");
    {
        ScopedAnswers no({Answer::No});
        Command(kCommandDeleteNote);
        EXPECT_THAT(no.texts, ElementsAre("Do you want to delete this Jotlet text ?"));
    }
    EXPECT_THAT(StoredTitles(), ElementsAre("milk"));
    {
        ScopedAnswers yes({Answer::Yes});
        Command(kCommandDeleteNote);
    }
    EXPECT_THAT(StoredTitles(), IsEmpty());
    EXPECT_EQ(pane->GetList().GetCount(), 0);

    Command(kCommandUndoDelete);
    const NoteRecord after = StoredNote("milk");
    EXPECT_EQ(after.uniqueId.Get(), before.uniqueId.Get());
    EXPECT_EQ(FieldText(after.category), "Calls");
    EXPECT_EQ(after.locked, 0);
    EXPECT_TRUE(BinSlot().IsEmpty());
    Command(kCommandUndoDelete);
    EXPECT_EQ(Stored().size(), 1u);
}

TEST_F(NoteCommands, CutThenPasteThenUndoGivesTwoNotesWithTwoIds)
{
    Add({.title = "milk", .date = {1, 2, 2004}});
    Show();
    Select("milk");
    const auto id = StoredNote("milk").uniqueId.Get();
    Command(kCommandCut);
    EXPECT_THAT(StoredTitles(), IsEmpty());
    Command(kCommandPaste);
    Command(kCommandUndoDelete);
    const auto notes = Stored();
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_NE(notes[0].uniqueId.Get(), id);
    EXPECT_EQ(notes[1].uniqueId.Get(), id);
    DateValue today;
    Today(today);
    EXPECT_EQ(notes[0].date.Get(), today);
    EXPECT_EQ(notes[1].date.Get(), (DateValue{1, 2, 2004}));
}

TEST_F(NoteCommands, AReaderIsToldAndChangesNothing)
{
    Add({.title = "milk"});
    SetPasswords({.owner = "boss", .assistant = "help", .reader = "look"});
    Show("look");
    for (const int command :
         {kCommandNewNote, kCommandEditNote, kCommandDeleteNote, kCommandCut, kCommandCopy, kCommandOpenAttachment}) {
        ScopedAnswers answers;
        Select("milk");
        Command(command);
        EXPECT_THAT(answers.texts, ElementsAre("Program can't do this. You don't have permission.")) << command;
    }
    NoteRecord copied = StoredNote("milk");
    NoteClipboard().Store(BytesOf(copied), kCommandCopy);
    Command(kCommandPaste);
    EXPECT_THAT(StoredTitles(), ElementsAre("milk"));
}

TEST_F(NoteCommands, ANoteThatBecameConfidentialIsGivenBackUntouched)
{
    const auto address = Add({.title = "milk"});
    SetPasswords({.owner = "boss", .assistant = "help", .reader = "look"});
    Show("help");
    Select("milk");
    {
        TableFile owner(path, "boss");
        NoteRecord note;
        ASSERT_EQ(owner.ReadRecord(BytesOf(note), address), 1);
        note.confidential = 1;
        ASSERT_EQ(owner.WriteRecord(BytesOf(note), address), 1);
    }
    ScopedAnswers answers({Answer::Yes});
    Command(kCommandEditNote);
    EXPECT_THAT(answers.texts, IsEmpty());
    EXPECT_THAT(Titles(), IsEmpty());
    TableFile owner(path, "boss");
    EXPECT_EQ(owner.LockRecord(address), 1);
}

TEST_F(NoteCommands, TheAssistantCannotMarkANoteConfidential)
{
    Add({.title = "milk"});
    SetPasswords({.owner = "boss", .assistant = "help", .reader = "look"});
    Show("help");
    Select("milk");
    bool enabled = true;
    WhenModal([&](WindowHandle editor) {
        enabled = IsEnabled(DialogItem(editor, kConfidentialBox));
        TestPushItem(editor, kIdOk);
    });
    Command(kCommandEditNote);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(StoredNote("milk").confidential, 0);
}

TEST_F(NoteCommands, ARoleLostWhileTheEditorIsOpenKeepsTheTextInIt)
{
    Add({.title = "milk"});
    SetPasswords({.owner = "boss", .assistant = "help", .reader = "look"});
    Show("help");
    Select("milk");
    ScopedAnswers answers;
    bool stillOpen = false;
    WhenModal([&](WindowHandle editor) {
        std::string owner = "boss";
        SetNetworkPasswords(path, owner, {.owner = "boss", .assistant = "changed", .reader = "look"});
        TestType(DialogItem(editor, kTextEdit), "precious");
        TestPushItem(editor, kIdOk);
        stillOpen = TopModal() == editor && ItemText(editor, kTextEdit) == "precioustext";
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandEditNote);
    EXPECT_TRUE(stillOpen);
    EXPECT_THAT(answers.texts, ElementsAre("Program can't do this. You don't have permission."));
    EXPECT_EQ(FieldText(StoredNote("milk").text), "text");
}

TEST_F(NoteCommands, ANoteDeletedByAnotherUserIsRefusedAndItsCellSaysSo)
{
    const auto address = Add({.title = "milk", .category = "shop", .confidential = true});
    Show();
    Select("milk");
    EXPECT_THAT(pane->GetList().ItemDetail(0), testing::EndsWith(", confidential, category shop"));
    {
        TableFile other(path, "");
        ASSERT_EQ(other.DeleteRecord(address), 1);
    }
    EXPECT_EQ(pane->GetList().ItemName(0), "Record is deleted by another user.");
    ScopedAnswers answers;
    Command(kCommandEditNote);
    EXPECT_EQ(answers.texts.size(), 1u);
    EXPECT_THAT(StoredTitles(), IsEmpty());
}

TEST_F(NoteCommands, AWithdrawnEventOnlyBeeps)
{
    const auto address = Add({.title = "meeting"});
    {
        TableFile other(path, "");
        NoteRecord note;
        other.ReadRecord(BytesOf(note), address);
        note.eventState = kEventWithdrawn;
        other.WriteRecord(BytesOf(note), address);
    }
    Show();
    Select("meeting");
    ScopedAnswers answers;
    Command(kCommandEditNote);
    Command(kCommandCut);
    EXPECT_EQ(answers.beeps, 2);
    EXPECT_THAT(StoredTitles(), ElementsAre("meeting"));
}

TEST_F(NoteCommands, AttachmentsOpenWithTheDesktopsProgram)
{
    const auto address = Add({.title = "plan"});
    {
        TableFile other(path, "");
        NoteRecord note;
        other.ReadRecord(BytesOf(note), address);
        note.attachmentKind = kAttachmentUrl;
        StoreText(note.attachmentPath, "https://pinwell.example/plan");
        other.WriteRecord(BytesOf(note), address);
    }
    Add({.title = "plain"});
    Show();
    Select("plain");
    Command(kCommandOpenAttachment);
    EXPECT_THAT(opened, IsEmpty());
    Select("plan");
    Command(kCommandOpenAttachment);
    EXPECT_THAT(opened, ElementsAre("https://pinwell.example/plan"));
}

}  // namespace
}  // namespace jotlet
