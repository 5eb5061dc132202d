#include "recorder.h"

namespace jotlet {
namespace {

constexpr Colour kWhite = Rgb(255, 255, 255);
constexpr Colour kRed = Rgb(255, 0, 0);
constexpr Colour kBlue = Rgb(0, 0, 255);

using PaintingTest = WindowTest;

Recorder::Handler Fill(Colour colour, std::vector<Rect>* areas = nullptr)
{
    return [colour, areas](const WndMessage& m) -> Recorder::Answer {
        if (m.message != kWmPaint)
            return std::nullopt;
        const auto& paint = *reinterpret_cast<const PaintInfo*>(m.lParam);
        if (areas)
            areas->push_back(paint.invalid);
        paint.dc->FillRect({0, 0, 1000, 1000}, colour);
        return 0;
    };
}

TEST_F(PaintingTest, OnlyTheInvalidPartIsDrawn)
{
    std::vector<Rect> areas;
    Recorder top({}, Fill(kRed, &areas));
    top.answer = Fill(kBlue, &areas);
    areas.clear();
    const Rect part{10, 10, 20, 20};
    InvalidateArea(top.window, &part, false);
    UpdateNow(top.window);
    EXPECT_THAT(areas, testing::ElementsAre(part));
    EXPECT_EQ(PixelAt(top.window, {15, 15}), kBlue);
    EXPECT_EQ(PixelAt(top.window, {9, 15}), kRed);
    EXPECT_EQ(PixelAt(top.window, {20, 15}), kRed);
    areas.clear();
    for (const Rect& one : {Rect{0, 0, 5, 5}, Rect{50, 50, 60, 60}})
        InvalidateArea(top.window, &one, false);
    UpdateNow(top.window);
    UpdateNow(top.window);
    EXPECT_THAT(areas, testing::ElementsAre(Rect{0, 0, 60, 60})) << "gathered, and then nothing is left";
}

TEST_F(PaintingTest, EraseHappensOnlyWhenAskedForAndTellsThePaint)
{
    std::vector<bool> erased;
    Recorder top({}, [&](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmPaint)
            erased.push_back(reinterpret_cast<const PaintInfo*>(m.lParam)->erased);
        return std::nullopt;
    });
    erased.clear();
    top.Clear();
    InvalidateArea(top.window, nullptr, false);
    UpdateNow(top.window);
    EXPECT_TRUE(top.Of(kWmEraseBkgnd).empty());
    InvalidateArea(top.window, nullptr, true);
    UpdateNow(top.window);
    EXPECT_EQ(top.Of(kWmEraseBkgnd).size(), 1U);
    EXPECT_THAT(erased, testing::ElementsAre(false, true));
    Recorder bare({.background = Background::None});
    DrawOutsidePaint(bare.window, [](DeviceContext& dc) { dc.FillRect({0, 0, 100, 100}, kRed); });
    InvalidateArea(bare.window, nullptr, true);
    UpdateNow(bare.window);
    EXPECT_EQ(PixelAt(bare.window, {50, 50}), kRed) << "a class without a background";
}

TEST_F(PaintingTest, DrawingOutsideAPaintShowsAtOnceAlsoInsideAHandler)
{
    Recorder top({});
    top.answer = [](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmLButtonDown) {
            DrawOutsidePaint(m.window, [](DeviceContext& dc) { dc.FillRect({0, 0, 10, 10}, kRed); });
            EXPECT_EQ(PixelAt(m.window, {5, 5}), kRed);
        }
        return std::nullopt;
    };
    TestPress(top.window, {1, 1});
    EXPECT_EQ(PixelAt(top.window, {5, 5}), kRed);
    EXPECT_EQ(PixelAt(top.window, {15, 15}), kWhite);
}

TEST_F(PaintingTest, WindowContextTakenDuringAPaintLeavesThePaintAsItWas)
{
    Recorder top({}, [](const WndMessage& m) -> Recorder::Answer {
        if (m.message != kWmPaint)
            return std::nullopt;
        auto& dc = *reinterpret_cast<const PaintInfo*>(m.lParam)->dc;
        dc.SetClip({0, 0, 50, 100});
        DrawOutsidePaint(m.window, [](DeviceContext& other) { other.FillRect({0, 0, 100, 10}, kBlue); });
        dc.FillRect({0, 20, 100, 30}, kRed);
        return 0;
    });
    EXPECT_EQ(PixelAt(top.window, {90, 5}), kBlue);
    EXPECT_EQ(PixelAt(top.window, {40, 25}), kRed);
    EXPECT_EQ(PixelAt(top.window, {60, 25}), kWhite);
}

TEST_F(PaintingTest, ChildLiesOverItsParent)
{
    Recorder top({}, Fill(kRed));
    Recorder child({.style = kStyleDefault, .bounds = Rect::At(10, 10, 20, 20), .parent = top.window}, Fill(kBlue));
    UpdateNow(top.window);
    DrawOutsidePaint(top.window, [](DeviceContext& dc) { dc.FillRect({0, 0, 100, 100}, kWhite); });
    EXPECT_EQ(PixelAt(child.window, {5, 5}), kBlue);
    child.Clear();
    MoveTo(child.window, Rect::At(30, 40, 10, 10));
    EXPECT_EQ(child.Of(kWmMove).size(), 1U);
    EXPECT_EQ(child.Of(kWmSize).size(), 1U);
    MoveTo(child.window, Rect::At(35, 40, 10, 10));
    EXPECT_EQ(child.Of(kWmSize).size(), 1U) << "a move alone tells no size";
    EXPECT_EQ(WindowRect(child.window), Rect::At(35, 40, 10, 10));
    Recorder framed({.style = kStyleDefault | kStyleBorder, .bounds = Rect::At(10, 10, 20, 20), .parent = top.window});
    EXPECT_EQ(ClientRect(framed.window), (Rect{0, 0, 18, 18}));
    EXPECT_EQ(PixelAt(framed.window, {0, 0}), kWhite);
    EXPECT_NE(PixelAt(framed.window, {-1, -1}), kWhite) << "the border lies outside the client area";
}

TEST_F(PaintingTest, ResizeKeepsNothingInvalidForLongAndPaintsTheWhole)
{
    std::vector<Rect> areas;
    Recorder top({}, Fill(kRed, &areas));
    areas.clear();
    top.Clear();
    MoveTo(top.window, Rect::At(0, 0, 150, 120));
    ASSERT_EQ(top.Of(kWmSize).size(), 1U);
    EXPECT_EQ(top.Of(kWmSize)[0].lParam, MakeParam(150, 120));
    UpdateNow(top.window);
    EXPECT_THAT(areas, testing::ElementsAre(Rect{0, 0, 150, 120}));
    EXPECT_EQ(PixelAt(top.window, {149, 119}), kRed);
    EXPECT_EQ(PixelAt(top.window, {150, 119}), kNoColour);
}

TEST_F(PaintingTest, HiddenWindowIsNotPaintedAndIsPaintedWhenShown)
{
    std::vector<Rect> areas;
    Recorder top({.show = false}, Fill(kRed, &areas));
    InvalidateArea(top.window, nullptr, true);
    UpdateNow(top.window);
    EXPECT_TRUE(areas.empty());
    ShowNative(top.window, true);
    UpdateNow(top.window);
    EXPECT_EQ(areas.size(), 1U);
}

TEST_F(PaintingTest, PaintThatDestroysItsWindowDoesNoHarm)
{
    Recorder top({.show = false}, [](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmPaint)
            DestroyNativeWindow(m.window);
        return std::nullopt;
    });
    ShowNative(top.window, true);
    UpdateNow(top.window);
    ServeEvents();
    EXPECT_FALSE(IsWindow(top.window));
}

TEST_F(PaintingTest, FlushPaintsAndLeavesMessagesAndTimersWaiting)
{
    std::vector<Rect> areas;
    Recorder top({.show = false}, Fill(kRed, &areas));
    PostTo(top.window, 6001, 1, 0);
    PostTo(top.window, 6001, 2, 0);
    StartTimer(top.window, 1, Milliseconds(1));
    ShowNative(top.window, true);
    FlushToScreen();
    EXPECT_EQ(areas.size(), 1U);
    EXPECT_TRUE(top.Of(6001).empty());
    EXPECT_TRUE(top.Of(kWmTimer).empty());
    PostTo(top.window, 6001, 3, 0);
    EXPECT_TRUE(ServeUntil([&] { return top.Of(6001).size() == 3 && !top.Of(kWmTimer).empty(); }, Milliseconds(2000)));
    EXPECT_EQ(top.Of(6001)[0].wParam, 1);
    EXPECT_EQ(top.Of(6001)[1].wParam, 2);
    EXPECT_EQ(top.Of(6001)[2].wParam, 3);
}

}  // namespace
}  // namespace jotlet
