// Searching, seen through the dialog: what is found, what a hit opens, where "Go to" leads.

#include "notes/find_dialog.h"

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "store/record_hold.h"

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
    static void DoubleClick(OccurrencesList& list, int index)
    {
        const Rect cell = list.GetItemRect(index).value();
        const WindowHandle grid = list.Grid().window;
        TestDoubleClick(grid, ScreenToClient(grid, {cell.left + 20, cell.top + 20}));
        ServeEvents();
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
        TestKey(list.Grid().window, kKeyDown);
        ServeEvents();
        EXPECT_TRUE(IsEnabled(DialogItem(dialog, kGoToButton))) << "by the arrows as by the mouse";
        ASSERT_EQ(list.GetSelected(), 0);
        TestKey(list.Grid().window, kKeyReturn);
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

TEST_F(Finding, ALongTermIsSearchedByItsFirst499Characters)
{
    Add({.title = "exact", .text = "a" + std::string(499, 'm') + "b"});
    Add({.title = "shorter", .text = std::string(498, 'm')});
    Show();
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, std::string(600, 'M'));
        EXPECT_EQ(ItemText(dialog, kTermEdit), std::string(500, 'm'));
        EXPECT_THAT(Hits(list), ElementsAre("exact"));
    });
}

TEST_F(Finding, ASecondSearchTakesThePlaceOfTheFirst)
{
    Add({.title = "milk"});
    Add({.title = "bread"});
    Show();
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, "milk");
        Press(list, 0);
        Search(dialog, "bread");
        EXPECT_THAT(Hits(list), ElementsAre("bread"));
        EXPECT_EQ(list.GetSelected(), -1);
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kGoToButton)));
    });
}

TEST_F(Finding, AnEmptyResultSaysSoAndNoSearchSaysNothing)
{
    Add({.title = "milk"});
    Show();
    const auto inked = [](OccurrencesList& list) {
        list.Grid().RepaintNow();
        int pixels = 0;
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 200; ++x)
                pixels += PixelAt(list.Grid().window, {x, y}) == 0 ? 1 : 0;
        }
        return pixels;
    };
    InDialog([&](WindowHandle dialog, OccurrencesList& list) {
        EXPECT_EQ(inked(list), 0);
        Search(dialog, "nowhere");
        EXPECT_GT(inked(list), 0);
    });
}

TEST_F(Finding, WhatCannotBeEditedIsNotOpenedAndTheReasonIsTold)
{
    const auto address = Add({.title = "milk"});
    Show();
    TableFile other(path, "");
    const auto open = [&](const std::vector<std::string>& texts, int beeps) {
        InDialog([&](WindowHandle dialog, OccurrencesList& list) {
            Search(dialog, "milk");
            ScopedAnswers answers;
            DoubleClick(list, 0);
            EXPECT_EQ(TopModal(), dialog);
            EXPECT_EQ(answers.texts, texts);
            EXPECT_EQ(answers.beeps, beeps);
        });
    };
    {
        const RecordHold hold(other, address);
        ResumeRefresh();  // the switch belongs to the other copy's process
        open({"Program can't edit this entry. It is being edited by another user. Try again."}, 0);
    }
    NoteRecord note = StoredNote("milk");
    note.eventState = kEventWithdrawn;
    ASSERT_EQ(other.WriteRecord(BytesOf(note), address), 1);
    open({}, 1);
    EXPECT_EQ(StoredNote("milk").locked, 0);
    EXPECT_TRUE(IsRefreshEnabled());
    std::string current;
    SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"});
    file->SetPassword("look");
    open({"Program can't do this. You don't have permission."}, 0);
}

}  // namespace
}  // namespace jotlet
