#include "toolkit/marlin_time_track.h"

#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr TimeValue Before(int hour, int minute = 0)
{
    return {hour, minute, 0, kBeforeNoon};
}
constexpr TimeValue After(int hour, int minute = 0)
{
    return {hour, minute, 0, kAfterNoon};
}

// The scale is 192 pixels high: with the whole range one pixel a slot of 5 minutes.
class TimeTrackTest : public WindowTest {
protected:
    void Show(const TimeValue& from, const TimeValue& to, bool single = false)
    {
        track = std::make_unique<MarlinTimeTrack>(102, Before(7), After(11), from, to, 5, 0xFFFFFF, 255);
        if (single)
            track->SetSingleTime();
        host.Hold(*track, Rect::At(0, 0, 100, 20 + 192 + 38));
    }
    TimeValue To()
    {
        TimeValue from, to;
        track->GetTimes(from, to);
        return to;
    }
    // Drags the thumb to a height on the scale.
    TimeValue DragTo(int scaleY)
    {
        TestPress(track->window, {50, static_cast<int>(track->ThumbY()) + 10});
        TestMove(track->window, {50, 20 + scaleY}, true);
        const TimeValue held = To();
        TestRelease(track->window, {50, 20 + scaleY});
        EXPECT_EQ(held, To());
        return held;
    }
    WindowHandle ListButton() { return WindowFromScreenPoint(ClientToScreen(track->window, {50 - 24 + 5, 13})); }
    WindowHandle List() { return track->List().Grid().window; }
    Point Row(int row) { return {20, row * TimeListView::kItemHeight + 5}; }

    Host host{{400, 300}};
    std::unique_ptr<MarlinTimeTrack> track;
};

TEST_F(TimeTrackTest, TheThumbStandsAtItsTimeAndOneOutOfRangeIsTheEarliest)
{
    Show(Before(7), After(0));
    EXPECT_DOUBLE_EQ(track->ThumbY(), 20 + 60);
    Show(Before(11), After(5));
    EXPECT_DOUBLE_EQ(track->ThumbY(), 20 + 192 / 2);
    Show(Before(6), Before(9));
    EXPECT_EQ(To(), Before(7));
    Show(Before(8), After(11, 30));
    EXPECT_EQ(To(), Before(7));
    Show(After(11), After(11));
    track->RepaintNow();
    EXPECT_EQ(DragTo(50), After(11)) << "a span without length harms nothing";
}

TEST_F(TimeTrackTest, DraggingSnapsToTheNextStepUnderTheMouse)
{
    Show(Before(7), Before(8));
    EXPECT_EQ(DragTo(30), Before(9, 35));
    EXPECT_EQ(DragTo(59), After(0)) << "noon follows 11:55";
    EXPECT_EQ(DragTo(1), Before(7, 10));
    EXPECT_EQ(DragTo(0), Before(7)) << "the very top is the start";
    EXPECT_EQ(DragTo(-50), Before(7));
    EXPECT_EQ(DragTo(192), After(11));
    EXPECT_EQ(DragTo(5000), After(11));
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(TimeTrackTest, OnlyTheThumbIsDragged)
{
    Show(Before(7), Before(11));
    const int thumb = static_cast<int>(track->ThumbY());
    for (const int y : {thumb - 5, thumb, thumb + 25, thumb + 40}) {
        TestPress(track->window, {50, y});
        EXPECT_FALSE(track->IsDragging()) << y;
        TestMove(track->window, {50, 150}, true);
        TestRelease(track->window, {50, 150});
    }
    EXPECT_EQ(To(), Before(11));
}

TEST_F(TimeTrackTest, TheListFoldsOutTakesATimeAndFoldsIn)
{
    Show(Before(7), Before(7));
    EXPECT_FALSE(IsVisible(track->List().window));
    TestClick(ListButton(), {4, 4});
    EXPECT_TRUE(track->IsListOut());
    EXPECT_TRUE(IsVisible(track->List().window));
    TestClick(List(), Row(6));
    ServeEvents();
    EXPECT_EQ(To(), Before(7, 30));
    EXPECT_FALSE(track->IsListOut());
    EXPECT_FALSE(IsVisible(track->List().window));
    EXPECT_THAT(host.Take(), IsEmpty());
}

TEST_F(TimeTrackTest, APressOnTheScaleOnlyFoldsTheListIn)
{
    Show(Before(7), Before(9));
    TestClick(ListButton(), {4, 4});
    TestPress(track->window, {5, static_cast<int>(track->ThumbY()) + 10});
    EXPECT_FALSE(track->IsListOut());
    EXPECT_FALSE(track->IsDragging());
    TestClick(ListButton(), {4, 4});
    TestClick(ListButton(), {4, 4});
    EXPECT_FALSE(track->IsListOut());
}

TEST_F(TimeTrackTest, ASingleTimeIsClickedAndADoubleClickIsOk)
{
    Show(Before(7), Before(7), true);
    EXPECT_TRUE(IsVisible(track->List().window));
    TestClick(List(), Row(3));
    EXPECT_THAT(host.Take(), IsEmpty());
    EXPECT_EQ(To(), Before(7, 15));
    TestDoubleClick(List(), Row(12));
    EXPECT_THAT(host.Take(), ElementsAre(Command{kIdOk, 0, 0}));
    EXPECT_EQ(To(), Before(8));
}

TEST_F(TimeTrackTest, ASingleTimesListOpensAtItsTimeAndFollowsTheKeys)
{
    Show(Before(7), After(3), true);
    EXPECT_EQ(track->List().GetSelected(), 96);
    EXPECT_TRUE(track->List().GetItemRect(96).has_value());
    FocusWindow(List());
    TestKey(List(), kKeyDown);
    ServeEvents();
    EXPECT_EQ(To(), After(3, 5));
}

TEST_F(TimeTrackTest, KeysMoveTheThumb)
{
    Show(Before(7), Before(8));
    const auto press = [this](int key) {
        TestKey(track->window, key);
        return To();
    };
    EXPECT_EQ(press(kKeyDown), Before(8, 5));
    EXPECT_EQ(press(kKeyUp), Before(8));
    EXPECT_EQ(press(kKeyPageDown), Before(9));
    EXPECT_EQ(press(kKeyPageUp), Before(8));
    EXPECT_EQ(press(kKeyPageUp), Before(7));
    EXPECT_EQ(press(kKeyPageUp), Before(7));
    EXPECT_EQ(press(kKeyEnd), After(11));
    EXPECT_EQ(press(kKeyDown), After(11));
    EXPECT_EQ(press(kKeyHome), Before(7));
    track->OnSetValue(8 * 60 + 3);
    EXPECT_THAT(DescriptionOf(*track).name, testing::AllOf(testing::HasSubstr("07:00"), testing::HasSubstr("08:00")));
    EXPECT_EQ(DescriptionOf(*track).value->now, 8 * 60);
}

TEST_F(TimeTrackTest, ThePictureMovesWithTheThumb)
{
    Show(Before(7), Before(9));
    const auto thumb = [this] {
        for (const Point p : PixelsWhere(*track, [](Colour c) { return c == 255; })) {
            if (p.y >= 25 && p.x >= 30 && p.x < 70)
                return p.y;
        }
        return -1;
    };
    EXPECT_EQ(thumb(), static_cast<int>(track->ThumbY()));
    const int before = thumb();
    TestKey(track->window, kKeyDown);
    EXPECT_EQ(thumb(), before + 1);
}

}  // namespace
}  // namespace jotlet
