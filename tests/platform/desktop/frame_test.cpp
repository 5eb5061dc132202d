// Windows with a margin of their own: hit tests, presses beside the client area, limits, moving and sizing.
#include "platform/desktop/system_metrics.h"
#include "recorder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

constexpr Size kLeast{200, 150};
constexpr Size kMost{400, 300};

class FrameTest : public WindowTest {
protected:
    static std::optional<MessageParam> Limit(const WndMessage& m)
    {
        if (m.message != kWmGetMinMaxInfo)
            return std::nullopt;
        auto& info = *reinterpret_cast<MinMaxInfo*>(m.lParam);
        info.minTrack = kLeast;
        info.maxTrack = kMost;
        return 0;
    }

    // Client coordinates of a point given in window coordinates.
    static Point At(int x, int y) { return {x - kFrameMarginSide, y - kFrameMarginTop}; }

    MessageParam HitAt(int x, int y)
    {
        const Point screen = ClientToScreen(frame.window, At(x, y));
        return SendTo(frame.window, kWmNcHitTest, 0, MakeParam(screen.x, screen.y));
    }

    Recorder frame{{.style = kStyleOverlapped, .bounds = Rect::At(50, 60, 300, 200)}, Limit};
};

TEST_F(FrameTest, ClientAreaLiesInsideTheMargin)
{
    EXPECT_EQ(ClientRect(frame.window),
              (Rect{0, 0, 300 - 2 * kFrameMarginSide, 200 - kFrameMarginTop - kFrameMarginBottom}));
    EXPECT_EQ(ClientToScreen(frame.window, {0, 0}), (Point{50 + kFrameMarginSide, 60 + kFrameMarginTop}));
    Recorder child(frame, Rect::At(3, 4, 10, 10));
    EXPECT_EQ(WindowRect(child.window), Rect::At(53 + kFrameMarginSide, 64 + kFrameMarginTop, 10, 10));
}

TEST_F(FrameTest, HitTestTellsBordersCornersCaptionAndClient)
{
    const struct {
        int x, y;
        MessageParam hit;
    } rows[] = {{150, 100, kHitClient},
                {150, 12, kHitCaption},
                {2, 100, kHitLeft},
                {298, 100, kHitRight},
                {150, 1, kHitTop},
                {150, 198, kHitBottom},
                {1, 1, kHitTopLeft},
                {298, 1, kHitTopRight},
                {1, 198, kHitBottomLeft},
                {298, 198, kHitBottomRight},
                {500, 500, kHitNowhere},
                {kFrameMarginSide - 1, 100, kHitLeft},
                {kFrameMarginSide, 100, kHitClient},
                {300 - kFrameMarginSide, 100, kHitRight},
                {299 - kFrameMarginSide, 100, kHitClient}};
    for (const auto& [x, y, hit] : rows)
        EXPECT_EQ(HitAt(x, y), hit) << x << ", " << y;
}

TEST_F(FrameTest, PressInTheMarginIsToldApartFromOneInTheClientArea)
{
    frame.answer = [](const WndMessage& m) -> Recorder::Answer {
        return m.message >= kWmNcLButtonDown && m.message <= kWmNcRButtonUp ? std::optional<MessageParam>(0)
                                                                            : std::nullopt;
    };
    frame.Clear();
    TestClick(frame.window, At(150, 12));
    TestClick(frame.window, At(150, 12), true);
    TestDoubleClick(frame.window, At(150, 12));
    EXPECT_THAT(frame.Input(), ElementsAre(kWmNcLButtonDown, kWmNcLButtonUp, kWmNcRButtonDown, kWmNcRButtonUp,
                                           kWmNcLButtonDown, kWmNcLButtonUp, kWmNcLButtonDblClk, kWmNcLButtonUp));
    const WndMessage press = frame.Of(kWmNcLButtonDown).front();
    EXPECT_EQ(press.wParam, kHitCaption);
    EXPECT_EQ(MousePoint(press), (Point{200, 72}));
    frame.Clear();
    TestClick(frame.window, {10, 10});
    EXPECT_THAT(frame.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp));
}

TEST_F(FrameTest, DragsMoveAndSizeWithinTheLimits)
{
    const struct {
        Point from, to;
        Rect after;
    } rows[] = {
        {{150, 12}, {170, 42}, Rect::At(70, 90, 300, 200)},
        {{298, 198}, {318, 208}, Rect::At(50, 60, 320, 210)},
        {{298, 198}, {900, 900}, Rect::At(50, 60, kMost.width, kMost.height)},
        {{2, 100}, {252, 100}, {150, 60, 350, 260}},  // the right edge stays
    };
    for (const auto& row : rows) {
        MoveTo(frame.window, Rect::At(50, 60, 300, 200));
        TestPress(frame.window, At(row.from.x, row.from.y));
        TestMove(frame.window, At(row.to.x, row.to.y), true);
        EXPECT_EQ(WindowRect(frame.window), row.after);
        TestRelease(frame.window, At(row.from.x, row.from.y));
        TestMove(frame.window, At(10, 10));
        EXPECT_EQ(WindowRect(frame.window), row.after) << "the drag is over";
    }
    MoveTo(frame.window, Rect::At(0, 0, 1000, 1000));
    EXPECT_EQ(WindowRect(frame.window), Rect::At(0, 0, kMost.width, kMost.height));
    MoveTo(frame.window, Rect::At(0, 0, 10, 10));
    EXPECT_EQ(WindowRect(frame.window), Rect::At(0, 0, kLeast.width, kLeast.height));
}

TEST_F(FrameTest, HitTestAnswerOfTheWindowDecides)
{
    frame.answer = [](const WndMessage& m) -> Recorder::Answer {
        return m.message == kWmNcHitTest ? std::optional<MessageParam>(kHitNowhere) : std::nullopt;
    };
    const Rect before = WindowRect(frame.window);
    TestPress(frame.window, At(2, 100));
    TestMove(frame.window, At(100, 100), true);
    TestRelease(frame.window, At(100, 100));
    EXPECT_EQ(WindowRect(frame.window), before);
    EXPECT_EQ(frame.Of(kWmNcLButtonDown).size(), 1U);
}

TEST_F(FrameTest, MarginIsPaintedByItsOwnMessageBeforeTheClientArea)
{
    std::vector<std::uint32_t> order;
    frame.answer = [&](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmNcPaint || m.message == kWmEraseBkgnd || m.message == kWmPaint)
            order.push_back(m.message);
        if (m.message == kWmNcPaint) {
            DrawOnWholeWindow(m.window, [](DeviceContext& dc) { dc.FillRect({0, 0, 1000, 1000}, Rgb(9, 9, 9)); });
            return 0;
        }
        return std::nullopt;
    };
    MoveTo(frame.window, Rect::At(0, 0, 310, 210));
    UpdateNow(frame.window);
    EXPECT_THAT(order, ElementsAre(kWmNcPaint, kWmEraseBkgnd, kWmPaint));
    EXPECT_EQ(PixelAt(frame.window, {-1, -1}), Rgb(9, 9, 9));
    EXPECT_EQ(PixelAt(frame.window, {0, 0}), Rgb(255, 255, 255));
    DrawOutsidePaint(frame.window, [](DeviceContext& dc) { dc.FillRect({-50, -50, 1000, 1000}, Rgb(7, 7, 7)); });
    EXPECT_EQ(PixelAt(frame.window, {0, 0}), Rgb(7, 7, 7));
    EXPECT_EQ(PixelAt(frame.window, {-1, 0}), Rgb(9, 9, 9)) << "drawing in the client area stays there";
    // The client area alone leaves the margin as it is.
    order.clear();
    InvalidateArea(frame.window, nullptr, true);
    UpdateNow(frame.window);
    EXPECT_THAT(order, ElementsAre(kWmEraseBkgnd, kWmPaint));
}

TEST_F(FrameTest, HeldButtonLoopServesEverythingAndSwallowsTheRelease)
{
    bool posted = false;
    frame.answer = [&](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmNcLButtonDown) {
            StartTimer(m.window, 1, Milliseconds(1));
            PostTo(m.window, 6000, 0, 0);
            ServeUntilButtonReleased();
            return 0;
        }
        if (m.message == 6000)
            posted = true;
        if (m.message == kWmTimer) {
            StopTimer(m.window, 1);
            TestRelease(m.window, At(150, 12));
        }
        return std::nullopt;
    };
    frame.Clear();
    TestPress(frame.window, At(150, 12));
    EXPECT_TRUE(posted);
    EXPECT_TRUE(frame.Of(kWmNcLButtonUp).empty());
    EXPECT_TRUE(frame.Of(kWmLButtonUp).empty());
}

}  // namespace
}  // namespace jotlet
