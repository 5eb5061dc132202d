// Searching, seen through the dialog: what is found, what a hit opens, where "Go to" leads.

#include "notes/find_dialog.h"

#include "notes/note_command_ids.h"
#include "notes_fixture.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kTermEdit = 103;
constexpr int kGoToButton = 104;
constexpr int kCategoryText = 200;

class Finding : public NotesFixture {
protected:
    // Runs `act` inside the Find dialog of the pane and closes it afterwards.
    void InDialog(const std::function<void(WindowHandle dialog, OccurrencesList& list)>& act)
    {
        WhenModal([act](WindowHandle window) {
            auto* dialog = static_cast<FindDialog*>(MarlinWnd::FromHandle(window));
            act(window, dialog->GetList());
            if (TopModal() == window)
                TestPushItem(window, kIdCancel);
        });
        Command(kCommandFind);
    }
    static void Search(WindowHandle dialog, std::string_view term)
    {
        SetItemTextOf(dialog, kTermEdit, "");
        TestType(DialogItem(dialog, kTermEdit), term);
        TestPushItem(dialog, kIdOk);
        ServeEvents();
    }
    static std::vector<std::string> Hits(OccurrencesList& list)
    {
        std::vector<std::string> titles;
        for (int i = 0; i < list.GetCount(); ++i)
            titles.push_back(list.ItemName(i));
        return titles;
    }
    static void Press(OccurrencesList& list, int index)
    {
        const Rect cell = list.GetItemRect(index).value();
        const WindowHandle grid = list.Grid().window;
        TestClick(grid, ScreenToClient(grid, {cell.left + 20, cell.top + 20}));
        ServeEvents();
    }
};

TEST_F(Finding, TitleAndTextAreSearchedWithoutRegardToCaseAndEachNoteOnce)
{
    Add({.title = "MILK", .text = "two", .date = {3, 1, 2004}});
    Add({.title = "milk", .text = "MiLk again", .date = {2, 1, 2004}});
    Add({.title = "list", .text = std::string(1990, 'x') + "milk", .date = {1, 1, 2004}});
    Add({.title = "bread"});
    Show();
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kIdOk)));
        Search(dialog, "MILK");
        EXPECT_EQ(ItemText(dialog, kTermEdit), "milk");
        EXPECT_THAT(Hits(list), ElementsAre("list", "milk", "MILK"));
        EXPECT_EQ(WindowTitle(dialog), "Occurrences 3");
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kGoToButton)));
        Search(dialog, "no such thing");
        EXPECT_EQ(WindowTitle(dialog), "Occurrences 0");
    });
}

TEST_F(Finding, WildcardsQuotesAndForeignLettersArePlainText)
{
    Add({.title = "100%", .text = "a_b * \"quoted\""});
    Add({.title = "1000", .text = "aXb"});
    Add({.title = "überfällig", .text = "日本語"});
    Show();
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        for (const auto& [term, hit] : {std::pair{"100%", "100%"},
                                        {"a_b", "100%"},
                                        {"*", "100%"},
                                        {"\"quoted\"", "100%"},
                                        {"fäll", "überfällig"},
                                        {"本語", "überfällig"}}) {
            Search(dialog, term);
            EXPECT_THAT(Hits(list), ElementsAre(hit)) << term;
        }
    });
}

TEST_F(Finding, OnlyThePanesCategoryIsSearchedAndConfidentialNotesStayHidden)
{
    Add({.title = "milk", .category = "Calls"});
    Add({.title = "other", .text = "milk", .category = "Ideas"});
    Add({.title = "none", .text = "milk"});
    Add({.title = "secret", .text = "milk", .category = "Calls", .confidential = true});
    std::string current;
    SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = ""});
    Show("help");
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        EXPECT_EQ(ItemText(dialog, kCategoryText), "All Categories");
        Search(dialog, "milk");
        EXPECT_EQ(list.GetCount(), 3);
    });
    pane->Send(kWmCommand, NotesPane::kFirstCategoryId, reinterpret_cast<MessageParam>("Calls"));
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        EXPECT_EQ(ItemText(dialog, kCategoryText), "Calls");
        Search(dialog, "milk");
        EXPECT_THAT(Hits(list), ElementsAre("milk"));
    });
}

TEST_F(Finding, AHitOpensOnTheSpotKeepsItsDateAndLeavesTheListWhenTheTermIsGone)
{
    Add({.title = "milk", .text = "x", .date = {5, 6, 2007}});
    Add({.title = "milk and bread", .date = {6, 6, 2007}});
    Show();
    InDialog([&](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, "milk");
        WhenModal([](WindowHandle editor) {
            SetItemTextOf(editor, 200, "");
            TestType(DialogItem(editor, 200), "butter");
            TestPushItem(editor, kIdOk);
        });
        const Rect cell = list.GetItemRect(0).value();
        const WindowHandle grid = list.Grid().window;
        TestDoubleClick(grid, ScreenToClient(grid, {cell.left + 20, cell.top + 20}));
        ServeEvents();
        EXPECT_THAT(Hits(list), ElementsAre("milk and bread"));
        EXPECT_EQ(WindowTitle(dialog), "Occurrences 2");
    });
    EXPECT_EQ(StoredNote("butter").date.Get(), (DateValue{5, 6, 2007}));
}

TEST_F(Finding, GoToSelectsTheNoteAndOnTheDateTabTakesItsDay)
{
    Add({.title = "milk", .date = {5, 6, 2007}});
    Add({.title = "bread"});
    Show();
    const auto go = [](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, "milk");
        Press(list, 0);
        EXPECT_TRUE(IsEnabled(DialogItem(dialog, kGoToButton)));
        TestPushItem(dialog, kGoToButton);
    };
    const DateValue before = pane->GetPaneDate();
    InDialog(go);
    EXPECT_EQ(Titles()[static_cast<std::size_t>(pane->GetList().GetSelected())], "milk");
    EXPECT_EQ(pane->GetPaneDate(), before);

    TestClick(pane->GetTabs().window, {60, 10});
    ServeEvents();
    InDialog(go);
    EXPECT_EQ(pane->GetPaneDate(), (DateValue{5, 6, 2007}));
    EXPECT_THAT(Titles(), ElementsAre("milk"));
    EXPECT_EQ(pane->GetList().GetSelected(), 0);
}

TEST_F(Finding, AReloadThatTakesTheHitAwayTakesGoToAwayToo)
{
    const auto address = Add({.title = "milk"});
    Show();
    InDialog([&](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, "milk");
        Press(list, 0);
        ASSERT_TRUE(IsEnabled(DialogItem(dialog, kGoToButton)));
        TableFile other(path, "");
        other.DeleteRecord(address);
        list.RefreshNow();
        ServeEvents();
        EXPECT_EQ(list.GetCount(), 0);
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kGoToButton)));
    });
}

}  // namespace
}  // namespace jotlet
