// What the small widgets have each for itself: repeats, places, looks while held. Their basics: widgets_test.cpp.
#include "platform/desktop/menu.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/system_metrics.h"
#include "toolkit/fly_menu.h"
#include "toolkit/marlin_class_link_button.h"
#include "toolkit/marlin_class_to_do_priority.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/marlin_slide_bar.h"
#include "toolkit/marlin_spin_button.h"
#include "toolkit/marlin_tool_bar.h"
#include "toolkit/tabs_wnd.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

class SmallControlsTest : public WindowTest {
protected:
    Host host;
};

TEST_F(SmallControlsTest, AHeldSpinButtonRepeatsAfterHalfASecondAndThenQuickly)
{
    MarlinSpinButton button{kGlyphUp, 0xC0C0C0, 33};
    host.Hold(button, Rect::At(10, 10, 14, 14));
    const auto count = [this] { return host.commands.size(); };
    const auto dark = [&] { return PixelsWhere(button, [](Colour c) { return c != 0xC0C0C0; }).front(); };
    const Point free = dark();
    TestPress(button.window, {5, 5});
    EXPECT_THAT(host.commands, ElementsAre(Command{33, reinterpret_cast<MessageParam>(&button), 0}));
    EXPECT_EQ(CapturedWindow(), button.window);
    EXPECT_EQ(dark(), (Point{free.x + 1, free.y + 1})) << "the glyph moves by a pixel";
    const auto start = std::chrono::steady_clock::now();
    const auto since = [start] { return std::chrono::steady_clock::now() - start; };
    ASSERT_TRUE(ServeUntil([&] { return count() >= 2; }, 1500ms));
    EXPECT_GE(since(), 450ms);
    TestMove(button.window, {100, 100}, true);
    const auto second = since();
    ASSERT_TRUE(ServeUntil([&] { return count() >= 6; }, 1000ms)) << "also with the mouse off the button";
    EXPECT_LT(since() - second, 450ms);
    TestRelease(button.window, {100, 100});
    EXPECT_EQ(CapturedWindow(), 0u);
    const std::size_t atRelease = count();
    TestPress(button.window, {5, 5});
    SendTo(button.window, kWmCaptureLost, 0, 0);
    EXPECT_FALSE(button.IsPressed());
    ServeUntil([] { return false; }, 600ms);
    EXPECT_EQ(count(), atRelease + 1) << "no repeats once the mouse is somebody else's";
}

TEST_F(SmallControlsTest, TheThumbOfASlideBarStandsInProportionFollowsTheMouseAndSnaps)
{
    MarlinSlideBar bar{6, 11, 0x808080};
    host.Hold(bar, Rect::At(0, 0, 20, 200));
    for (const auto& [position, taken, top] : {std::tuple{5, 1, 100}, {10, 1, 180}, {11, 0, 180}, {-1, 0, 180}}) {
        EXPECT_EQ(bar.SetPosition(position), taken);
        EXPECT_EQ(bar.ThumbRect(), Rect::At(0, top, 20, 20));
    }
    bar.SetPosition(0);
    TestPress(bar.window, {10, 10});
    EXPECT_THAT(host.Take(), IsEmpty()) << "a press on the thumb moves nothing";
    TestMove(bar.window, {10, 47}, true);
    EXPECT_THAT(host.Take(), ElementsAre(Command{6, 2, 0}));
    EXPECT_EQ(bar.ThumbRect().top, 47);
    TestMove(bar.window, {10, 52}, true);
    EXPECT_THAT(host.Take(), IsEmpty()) << "the same position is told once";
    TestRelease(bar.window, {10, 52});
    EXPECT_EQ(bar.ThumbRect().top, 40);
    for (int range = 2; range < 400; ++range) {
        bar.SetRange(range);
        bar.SetPosition(0);
        TestPress(bar.window, {10, 199});
        TestRelease(bar.window, {10, 199});
        ASSERT_EQ(bar.GetPosition(), range - 1) << "the last position is reached";
    }
    bar.SetRange(7 / 3.0);
    EXPECT_EQ(bar.GetPosition(), 1) << "the last whole row";
    bar.OnSetValue(9);
    EXPECT_EQ(DescriptionOf(bar).name, "Row 3 of 3");
}

TEST_F(SmallControlsTest, ALinkShowsItsOtherColourWhileHeldWithTheMouseOnIt)
{
    MarlinClassLinkButton link{9, "write to us", 0xFFFFFF, 0xFF0000, 0x00FF00, kTextSingleLine | kTextVCentre};
    host.Hold(link, Rect::At(0, 0, 120, 18));
    const auto blue = [&] { return !PixelsWhere(link, [](Colour c) { return c == 0xFF0000; }).empty(); };
    TestPress(link.window, {10, 9});
    EXPECT_FALSE(blue());
    TestMove(link.window, {10, 90}, true);
    EXPECT_TRUE(blue());
    TestRelease(link.window, {10, 90});
}

TEST_F(SmallControlsTest, AHundredPixelsHoldFiveLettersARow)
{
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

TEST_F(SmallControlsTest, TheSelectedTabReachesHigherAndColoursTheFoot)
{
    constexpr Colour kBack = 0xC0FFFF;
    int sounds = 0;
    const ScopedShellHook hook([&](std::string_view, std::string_view) { ++sounds; });
    TTabsWnd tabs{103, kBack, 50};
    tabs.AddTab(0, "Title", 212, 0xFFFFFF);
    tabs.AddTab(1, std::string(254, 'a') + "\xC3\xA4", 45040, 0xFFFFFF);
    host.Hold(tabs, Rect::At(10, 100, 200, 20));
    EXPECT_EQ(DescriptionOf(tabs).parts.back().name, std::string(254, 'a')) << "cut between characters";
    const auto at = [&](int x, int y) {
        tabs.Update();
        return PixelAt(tabs.window, {x, y});
    };
    EXPECT_EQ(at(7, 1), 212u);
    EXPECT_EQ(at(57, 2), kBack) << "an unselected tab is 3 pixels lower";
    EXPECT_EQ(at(57, 3), 45040u);
    EXPECT_EQ(at(190, 18), 212u);
    EXPECT_EQ(at(53, 17), 212u);
    EXPECT_NE(at(190, 17), 212u) << "a darker line begins right of the selected tab";
    TestPress(tabs.window, {20, 10});
    EXPECT_EQ(sounds, 0) << "the selected tab is silent";
    TestPress(tabs.window, {70, 10});
    EXPECT_TRUE(host.commands.empty()) << "posted";
    EXPECT_EQ(at(7, 1), kBack);
    EXPECT_EQ(at(190, 18), 45040u);
    EXPECT_EQ(sounds, 1);
}

TEST_F(SmallControlsTest, AToolIsHotUnderTheMouseAndOutlinedWhileHeld)
{
    using HotState = MarlinToolBar::HotState;
    const MarlinPane pane{{.barColour = 0x0000D4, .barTextColour = 0xFFFFFF}, "Work"};
    MarlinToolBar bar;
    for (int i = 0; i < 3; ++i)
        bar.AddItem(1000 + i, 2000, 3000, i == 0 ? 1 : 0);
    host.Hold(bar, Rect::At(5, 26, 390, 25));
    const auto item = [](int index) { return Rect::At(15 + 50 * index, 3, 50, 19); };
    const auto on = [&](int index) { return MiddleOf(item(index)); };
    // The outline: the middles of its top and left sides, and the row below.
    const auto outline = [&](int index) {
        bar.Update();
        const Rect r = item(index);
        std::set<Colour> colours;
        for (const Point p : {Point{r.left + 20, r.top}, {r.left - 2, r.top + 9}, {r.left + 20, r.bottom}})
            colours.insert(PixelAt(bar.window, p));
        return colours;
    };
    using Only = std::set<Colour>;
    Rect found;
    EXPECT_EQ(bar.GetItemRect(1002, found), 2);
    EXPECT_EQ(found, item(2));
    EXPECT_EQ(bar.GetItemRect(77, found), MarlinToolBar::kNoItem);
    TestMove(bar.window, on(0));
    EXPECT_EQ(outline(0), Only{0});
    TestMove(bar.window, on(1));
    EXPECT_EQ(bar.GetHotItem(), 1);
    EXPECT_EQ(outline(0).count(0), 0u);
    TestMove(bar.window, {380, 12});
    EXPECT_EQ(bar.GetHotItem(), MarlinToolBar::kNoItem);
    TestMove(bar.window, on(0));
    TestMove(host.window, {200, 200});
    ASSERT_EQ(bar.GetHotItem(), 0) << "nobody tells the bar that the mouse is gone";
    EXPECT_TRUE(ServeUntil([&] { return bar.GetHotItem() == MarlinToolBar::kNoItem; }, 1000ms));

    TestPress(bar.window, on(1));
    EXPECT_EQ(outline(1), Only{0xFFFFFF});
    TestMove(bar.window, {200, 90}, true);
    EXPECT_EQ(outline(1), Only{0}) << "it keeps its look with the mouse outside the bar";
    TestMove(bar.window, on(1), true);
    EXPECT_EQ(outline(1), Only{0xFFFFFF});
    TestRelease(bar.window, on(2));
    EXPECT_THAT(host.Take(), IsEmpty());
    EXPECT_EQ(bar.GetHotItem(), MarlinToolBar::kNoItem);
    TestClick(bar.window, on(1));
    EXPECT_THAT(host.commands, IsEmpty()) << "posted";
    EXPECT_THAT(host.Take(), ElementsAre(Command{1001, 0, 0}));
    HotState whileSent = HotState::Plain;
    host.onCommand = [&](WndMessage&) { whileSent = bar.GetHotState(); };
    TestClick(bar.window, on(0));
    EXPECT_THAT(host.commands, ElementsAre(Command{1000, 0, 0})) << "sent";
    EXPECT_EQ(whileSent, HotState::Pressed) << "a menu item looks pressed while its menu is open";
    EXPECT_EQ(CapturedWindow(), 0u);
}

TEST_F(SmallControlsTest, AFlyMenuShowsAndTellsTheChosenEntryAndChecksTheShownOne)
{
    TFlyMenu menu{0x0000D4, 0xFFFFFF, 0};
    menu.AddTextEntry("All", 500);
    menu.AddStringEntry(-1, -1);
    menu.AddTextEntry("Salt & pepper && co", 501);
    menu.AddStringEntry(2010, 502);  // January
    host.Hold(menu, Rect::At(0, 0, 100, 15));
    static std::vector<std::string> shown;
    const ScopedMenuAnswer third([](const std::vector<MenuEntry>& entries) {
        shown.clear();
        for (const MenuEntry& entry : entries)
            shown.push_back((entry.checked ? "*" : "") + entry.text);
        return std::optional<std::size_t>(3);
    });
    std::string text;
    host.onCommand = [&](WndMessage& record) { text = reinterpret_cast<const char*>(record.lParam); };
    menu.ShowEntry(501);
    for (const int outside : {9, -1})
        menu.ShowEntry(outside);
    EXPECT_EQ(menu.ShownText(), "Salt & pepper && co");
    TestClick(menu.window, {10, 7});
    EXPECT_THAT(host.Take(), IsEmpty()) << "beside the hot area";
    TestClick(menu.window, {9, 7});
    EXPECT_THAT(host.Take(), ElementsAre(testing::Field(&Command::id, 502)));
    EXPECT_THAT(shown, ElementsAre("All", "", "*Salt && pepper &&&& co", "January")) << "no access key hides in a name";
    EXPECT_EQ(text, "January");
    for (const int key : {kKeySpace, kKeyReturn, kKeyDown, kKeyMenu}) {
        TestKey(menu.window, key);
        EXPECT_EQ(host.Take().size(), 1u) << key;
    }
    EXPECT_EQ(shown.back(), "*January");
    menu.Send(kWmCommand, 9, 0);
    EXPECT_THAT(host.Take(), IsEmpty());
    const char* before = menu.ShownText().c_str();
    menu.AddTextEntry(std::string(400, 'x'), 7);
    menu.ShowEntry(7);
    EXPECT_EQ(menu.ShownText().size(), TFlyMenu::kMaxText);
    EXPECT_EQ(menu.ShownText().c_str(), before) << "whoever was told of it keeps a pointer";
}

}  // namespace
}  // namespace jotlet
