#include "platform/desktop/system_metrics.h"
#include "toolkit/marlin_class_link_button.h"
#include "toolkit/marlin_class_to_do_priority.h"
#include "toolkit/marlin_slide_bar.h"
#include "toolkit/marlin_spin_button.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

class SpinButtonTest : public WindowTest {
protected:
    SpinButtonTest() { host.Hold(button, Rect::At(10, 10, 14, 14)); }
    std::size_t Count() { return host.commands.size(); }

    Host host;
    MarlinSpinButton button{kGlyphUp, 0xC0C0C0, 33};
};

TEST_F(SpinButtonTest, APressIsToldAtOnceWithTheButtonItself)
{
    TestPress(button.window, {5, 5});
    EXPECT_THAT(host.commands, ElementsAre(Command{33, reinterpret_cast<MessageParam>(&button), 0}));
    EXPECT_TRUE(button.IsPressed());
    EXPECT_EQ(CapturedWindow(), button.window);
    TestRelease(button.window, {100, 100});
    EXPECT_FALSE(button.IsPressed());
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(SpinButtonTest, HeldItRepeatsAfterHalfASecondAndThenQuickly)
{
    TestPress(button.window, {5, 5});
    const auto start = std::chrono::steady_clock::now();
    const auto since = [start] { return std::chrono::steady_clock::now() - start; };
    ASSERT_TRUE(ServeUntil([this] { return Count() >= 2; }, 1500ms));
    EXPECT_GE(since(), 450ms);
    TestMove(button.window, {100, 100}, true);
    const auto second = since();
    ASSERT_TRUE(ServeUntil([this] { return Count() >= 6; }, 1000ms)) << "also with the mouse off the button";
    EXPECT_LT(since() - second, 450ms);
    TestRelease(button.window, {100, 100});
    const std::size_t atRelease = Count();
    ServeUntil([] { return false; }, 80ms);
    EXPECT_EQ(Count(), atRelease);

    TestPress(button.window, {5, 5});
    SendTo(button.window, kWmCaptureLost, 0, 0);
    EXPECT_FALSE(button.IsPressed());
    ServeUntil([] { return false; }, 600ms);
    EXPECT_EQ(Count(), atRelease + 1) << "no repeats once the mouse is somebody else's";
}

TEST_F(SpinButtonTest, TheGlyphMovesByAPixelWhileHeld)
{
    const auto dark = [this] { return PixelsWhere(button, [](Colour c) { return c != 0xC0C0C0; }); };
    const auto free = dark();
    ASSERT_THAT(free, testing::Not(IsEmpty()));
    TestPress(button.window, {5, 5});
    const auto held = dark();
    ASSERT_EQ(held.size(), free.size());
    EXPECT_EQ(held.front(), (Point{free.front().x + 1, free.front().y + 1}));
    TestRelease(button.window, {5, 5});
}

class SlideBarTest : public WindowTest {
protected:
    void Show(double range)
    {
        bar = std::make_unique<MarlinSlideBar>(6, range, 0x808080);
        host.Hold(*bar, Rect::At(0, 0, 20, 200));
    }
    Host host;
    std::unique_ptr<MarlinSlideBar> bar;
};

TEST_F(SlideBarTest, TheThumbStandsInProportion)
{
    Show(11);
    EXPECT_EQ(bar->ThumbRect(), (Rect{0, 0, 20, 20}));
    EXPECT_EQ(bar->SetPosition(5), 1);
    EXPECT_EQ(bar->ThumbRect().top, 100);
    EXPECT_EQ(bar->SetPosition(10), 1);
    EXPECT_EQ(bar->ThumbRect().top, 180);
    EXPECT_EQ(bar->SetPosition(11), 0);
    EXPECT_EQ(bar->SetPosition(-1), 0);
    EXPECT_EQ(bar->GetPosition(), 10);
    bar->SetRange(4);
    EXPECT_EQ(bar->GetPosition(), 3);
    bar->SetRange(7 / 3.0);
    bar->OnSetValue(9);
    EXPECT_EQ(DescriptionOf(*bar).value->now, 3);
    EXPECT_EQ(DescriptionOf(*bar).name, "Row 3 of 3");
}

TEST_F(SlideBarTest, DraggingFollowsTheMouseAndSnapsAtTheRelease)
{
    Show(11);
    TestPress(bar->window, {10, 10});
    EXPECT_THAT(host.Take(), IsEmpty()) << "a press on the thumb moves nothing";
    TestMove(bar->window, {10, 47}, true);
    EXPECT_THAT(host.Take(), ElementsAre(Command{6, 2, 0}));
    EXPECT_EQ(bar->ThumbRect().top, 47);
    TestMove(bar->window, {10, 52}, true);
    EXPECT_THAT(host.Take(), IsEmpty()) << "the same position is told once";
    TestRelease(bar->window, {10, 52});
    EXPECT_EQ(bar->ThumbRect().top, 40);
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(SlideBarTest, TheLastPositionIsReachedForEveryRange)
{
    for (int range = 2; range < 400; ++range) {
        Show(range);
        TestPress(bar->window, {10, 199});
        TestRelease(bar->window, {10, 199});
        ASSERT_EQ(bar->GetPosition(), range - 1);
    }
}

TEST_F(WindowTest, ALinkShowsItsOtherColourWhileHeldWithTheMouseOnIt)
{
    Host host;
    MarlinClassLinkButton link{9, "write to us", 0xFFFFFF, 0xFF0000, 0x00FF00, kTextSingleLine | kTextVCentre};
    host.Hold(link, Rect::At(0, 0, 120, 18));
    const auto blue = [&] { return !PixelsWhere(link, [](Colour c) { return c == 0xFF0000; }).empty(); };
    TestPress(link.window, {10, 9});
    EXPECT_FALSE(blue());
    TestMove(link.window, {10, 90}, true);
    EXPECT_TRUE(blue());
    TestRelease(link.window, {10, 90});
    EXPECT_TRUE(blue());
}

TEST_F(WindowTest, AHundredPixelsHoldFiveLettersARow)
{
    Host host;
    MarlinClassToDoPriority bar{108, 'a', 'z', 0xC0FFFF};
    host.Hold(bar, Rect::At(0, 0, 100, 185));
    EXPECT_EQ(bar.CellRect('a'), (Rect{1, 1, 18, 18}));
    EXPECT_EQ(bar.CellRect('e'), (Rect{77, 1, 94, 18}));
    EXPECT_EQ(bar.CellRect('z'), (Rect{1, 96, 18, 113}));
    EXPECT_FALSE(bar.CellRect('A').has_value());
    bar.Move(0, 0, 100, 60, 1);
    EXPECT_TRUE(bar.CellRect('o').has_value());
    EXPECT_FALSE(bar.CellRect('p').has_value()) << "no room for a fourth row";
    bar.SetValue('k', 0);
    EXPECT_EQ(bar.GetValue(), 'k');
    EXPECT_TRUE(host.Take().empty());
}

}  // namespace
}  // namespace jotlet
