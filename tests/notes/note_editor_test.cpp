// The note editor: what it makes of texts of every kind, at their limits, and when the note cannot be written.

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kDateText = 100;
constexpr int kTextEdit = 103;
constexpr int kCategoryCombo = 104;
constexpr int kConfidentialBox = 105;
constexpr int kAttachButton = 107;
constexpr int kColourBox = 110;
constexpr int kTitleEdit = 200;

class NoteEditor : public NotesFixture {
protected:
    // Edits the first note on the board: `act` in the open editor, then the button.
    void Edit(const std::function<void(WindowHandle editor)>& act, int button = kIdOk)
    {
        pane->GetList().SelectItem(0);
        WhenModal([&](WindowHandle editor) {
            act(editor);
            TestPushItem(editor, button);
        });
        Command(kCommandEditNote);
    }
    void New(const std::function<void(WindowHandle editor)>& act, int button = kIdOk)
    {
        WhenModal([&](WindowHandle editor) {
            act(editor);
            TestPushItem(editor, button);
        });
        Command(kCommandNewNote);
    }
    static void Replace(WindowHandle editor, int id, std::string_view text)
    {
        SetItemTextOf(editor, id, "");
        TestType(DialogItem(editor, id), text);
    }
    std::string StoredText() { return std::string(FieldText(Stored().at(0).text)); }
    std::string StoredTitle() { return std::string(FieldText(Stored().at(0).title)); }
    // Changes the only note as another user would.
    void Change(const std::function<void(NoteRecord&)>& change)
    {
        TableFile other(path, "");
        const auto note = Stored().at(0);
        const FieldRange id{kUniqueIdOffset, 8};
        RecordAddress found = 0;
        other.ForEachRecord(
            std::span(&id, 1),
            [&](RecordAddress address, std::span<const std::byte>) {
                found = address;
                return false;
            },
            ScanScope::All);
        NoteRecord changed = note;
        change(changed);
        ASSERT_EQ(other.WriteRecord(BytesOf(changed), found), 1);
    }
};

TEST_F(NoteEditor, TextsOfEveryKindSurvivePaintingAndASecondEdit)
{
    const std::vector<std::string> texts = {"Grüße, œuvre, naïve",
                                            "Съешь ещё этих булок",
                                            "漢字かな交じり文",
                                            "thumbs 👍🏽 family 👨‍👩‍👧 flag 🇫🇷",
                                            "שלום עולם, مرحبا and left again",
                                            "one\r\ntwo\r\n\r\nfour",
                                            "tab\tand\ttab",
                                            "bell \x07 escape \x1b unit \x1f delete \x7f",
                                            "caf\xe9 for 5 \x80, \x93quoted\x94",
                                            "lone \xc3 lead, \xed\xa0\x80 surrogate",
                                            "combining e\xcc\x81 and zero\xe2\x80\x8bwidth"};
    Add({.title = "x"});
    Show();
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        Change([&](NoteRecord& note) {
            StoreText(note.title, text);
            StoreText(note.text, text);
        });
        pane->GetList().RefreshNow();
        UpdateNow(frame->window);
        Edit([](WindowHandle) {});
        EXPECT_EQ(StoredText(), text) << "confirmed without a change";
        EXPECT_EQ(StoredTitle(), text);
        Edit([](WindowHandle editor) { TestType(DialogItem(editor, kTextEdit), "!"); });
        EXPECT_EQ(StoredText(), "!" + ToCrLf(DecodeForDisplay(text))) << "with one character typed before it";
        EXPECT_EQ(StoredTitle(), text) << "a field that was not edited keeps its bytes";
        Edit([](WindowHandle) {});
        EXPECT_EQ(StoredText(), "!" + ToCrLf(DecodeForDisplay(text)));
        UpdateNow(frame->window);
    }
}

TEST_F(NoteEditor, WhatIsTypedIsStoredAsUtf8WithLineBreaksOfTwoBytes)
{
    Show();
    New([](WindowHandle editor) {
        Replace(editor, kTitleEdit, "Zürich 東京 👍");
        const WindowHandle text = DialogItem(editor, kTextEdit);
        TestType(text, "первая");
        TestKey(text, kKeyReturn);
        TestType(text, "שנייה");
    });
    EXPECT_EQ(StoredTitle(), "Zürich 東京 👍");
    EXPECT_EQ(StoredText(), "первая\r\nשנייה");
}

TEST_F(NoteEditor, LimitsCountBytesAndNeverSplitACharacter)
{
    struct Case {
        std::string typed;
        std::size_t title;  // bytes stored
        std::size_t text;
    };
    const auto many = [](std::string_view unit, int count) {
        std::string text;
        while (count-- > 0)
            text += unit;
        return text;
    };
    Add({.title = "x"});
    Show();
    for (const Case& c : {Case{many("x", 2100), 149, 2023}, Case{many("é", 1100), 148, 2022},
                          Case{many("漢", 700), 147, 2022}, Case{"x" + many("👍", 520), 149, 2021}}) {
        SCOPED_TRACE(c.typed.substr(0, 8));
        Edit([&](WindowHandle editor) {
            Replace(editor, kTitleEdit, c.typed);
            Replace(editor, kTextEdit, c.typed);
        });
        EXPECT_TRUE(StoredTitle() == c.typed.substr(0, c.title)) << StoredTitle().size();
        EXPECT_TRUE(StoredText() == c.typed.substr(0, c.text)) << StoredText().size();
    }
}

TEST_F(NoteEditor, OldBytesThatWouldNoLongerFitAreNotCutInSilence)
{
    Add({.title = "x"});
    Change([](NoteRecord& note) { StoreText(note.text, std::string(1500, '\xe9')); });
    Show();
    ScopedAnswers answers;
    bool open = false;
    Edit(
        [&](WindowHandle editor) {
            TestKey(DialogItem(editor, kTextEdit), kKeyEnd);
            TestKey(DialogItem(editor, kTextEdit), kKeyBack);
            TestPushItem(editor, kIdOk);
            open = TopModal() == editor;
        },
        kIdCancel);
    EXPECT_TRUE(open);
    ASSERT_EQ(answers.texts.size(), 1u);
    EXPECT_THAT(answers.texts[0], HasSubstr("975 bytes"));
    EXPECT_EQ(StoredText(), std::string(1500, '\xe9'));
}

TEST_F(NoteEditor, ANewNoteNeedsATitleAndAText)
{
    Show();
    New(
        [&](WindowHandle editor) {
            EXPECT_EQ(ItemText(editor, kTitleEdit), "Untitled");
            EXPECT_EQ(ItemText(editor, kTextEdit), "");
            EXPECT_EQ(RowData(editor, kColourBox, SelectedRow(editor, kColourBox)), 0x65E7FF);
            std::string today;
            FormatDateValue(today, pane->GetPaneDate());
            EXPECT_EQ(ItemText(editor, kDateText), today);
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kIdOk)));
            TestType(DialogItem(editor, kTextEdit), "x");
            EXPECT_TRUE(IsEnabled(DialogItem(editor, kIdOk)));
            const WindowHandle title = DialogItem(editor, kTitleEdit);
            TestKey(title, kKeyEnd);
            for (int i = 0; i < 8; ++i)
                TestKey(title, kKeyBack);
            EXPECT_EQ(ItemText(editor, kTitleEdit), "");
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kIdOk)));
        },
        kIdCancel);
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(NoteEditor, ACategoryMayBeTypedAndTheListOfCategoriesStays)
{
    Add({.title = "x", .category = "Calls"});
    Show();
    CategoryBlock before{};
    file->ReadCategories(before);
    Edit([](WindowHandle editor) {
        EXPECT_EQ(ItemText(editor, kCategoryCombo), "Calls");
        Replace(editor, kCategoryCombo, "Мой список дел на год");
    });
    EXPECT_EQ(FieldText(Stored().at(0).category), "Мой список дел н") << "29 bytes, whole characters";
    CategoryBlock after{};
    file->ReadCategories(after);
    EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);

    Edit([](WindowHandle editor) { EXPECT_EQ(ItemText(editor, kCategoryCombo), ""); });
    EXPECT_EQ(FieldText(Stored().at(0).category), "") << "a name that the list does not know is gone with OK";
}

TEST_F(NoteEditor, AnOldCategoryKeepsItsBytesSoThatItsFilterStillFindsTheNote)
{
    {
        TableFile other(path, "");
        other.UpdateCategories([](CategoryBlock& block) {
            StoreText(block.entries[0].name, "Caf\xe9");
            return true;
        });
    }
    Add({.title = "x", .category = "Caf\xe9"});
    Show();
    Edit([](WindowHandle editor) { TestType(DialogItem(editor, kTextEdit), "!"); });
    EXPECT_EQ(FieldText(Stored().at(0).category), "Caf\xe9");
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("Caf\xe9"));
    EXPECT_THAT(Titles(), ElementsAre("x"));
}

TEST_F(NoteEditor, AColourOutsideThePaletteStaysAndAChosenOneIsStored)
{
    Add({.title = "x"});
    Change([](NoteRecord& note) { note.colour = 0x123456; });
    Show();
    Edit([](WindowHandle editor) { EXPECT_EQ(SelectedRow(editor, kColourBox), -1); });
    EXPECT_EQ(Stored().at(0).colour, 0x123456u);
    Edit([](WindowHandle editor) { TestPickRow(editor, kColourBox, 2); });
    EXPECT_EQ(Stored().at(0).colour, 0x495EFFu);
}

TEST_F(NoteEditor, CancelThrowsAwayWhatTheInnerDialogsConfirmed)
{
    Add({.title = "x", .date = {1, 2, 2003}});
    Show();
    Edit(
        [](WindowHandle editor) {
            WhenModal([](WindowHandle attach) {
                TestType(DialogItem(attach, 102), "/tmp/plan.txt");
                TestPushItem(attach, kIdOk);
            });
            TestPushItem(editor, kAttachButton);
        },
        kIdCancel);
    EXPECT_FALSE(HasAttachment(Stored().at(0)));
    EXPECT_EQ(Stored().at(0).date.Get(), (DateValue{1, 2, 2003}));
    EXPECT_EQ(Stored().at(0).locked, 0);
}

TEST_F(NoteEditor, AnAttachmentIsKeptChangedAndCleared)
{
    Add({.title = "x"});
    Show();
    const auto attach = [&](const std::function<void(WindowHandle)>& act) {
        Edit([&](WindowHandle editor) {
            WhenModal(act);
            TestPushItem(editor, kAttachButton);
        });
    };
    attach([](WindowHandle dialog) {
        EXPECT_TRUE(IsItemChecked(dialog, 100));
        CheckItem(dialog, 101, true);
        TestType(DialogItem(dialog, 102), "https://pinwell.example/ü");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(Stored().at(0).attachmentKind, kAttachmentUrl);
    EXPECT_EQ(FieldText(Stored().at(0).attachmentPath), "https://pinwell.example/ü");
    attach([](WindowHandle dialog) {
        EXPECT_TRUE(IsItemChecked(dialog, 101));
        Replace(dialog, 102, "elsewhere");
        TestPushItem(dialog, 104);
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_THAT(opened, ElementsAre("elsewhere")) << "opened as it stands, whether or not OK follows";
    EXPECT_EQ(FieldText(Stored().at(0).attachmentPath), "https://pinwell.example/ü");
    attach([](WindowHandle dialog) {
        Replace(dialog, 102, std::string(300, 'p'));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(FieldText(Stored().at(0).attachmentPath).size(), 259u);
    attach([](WindowHandle dialog) {
        SetItemTextOf(dialog, 102, "");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_FALSE(HasAttachment(Stored().at(0)));
    EXPECT_EQ(Stored().at(0).attachmentKind, 0);
}

// A write that fails: on a full disk, on a share that is gone.
TEST_F(NoteEditor, AFailedWriteKeepsTheEditorOpenWithItsTextUntilItWorks)
{
    Add({.title = "milk", .text = "old"});
    const auto texts = [this] {
        std::vector<std::string> found;
        for (const NoteRecord& note : Stored())
            found.emplace_back(FieldText(note.text));
        return found;
    };
    for (const bool onlySyncs : {false, true}) {
        for (const bool newNote : {false, true}) {
            SCOPED_TRACE(std::string(newNote ? "new" : "edit") + (onlySyncs ? ", sync" : ", write"));
            Show();
            pane->GetList().SelectItem(0);
            ScopedAnswers answers;
            bool open = false;
            auto before = texts();
            WhenModal([&](WindowHandle editor) {
                Replace(editor, kTextEdit, "precious");
                {
                    test::FailingFileSystem disk;
                    disk.failAt = onlySyncs ? 0 : 1;
                    disk.andAllBehind = true;
                    disk.failSyncs = onlySyncs;
                    disk.failure = onlySyncs ? EIO : ENOSPC;
                    const ScopedFileSystem failing(disk);
                    TestPushItem(editor, kIdOk);
                    EXPECT_GT(disk.changes, 0);
                }
                open = TopModal() == editor && ItemText(editor, kTextEdit) == "precious";
                EXPECT_EQ(texts(), before) << "what is not on the disk is not in the file";
                TestPushItem(editor, kIdOk);
            });
            Command(newNote ? kCommandNewNote : kCommandEditNote);
            EXPECT_TRUE(open);
            ASSERT_EQ(answers.texts.size(), 1u);
            EXPECT_THAT(answers.texts[0], HasSubstr("could not be written"));
            EXPECT_THAT(answers.texts[0],
                        AllOf(HasSubstr(path), HasSubstr(onlySyncs ? "Check the disk" : "disk is full")));
            if (newNote)
                before.emplace_back();
            before.back() = "precious";
            EXPECT_EQ(texts(), before) << "written once, by the second OK";
            for (const NoteRecord& note : Stored())
                EXPECT_EQ(note.locked, 0);
            TearDownBoard();
        }
    }
}

TEST_F(NoteEditor, AFailedDeleteOrDropLeavesTheNoteAndSaysSo)
{
    Add({.title = "milk", .date = {1, 2, 2003}});
    Show();
    for (const int command : {kCommandDeleteNote, kCommandCut}) {
        pane->GetList().SelectItem(0);
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
        Change([](NoteRecord& note) { note.locked = 0; });  // the lock could not be given back either
    }
}

}  // namespace
}  // namespace jotlet
