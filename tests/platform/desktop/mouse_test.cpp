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
    top.Clear();
    TestClick(top.window, {7, 9}, true);
    EXPECT_THAT(top.Input(), ElementsAre(kWmRButtonDown, kWmRButtonUp));
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
    Recorder left(top, Rect::At(0, 0, 40, 40));
    Recorder right(top, Rect::At(50, 10, 40, 40));
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
    left.Clear();
    TestPress(left.window, {4, 4});
    TestMove(right.window, {3, 3}, true);
    TestMove(right.window, {4, 3}, true);
    EXPECT_THAT(left.Input(), ElementsAre(kWmLButtonDown, kWmMouseMove)) << "it begins a pull, however quick";
    EXPECT_EQ(MousePoint(left.Of(kWmMouseMove).front()), (Point{4, 4}));
    EXPECT_THAT(right.Input(), ElementsAre(kWmMouseMove, kWmMouseMove));
    CaptureMouse(left.window);
    DestroyNativeWindow(left.window);
    EXPECT_EQ(CapturedWindow(), 0U) << "a capture ends with its window";
    top.Clear();
    TestPress(top.window, {5, 5});
    EXPECT_THAT(top.Input(), ElementsAre(kWmLButtonDown));
    TestRelease(top.window, {5, 5});
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

TEST_F(MouseTest, WheelThatAChildPassesOnReachesItsParentAndADisabledChildGetsNothing)
{
    Recorder top({});
    Recorder child(top, Rect::At(0, 0, 10, 10));
    top.Clear();
    TestWheel(child.window, {1, 1}, 120);
    EXPECT_EQ(child.Of(kWmMouseWheel).size(), 1U);
    EXPECT_EQ(top.Of(kWmMouseWheel).size(), 1U);
    EnableNative(child.window, false);
    child.Clear();
    TestClick(child.window, {1, 1});
    EXPECT_TRUE(child.Input().empty());
}

TEST_F(MouseTest, WindowUnderAPointIsTheDeepestVisibleOne)
{
    Recorder top({.bounds = Rect::At(100, 100, 100, 100)});
    Recorder child(top, Rect::At(20, 20, 30, 30));
    Recorder hidden({.style = kStyleChild, .bounds = Rect::At(60, 60, 30, 30), .parent = top.window, .show = false});
    EXPECT_EQ(WindowFromScreenPoint({125, 125}), child.window);
    EXPECT_EQ(WindowFromScreenPoint({105, 105}), top.window);
    EXPECT_EQ(WindowFromScreenPoint({165, 165}), top.window);
    EXPECT_EQ(WindowFromScreenPoint({400, 400}), 0U);
    TestMove(top.window, {5, 6});
    EXPECT_EQ(CursorPosition(), (Point{105, 106}));
    EXPECT_EQ(ScreenToClient(top.window, CursorPosition()), (Point{5, 6}));
    EXPECT_EQ(ClientToScreen(top.window, {5, 6}), (Point{105, 106}));
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
    BringToForeground(below.window);
    EXPECT_EQ(WindowFromScreenPoint({50, 50}), below.window);
}

}  // namespace
}  // namespace jotlet
