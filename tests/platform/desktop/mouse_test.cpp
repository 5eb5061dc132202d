#include "recorder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using MouseTest = WindowTest;

TEST_F(MouseTest, PressAndReleaseCarryThePointAndTheFlags)
{
    Recorder top({});
    top.Clear();
    TestPress(top.window, {7, 9}, false, {.control = true});
    TestRelease(top.window, {8, 9});
    ASSERT_THAT(top.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp));
    const WndMessage press = top.Of(kWmLButtonDown).front();
    EXPECT_EQ(MousePoint(press), (Point{7, 9}));
    EXPECT_EQ(press.wParam, kMouseLeft | kMouseControl);
    EXPECT_EQ(top.Of(kWmLButtonUp).front().wParam, 0);
}

TEST_F(MouseTest, DoubleClickIsASecondPressUnlessTheClassAsksForIt)
{
    Recorder plain({});
    Recorder asking({.classStyle = kClassSaveBits | kClassDblClks});
    plain.Clear();
    asking.Clear();
    TestDoubleClick(plain.window, {5, 5});
    TestDoubleClick(asking.window, {5, 5});
    EXPECT_THAT(plain.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp, kWmLButtonDown, kWmLButtonUp));
    EXPECT_THAT(asking.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp, kWmLButtonDblClk, kWmLButtonUp));
}

TEST_F(MouseTest, CapturingWindowGetsEverythingInItsOwnCoordinates)
{
    Recorder top({});
    Recorder left({.style = kStyleDefault, .bounds = Rect::At(0, 0, 40, 40), .parent = top.window});
    Recorder right({.style = kStyleDefault, .bounds = Rect::At(50, 10, 40, 40), .parent = top.window});
    CaptureMouse(left.window);
    EXPECT_EQ(CapturedWindow(), left.window);
    left.Clear();
    right.Clear();
    TestMove(right.window, {1, 2}, true);
    TestRelease(right.window, {1, 2});
    EXPECT_TRUE(right.Input().empty());
    ASSERT_THAT(left.Input(), ElementsAre(kWmMouseMove, kWmLButtonUp));
    EXPECT_EQ(MousePoint(left.Of(kWmMouseMove).front()), (Point{51, 12}));
    EXPECT_TRUE(left.Of(kWmSetCursor).empty());
    ReleaseMouse();
    EXPECT_EQ(CapturedWindow(), 0U);
    TestMove(right.window, {3, 3});
    EXPECT_THAT(right.Input(), ElementsAre(kWmMouseMove));
}

TEST_F(MouseTest, CapturedCoordinatesMayBeNegative)
{
    Recorder top({});
    Recorder child({.style = kStyleDefault, .bounds = Rect::At(50, 50, 40, 40), .parent = top.window});
    CaptureMouse(child.window);
    child.Clear();
    TestMove(top.window, {10, 20}, true);
    EXPECT_EQ(MousePoint(child.Of(kWmMouseMove).front()), (Point{-40, -30}));
}

TEST_F(MouseTest, CaptureEndsWithItsWindow)
{
    Recorder top({});
    {
        Recorder child({.style = kStyleDefault, .bounds = Rect::At(0, 0, 10, 10), .parent = top.window});
        CaptureMouse(child.window);
    }
    EXPECT_EQ(CapturedWindow(), 0U);
    top.Clear();
    TestPress(top.window, {50, 50});
    EXPECT_THAT(top.Input(), ElementsAre(kWmLButtonDown));
    TestRelease(top.window, {50, 50});
}

TEST_F(MouseTest, DisabledWindowGetsNothing)
{
    Recorder top({});
    Recorder child({.style = kStyleDefault, .bounds = Rect::At(0, 0, 10, 10), .parent = top.window});
    EnableNative(child.window, false);
    child.Clear();
    TestClick(child.window, {1, 1});
    EXPECT_TRUE(child.Input().empty());
}

TEST_F(MouseTest, FineWheelStepsAddUpToWholeOnes)
{
    Recorder top({});
    top.Clear();
    TestWheel(top.window, {5, 6}, -120);
    ASSERT_EQ(top.Of(kWmMouseWheel).size(), 1U);
    EXPECT_EQ(static_cast<std::int16_t>(HighWord(top.Of(kWmMouseWheel)[0].wParam)), -120);
    EXPECT_EQ(MousePoint(top.Of(kWmMouseWheel)[0]), (Point{5, 6}));
    top.Clear();
    for (int i = 0; i < 4; ++i)
        TestWheel(top.window, {5, 6}, 30);
    TestWheel(top.window, {5, 6}, 240);
    ASSERT_EQ(top.Of(kWmMouseWheel).size(), 3U);
    EXPECT_EQ(HighWord(top.Of(kWmMouseWheel)[0].wParam), 120);
}

TEST_F(MouseTest, WheelThatAChildPassesOnReachesItsParent)
{
    Recorder top({});
    Recorder child({.style = kStyleDefault, .bounds = Rect::At(0, 0, 10, 10), .parent = top.window});
    top.Clear();
    TestWheel(child.window, {1, 1}, 120);
    EXPECT_EQ(child.Of(kWmMouseWheel).size(), 1U);
    EXPECT_EQ(top.Of(kWmMouseWheel).size(), 1U);
}

TEST_F(MouseTest, WindowUnderAPointIsTheDeepestVisibleOne)
{
    Recorder top({.bounds = Rect::At(100, 100, 100, 100)});
    Recorder child({.style = kStyleDefault, .bounds = Rect::At(20, 20, 30, 30), .parent = top.window});
    Recorder hidden({.style = kStyleChild, .bounds = Rect::At(60, 60, 30, 30), .parent = top.window, .show = false});
    EXPECT_EQ(WindowFromScreenPoint({125, 125}), child.window);
    EXPECT_EQ(WindowFromScreenPoint({105, 105}), top.window);
    EXPECT_EQ(WindowFromScreenPoint({165, 165}), top.window);
    EXPECT_EQ(WindowFromScreenPoint({400, 400}), 0U);
}

TEST_F(MouseTest, WindowShownLastCoversTheOthers)
{
    Recorder below({});
    Recorder above({});
    EXPECT_EQ(WindowFromScreenPoint({50, 50}), above.window);
    BringToForeground(below.window);
    EXPECT_EQ(WindowFromScreenPoint({50, 50}), below.window);
}

TEST_F(MouseTest, ShapeLeavesItsCornersToWhatLiesBehind)
{
    Recorder below({});
    Recorder above({});
    const Point corners[] = {{30, 0}, {0, 30}, {0, 100}, {100, 100}, {100, 0}};
    SetWindowShape(above.window, corners, 5);
    EXPECT_EQ(WindowFromScreenPoint({2, 2}), below.window);
    EXPECT_EQ(WindowFromScreenPoint({50, 50}), above.window);
    SetWindowShape(above.window, nullptr, 0);
    EXPECT_EQ(WindowFromScreenPoint({2, 2}), above.window);
}

TEST_F(MouseTest, CursorPositionFollowsTheEvents)
{
    Recorder top({.bounds = Rect::At(30, 40, 100, 100)});
    TestMove(top.window, {5, 6});
    EXPECT_EQ(CursorPosition(), (Point{35, 46}));
    EXPECT_EQ(ScreenToClient(top.window, CursorPosition()), (Point{5, 6}));
    EXPECT_EQ(ClientToScreen(top.window, {5, 6}), (Point{35, 46}));
}

}  // namespace
}  // namespace jotlet
