#include "toolkit/focus_order.h"

#include "platform/desktop/dialog.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "toolkit/date_dialog.h"
#include "toolkit/marlin_class_link_button.h"
#include "widget_host.h"

namespace jotlet {
namespace {

class FocusOrderTest : public WindowTest {
protected:
    FocusOrderTest()
    {
        for (MarlinWnd* link :
             {static_cast<MarlinWnd*>(&a), static_cast<MarlinWnd*>(&b), static_cast<MarlinWnd*>(&c)}) {
            host.Hold(*link, Rect::At(0, 30 * static_cast<int>(host.stops.size()), 80, 20));
            host.stops.push_back(link);
        }
        FocusWindow(a.window);
    }
    WindowHandle Tab(bool back = false)
    {
        TestKey(FocusedWindow(), kKeyTab, {.shift = back});
        return FocusedWindow();
    }
    Host host;
    MarlinClassLinkButton a{1, "a", 0xFFFFFF, 0, 0, 0};
    MarlinClassLinkButton b{2, "b", 0xFFFFFF, 0, 0, 0};
    MarlinClassLinkButton c{3, "c", 0xFFFFFF, 0, 0, 0};
};

TEST_F(FocusOrderTest, TabWalksRoundAndShiftTabBack)
{
    EXPECT_EQ(Tab(), b.window);
    EXPECT_EQ(Tab(), c.window);
    EXPECT_EQ(Tab(), a.window);
    EXPECT_EQ(Tab(true), c.window);
    EXPECT_EQ(Tab(true), b.window);
    FocusWindow(host.window);
    EXPECT_EQ(Tab(), a.window) << "from a window that is no stop";
    FocusWindow(host.window);
    EXPECT_EQ(Tab(true), c.window);
    b.Hide();
    EXPECT_EQ(Tab(), a.window);
    EXPECT_EQ(Tab(), c.window) << "hidden and disabled windows are passed over";
    EnableNative(a.window, false);
    EXPECT_EQ(Tab(), c.window) << "nowhere else to go";
    EnableNative(a.window, true);
    EXPECT_EQ(Tab(), a.window);
}

TEST_F(FocusOrderTest, InADialogTabReachesButtonsAndWidgets)
{
    SetAnimationEnabled(0);
    DateValue date{5, 3, 2000};
    DateDialog dialog(5, 3, 2000, &date);
    std::vector<std::string> classes;
    WhenModalHasFocus([&](WindowHandle window) {
        for (int i = 0; i < 8; ++i) {
            classes.push_back(ClassNameOf(FocusedWindow()));
            TestKey(FocusedWindow(), kKeyTab);
        }
        EndModal(window, 0);
    });
    dialog.DoModal(&host, date_picker_ids::kDialog);
    SetAnimationEnabled(1);
    EXPECT_THAT(classes, testing::Contains("MarlinCalMonth"));
    EXPECT_THAT(classes, testing::Contains("TFlyMenu").Times(2));
    EXPECT_THAT(classes, testing::Contains("MarlinSpinButton").Times(3));
    EXPECT_THAT(classes, testing::Contains("Button").Times(2));
}

}  // namespace
}  // namespace jotlet
