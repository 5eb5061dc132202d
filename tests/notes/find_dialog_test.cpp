// Searching, seen through the dialog: what is found, what a hit opens, where "Go to" leads.

#include "notes/find_dialog.h"

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "store/record_hold.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using namespace find_dialog_ids;

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
    static void Press(OccurrencesList& list, int index, bool twice = false)
    {
        const Rect cell = list.GetItemRect(index).value();
        const WindowHandle grid = list.Grid().window;
        const Point point = ScreenToClient(grid, {cell.left + 20, cell.top + 20});
        twice ? TestDoubleClick(grid, point) : TestClick(grid, point);
        ServeEvents();
    }
    static bool CanGo(WindowHandle dialog) { return IsEnabled(DialogItem(dialog, kGoToButton)); }
};

TEST_F(Finding, TitleAndTextAreSearchedAsPlainTextWithoutRegardToCaseAndHitsStandByDate)
{
    Add({.title = "MILK", .text = "two", .date = {3, 1, 2004}});
    Add({.title = "milk", .text = "MiLk again", .date = {2, 1, 2004}});
    Add({.title = "list", .text = std::string(1990, 'x') + "milk", .date = {1, 1, 2004}});
    Add({.title = "100%", .text = "a_b * \"quoted\""});
    Add({.title = "1000", .text = "aXb"});
    Add({.title = "überfällig", .text = "日本語"});
    Add({.title = "long", .text = "a" + std::string(499, 'm') + "b"});
    Add({.title = "shorter", .text = std::string(498, 'm')});
    Show();
    InDialog([](WindowHandle dialog, OccurrencesList& list) {
        using Titles = std::vector<std::string>;
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kTermEdit));
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kIdOk)));
        EXPECT_EQ(ItemText(dialog, kCategoryText), "All Categories");
        EXPECT_EQ(Ink(list.Grid().window, {0, 0, 200, 16}), 0) << "before a search nothing is said";
        for (const auto& [term, titles] : {std::pair{std::string("MILK"), Titles{"list", "milk", "MILK"}},
                                           {"100%", {"100%"}},
                                           {"a_b", {"100%"}},
                                           {"*", {"100%"}},
                                           {"\"quoted\"", {"100%"}},
                                           {"fäll", {"überfällig"}},
                                           {"本語", {"überfällig"}},
                                           {std::string(600, 'M'), {"long"}},
                                           {"no such thing", {}}}) {
            Search(dialog, term);
            EXPECT_EQ(Hits(list), titles) << term;
            EXPECT_EQ(WindowTitle(dialog), "Occurrences " + std::to_string(titles.size()));
            EXPECT_FALSE(CanGo(dialog));
            EXPECT_EQ(list.GetSelected(), -1);
            EXPECT_EQ(FocusedWindow(), list.Grid().window);
            if (titles.empty())
                continue;
            Press(list, 0);
            EXPECT_TRUE(CanGo(dialog));
        }
        EXPECT_GT(Ink(list.Grid().window, {0, 0, 200, 16}), 0) << "an empty result says so";
    });
}

TEST_F(Finding, OnlyThePanesCategoryIsSearchedAndConfidentialNotesStayHidden)
{
    Add({.title = "milk", .category = "Calls"});
    Add({.title = "other", .text = "milk", .category = "Ideas"});
    Add({.title = "secret", .text = "milk", .category = "Calls", .confidential = true});
    SetPasswords();
    Show("help");
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
    const auto other = Add({.title = "milk and bread", .date = {6, 6, 2007}});
    Show();
    InDialog([&](WindowHandle dialog, OccurrencesList& list) {
        Search(dialog, "milk");
        EXPECT_THAT(list.ItemDetail(0), testing::StartsWith("yellow"));
        WhenModal([](WindowHandle editor) {
            SetItemTextOf(editor, note_editor_ids::kTitleEdit, "");
            TestType(DialogItem(editor, note_editor_ids::kTitleEdit), "butter");
            TestPushItem(editor, kIdOk);
        });
        TestKey(list.Grid().window, kKeyDown);
        ServeEvents();
        EXPECT_TRUE(CanGo(dialog)) << "by the arrows as by the mouse";
        TestKey(list.Grid().window, kKeyReturn);
        ServeEvents();
        EXPECT_THAT(Hits(list), ElementsAre("milk and bread"));
        EXPECT_EQ(FocusedWindow(), list.Grid().window);
        Press(list, 0);
        ASSERT_TRUE(CanGo(dialog));
        TableFile(path, "").DeleteRecord(other);
        EXPECT_EQ(list.ItemName(0), "Record is deleted by other user.");
        list.RefreshNow();
        ServeEvents();
        EXPECT_EQ(list.GetCount(), 0);
        EXPECT_FALSE(CanGo(dialog)) << "the hit is gone";
    });
    EXPECT_EQ(StoredNote("butter").date.Get(), (DateValue{5, 6, 2007}));
}

TEST_F(Finding, GoToSelectsTheNoteAndOnTheDateTabTakesItsDay)
{
    Add({.title = "milk", .date = {5, 6, 2007}});
    Add({.title = "bread"});
    Show();
    const DateValue before = pane->GetPaneDate();
    for (const DateValue& day : {before, DateValue{5, 6, 2007}}) {
        InDialog([](WindowHandle dialog, OccurrencesList& list) {
            Search(dialog, "milk");
            Press(list, 0);
            TestPushItem(dialog, kGoToButton);
        });
        EXPECT_EQ(pane->GetPaneDate(), day);
        EXPECT_EQ(pane->SelectedId(), StoredNote("milk").uniqueId.Get());
        EXPECT_EQ(FocusedWindow(), Grid());
        TestClick(pane->GetTabs().window, {60, 10});
        ServeEvents();
    }
}

TEST_F(Finding, WhatCannotBeEditedIsNotOpenedAndTheReasonIsTold)
{
    const auto address = Add({.title = "milk"});
    Show();
    TableFile other(path, "");
    const auto open = [&](const std::vector<std::string>& texts, int beeps, int hits = 1) {
        InDialog([&](WindowHandle dialog, OccurrencesList& list) {
            Search(dialog, "milk");
            if (hits == 0)
                Change(address, [](NoteRecord& note) { note.confidential = 1; });
            ScopedAnswers answers;
            Press(list, 0, true);
            EXPECT_EQ(TopModal(), dialog);
            EXPECT_EQ(answers.texts, texts);
            EXPECT_EQ(answers.beeps, beeps);
            EXPECT_EQ(list.GetCount(), hits);
        });
    };
    {
        const RecordHold hold(other, address);
        ResumeRefresh();  // the switch belongs to the other copy's process
        open({kBeingEdited}, 0);
    }
    Change(address, [](NoteRecord& note) { note.eventState = kEventWithdrawn; });
    open({}, 1);
    EXPECT_EQ(StoredNote("milk").locked, 0);
    SetPasswords();
    file->SetPassword("look");
    open({kNoPermission}, 0);
    file->SetPassword("help");
    open({}, 0, 0);
}

}  // namespace
}  // namespace jotlet
