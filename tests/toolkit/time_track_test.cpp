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
    TestPress(track->window, {50, thumb + 10});
    EXPECT_TRUE(track->IsDragging());
    SendTo(track->window, kWmCaptureLost, 0, 0);
    EXPECT_FALSE(track->IsDragging());
    TestMove(track->window, {50, 150}, true);
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
    // A press on the scale only folds it in, and so does the button.
    TestClick(ListButton(), {4, 4});
    TestPress(track->window, {5, static_cast<int>(track->ThumbY()) + 10});
    EXPECT_FALSE(track->IsListOut());
    EXPECT_FALSE(track->IsDragging());
    TestClick(ListButton(), {4, 4});
    TestClick(ListButton(), {4, 4});
    EXPECT_FALSE(track->IsListOut());
}

TEST_F(TimeTrackTest, ASingleTimeIsClickedInItsListAndADoubleClickIsOk)
{
    Show(Before(7), After(3), true);
    EXPECT_TRUE(IsVisible(track->List().window));
    EXPECT_TRUE(track->List().GetItemRect(96).has_value()) << "the list opens at its time";
    FocusWindow(List());
    TestKey(List(), kKeyDown);
    ServeEvents();
    EXPECT_EQ(To(), After(3, 5));
    track->List().SelectItem(0);
    TestClick(List(), Row(3));
    EXPECT_THAT(host.Take(), IsEmpty());
    EXPECT_EQ(To(), Before(7, 15));
    TestDoubleClick(List(), Row(12));
    EXPECT_THAT(host.Take(), ElementsAre(Command{kIdOk, 0, 0}));
    EXPECT_EQ(To(), Before(8));
    EXPECT_EQ(DescriptionOf(*track).name, "08:00");
}

TEST_F(TimeTrackTest, KeysMoveTheThumb)
{
    Show(Before(7), Before(8));
    const std::pair<int, TimeValue> presses[] = {
        {kKeyDown, Before(8, 5)}, {kKeyUp, Before(8)},     {kKeyPageDown, Before(9)},
        {kKeyPageUp, Before(8)},  {kKeyPageUp, Before(7)}, {kKeyPageUp, Before(7)},
        {kKeyEnd, After(11)},     {kKeyDown, After(11)},   {kKeyHome, Before(7)},
    };
    for (const auto& [key, to] : presses) {
        TestKey(track->window, key);
        EXPECT_EQ(To(), to) << key;
    }
    TestKey(track->window, kKeySpace);
    EXPECT_TRUE(track->IsListOut());
    track->OnSetValue(8 * 60 + 3);
    const AccessibleDescription heard = DescriptionOf(*track);
    EXPECT_EQ(heard.name, "07:00 - 08:00");
    EXPECT_EQ(heard.value->now, 8 * 60);
    EXPECT_EQ(heard.value->least, 7 * 60);
    EXPECT_EQ(heard.value->most, 23 * 60);
}

// Down the middle: the line from the scale's top to the thumb, which makes room for the length of the span where there
// is any.
TEST_F(TimeTrackTest, TheLineLeadsToTheThumbAndMakesRoomForTheSpan)
{
    const std::pair<TimeValue, int> rows[] = {{Before(7, 40), 0}, {Before(7, 45), 20}, {Before(9), 28}, {After(3), 64}};
    for (const auto& [to, gap] : rows) {
        Show(Before(7), to);
        const int thumb = static_cast<int>(track->ThumbY());
        const auto black = PixelsWhere(*track, [](Colour c) { return c == 0; });
        const auto isBlack = [&](int x, int y) { return std::ranges::find(black, Point{x, y}) != black.end(); };
        for (int y = 20; y < thumb; ++y) {
            if (gap == 0 || y < gap || y >= gap + 9) {
                EXPECT_TRUE(isBlack(50, y)) << y << " of " << thumb;
            }
        }
        if (gap > 0) {
            EXPECT_FALSE(isBlack(50, gap));
            EXPECT_FALSE(isBlack(50, gap + 8));
            const auto drawn = PixelsWhere(*track, [](Colour c) { return c != 0xFFFFFF; });
            const auto inNumber = [&](Point p) { return p.y > gap && p.y < gap + 8 && p.x > 52 && p.x < 70; };
            EXPECT_GT(std::ranges::count_if(drawn, inNumber), 5);
        }
        const auto accent = PixelsWhere(*track, [](Colour c) { return c == 255; });
        EXPECT_EQ(std::ranges::find_if(accent, [](Point p) { return p.y >= 25; })->y, thumb);
    }
}

}  // namespace
}  // namespace jotlet
