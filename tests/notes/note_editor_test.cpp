// The note editor: what it makes of texts of every kind, at their limits, and when the note cannot be written; and what
// the board shows of a note.

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace note_editor_ids;
using namespace attachment_dialog_ids;

class NoteEditor : public NotesFixture {
protected:
    // The first note on the board, or a new one: `act` in the open editor, then the button.
    void Edit(const std::function<void(WindowHandle editor)>& act, int button = kIdOk, int command = kCommandEditNote)
    {
        pane->GetList().SelectItem(0);
        WhenModal([&](WindowHandle editor) {
            act(editor);
            TestPushItem(editor, button);
        });
        Command(command);
    }
    static void Replace(WindowHandle editor, int id, std::string_view text)
    {
        SetItemTextOf(editor, id, "");
        TestType(DialogItem(editor, id), text);
    }
    NoteRecord TheNote() { return Stored().at(0); }
    std::string StoredText() { return std::string(FieldText(TheNote().text)); }
    std::string StoredTitle() { return std::string(FieldText(TheNote().title)); }
};

TEST_F(NoteEditor, TextsOfEveryKindSurvivePaintingAndASecondEdit)
{
    const auto address = Add({.title = "x"});
    Show();
    for (const std::string text :
         {"漢字かな交じり文", "family 👨‍👩‍👧 flag 🇫🇷", "שלום עולם, مرحبا and left again",
          "one\r\ntwo\r\n\r\nfour", "bell \x07 tab\t escape \x1b delete \x7f", "caf\xe9 for 5 \x80, \x93quoted\x94",
          "lone \xc3 lead, \xed\xa0\x80", "combining e\xcc\x81 and zero\xe2\x80\x8bwidth"}) {
        SCOPED_TRACE(text);
        Change(address, [&](NoteRecord& note) {
            StoreText(note.title, text);
            StoreText(note.text, text);
        });
        pane->GetList().RefreshNow();
        UpdateNow(frame->window);
        Edit([](WindowHandle) {});
        EXPECT_EQ(StoredText(), text) << "confirmed without a change";
        Edit([](WindowHandle editor) { TestType(DialogItem(editor, kTextEdit), "!"); });
        EXPECT_EQ(StoredText(), "!" + ToCrLf(DecodeForDisplay(text))) << "with one character typed before it";
        EXPECT_EQ(StoredTitle(), text) << "a field that was not edited keeps its bytes";
    }
}

TEST_F(NoteEditor, LimitsCountBytesNeverSplitACharacterAndCutNoOldTextInSilence)
{
    struct Case {
        std::string unit;
        std::size_t title, text;  // bytes stored
    };
    const auto address = Add({.title = "x"});
    Show();
    for (const Case& c : {Case{"x", 149, 2023}, Case{"é", 148, 2022}, Case{"漢", 147, 2022}, Case{"👍", 148, 2020}}) {
        SCOPED_TRACE(c.unit);
        std::string typed;
        while (typed.size() < 2100)
            typed += c.unit;
        Edit([&](WindowHandle editor) {
            Replace(editor, kTitleEdit, typed);
            Replace(editor, kTextEdit, typed);
            Replace(editor, kCategoryCombo, "Мой список дел на год");
        });
        EXPECT_TRUE(StoredTitle() == typed.substr(0, c.title)) << StoredTitle().size();
        EXPECT_TRUE(StoredText() == typed.substr(0, c.text)) << StoredText().size();
        EXPECT_EQ(FieldText(TheNote().category), "Мой список дел н") << "29 bytes, whole characters";
    }
    Change(address, [](NoteRecord& note) { StoreText(note.text, std::string(1500, '\xe9')); });
    ScopedAnswers answers;
    Edit(
        [&](WindowHandle editor) {
            TestKey(DialogItem(editor, kTextEdit), kKeyEnd);
            TestKey(DialogItem(editor, kTextEdit), kKeyBack);
            TestPushItem(editor, kIdOk);
            EXPECT_EQ(TopModal(), editor);
        },
        kIdCancel);
    EXPECT_THAT(answers.texts, ElementsAre(HasSubstr("The text is 975 bytes too long")));
    EXPECT_EQ(StoredText(), std::string(1500, '\xe9'));
}

TEST_F(NoteEditor, ANewNoteNeedsATitleAndATextAndBeginsWithoutAnAlarm)
{
    Show();
    std::string today;
    FormatDateValue(today, pane->GetPaneDate());
    Edit(
        [&](WindowHandle editor) {
            ServeEvents();
            const WindowHandle text = DialogItem(editor, kTextEdit);
            EXPECT_EQ(FocusedWindow(), text);
            EXPECT_EQ(ItemText(editor, kTitleEdit), "Untitled");
            EXPECT_EQ(ItemText(editor, kTextEdit), "");
            EXPECT_EQ(ItemText(editor, kDateText), today);
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kIdOk)));
            TestType(text, "первая");
            EXPECT_TRUE(IsEnabled(DialogItem(editor, kIdOk)));
            TestKey(text, kKeyReturn);
            TestType(text, "שנייה");
            for (int i = 0; i < 8; ++i)
                TestKey(DialogItem(editor, kTitleEdit), i == 0 ? kKeyEnd : kKeyBack);
            EXPECT_TRUE(IsEnabled(DialogItem(editor, kIdOk)));
            TestKey(DialogItem(editor, kTitleEdit), kKeyBack);
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kIdOk)));
            TestType(DialogItem(editor, kTitleEdit), "東京 👍");
            CheckItem(editor, kConfidentialBox, true);
            WhenModal([](WindowHandle alarm) {
                EXPECT_EQ(WindowTitle(alarm), "Alarm");
                TestPushItem(alarm, kIdCancel);
            });
            TestPushItem(editor, kAlarmButton);
        },
        kIdOk, kCommandNewNote);
    const NoteRecord note = TheNote();
    EXPECT_EQ(StoredTitle(), "東京 👍");
    EXPECT_EQ(StoredText(), "первая\r\nשנייה");
    EXPECT_EQ(note.confidential, 1);
    EXPECT_EQ(note.colour, 0x65E7FFu);
    EXPECT_EQ(note.startKind, kStartDocument);
    EXPECT_EQ(note.alarmDate.Get(), note.date.Get());
    EXPECT_EQ(note.alarmTime.Get(), note.time.Get());
}

TEST_F(NoteEditor, ACategoryOfTheListIsKeptInItsBytesAndAnotherGoesWithTheNextOk)
{
    TableFile(path, "").UpdateCategories([](CategoryBlock& block) {
        StoreText(block.entries[0].name, "Caf\xe9");
        return true;
    });
    const auto address = Add({.title = "x", .category = "Caf\xe9"});
    Show();
    Edit([](WindowHandle editor) { TestType(DialogItem(editor, kTextEdit), "!"); });
    EXPECT_EQ(FieldText(TheNote().category), "Caf\xe9");
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("Caf\xe9"));
    EXPECT_THAT(Titles(), ElementsAre("x")) << "its filter still finds the note";
    Change(address, [](NoteRecord& note) { StoreText(note.category, "typed"); });
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("typed"));
    Edit([](WindowHandle editor) { EXPECT_EQ(ItemText(editor, kCategoryCombo), ""); });
    EXPECT_EQ(FieldText(TheNote().category), "");
}

TEST_F(NoteEditor, AColourOutsideThePaletteStaysAndAChosenOneIsStored)
{
    Change(Add({.title = "x"}), [](NoteRecord& note) { note.colour = 0x123456; });
    Show();
    Edit([](WindowHandle editor) { EXPECT_EQ(SelectedRow(editor, kColourBox), -1); });
    EXPECT_EQ(TheNote().colour, 0x123456u);
    Edit([](WindowHandle editor) { TestPickRow(editor, kColourBox, 2); });
    EXPECT_EQ(TheNote().colour, 0x495EFFu);
}

TEST_F(NoteEditor, AnAttachmentIsKeptChangedClearedAndThrownAwayByCancel)
{
    Add({.title = "x"});
    Show();
    const auto attach = [&](int button, const std::function<void(WindowHandle)>& act) {
        Edit(
            [&](WindowHandle editor) {
                WhenModal([&](WindowHandle dialog) {
                    act(dialog);
                    TestPushItem(dialog, kIdOk);
                });
                TestPushItem(editor, kAttachButton);
            },
            button);
        return std::to_string(TheNote().attachmentKind) + " " + std::string(FieldText(TheNote().attachmentPath));
    };
    EXPECT_EQ(attach(kIdCancel, [](WindowHandle dialog) { Replace(dialog, kPathEdit, "/tmp/plan.txt"); }), "0 ");
    EXPECT_EQ(TheNote().locked, 0);
    EXPECT_EQ(attach(kIdOk,
                     [](WindowHandle dialog) {
                         EXPECT_TRUE(IsItemChecked(dialog, kDocumentRadio));
                         CheckItem(dialog, kUrlRadio, true);
                         Replace(dialog, kPathEdit, "https://pinwell.example/ü");
                     }),
              "2 https://pinwell.example/ü");
    EXPECT_EQ(attach(kIdOk,
                     [](WindowHandle dialog) {
                         EXPECT_TRUE(IsItemChecked(dialog, kUrlRadio));
                         EXPECT_EQ(ItemText(dialog, kPathEdit), "https://pinwell.example/ü");
                         Replace(dialog, kPathEdit, std::string(300, 'p'));
                         TestPushItem(dialog, kOpenButton);
                     }),
              "2 " + std::string(259, 'p'));
    EXPECT_EQ(opened.size(), 1u);
    EXPECT_EQ(attach(kIdOk, [](WindowHandle dialog) { Replace(dialog, kPathEdit, ""); }), "0 ");
}

// A write that fails: on a full disk, on a share that is gone.
TEST_F(NoteEditor, AFailedWriteKeepsTheEditorOpenWithItsTextUntilItWorks)
{
    Add({.title = "milk", .text = "old"});
    const auto texts = [this] {
        std::vector<std::string> found;
        for (const NoteRecord& note : Stored())
            found.push_back(std::string(FieldText(note.text)) + (note.locked ? " locked" : ""));
        return found;
    };
    for (const int command : {kCommandEditNote, kCommandNewNote})
        for (const bool onlySyncs : {false, true}) {
            SCOPED_TRACE(std::to_string(command) + (onlySyncs ? ", sync" : ", write"));
            Show();
            ScopedAnswers answers;
            auto before = texts();
            Edit(
                [&](WindowHandle editor) {
                    Replace(editor, kTextEdit, "precious");
                    test::FailingFileSystem disk;
                    disk.failAt = onlySyncs ? 0 : 1;
                    disk.andAllBehind = true;
                    disk.failSyncs = onlySyncs;
                    disk.failure = onlySyncs ? EIO : ENOSPC;
                    const ScopedFileSystem failing(disk);
                    TestPushItem(editor, kIdOk);
                    EXPECT_TRUE(TopModal() == editor && ItemText(editor, kTextEdit) == "precious");
                },
                kIdOk, command);
            EXPECT_THAT(answers.texts, ElementsAre(AllOf(HasSubstr("could not be written"), HasSubstr(path),
                                                         HasSubstr(onlySyncs ? "Check the disk" : "disk is full"))));
            if (command == kCommandNewNote)
                before.emplace_back();
            before.back() = "precious";
            EXPECT_EQ(texts(), before) << "written once, by the second OK";
            TearDownBoard();
        }
}

TEST_F(NoteEditor, AReplacedFileIsToldAndTheNextOkGoesIntoTheNewOne)
{
    Add({.title = "milk", .text = "old"});
    Show();
    ScopedAnswers answers;
    Edit([&](WindowHandle editor) {
        TestType(DialogItem(editor, kTextEdit), "precious ");
        std::filesystem::rename(path, path + ".old");
        std::filesystem::copy_file(path + ".old", path);
        TestPushItem(editor, kIdOk);
        EXPECT_EQ(TopModal(), editor);
    });
    EXPECT_THAT(answers.texts, ElementsAre(HasSubstr("OK puts it into the file that has this name now")));
    EXPECT_EQ(StoredText(), "precious old");
}

TEST_F(NoteEditor, ACellShowsTitleTextMarkAndStripAndSaysThemInWords)
{
    const auto address = Add({.title = "title", .text = "text"});
    Show();
    const auto ink = [&](int top, int bottom, Colour colour) {
        UpdateNow(frame->window);
        int pixels = 0;
        const Rect cell = pane->GetList().GetItemRect(0).value();
        const Point corner = ScreenToClient(Grid(), {cell.left, cell.top});
        for (int y = top; y < bottom; ++y)
            for (int x = 0; x < cell.Width(); ++x)
                pixels += PixelAt(Grid(), {corner.x + x, corner.y + y}) == colour ? 1 : 0;
        return pixels;
    };
    EXPECT_GT(ink(0, 14, 0x65E7FF), 10) << "the mark in the note's colour";
    EXPECT_GT(ink(14, 30, 0xFF0000), 5) << "the title";
    EXPECT_EQ(ink(0, 13, 0xFF0000) + ink(32, 80, 0xFF0000), 0);
    EXPECT_GT(ink(14, 36, 0xC0C0C0), 50) << "a line under it";
    EXPECT_GT(ink(30, 66, 0), 5) << "the text";
    const auto empty = ink(66, 79, 0xC0FFFF);
    Change(address, [](NoteRecord& note) {
        note.alarmState = kAlarmSet;
        note.alarmDate = DateValue{1, 2, 2010};
        note.alarmTime = TimeValue{9, 0, 0, kBeforeNoon};
        note.confidential = 1;
        note.attachmentKind = kAttachmentUrl;
        StoreText(note.attachmentPath, "x");
        StoreText(note.category, "shop");
        note.colour = 0x123456;
    });
    pane->GetList().RefreshNow();
    EXPECT_LT(ink(66, 79, 0xC0FFFF), empty - 100) << "the icons and the category";
    EXPECT_EQ(pane->GetList().ItemDetail(0),
              "other colour, alarm 1/2/2010 09:00, confidential, attachment, category shop");
    Change(address, [](NoteRecord& note) { note.alarmState = kAlarmFired; });
    EXPECT_THAT(pane->GetList().ItemDetail(0), HasSubstr(", past alarm 1/2/2010"));
    TableFile(path, "").DeleteRecord(address);
    pane->Invalidate(nullptr, 1);
    pane->GetList().Grid().RepaintNow();
    EXPECT_GT(ink(0, 30, 0x0000FF), 5) << "that it is gone";
}

}  // namespace
}  // namespace jotlet
