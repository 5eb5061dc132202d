#include "list_view_fixture.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ListViewTest, AnEmptyListIsStripedAndDrawnOnceAsAWhole)
{
    Show({.items = 0, .columns = 3, .clientHeight = 50});
    list->drawn.clear();
    list->Grid().RepaintNow();
    EXPECT_THAT(list->drawn, ElementsAre(Drawn{-1, kListEmpty, kOddCell, Rect{0, 0, 120, 50}}));
    EXPECT_EQ(PixelAt(Grid(), {20, 10}), kEvenCell);
    EXPECT_EQ(PixelAt(Grid(), {60, 10}), kOddCell);
    EXPECT_EQ(PixelAt(Grid(), {20, 30}), kOddCell);
}

TEST_F(ListViewTest, OnlyItemsAreDrawnButEveryCellIsFilled)
{
    Show({.items = 4, .columns = 3, .clientHeight = 60});
    list->SelectItem(1);
    list->drawn.clear();
    list->Grid().RepaintNow();
    EXPECT_THAT(list->drawn, ElementsAre(Drawn{0, kItemPlain, kEvenCell, Rect{0, 0, 40, 20}},
                                         Drawn{1, kItemSelected, kOddCell, Rect{40, 0, 80, 20}},
                                         Drawn{2, kItemPlain, kEvenCell, Rect{80, 0, 120, 20}},
                                         Drawn{3, kItemPlain, kOddCell, Rect{0, 20, 40, 40}}));
    EXPECT_EQ(PixelAt(Grid(), {60, 30}), kEvenCell);
    EXPECT_EQ(PixelAt(Grid(), {100, 30}), kOddCell);

    Show({.items = 10'000, .columns = 1, .clientHeight = 50});
    list->SetTopRow(5000);
    list->drawn.clear();
    list->Grid().RepaintNow();
    ASSERT_EQ(list->drawn.size(), 3u) << "rows in view alone";
    EXPECT_EQ(list->drawn.front().index, 5000);
}

TEST_F(ListViewTest, APressSelectsRepaintsAtOnceAndThenTellsTheParent)
{
    Show({.items = 5, .columns = 2});
    list->drawn.clear();
    TestPress(Grid(), Cell(3));
    EXPECT_EQ(list->GetSelected(), 3);
    ASSERT_GE(list->drawn.size(), 4u);
    EXPECT_EQ(list->drawn[3].state, kItemSelected);
    EXPECT_THAT(host.commands, IsEmpty()) << "before the queue is served";
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemPressed, 3)));
    EXPECT_EQ(FocusedWindow(), Grid());
}

TEST_F(ListViewTest, OffTheItemsAPressIsSilentAndTheOthersTellMinusOne)
{
    Show({.items = 2, .columns = 3});
    TestClick(Grid(), Cell(2));
    EXPECT_THAT(host.Take(), IsEmpty());
    TestDoubleClick(Grid(), Cell(5));
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemDoubleClicked, -1)));
    TestClick(Grid(), Cell(4), true);
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemRightClicked, -1)));
    EXPECT_EQ(list->GetSelected(), -1);
}

TEST_F(ListViewTest, ADoubleClickAndARightReleaseSelectTheirItem)
{
    Show({.items = 6, .columns = 3});
    TestDoubleClick(Grid(), Cell(4));
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemPressed, 4), Told(kListItemDoubleClicked, 4)));
    TestPress(Grid(), Cell(2), true);
    EXPECT_EQ(list->GetSelected(), 4) << "the right press does nothing";
    TestRelease(Grid(), Cell(2), true);
    EXPECT_EQ(list->GetSelected(), 2);
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemRightClicked, 2)));
    EXPECT_FALSE(list->MenuByKey());
}

TEST_F(ListViewTest, SevenItemsInThreeColumnsScrollToTheThirdRow)
{
    Show({.items = 7, .columns = 3, .clientHeight = 20});
    for (int i = 0; i < 5; ++i)
        TestWheel(Grid(), {5, 5}, -120);
    EXPECT_EQ(TopRow(), 2);
    ServeEvents();
    EXPECT_EQ(list->Bar().GetPosition(), 2);
    for (int i = 0; i < 5; ++i)
        TestWheel(Grid(), {5, 5}, 120);
    EXPECT_EQ(TopRow(), 0);
}

TEST_F(ListViewTest, ArrowsOfTheBarStepAndTheThumbDrags)
{
    Show({.items = 50, .clientHeight = 200});
    const auto child = [this](int x, int y) {
        return WindowFromScreenPoint(ClientToScreen(list->Bar().window, {x, y}));
    };
    const WindowHandle down = child(10, 190);
    TestClick(down, {5, 5});
    TestClick(down, {5, 5});
    ServeEvents();
    EXPECT_EQ(TopRow(), 2);
    TestClick(child(10, 10), {5, 5});
    ServeEvents();
    EXPECT_EQ(TopRow(), 1);

    const WindowHandle slide = child(10, 100);
    TestPress(slide, {5, 10});
    TestMove(slide, {5, 500}, true);
    TestRelease(slide, {5, 500});
    ServeEvents();
    EXPECT_EQ(TopRow(), 49);
}

TEST_F(ListViewTest, AShorterListMovesTheTopUpAndSelectsNothing)
{
    Show({.items = 50, .clientHeight = 60});
    list->SelectItem(40);
    EXPECT_EQ(TopRow(), 39);
    list->SetCount(10);
    EXPECT_EQ(TopRow(), 9);
    EXPECT_EQ(list->Bar().GetPosition(), 9);
    EXPECT_EQ(list->GetSelected(), -1);
    list->SetCount(0);
    EXPECT_EQ(TopRow(), 0);
    EXPECT_EQ(list->Bar().GetPosition(), 0);
}

TEST_F(ListViewTest, AnItemOfTheFirstPageScrollsToTheTopAndOthersToTheMiddle)
{
    Show({.items = 60, .columns = 2, .clientHeight = 100});
    EXPECT_EQ(list->SelectItem(40), 1);
    EXPECT_EQ(TopRow(), 18);
    EXPECT_EQ(list->Bar().GetPosition(), 18);
    EXPECT_EQ(list->SelectItem(9), 1);
    EXPECT_EQ(TopRow(), 0);
    EXPECT_EQ(list->SelectItem(60), 0);
    EXPECT_EQ(list->SelectItem(-1), 0);
    EXPECT_EQ(list->GetSelected(), 9);
    EXPECT_THAT(host.Take(), IsEmpty()) << "selecting by code tells nobody";
}

TEST_F(ListViewTest, KeysMoveByItemAndScreenfulAndTellNobody)
{
    using Presses = std::vector<std::pair<int, int>>;  // key, and the item selected after it
    const std::pair<Setting, Presses> rows[] = {
        {{.items = 7, .columns = 3},
         {{kKeyUp, -1},
          {kKeyHome, -1},
          {kKeyDown, 0},
          {kKeyDown, 1},
          {kKeyRight, 2},
          {kKeyEnd, 6},
          {kKeyRight, 6},
          {kKeyUp, 5},
          {kKeyLeft, 4},
          {kKeyHome, 0},
          {kKeyLeft, 0},
          {kKeyEscape, -1}}},
        {{.items = 100, .columns = 2, .clientHeight = 100},
         {{kKeyPageDown, 10}, {kKeyPageDown, 20}, {kKeyPageUp, 10}, {kKeyPageUp, 0}}},
    };
    for (const auto& [setting, presses] : rows) {
        Show(setting);
        FocusWindow(Grid());
        for (const auto& [key, selected] : presses) {
            TestKey(Grid(), key);
            EXPECT_EQ(list->GetSelected(), selected) << key;
            EXPECT_TRUE(selected < 0 || list->GetItemRect(selected)) << "the item is in view";
        }
        EXPECT_THAT(host.Take(), IsEmpty());
    }
}

TEST_F(ListViewTest, TheMenuKeyAsksForTheSelectedItemsMenuInItsCell)
{
    Show({.items = 6, .columns = 3});
    list->SelectItem(4);
    FocusWindow(Grid());
    TestKey(Grid(), kKeyMenu);
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemRightClicked, 4)));
    EXPECT_TRUE(list->MenuByKey());
    EXPECT_EQ(ScreenToClient(Grid(), list->PopupPoint(4)), Cell(4));
}

TEST_F(ListViewTest, AnItemOffViewHasNoRectangle)
{
    Show({.items = 50, .clientHeight = 50});
    EXPECT_FALSE(list->GetItemRect(10).has_value());
    EXPECT_FALSE(list->GetItemRect(-1).has_value());
    EXPECT_FALSE(list->GetItemRect(50).has_value());
    const auto cut = list->GetItemRect(2);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->Height(), 10);
}

TEST_F(ListViewTest, TheGroundTellsWhereTheKeyboardIsWhenNothingIsSelected)
{
    Show({.items = 3});
    const auto edgeDrawn = [this] {
        const auto marked = PixelsWhere(list->Grid(), [](Colour c) { return c != kEvenCell; });
        return std::ranges::count(marked, 1, &Point::y) > 20;
    };
    FocusWindow(host.window);
    ServeEvents();
    EXPECT_FALSE(edgeDrawn());
    FocusWindow(Grid());
    ServeEvents();
    EXPECT_TRUE(edgeDrawn());
    list->SelectItem(0);
    EXPECT_FALSE(edgeDrawn());
}

TEST_F(ListViewTest, AScreenReaderFindsTheItemsOnView)
{
    Show({.items = 50, .columns = 2, .clientHeight = 40});
    list->SelectItem(1);
    const AccessibleDescription description = DescriptionOf(list->Grid());
    EXPECT_EQ(description.role, AccessibleRole::List);
    ASSERT_EQ(description.parts.size(), 4u);
    EXPECT_EQ(description.parts[1].name, "item 1");
    EXPECT_TRUE(description.parts[1].selected);
    EXPECT_EQ(description.parts[3].bounds, (Rect{60, 20, 120, 40}));
}

}  // namespace
}  // namespace jotlet
