// The Work pane without a mouse, its popup, its filters.

#include <algorithm>

#include "notes/category_editor_dialog.h"
#include "notes/category_menu.h"
#include "notes_fixture.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "support/scoped_variable.h"
#include "toolkit/focus_order.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PaneKeyboard : public NotesFixture {
protected:
    WindowHandle TabFrom(WindowHandle window, bool backwards = false)
    {
        TestKey(window, kKeyTab, {.shift = backwards});
        ServeEvents();
        return FocusedWindow();
    }
    // Where Tab leads from the grid until it is back there.
    std::vector<std::string> Round(bool backwards = false)
    {
        std::vector<std::string> classes;
        WindowHandle at = Grid();
        do {
            at = TabFrom(at, backwards);
            classes.push_back(ClassNameOf(at));
        } while (at != Grid() && classes.size() < 20);
        return classes;
    }
    static inline std::vector<MenuEntry> shown;
    static std::optional<std::size_t> Look(const std::vector<MenuEntry>& entries)
    {
        shown = entries;
        return std::nullopt;
    }
    static std::vector<std::string> Enabled()
    {
        std::vector<std::string> texts;
        for (const MenuEntry& entry : shown) {
            if (!entry.greyed && !entry.text.empty())
                texts.push_back(entry.text.substr(0, entry.text.find('\t')));
        }
        return texts;
    }
    void RightClick(Point client)
    {
        const ScopedMenuAnswer look(Look);
        TestClick(Grid(), client, true);
        ServeEvents();
    }
    // Pixels of a window that change when the focus comes to it.
    static int ChangedByFocus(WindowHandle window, WindowHandle elsewhere)
    {
        const auto pixels = [&] {
            ServeEvents();
            UpdateNow(window);
            std::vector<Colour> all;
            const Rect client = ClientRect(window);
            for (int y = 0; y < client.bottom; ++y) {
                for (int x = 0; x < client.right; ++x)
                    all.push_back(PixelAt(window, {x, y}));
            }
            return all;
        };
        FocusWindow(elsewhere);
        const auto before = pixels();
        FocusWindow(window);
        const auto after = pixels();
        int changed = 0;
        for (std::size_t i = 0; i < before.size(); ++i)
            changed += before[i] != after[i];
        return changed;
    }
};

TEST_F(PaneKeyboard, TabGoesRoundTheWholePaneOnBothTabs)
{
    Add({.title = "milk"});
    Show();
    EXPECT_EQ(FocusedWindow(), Grid());
    EXPECT_THAT(Round(),
                ElementsAre("MarlinClassToDoPriority", "MarlinClassWndBin", "TTabsWnd", "TFlyMenu", "MarlinWndList"));
    EXPECT_EQ(TabFrom(Grid(), true), pane->GetCategoryMenu().window);

    FocusWindow(pane->GetTabs().window);
    TestKey(pane->GetTabs().window, kKeyRight);
    ServeEvents();
    EXPECT_TRUE(IsVisible(pane->GetCalendar().window));
    EXPECT_FALSE(IsVisible(pane->GetLetterBar().window));
    FocusWindow(Grid());
    const auto round = Round();
    EXPECT_EQ(std::ranges::count(round, "MarlinCalMonth"), 1);
    EXPECT_EQ(std::ranges::count(round, "MarlinClassToDoPriority"), 0);
    EXPECT_EQ(std::ranges::count(round, "TTabsWnd"), 1);
}

TEST_F(PaneKeyboard, TheFocusIsSeenWhereverItIs)
{
    Add({.title = "milk"});
    Show();
    for (const WindowHandle window : {Grid(), pane->GetLetterBar().window, pane->GetBin().window,
                                      pane->GetTabs().window, pane->GetCategoryMenu().window}) {
        const WindowHandle elsewhere = window == Grid() ? pane->GetBin().window : Grid();
        EXPECT_GT(ChangedByFocus(window, elsewhere), 10) << ClassNameOf(window);
    }
    TestClick(pane->GetTabs().window, {60, 10});
    ServeEvents();
    EXPECT_GT(ChangedByFocus(pane->GetCalendar().Grid().window, Grid()), 10);
    pane->GetList().SelectItem(0);
    EXPECT_GT(ChangedByFocus(Grid(), pane->GetBin().window), 10) << "with a note selected";
}

TEST_F(PaneKeyboard, LettersDaysBinAndCategoriesWorkByKeys)
{
    Add({.title = "apples"});
    Add({.title = "Milk", .category = "Calls"});
    Add({.title = "tea"});
    Show();
    TestType(pane->GetLetterBar().window, "m");
    ServeEvents();
    EXPECT_EQ(pane->GetList().GetSelected(), 1);

    ScopedAnswers yes({Answer::Yes});
    Command(kCommandDeleteNote);
    TestKey(pane->GetBin().window, kKeySpace);
    ServeEvents();
    EXPECT_THAT(Titles(), ElementsAre("apples", "Milk", "tea"));

    {
        const ScopedMenuAnswer calls([](const std::vector<MenuEntry>& entries) {
            const auto at = std::ranges::find(entries, "Calls", &MenuEntry::text);
            return std::optional<std::size_t>(static_cast<std::size_t>(at - entries.begin()));
        });
        TestKey(pane->GetCategoryMenu().window, kKeySpace);
        ServeEvents();
    }
    EXPECT_EQ(pane->GetCategoryFilter(), "Calls");
    EXPECT_THAT(Titles(), ElementsAre("Milk"));
}

TEST_F(PaneKeyboard, ANoteGoesToAnotherDayByControlD)
{
    Add({.title = "milk", .date = {30, 4, 2005}});
    Show();
    pane->GetList().SelectItem(0);
    int dialogs = 0;
    const auto pickNextDay = [&](int button, Keys keys = {.control = true}) {
        WhenModal([&, button](WindowHandle dialog) {
            ++dialogs;
            // The middle of the dialog is a day of its calendar.
            const Rect client = ClientRect(dialog);
            const Point middle = ClientToScreen(dialog, {client.right / 2, client.bottom / 2});
            TestKey(WindowFromScreenPoint(middle), kKeyRight);
            TestPushItem(dialog, button);
        });
        BringToForeground(frame->window);
        FocusWindow(Grid());
        ServeEvents();
        TestKey(Grid(), 'D', keys);
        ServeEvents();
    };
    pickNextDay(kIdCancel);
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{30, 4, 2005}));
    pickNextDay(kIdOk);
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{1, 5, 2005}));
    ASSERT_EQ(pane->GetList().GetSelected(), 0);
    pickNextDay(kIdOk, {.control = true, .shift = true});
    ASSERT_EQ(Stored().size(), 2u);
    EXPECT_EQ(Stored()[0].date.Get(), (DateValue{1, 5, 2005}));
    EXPECT_EQ(Stored()[1].date.Get(), (DateValue{2, 5, 2005}));
    EXPECT_EQ(dialogs, 3);

    BringToForeground(frame->window);
    FocusWindow(Grid());
    ServeEvents();
    pane->GetList().SetCount(pane->GetList().GetCount());
    ScopedAnswers answers;
    TestKey(Grid(), 'D', {.control = true});
    ServeEvents();
    EXPECT_EQ(answers.beeps, 1) << "nothing selected";
}

TEST_F(PaneKeyboard, ThePopupOffersWhatFitsTheNoteUnderIt)
{
    const auto address = Add({.title = "apples"});
    Add({.title = "milk"});
    {
        TableFile other(path, "");
        NoteRecord note;
        other.ReadRecord(BytesOf(note), address);
        note.attachmentKind = kAttachmentDocument;
        StoreText(note.attachmentPath, "/tmp/plan");
        other.WriteRecord(BytesOf(note), address);
    }
    Show();
    RightClick({20, 300});
    EXPECT_THAT(Enabled(), ElementsAre("New...")) << "on free space, bin and clipboard empty";
    RightClick({20, 20});
    EXPECT_THAT(Enabled(), ElementsAre("New...", "Edit...", "Delete...", "Cut", "Copy", "Open attachment..."));
    Command(kCommandCut);
    RightClick({20, 20});
    EXPECT_THAT(Enabled(), ElementsAre("New...", "Edit...", "Delete...", "Undo delete", "Cut", "Copy", "Paste"));

    shown.clear();
    pane->GetList().SelectItem(0);
    const ScopedMenuAnswer look(Look);
    TestKey(Grid(), kKeyMenu);
    ServeEvents();
    EXPECT_THAT(Enabled(), ElementsAre("New...", "Edit...", "Delete...", "Undo delete", "Cut", "Copy", "Paste"));
}

TEST_F(PaneKeyboard, AnotherTabDayOrCategoryShowsTheListFromItsTop)
{
    DateValue today;
    Today(today);
    for (int i = 0; i < 40; ++i)
        Add({.title = "note " + std::to_string(i), .category = "Calls", .date = today});
    Show();
    const std::function<void()> changes[] = {
        [&] {
            TestClick(pane->GetTabs().window, {60, 10});
        },
        [&] { pane->Send(kWmCommand, NotesPane::kCalendarId, reinterpret_cast<MessageParam>(&today)); },
        [&] { pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("Calls")); },
    };
    for (const auto& change : changes) {
        pane->GetList().SetTopRow(9);
        change();
        ServeEvents();
        EXPECT_EQ(pane->GetList().GetTopRow(), 0);
        EXPECT_EQ(pane->GetList().GetCount(), 40);
    }
}

TEST_F(PaneKeyboard, AtMidnightTodayMovesOnUnlessAnotherDayWasChosen)
{
    SetCalendarLastYear(kCalendarMaxLastYear);
    const test::ScopedVariable zone("TZ", "DAY0");
    tzset();
    Show();
    TestClick(pane->GetTabs().window, {60, 10});
    ServeEvents();
    DateValue before;
    Today(before);
    DateValue tomorrow = before;
    NextDay(tomorrow.year, tomorrow.month, tomorrow.day);
    ASSERT_EQ(pane->GetPaneDate(), before);
    {
        const test::ScopedVariable dayLater("TZ", "DAY-24");
        tzset();
        pane->Send(kWmTimer, NotesPane::kDayTimer, 0);
        EXPECT_EQ(pane->GetPaneDate(), tomorrow);
        EXPECT_EQ(pane->GetCalendar().GetDate(), tomorrow);
        DateValue chosen{1, 2, 2003};
        pane->Send(kWmCommand, NotesPane::kCalendarId, reinterpret_cast<MessageParam>(&chosen));
    }
    tzset();
    pane->Send(kWmTimer, NotesPane::kDayTimer, 0);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{1, 2, 2003}));
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(PaneKeyboard, ADoubleClickOnFreeSpaceBeginsANewNote)
{
    Show();
    WhenModal([](WindowHandle editor) {
        TestType(DialogItem(editor, 103), "x");
        TestPushItem(editor, kIdOk);
    });
    TestDoubleClick(Grid(), {100, 100});
    ServeEvents();
    EXPECT_THAT(Titles(), ElementsAre("Untitled"));
}

TEST_F(PaneKeyboard, ALetterFindsTheFirstTitleThatIsNotBelowIt)
{
    for (const char* title : {"2 eggs", "apples", "Bread", "milk", "Österreich", "tea"})
        Add({.title = title});
    Show();
    ASSERT_THAT(Titles(), ElementsAre("2 eggs", "apples", "Bread", "milk", "tea", "Österreich"));
    const auto press = [&](char letter) {
        pane->Send(kWmCommand, NotesPane::kLetterBarId, letter);
        return pane->GetList().GetSelected();
    };
    EXPECT_EQ(press('a'), 1);
    EXPECT_EQ(press('b'), 2);
    EXPECT_EQ(press('c'), 3);
    EXPECT_EQ(press('t'), 4);
    EXPECT_EQ(press('z'), 5) << "the last one when none comes up to the letter";
    FocusWindow(Grid());
    ServeEvents();
    const auto type = [&](std::string_view letter) {
        TestType(Grid(), letter);
        ServeEvents();
        return pane->GetList().GetSelected();
    };
    EXPECT_EQ(type("M"), 3);
    EXPECT_EQ(type("\xC3\xB6"), 5);
    EXPECT_EQ(type("2"), 0);
    EXPECT_EQ(type("c"), 0) << "no title begins with it";
}

TEST_F(PaneKeyboard, InALongListALetterFindsTheSameNote)
{
    {
        TableFile other(path, "");
        std::vector<NoteRecord> notes(600);
        for (std::size_t i = 0; i < notes.size(); ++i) {
            InitNoteRecord(other, notes[i]);
            notes[i].uniqueId = i + 1;
            StoreText(notes[i].title, std::string(1, static_cast<char>('a' + i / 24)) + std::to_string(i % 24));
        }
        std::vector<RecordAddress> addresses;
        ASSERT_EQ(other.AddRecords(std::as_bytes(std::span(notes)), addresses), 1);
    }
    Show();
    for (const char letter : {'b', 'k', 'y'}) {
        pane->Send(kWmCommand, NotesPane::kLetterBarId, letter);
        EXPECT_EQ(pane->GetList().GetSelected(), (letter - 'a') * 24) << letter;
    }
}

TEST_F(PaneKeyboard, ABoardThatCannotShowAllNotesSaysSoAsLongAsThatIsTrue)
{
    std::vector<RecordAddress> addresses;
    TableFile other(path, "");
    {
        NoteRecord note;
        InitNoteRecord(other, note);
        StoreText(note.text, "tea");
        const std::vector<NoteRecord> notes(kMaxResults, note);
        ASSERT_EQ(other.AddRecords(std::as_bytes(std::span(notes)), addresses), 1);
    }
    Show();
    const auto top = [this] { return WindowRect(pane->GetList().window).top - WindowRect(pane->window).top; };
    EXPECT_EQ(top(), 35) << "all are shown";
    const auto last = Add({.title = "zebra"});
    pane->GetList().RefreshNow();
    ServeEvents();
    EXPECT_EQ(top(), 49);
    WhenModal([](WindowHandle dialog) {
        TestType(DialogItem(dialog, 103), "t");
        TestPushItem(dialog, kIdOk);
        EXPECT_EQ(WindowTitle(dialog), "Occurrences 10000 of more");
        TestPushItem(dialog, kIdCancel);
    });
    Command(kCommandFind);
    ASSERT_EQ(other.DeleteRecord(last), 1);
    pane->GetList().RefreshNow();
    ServeEvents();
    EXPECT_EQ(top(), 35);
}

TEST_F(PaneKeyboard, TheCategoryEditorKeepsWhatAnotherCopyDidMeanwhile)
{
    Show();
    const auto names = [&](TableFile& table) {
        CategoryBlock block{};
        table.ReadCategories(block);
        std::vector<std::string> read;
        for (int i = 0; i < block.Count(); ++i)
            read.emplace_back(FieldText(block.entries[i].name));
        return read;
    };
    TableFile other(path, "");
    const auto fill = [&](const std::vector<std::string>& wanted) {
        return other.UpdateCategories([&](CategoryBlock& block) {
            for (std::size_t i = 0; i < wanted.size(); ++i)
                StoreText(block.entries[i].name, wanted[i]);
            block.categoryCount = static_cast<std::uint32_t>(wanted.size());
            return true;
        });
    };
    const auto add = [](WindowHandle editor, std::string_view name) {
        WhenModal([&](WindowHandle dialog) {
            TestType(DialogItem(dialog, 100), name);
            TestPushItem(dialog, kIdOk);
        });
        TestPushItem(editor, 101);
    };
    ASSERT_EQ(fill({"Calls", "Ideas"}), 1);
    WhenModal([&](WindowHandle editor) {
        add(editor, "Mine");
        ASSERT_EQ(fill({"Calls", "Theirs"}), 1);
        TestPushItem(editor, kIdOk);
    });
    EXPECT_EQ(CategoryEditorDialog(file.get()).DoModal(pane.get(), category_editor_ids::kDialog), 1);
    EXPECT_THAT(names(other), ElementsAre("Calls", "Mine", "Theirs"));

    std::vector<std::string> many;
    for (int i = 10; i < 39; ++i)
        many.push_back("c" + std::to_string(i));
    ASSERT_EQ(fill(many), 1);
    ScopedAnswers boxes({Answer::No, Answer::Ok});
    WhenModal([&](WindowHandle editor) {
        add(editor, "zebra");
        TestPushItem(editor, kIdOk);
        ASSERT_EQ(TopModal(), editor) << "Cancel goes back to the list";
        TestPushItem(editor, kIdOk);
    });
    CategoryEditorDialog(file.get()).DoModal(pane.get(), category_editor_ids::kDialog);
    EXPECT_THAT(boxes.texts, testing::Each(testing::HasSubstr("\r\nzebra\r\n")));
    EXPECT_EQ(names(other), many);
}

TEST_F(PaneKeyboard, DateAndCategoryTogetherBothHaveToFit)
{
    Add({.title = "milk", .category = "Calls", .date = {3, 3, 2005}});
    Add({.title = "tea", .date = {3, 3, 2005}});
    Add({.title = "bread", .category = "Calls", .date = {4, 3, 2005}});
    Show();
    TestClick(pane->GetTabs().window, {60, 10});
    ServeEvents();
    EXPECT_THAT(Titles(), IsEmpty());
    DateValue day{3, 3, 2005};
    pane->Send(kWmCommand, NotesPane::kCalendarId, reinterpret_cast<MessageParam>(&day));
    EXPECT_EQ(pane->GetList().GetCount(), 2);
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("Calls"));
    EXPECT_THAT(Titles(), ElementsAre("milk"));
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId + 29, reinterpret_cast<MessageParam>("All Categories"));
    EXPECT_EQ(pane->GetList().GetCount(), 2);
}

}  // namespace
}  // namespace jotlet
