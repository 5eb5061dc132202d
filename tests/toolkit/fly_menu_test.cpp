#include "toolkit/fly_menu.h"
#include "platform/desktop/menu.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::IsEmpty;

class FlyMenuTest : public WindowTest {
protected:
    FlyMenuTest()
    {
        menu.AddTextEntry("All", 500);
        menu.AddStringEntry(-1, -1);
        menu.AddTextEntry("Salt & pepper", 501);
        menu.AddStringEntry(2010, 502);  // January
        host.Hold(menu, Rect::At(0, 0, 100, 15));
    }
    Host host;
    TFlyMenu menu{0x0000D4, 0xFFFFFF, 0};
    static inline std::vector<MenuEntry> shown;
};

TEST_F(FlyMenuTest, AChosenEntryIsShownAndToldWithItsText)
{
    const ScopedMenuAnswer third([](const std::vector<MenuEntry>& entries) {
        shown = entries;
        return std::optional<std::size_t>(3);
    });
    std::string text;
    host.onCommand = [&](WndMessage& record) { text = reinterpret_cast<const char*>(record.lParam); };
    TestClick(menu.window, {5, 7});
    const Commands told = host.Take();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].id, 502);
    EXPECT_EQ(text, "January");
    EXPECT_EQ(menu.ShownText(), "January");
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[1].text, "") << "a separator";
    EXPECT_EQ(shown[2].text, "Salt && pepper") << "no access key hides in a name";
}

TEST_F(FlyMenuTest, OnlyTheHotAreaOpensItAndTheKeyboardFromAnywhere)
{
    const ScopedMenuAnswer first([](const std::vector<MenuEntry>&) { return std::optional<std::size_t>(0); });
    TestClick(menu.window, {10, 7});
    EXPECT_THAT(host.Take(), IsEmpty());
    TestClick(menu.window, {9, 7});
    EXPECT_EQ(host.Take().size(), 1u);
    for (const int key : {kKeySpace, kKeyReturn, kKeyDown, kKeyMenu}) {
        TestKey(menu.window, key);
        EXPECT_EQ(host.Take().size(), 1u) << key;
    }
}

TEST_F(FlyMenuTest, ShowEntryKnowsItsCommandsAlone)
{
    menu.ShowEntry(501);
    EXPECT_EQ(menu.ShownText(), "Salt & pepper");
    menu.ShowEntry(9);
    menu.ShowEntry(-1);
    EXPECT_EQ(menu.ShownText(), "Salt & pepper");
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
