#include "list_view_fixture.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    for (int cell = 0; cell < 9; ++cell)
        EXPECT_EQ(PixelAt(Grid(), Cell(cell)), cell % 2 ? kOddCell : kEvenCell) << cell;

    Show({.items = 10'000, .columns = 1, .clientHeight = 50});
    list->SetTopRow(5000);
    list->drawn.clear();
    list->Grid().RepaintNow();
    ASSERT_EQ(list->drawn.size(), 3u) << "rows in view alone";
    EXPECT_EQ(list->drawn.front().index, 5000);
    list->SetCount(0);
    list->drawn.clear();
    list->Grid().RepaintNow();
    EXPECT_THAT(list->drawn, ElementsAre(Drawn{-1, kListEmpty, kOddCell, Rect{0, 0, 120, 50}})) << "as a whole";
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

TEST_F(ListViewTest, TheParentHearsOfTheOtherClicks)
{
    Show({.items = 5, .columns = 3});
    const std::function<void()> first = [&] { TestClick(Grid(), Cell(5)); };
    const struct {
        std::function<void()> click;
        Commands told;
        int selected;
    } rows[] = {
        {first, {}, -1},  // off the items
        {[&] { TestDoubleClick(Grid(), Cell(5)); }, {Told(kListItemDoubleClicked, -1)}, -1},
        {[&] { TestClick(Grid(), Cell(5), true); }, {Told(kListItemRightClicked, -1)}, -1},
        {[&] { TestDoubleClick(Grid(), Cell(4)); }, {Told(kListItemPressed, 4), Told(kListItemDoubleClicked, 4)}, 4},
        {[&] { TestPress(Grid(), Cell(2), true); }, {}, 4},
        {[&] { TestRelease(Grid(), Cell(2), true); }, {Told(kListItemRightClicked, 2)}, 2},
    };
    for (const auto& row : rows) {
        row.click();
        EXPECT_EQ(host.Take(), row.told);
        EXPECT_EQ(list->GetSelected(), row.selected);
    }
    EXPECT_FALSE(list->MenuByKey());
    TestKey(Grid(), kKeyMenu);
    EXPECT_THAT(host.Take(), ElementsAre(Told(kListItemRightClicked, 2)));
    EXPECT_TRUE(list->MenuByKey());
    EXPECT_EQ(ScreenToClient(Grid(), list->PopupPoint(2)), Cell(2));
}

TEST_F(ListViewTest, WheelArrowsAndThumbScrollAsFarAsThereAreRows)
{
    Show({.items = 7, .columns = 3, .clientHeight = 20});
    for (const int notch : {-120, 120}) {
        for (int i = 0; i < 5; ++i)
            TestWheel(Grid(), {5, 5}, notch);
        ServeEvents();
        EXPECT_EQ(TopRow(), notch < 0 ? 2 : 0);
        EXPECT_EQ(list->Bar().GetPosition(), TopRow());
    }
    Show({.items = 50, .clientHeight = 200});
    const auto child = [this](int x, int y) {
        return WindowFromScreenPoint(ClientToScreen(list->Bar().window, {x, y}));
    };
    for (const auto& [y, row] : {std::pair{190, 1}, {190, 2}, {10, 1}}) {
        TestClick(child(10, y), {5, 5});
        ServeEvents();
        EXPECT_EQ(TopRow(), row);
    }
    const WindowHandle slide = child(10, 100);
    TestPress(slide, {5, 10});
    TestMove(slide, {5, 500}, true);
    TestRelease(slide, {5, 500});
    ServeEvents();
    EXPECT_EQ(TopRow(), 49);
}

TEST_F(ListViewTest, AnItemOfTheFirstPageScrollsToTheTopAndOthersToTheMiddle)
{
    Show({.items = 60, .columns = 2, .clientHeight = 100});
    EXPECT_EQ(list->SelectItem(40), 1);
    EXPECT_EQ(TopRow(), 18);
    EXPECT_EQ(list->Bar().GetPosition(), 18);
    EXPECT_EQ(list->SelectItem(60) + list->SelectItem(-1), 0);
    EXPECT_EQ(list->GetSelected(), 40);
    EXPECT_FALSE(list->GetItemRect(35).has_value()) << "off view";
    EXPECT_TRUE(list->GetItemRect(45).has_value());
    EXPECT_FALSE(list->GetItemRect(46).has_value());
    EXPECT_FALSE(list->GetItemRect(-1).has_value());
    EXPECT_EQ(list->SelectItem(9), 1);
    EXPECT_EQ(TopRow(), 0);
    EXPECT_THAT(host.Take(), IsEmpty()) << "selecting by code tells nobody";
    // A shorter list moves the top up and selects nothing.
    list->SelectItem(50);
    list->SetCount(5);
    EXPECT_EQ(TopRow(), 1);
    EXPECT_EQ(list->Bar().GetPosition(), 1);
    EXPECT_EQ(list->GetSelected(), -1);
    list->SetCount(0);
    EXPECT_EQ(TopRow() + list->Bar().GetPosition(), 0);
}

TEST_F(ListViewTest, KeysMoveByItemAndScreenfulAndTellNobody)
{
    using Presses = std::vector<std::pair<int, int>>;  // key, and the item selected after it
    const std::pair<Setting, Presses> rows[] = {
        {{.items = 7, .columns = 3},
         {{kKeyUp, -1},
          {kKeyDown, 0},
          {kKeyRight, 1},
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
