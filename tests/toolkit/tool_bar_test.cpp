// The tool bar: press, drag off and on, hot look, delivery, keys, and what a screen reader finds.
#include "platform/desktop/system_metrics.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/marlin_tool_bar.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
using HotState = MarlinToolBar::HotState;

constexpr int kMenu = 1005;
constexpr int kNew = 1001;
constexpr int kEdit = 1002;
constexpr Colour kBar = 0x0000D4;

class ToolBarTest : public WindowTest {
protected:
    ToolBarTest()
    {
        bar.AddItem(kMenu, 2000, 3004, 1);
        bar.AddItem(kNew, 2001, 3000, 0);
        bar.AddItem(kEdit, 2002, 3001, 0);
        host.Hold(bar, Rect::At(5, 26, 390, 25));
    }
    // Middle of an item, and a point of the bar off all items.
    Point On(int index) { return MiddleOf(ToolBarItemRect({390, 25}, index)); }
    static constexpr Point kOff{380, 12};
    // The outline of an item, or what shows in its place.
    Colour Outline(int index)
    {
        bar.Update();
        const Rect item = ToolBarItemRect({390, 25}, index);
        return PixelAt(bar.window, {item.left + 20, item.top});
    }

    MarlinPane pane{{.barColour = kBar, .barTextColour = 0xFFFFFF}, "Work"};
    Host host;
    MarlinToolBar bar;
};

TEST_F(ToolBarTest, ItemsStandFiftyApartFromFifteenAndInTheMiddle)
{
    EXPECT_EQ(ToolBarItemRect({390, 25}, 0), Rect::At(15, 3, 50, 19));
    EXPECT_EQ(ToolBarItemRect({390, 25}, 2), Rect::At(115, 3, 50, 19));
    Rect found;
    EXPECT_EQ(bar.GetItemRect(kEdit, found), 2);
    EXPECT_EQ(found, Rect::At(115, 3, 50, 19));
    EXPECT_EQ(bar.GetItemRect(77, found), MarlinToolBar::kNoItem);
}

TEST_F(ToolBarTest, AClickIsPostedUnlessTheItemSends)
{
    TestPress(bar.window, On(1));
    TestRelease(bar.window, On(1));
    EXPECT_THAT(host.commands, IsEmpty()) << "posted";
    EXPECT_THAT(host.Take(), ElementsAre(Command{kNew, 0, 0}));

    TestPress(bar.window, On(0));
    HotState whileSent = HotState::Plain;
    host.onCommand = [&](WndMessage&) { whileSent = bar.GetHotState(); };
    TestRelease(bar.window, On(0));
    EXPECT_THAT(host.commands, ElementsAre(Command{kMenu, 0, 0})) << "sent";
    EXPECT_EQ(whileSent, HotState::Pressed) << "a menu item looks pressed while its menu is open";
    EXPECT_EQ(bar.GetHotItem(), MarlinToolBar::kNoItem);
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(ToolBarTest, DragOffShowsBlackAndBackOnWhiteAndReleaseOffDoesNothing)
{
    TestPress(bar.window, On(1));
    EXPECT_EQ(Outline(1), 0xFFFFFFu);
    EXPECT_EQ(CapturedWindow(), bar.window);
    TestMove(bar.window, {200, 90}, true);
    EXPECT_EQ(Outline(1), 0u);
    EXPECT_EQ(bar.GetHotItem(), 1) << "it keeps its look with the mouse outside the bar";
    TestMove(bar.window, On(1), true);
    EXPECT_EQ(Outline(1), 0xFFFFFFu);
    TestMove(bar.window, On(2), true);
    TestRelease(bar.window, On(2));
    EXPECT_THAT(host.Take(), IsEmpty());
    EXPECT_EQ(bar.GetHotItem(), MarlinToolBar::kNoItem);
}

TEST_F(ToolBarTest, TheHotLookFollowsTheMouseFromItemToItem)
{
    TestMove(bar.window, On(0));
    EXPECT_EQ(bar.GetHotItem(), 0);
    EXPECT_EQ(Outline(0), 0u);
    TestMove(bar.window, On(1));
    EXPECT_EQ(bar.GetHotItem(), 1);
    EXPECT_NE(Outline(0), 0u);
    TestMove(bar.window, kOff);
    EXPECT_EQ(bar.GetHotItem(), MarlinToolBar::kNoItem);
    TestMove(bar.window, On(0));
    TestMove(host.window, {200, 200});
    ASSERT_EQ(bar.GetHotItem(), 0) << "nobody tells the bar that the mouse is gone";
    EXPECT_TRUE(ServeUntil([this] { return bar.GetHotItem() == MarlinToolBar::kNoItem; }, 1000ms));
}

}  // namespace
}  // namespace jotlet
