// The row of tabs: choice by mouse and keys, what it tells, how it looks.
#include "toolkit/tabs_wnd.h"
#include "platform/desktop/shell.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kId = 103;
constexpr Colour kBack = 0xC0FFFF;
constexpr Colour kRed = 212;
constexpr Colour kOrange = 45040;

class TabsTest : public WindowTest {
protected:
    TabsTest()
    {
        tabs.AddTab(0, "Title", kRed, 0xFFFFFF);
        tabs.AddTab(1, "Date", kOrange, 0xFFFFFF);
        host.Hold(tabs, Rect::At(10, 100, 200, 20));
    }
    Colour At(int x, int y)
    {
        tabs.Update();
        return PixelAt(tabs.window, {x, y});
    }

    std::vector<std::string> sounds;
    ScopedShellHook hook{[this](std::string_view verb, std::string_view target) {
        sounds.push_back(std::string(verb) + " " + std::string(target.substr(target.rfind('/') + 1)));
    }};
    Host host;
    TTabsWnd tabs{kId, kBack, 50};
};

TEST_F(TabsTest, APressOnAnotherTabChoosesItAndTellsItsValue)
{
    TestPress(tabs.window, {70, 10});
    EXPECT_EQ(tabs.GetSelected(), 1);
    EXPECT_THAT(host.commands, IsEmpty()) << "posted";
    EXPECT_THAT(host.Take(), ElementsAre(Command{kId, 1, 0}));
}

TEST_F(TabsTest, APressOnTheSelectedTabOrBesideTheTabsIsSilent)
{
    TestPress(tabs.window, {20, 10});
    TestPress(tabs.window, {2, 10});
    TestPress(tabs.window, {150, 10});
    EXPECT_THAT(host.Take(), IsEmpty());
    EXPECT_THAT(sounds, IsEmpty());
}

TEST_F(TabsTest, KeysChooseAndStopAtTheEnds)
{
    FocusWindow(tabs.window);
    TestKey(tabs.window, kKeyLeft);
    TestKey(tabs.window, kKeyRight);
    TestKey(tabs.window, kKeyRight);
    TestKey(tabs.window, kKeyHome);
    EXPECT_THAT(host.Take(), ElementsAre(Command{kId, 1, 0}, Command{kId, 0, 0}));
}

TEST_F(TabsTest, TheSelectedTabReachesHigherAndColoursTheFoot)
{
    EXPECT_EQ(At(7, 1), kRed);
    EXPECT_EQ(At(57, 1), kBack) << "an unselected tab is 3 pixels lower";
    EXPECT_EQ(At(57, 4), kOrange);
    EXPECT_EQ(At(190, 18), kRed);
    EXPECT_NE(At(190, 17), kRed) << "a darker line begins right of the selected tab";
    EXPECT_EQ(At(20, 17), kRed);
    TestPress(tabs.window, {70, 10});
    EXPECT_EQ(At(7, 1), kBack);
    EXPECT_EQ(At(190, 18), kOrange);
}

TEST_F(TabsTest, TakesFiftyTabsAndCutsLongNamesBetweenCharacters)
{
    for (int i = 2; i < TTabsWnd::kMaxTabs; ++i)
        ASSERT_EQ(tabs.AddTab(i, "t", 0, 0), 1);
    EXPECT_EQ(tabs.AddTab(99, "t", 0, 0), 0);

    TTabsWnd other(1, 0, 50);
    std::string name(254, 'a');
    other.AddTab(0, name + "\xC3\xA4", 0, 0);
    AccessibleDescription description;
    other.Describe(description);
    EXPECT_EQ(description.parts.front().name, name);
}

TEST_F(TabsTest, AScreenReaderHearsWhichTabIsSelected)
{
    TestPress(tabs.window, {70, 10});
    AccessibleDescription description;
    tabs.Describe(description);
    EXPECT_EQ(description.role, AccessibleRole::TabList);
    ASSERT_EQ(description.parts.size(), 2u);
    EXPECT_FALSE(description.parts[0].selected);
    EXPECT_TRUE(description.parts[1].selected);
    EXPECT_EQ(description.parts[1].name, "Date");
}

}  // namespace
}  // namespace jotlet
