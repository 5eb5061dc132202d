// The row of tabs: how it looks and sounds.
#include "toolkit/tabs_wnd.h"
#include "platform/desktop/shell.h"
#include "widget_host.h"

namespace jotlet {
namespace {

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

TEST_F(TabsTest, TheSelectedTabReachesHigherAndColoursTheFoot)
{
    EXPECT_EQ(At(7, 1), kRed);
    EXPECT_EQ(At(57, 1), kBack) << "an unselected tab is 3 pixels lower";
    EXPECT_EQ(At(57, 4), kOrange);
    EXPECT_EQ(At(190, 18), kRed);
    EXPECT_NE(At(190, 17), kRed) << "a darker line begins right of the selected tab";
    EXPECT_EQ(At(20, 17), kRed);
    TestPress(tabs.window, {20, 10});
    EXPECT_TRUE(sounds.empty()) << "the selected tab is silent";
    TestPress(tabs.window, {70, 10});
    EXPECT_TRUE(host.commands.empty()) << "posted";
    EXPECT_EQ(At(7, 1), kBack);
    EXPECT_EQ(At(190, 18), kOrange);
}

TEST_F(TabsTest, LongNamesAreCutBetweenCharacters)
{
    TTabsWnd other(1, 0, 50);
    std::string name(254, 'a');
    other.AddTab(0, name + "\xC3\xA4", 0, 0);
    AccessibleDescription heard;
    other.Describe(heard);
    EXPECT_EQ(heard.parts.front().name, name);
}

}  // namespace
}  // namespace jotlet
