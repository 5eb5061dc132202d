#include "toolkit/focus_order.h"

#include "platform/desktop/dialog.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "toolkit/date_dialog.h"
#include "toolkit/marlin_class_link_button.h"
#include "widget_host.h"

namespace jotlet {
namespace {

TEST_F(WindowTest, TabWalksRoundAndShiftTabBackPastWhatTakesNoFocus)
{
    Host host;
    std::vector<std::unique_ptr<MarlinClassLinkButton>> links;
    for (int i = 0; i < 3; ++i) {
        links.push_back(std::make_unique<MarlinClassLinkButton>(i, "link", 0xFFFFFF, 0, 0, 0));
        host.Hold(*links.back(), Rect::At(0, 30 * i, 80, 20));
        host.stops.push_back(links.back().get());
    }
    // Where the focus goes from `from` (-1: from a window that is no stop); 'x' elsewhere.
    const auto tab = [&](int from, bool back) {
        FocusWindow(from < 0 ? host.window : links[static_cast<std::size_t>(from)]->window);
        TestKey(FocusedWindow(), kKeyTab, {.shift = back});
        for (char name = 'a'; name <= 'c'; ++name) {
            if (FocusedWindow() == links[static_cast<std::size_t>(name - 'a')]->window)
                return name;
        }
        return 'x';
    };
    const auto walk = [&](bool back) { return std::string{tab(-1, back), tab(0, back), tab(1, back), tab(2, back)}; };
    EXPECT_EQ(walk(false), "abca");
    EXPECT_EQ(walk(true), "ccab");
    links[1]->Hide();
    EXPECT_EQ(tab(0, false), 'c');
    EnableNative(links[0]->window, false);
    EXPECT_EQ(tab(2, false), 'c') << "nowhere else to go";
}

TEST_F(WindowTest, InADialogTabReachesButtonsAndWidgets)
{
    Host host;
    SetAnimationEnabled(0);
    DateValue date{5, 3, 2000};
    DateDialog dialog(5, 3, 2000, &date);
    std::multiset<std::string> classes;
    WhenModalHasFocus([&](WindowHandle window) {
        for (int i = 0; i < 8; ++i) {
            classes.insert(ClassNameOf(FocusedWindow()));
            TestKey(FocusedWindow(), kKeyTab);
        }
        EndModal(window, 0);
    });
    dialog.DoModal(&host, date_picker_ids::kDialog);
    SetAnimationEnabled(1);
    EXPECT_EQ(classes, (std::multiset<std::string>{"Button", "Button", "MarlinCalMonth", "MarlinSpinButton",
                                                   "MarlinSpinButton", "MarlinSpinButton", "TFlyMenu", "TFlyMenu"}));
}

}  // namespace
}  // namespace jotlet
