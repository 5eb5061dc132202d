// The Work pane: without a mouse, its drags, its popup, its filters, and the editor of its categories.

#include <algorithm>

#include "notes/category_editor_dialog.h"
#include "notes/category_menu.h"
#include "notes_fixture.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "support/failing_file_system.h"
#include "support/scoped_variable.h"
#include "toolkit/focus_order.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace category_editor_ids;

constexpr Keys kCtrl{.control = true};

class PaneKeyboard : public NotesFixture {
protected:
    // Where Tab leads from the grid until it is back there.
    std::vector<std::string> Round()
    {
        FocusWindow(Grid());
        std::vector<std::string> classes;
        WindowHandle at = Grid();
        do {
            TestKey(at, kKeyTab);
            ServeEvents();
            at = FocusedWindow();
            classes.push_back(ClassNameOf(at));
        } while (at != Grid() && classes.size() < 20);
        return classes;
    }
    // What the menu offers that `open` brings up; the entry `wanted` is chosen.
    static inline std::vector<std::string> offered;
    static inline std::string wanted;
    static std::vector<std::string> Offered(const std::function<void()>& open, const char* choice = "")
    {
        offered.clear();
        wanted = choice;
        const ScopedMenuAnswer look([](const std::vector<MenuEntry>& entries) {
            std::optional<std::size_t> chosen;
            for (std::size_t i = 0; i < entries.size(); ++i) {
                const std::string text = entries[i].text.substr(0, entries[i].text.find('\t'));
                if (!entries[i].greyed && !text.empty())
                    offered.push_back(text);
                if (text == wanted && !text.empty())
                    chosen = i;
            }
            return chosen;
        });
        open();
        ServeEvents();
        return offered;
    }
    void ToDateTab()
    {
        TestClick(pane->GetTabs().window, {60, 10});
        ServeEvents();
    }
    void ChooseDay(DateValue day)
    {
        pane->Send(kWmCommand, NotesPane::kCalendarId, reinterpret_cast<MessageParam>(&day));
        ServeEvents();
    }
    void ChooseCategory(const char* name, int id = NotesPane::kFirstCategoryId)
    {
        pane->Send(kWmCommand, id, reinterpret_cast<MessageParam>(name));
    }
    Point DayOnScreen(int day)
    {
        const MarlinCalMonth& month = pane->GetCalendar().Grid();
        const DateValue shown = pane->GetCalendar().GetDate();
        Rect cell;
        EXPECT_EQ(month.GetDayRect(shown.year, shown.month, day, cell), 1);
        return ClientToScreen(month.window, {cell.left + 3, cell.top + 3});
    }
    // Just inside the left edge of the drop area, or `off` pixels further left.
    Point BinOnScreen(int off = 0)
    {
        const Rect client = pane->GetBin().GetClientArea();
        return ClientToScreen(pane->GetBin().window, {client.Width() / 2 - 25 - off, client.bottom - 5});
    }
    void Drag(int item, Point screen, Keys keys = {})
    {
        const Rect cell = pane->GetList().GetItemRect(item).value();
        const Point from = ScreenToClient(Grid(), {cell.left + 20, cell.top + 20});
        const Point to = ScreenToClient(Grid(), screen);
        TestPress(Grid(), from);
        TestMove(Grid(), {from.x + 3, from.y + 3}, true, keys);
        TestMove(Grid(), to, true, keys);
        TestRelease(Grid(), to, false, keys);
        ServeEvents();
    }
    std::vector<std::string> Categories()
    {
        CategoryBlock block{};
        TableFile(path, "").ReadCategories(block);
        std::vector<std::string> read;
        for (int i = 0; i < block.Count(); ++i)
            read.emplace_back(FieldText(block.entries[i].name));
        return read;
    }
    void SetCategories(const std::vector<std::string>& wanted)
    {
        TableFile(path, "").UpdateCategories([&](CategoryBlock& block) {
            for (std::size_t i = 0; i < wanted.size(); ++i)
                StoreText(block.entries[i].name, wanted[i]);
            block.categoryCount = static_cast<std::uint32_t>(wanted.size());
            return true;
        });
    }
    // Runs `act` in the category editor, which it ends.
    int EditCategories(const std::function<void(WindowHandle editor)>& act)
    {
        WhenModal([=](WindowHandle editor) {
            ServeEvents();
            act(editor);
        });
        return CategoryEditorDialog(file.get()).DoModal(pane.get(), category_editor_ids::kDialog);
    }
    static void NewCategory(WindowHandle editor, std::string_view name, int button = kIdOk)
    {
        WhenModal([=](WindowHandle dialog) {
            ServeEvents();
            EXPECT_EQ(FocusedWindow(), DialogItem(dialog, new_category_ids::kNameEdit));
            EXPECT_FALSE(IsEnabled(DialogItem(dialog, kIdOk)));
            TestType(DialogItem(dialog, new_category_ids::kNameEdit), name);
            EXPECT_TRUE(IsEnabled(DialogItem(dialog, kIdOk)));
            TestPushItem(dialog, button);
        });
        TestPushItem(editor, kNewButton);
    }
};

TEST_F(PaneKeyboard, TabGoesRoundTheWholePaneOnBothTabsAndTheFocusIsSeenWhereverItIs)
{
    Add({.title = "milk"});
    Show();
    const auto pixels = [](WindowHandle window) {
        ServeEvents();
        UpdateNow(window);
        std::vector<Colour> all;
        const Rect client = ClientRect(window);
        for (int i = 0; i < client.bottom * client.right; ++i)
            all.push_back(PixelAt(window, {i % client.right, i / client.right}));
        return all;
    };
    const auto isSeen = [&](WindowHandle window) {
        FocusWindow(window == Grid() ? pane->GetBin().window : Grid());
        const auto before = pixels(window);
        FocusWindow(window);
        return pixels(window) != before;
    };
    EXPECT_EQ(FocusedWindow(), Grid());
    EXPECT_THAT(Round(),
                ElementsAre("MarlinClassToDoPriority", "MarlinClassWndBin", "TTabsWnd", "TFlyMenu", "MarlinWndList"));
    for (const WindowHandle window : {Grid(), pane->GetLetterBar().window, pane->GetBin().window,
                                      pane->GetTabs().window, pane->GetCategoryMenu().window})
        EXPECT_TRUE(isSeen(window)) << ClassNameOf(window);
    pane->GetList().SelectItem(0);
    EXPECT_TRUE(isSeen(Grid())) << "with a note selected";
    TestKey(pane->GetTabs().window, kKeyRight);
    ServeEvents();
    EXPECT_FALSE(IsVisible(pane->GetLetterBar().window));
    EXPECT_TRUE(isSeen(pane->GetCalendar().Grid().window));
    const auto round = Round();
    EXPECT_EQ(std::ranges::count(round, "MarlinCalMonth"), 1);
    EXPECT_EQ(std::ranges::count(round, "MarlinClassToDoPriority"), 0);
    TestKey(pane->GetTabs().window, kKeyLeft);
    ServeEvents();
    EXPECT_TRUE(IsVisible(pane->GetLetterBar().window) && !IsVisible(pane->GetCalendar().window));
}

TEST_F(PaneKeyboard, LettersBinAndCategoriesWorkByKeysAndANoteGoesToAnotherDay)
{
    Add({.title = "apples"});
    Add({.title = "Milk", .category = "Calls", .date = {30, 4, 2005}});
    Show();
    TestType(pane->GetLetterBar().window, "m");
    ServeEvents();
    EXPECT_EQ(pane->GetList().GetSelected(), 1);
    Command(kCommandCut);
    TestKey(pane->GetBin().window, kKeySpace);
    ServeEvents();
    EXPECT_THAT(Titles(), ElementsAre("apples", "Milk"));
    ScopedAnswers answers;
    TestKey(pane->GetBin().window, kKeySpace);
    EXPECT_THAT(answers.texts, ElementsAre("Bin is empty."));
    Offered([&] { TestKey(pane->GetCategoryMenu().window, kKeySpace); }, "Calls");
    EXPECT_EQ(pane->GetCategoryFilter(), "Calls");
    EXPECT_THAT(Titles(), ElementsAre("Milk"));

    pane->GetList().SelectItem(0);
    for (const auto& [button, keys, days] :
         {std::tuple(kIdCancel, kCtrl, std::vector{DateValue{30, 4, 2005}}),
          {kIdOk, kCtrl, {DateValue{1, 5, 2005}}},
          {kIdOk, Keys{.control = true, .shift = true}, {DateValue{1, 5, 2005}, DateValue{2, 5, 2005}}}}) {
        WhenModal([&, end = button](WindowHandle dialog) {
            // The middle of the dialog is a day of its calendar.
            const Rect client = ClientRect(dialog);
            TestKey(WindowFromScreenPoint(ClientToScreen(dialog, {client.right / 2, client.bottom / 2})), kKeyRight);
            TestPushItem(dialog, end);
        });
        BringToForeground(frame->window);
        FocusWindow(Grid());
        ServeEvents();
        TestKey(Grid(), 'D', keys);
        ServeEvents();
        std::vector<DateValue> stored;
        for (const NoteRecord& note : Stored())
            if (FieldText(note.title) == "Milk")
                stored.push_back(note.date);
        EXPECT_EQ(stored, days);
        EXPECT_EQ(FocusedWindow(), Grid());
    }
}

TEST_F(PaneKeyboard, ADragReachesADayAndTheBinAndNothingElse)
{
    Add({.title = "milk", .date = {3, 3, 2005}});
    Show();
    ToDateTab();
    ChooseDay({3, 3, 2005});
    ASSERT_TRUE(IsMainWindowForeground());
    ScopedAnswers answers;
    const auto stamp = TableFile(path, "").GetChangeStamp();
    const auto nowhere = [&](Keys keys) {
        Drag(0, DayOnScreen(3), keys);                                                           // chosen already
        Drag(0, ClientToScreen(pane->GetTabs().window, {200, 10}), keys);                        // no target
        Drag(0, ClientToScreen(frame->window, {-40, -40}), keys);                                // not ours
        Drag(0, ClientToScreen(Grid(), {5, pane->GetList().GetClientArea().bottom - 5}), keys);  // where it was
        Drag(0, BinOnScreen(1), keys);                                                           // just beside
    };
    nowhere({});
    nowhere(kCtrl);
    Drag(0, BinOnScreen(), kCtrl);
    EXPECT_EQ(TableFile(path, "").GetChangeStamp(), stamp);
    EXPECT_EQ(CapturedWindow(), 0u);
    Drag(0, DayOnScreen(20));
    EXPECT_EQ(StoredNote("milk").date.Get(), (DateValue{20, 3, 2005}));
    Drag(0, DayOnScreen(4), kCtrl);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{4, 3, 2005}));
    EXPECT_EQ(Stored().size(), 2u);
    FrameWindow other;
    other.Create(nullptr, kStyleVisible);
    BringToForeground(other.window);
    ServeEvents();
    Point p = BinOnScreen();
    for (const int ask : {1020, 1021})
        EXPECT_EQ(pane->GetBin().Send(kWmCommand, ask, reinterpret_cast<MessageParam>(&p)), 0)
            << "another program is in front";
    BringToForeground(frame->window);
    ServeEvents();
    Drag(0, BinOnScreen());
    EXPECT_EQ(Stored().size(), 1u);
    EXPECT_THAT(answers.texts, IsEmpty());
    EXPECT_EQ(answers.beeps, 0);
}

TEST_F(PaneKeyboard, ThePopupOffersWhatFitsTheNoteUnderItAndFreeSpaceBeginsANewOne)
{
    Change(Add({.title = "apples"}), [](NoteRecord& note) {
        note.attachmentKind = kAttachmentDocument;
        StoreText(note.attachmentPath, "/tmp/plan");
    });
    Add({.title = "milk"});
    Show();
    const auto click = [&](Point at) { return Offered([&] { TestClick(Grid(), at, true); }); };
    EXPECT_THAT(click({20, 300}), ElementsAre("New...")) << "on free space, bin and clipboard empty";
    EXPECT_THAT(click({20, 20}), ElementsAre("New...", "Edit...", "Delete...", "Cut", "Copy", "Open attachment..."));
    Command(kCommandCut);
    const auto all = ElementsAre("New...", "Edit...", "Delete...", "Undo delete", "Cut", "Copy", "Paste");
    EXPECT_THAT(click({20, 20}), all);
    EXPECT_THAT(Offered([&] { TestKey(Grid(), kKeyMenu); }), all);
    for (const Point at : {Point{100, 300}, Point{20, 20}}) {
        WhenModal([](WindowHandle editor) {
            TestType(DialogItem(editor, note_editor_ids::kTextEdit), "x");
            TestPushItem(editor, kIdOk);
        });
        TestDoubleClick(Grid(), at);
        ServeEvents();
    }
    EXPECT_THAT(StoredTitles(), ElementsAre("Untitled", "milk"));
    EXPECT_EQ(FieldText(StoredNote("milk").text), "xtext");
}

TEST_F(PaneKeyboard, DateAndCategoryTogetherHaveToFitAndAChangeShowsTheListFromItsTop)
{
    for (int i = 0; i < 40; ++i)
        Add({.title = "note " + std::to_string(i), .category = "Calls", .date = {3, 3, 2005}});
    Add({.title = "tea", .date = {3, 3, 2005}});
    Add({.title = "bread", .category = "Calls", .date = {4, 3, 2005}});
    Show();
    const std::function<void()> changes[] = {[&] { ToDateTab(); },
                                             [&] {
                                                 ChooseDay({3, 3, 2005});
                                             },
                                             [&] { ChooseCategory("Calls"); },
                                             [&] {
                                                 TestClick(pane->GetTabs().window, {20, 10});
                                             },
                                             [&] { ChooseCategory("All Categories", NotesPane::kLastCategoryId); }};
    constexpr int kCounts[] = {0, 41, 40, 41, 42};
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        pane->GetList().SetTopRow(9);
        changes[i]();
        ServeEvents();
        EXPECT_EQ(pane->GetList().GetTopRow(), 0) << i;
        EXPECT_EQ(pane->GetList().GetCount(), kCounts[i]) << i;
    }
}

TEST_F(PaneKeyboard, AtMidnightTodayMovesOnUnlessAnotherDayWasChosen)
{
    SetCalendarLastYear(kCalendarMaxLastYear);
    const test::ScopedVariable zone("TZ", "DAY0");
    tzset();
    Show();
    ToDateTab();
    DateValue tomorrow;
    Today(tomorrow);
    ASSERT_EQ(pane->GetPaneDate(), tomorrow);
    NextDay(tomorrow.year, tomorrow.month, tomorrow.day);
    {
        const test::ScopedVariable dayLater("TZ", "DAY-24");
        tzset();
        SuspendRefresh();
        pane->Send(kWmTimer, NotesPane::kDayTimer, 0);
        EXPECT_NE(pane->GetPaneDate(), tomorrow) << "not under a note that is held";
        ResumeRefresh();
        pane->Send(kWmTimer, NotesPane::kDayTimer, 0);
        EXPECT_EQ(pane->GetPaneDate(), tomorrow);
        EXPECT_EQ(pane->GetCalendar().GetDate(), tomorrow);
        ChooseDay({1, 2, 2003});
    }
    tzset();
    pane->Send(kWmTimer, NotesPane::kDayTimer, 0);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{1, 2, 2003}));
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(PaneKeyboard, ALetterFindsTheFirstTitleThatIsNotBelowItAndATypedOneItsOwn)
{
    for (const char* title : {"2 eggs", "apples", "Bread", "milk", "\xC3\x96sterreich", "tea"})
        Add({.title = title});
    Show();
    ASSERT_THAT(Titles(), ElementsAre("2 eggs", "apples", "Bread", "milk", "tea", "\xC3\x96sterreich"));
    for (const auto& [letter, index] : {std::pair('a', 1), {'b', 2}, {'c', 3}, {'t', 4}, {'z', 5}}) {
        pane->Send(kWmCommand, NotesPane::kLetterBarId, letter);
        EXPECT_EQ(pane->GetList().GetSelected(), index) << letter;
    }
    for (const auto& [letter, index] : {std::pair("M", 3), {"\xC3\xB6", 5}, {"2", 0}, {"c", 0}}) {
        TestType(Grid(), letter);
        ServeEvents();
        EXPECT_EQ(pane->GetList().GetSelected(), index) << letter;
    }
    TearDownBoard();
    std::vector<NoteRecord> notes(600);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        InitNoteRecord(TableFile(path, ""), notes[i]);
        StoreText(notes[i].title, std::string(1, static_cast<char>('a' + i / 24)) + std::to_string(i % 24));
    }
    std::vector<RecordAddress> addresses;
    ASSERT_EQ(TableFile(path, "").AddRecords(std::as_bytes(std::span(notes)), addresses), 1);
    Show();
    for (const auto& [letter, title] : {std::pair('c', "c0"), {'k', "k0"}, {'y', "y0"}}) {
        pane->Send(kWmCommand, NotesPane::kLetterBarId, letter);
        EXPECT_EQ(Titles()[static_cast<std::size_t>(pane->GetList().GetSelected())], title) << "in a long list too";
    }
}

TEST_F(PaneKeyboard, ABoardThatCannotShowAllNotesSaysSoAsLongAsThatIsTrue)
{
    TableFile other(path, "");
    NoteRecord note;
    InitNoteRecord(other, note);
    StoreText(note.text, "tea");
    const std::vector<NoteRecord> notes(kMaxResults, note);
    std::vector<RecordAddress> addresses;
    ASSERT_EQ(other.AddRecords(std::as_bytes(std::span(notes)), addresses), 1);
    Show();
    const auto top = [this] {
        pane->GetList().RefreshNow();
        ServeEvents();
        return WindowRect(pane->GetList().window).top - WindowRect(pane->window).top;
    };
    EXPECT_EQ(top(), 35) << "all are shown";
    const auto last = Add({.title = "zebra"});
    EXPECT_EQ(top(), 49);
    WhenModal([](WindowHandle dialog) {
        TestType(DialogItem(dialog, find_dialog_ids::kTermEdit), "t");
        TestPushItem(dialog, kIdOk);
        EXPECT_EQ(WindowTitle(dialog), "Occurrences 10000 of more");
        TestPushItem(dialog, kIdCancel);
    });
    Command(kCommandFind);
    ASSERT_EQ(other.DeleteRecord(last), 1);
    EXPECT_EQ(top(), 35);
}

TEST_F(PaneKeyboard, CategoriesAreAddedDeletedAndSavedOnTheDiskOrNotAtAll)
{
    SetCategories({"Calls", "Id\xe9"});
    Show();
    ScopedAnswers answers({Answer::No, Answer::Yes});
    const auto act = [&](int button) {
        return EditCategories([=](WindowHandle editor) {
            NewCategory(editor, "never", kIdCancel);
            NewCategory(editor, std::string(28, 'x') + "\xC3\xA4");
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kDeleteButton))) << "nothing is selected";
            for (const int rows : {3, 2}) {
                TestPickRow(editor, kNameList, 0);
                EXPECT_TRUE(IsEnabled(DialogItem(editor, kDeleteButton)));
                TestPushItem(editor, kDeleteButton);
                EXPECT_EQ(RowCount(editor, kNameList), rows);
            }
            EXPECT_FALSE(IsEnabled(DialogItem(editor, kDeleteButton)));
            ServeEvents();
            EXPECT_EQ(FocusedWindow(), DialogItem(editor, kNameList));
            TestPushItem(editor, button);
        });
    };
    EXPECT_EQ(act(kIdCancel), 0);
    EXPECT_EQ(answers.texts.size(), 2u);
    EXPECT_THAT(Categories(), ElementsAre("Calls", "Id\xe9"));
    answers.answers = {Answer::No, Answer::Yes};
    EXPECT_EQ(act(kIdOk), 1);
    EXPECT_THAT(Categories(), testing::UnorderedElementsAre("Id\xe9", std::string(28, 'x')));

    answers.texts.clear();
    test::FailingFileSystem disk;
    disk.failSyncs = true;
    EditCategories([&](WindowHandle editor) {
        const ScopedFileSystem failing(disk);
        TestPushItem(editor, kIdOk);
        ASSERT_EQ(TopModal(), editor);
        TestPushItem(editor, kIdCancel);
    });
    EXPECT_THAT(answers.texts, ElementsAre(HasSubstr("could not be written")));
}

TEST_F(PaneKeyboard, TheCategoryEditorKeepsWhatAnotherCopyDidMeanwhileAndTellsWhatHasNoRoom)
{
    SetCategories({"Calls", "Ideas"});
    Show();
    EXPECT_EQ(EditCategories([&](WindowHandle editor) {
                  NewCategory(editor, "Mine");
                  SetCategories({"Calls", "Theirs"});
                  TestPushItem(editor, kIdOk);
              }),
              1);
    EXPECT_THAT(Categories(), ElementsAre("Calls", "Mine", "Theirs"));
    std::vector<std::string> many;
    for (int i = 10; i < 39; ++i)
        many.push_back("c" + std::to_string(i));
    SetCategories(many);
    ScopedAnswers boxes({Answer::No, Answer::Ok});
    EditCategories([&](WindowHandle editor) {
        NewCategory(editor, "zebra");
        TestPushItem(editor, kIdOk);
        ASSERT_EQ(TopModal(), editor) << "Cancel goes back to the list";
        TestPushItem(editor, kIdOk);
    });
    EXPECT_THAT(boxes.texts, testing::Each(HasSubstr("\r\nzebra\r\n")));
    EXPECT_EQ(Categories(), many);
}

TEST_F(PaneKeyboard, TheMenuOfCategoriesOpensTheirEditorAndShowsAllAfterwards)
{
    Add({.title = "milk"});
    Show();
    ChooseCategory("Calls");
    WhenModal([](WindowHandle editor) {
        NewCategory(editor, "Added");
        TestPushItem(editor, kIdOk);
    });
    const auto press = [&] { TestKey(pane->GetCategoryMenu().window, kKeySpace); };
    Offered(press, "Edit Categories");
    EXPECT_THAT(Titles(), ElementsAre("milk")) << "all categories again";
    EXPECT_EQ(std::ranges::count(Offered(press), "Added"), 1);
    EXPECT_EQ(offered.size(), 16u + 2);
}

}  // namespace
}  // namespace jotlet
