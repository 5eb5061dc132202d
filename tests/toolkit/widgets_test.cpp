// The basics of the small widgets, a row of a table each: what a user's steps tell the parent, what a screen reader
// finds, how the focus is seen, how much fits in.
#include "platform/base/paths.h"
#include "resources/command_ids.h"
#include "support/temp_folder.h"
#include "toolkit/fly_menu.h"
#include "toolkit/marlin_class_link_button.h"
#include "toolkit/marlin_class_to_do_priority.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/marlin_pane_bar.h"
#include "toolkit/marlin_slide_bar.h"
#include "toolkit/marlin_tool_bar.h"
#include "toolkit/pane_list.h"
#include "toolkit/tabs_wnd.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using Made = std::unique_ptr<MarlinWnd>;
struct Widget {
    const char* name;
    Made (*make)();
    Rect bounds;
};

template <int kRange>
Made MakeSlide()
{
    return std::make_unique<MarlinSlideBar>(6, kRange, 0x808080);
}
Made MakeTabs()
{
    auto tabs = std::make_unique<TTabsWnd>(103, 0xC0FFFF, 50);
    tabs->AddTab(0, "Title", 212, 0xFFFFFF);
    tabs->AddTab(1, "Date", 45040, 0xFFFFFF);
    return tabs;
}
Made MakeTools()
{
    auto bar = std::make_unique<MarlinToolBar>();
    bar->AddItem(1005, 2000, 3004, 1);
    bar->AddItem(1001, 2001, 3000, 0);
    bar->AddItem(1002, 2002, 3001, 0);
    return bar;
}

const Widget kLink{"link", [] { return Made(new MarlinClassLinkButton(9, "Home page", 0xFFFFFF, 1, 2, 0)); },
                   Rect::At(0, 0, 120, 18)};
const Widget kLetters{"letters", [] { return Made(new MarlinClassToDoPriority(108, 'a', 'z', 0xC0FFFF)); },
                      Rect::At(0, 0, 100, 185)};
const Widget kTabs{"tabs", MakeTabs, Rect::At(10, 100, 200, 20)};
const Widget kTools{"tool bar", MakeTools, Rect::At(5, 26, 390, 25)};
const Widget kPanes{"pane bar", [] { return Made(new MarlinPaneBar); }, Rect::At(1, 0, 398, 25)};
const Widget kSlide{"slide bar", MakeSlide<11>, Rect::At(0, 0, 20, 200)};
const Widget kSlideOfOne{"slide bar of one", MakeSlide<1>, Rect::At(0, 0, 20, 200)};
const Widget kSlideOfNone{"empty slide bar", MakeSlide<0>, Rect::At(0, 0, 20, 200)};

// What a user does, and what the parent hears of it.
struct Step {
    enum { Press, Drag, Release, Key } what;
    Point at;
    int key = 0;
    Commands told;
    bool captured = false;  // the mouse, after the step
};
Step Press(Point p, Commands told = {})
{
    return {Step::Press, p, 0, std::move(told)};
}
Step Grab(Point p, Commands told = {})
{
    return {Step::Press, p, 0, std::move(told), true};
}
Step Drag(Point p, Commands told = {})
{
    return {Step::Drag, p, 0, std::move(told), true};
}
Step Release(Point p, Commands told = {})
{
    return {Step::Release, p, 0, std::move(told)};
}
Step Key(int key, Commands told = {})
{
    return {Step::Key, {}, key, std::move(told)};
}

class WidgetsTest : public WindowTest {
protected:
    WidgetsTest() { test::UsePortableProgram(folder.Path()); }
    ~WidgetsTest() override { SetProgramPath(""); }
    Made Show(const Widget& one)
    {
        Made widget = one.make();
        host.Hold(*widget, one.bounds);
        return widget;
    }
    static void Do(MarlinWnd& widget, const Step& step)
    {
        if (step.what == Step::Press)
            TestPress(widget.window, step.at);
        else if (step.what == Step::Drag)
            TestMove(widget.window, step.at, true);
        else if (step.what == Step::Release)
            TestRelease(widget.window, step.at);
        else
            TestKey(widget.window, step.key);
    }
    static std::vector<Colour> Picture(MarlinWnd& widget)
    {
        std::vector<Colour> pixels;
        PixelsWhere(widget, [&](Colour c) { return pixels.push_back(c), false; });
        return pixels;
    }

    test::TempFolder folder;
    MarlinPane intro{{.barColour = 0x0000D4, .barTextColour = 0xFFFFFF}, "Intro"};
    MarlinPane work{{.barColour = 0x0000D4, .barTextColour = 0xFFFFFF}, "Work"};
    Host host;
};

TEST_F(WidgetsTest, TheParentHearsWhatTheUserDoes)
{
    const struct {
        const Widget& widget;
        std::vector<Step> steps;
    } rows[] = {
        {kLink, {Grab({10, 9}), Release({10, 9}, {{9, 0, 0}})}},
        {kLink, {Grab({10, 9}), Drag({10, 90}), Release({10, 90})}},
        {kLink, {Grab({10, 9}), Drag({10, 90}), Drag({10, 9}), Release({10, 9}, {{9, 0, 0}})}},
        {kLetters, {Press({47, 28}, {{108, 'h', 0}}), Release({47, 28}), Press({18, 5}), Release({18, 5})}},
        {kLetters,
         {Key(kKeyRight), Key(kKeyDown), Key(kKeySpace, {{108, 'g', 0}}), Key(kKeyEnd), Key(kKeyDown),
          Key(kKeyReturn, {{108, 'z', 0}}), Key('M', {{108, 'm', 0}})}},
        {kTabs, {Press({20, 10}), Press({2, 10}), Press({150, 10}), Press({70, 10}, {{103, 1, 0}})}},
        {kTabs, {Key(kKeyLeft), Key(kKeyRight, {{103, 1, 0}}), Key(kKeyRight), Key(kKeyHome, {{103, 0, 0}})}},
        {kTools, {Press({380, 12}), Release({380, 12})}},
        {kTools,
         {Key(kKeyRight), Key(kKeySpace, {{1001, 0, 0}}), Key(kKeyEnd), Key(kKeyReturn, {{1002, 0, 0}}), Key(kKeyRight),
          Key(kKeyDown, {{1005, 0, 0}})}},
        {kPanes, {Press({40, 12}), Press({77, 12}), Press({190, 12})}},
        {kPanes, {Key(kKeyLeft), Key(kKeyRight, {{kCommandShowPane, 1, 0}})}},
        {kSlide,
         {Grab({10, 100}, {{6, 5, 0}}), Drag({10, 5000}, {{6, 10, 0}}), Drag({10, -300}, {{6, 0, 0}}),
          Release({10, -300})}},
        {kSlideOfOne, {Press({10, 150}), Release({10, 150})}},
        {kSlideOfNone, {Press({10, 150}), Release({10, 150})}},
    };
    for (const auto& row : rows) {
        const Made widget = Show(row.widget);
        FocusWindow(widget->window);
        for (std::size_t i = 0; i < row.steps.size(); ++i) {
            Do(*widget, row.steps[i]);
            EXPECT_EQ(CapturedWindow() == widget->window, row.steps[i].captured) << row.widget.name << ", step " << i;
            EXPECT_EQ(host.Take(), row.steps[i].told) << row.widget.name << ", step " << i;
        }
        EXPECT_EQ(FocusedWindow(), widget->window) << row.widget.name;
    }
}

TEST_F(WidgetsTest, AScreenReaderFindsNamesAndWhatIsChosen)
{
    const struct {
        const Widget& widget;
        int key;
        AccessibleRole role;
        std::size_t parts;
        std::string named;  // name of the widget, or of its second part
        std::string selected;
    } rows[] = {
        {kLink, 0, AccessibleRole::Button, 0, "Home page", ""},
        {kLetters, 'K', AccessibleRole::ToolBar, 26, "b", "k"},
        {kTabs, kKeyRight, AccessibleRole::TabList, 2, "Date", "Date"},
        {kTools, 0, AccessibleRole::ToolBar, 3, "New", ""},
        {kPanes, 0, AccessibleRole::TabList, 2, "Work", "Intro"},
        {kSlide, 0, AccessibleRole::Slider, 0, "Row 1 of 11", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.widget.name);
        const Made widget = Show(row.widget);
        FocusWindow(widget->window);
        if (row.key)
            TestKey(widget->window, row.key);
        const AccessibleDescription heard = DescriptionOf(*widget);
        EXPECT_EQ(heard.role, row.role);
        ASSERT_EQ(heard.parts.size(), row.parts);
        EXPECT_EQ(row.parts ? heard.parts[1].name : heard.name, row.named);
        std::string selected;
        for (const AccessiblePart& part : heard.parts)
            selected += part.selected ? part.name : "";
        EXPECT_EQ(selected, row.selected);
    }
}

TEST_F(WidgetsTest, TheFocusIsSeen)
{
    for (const Widget* one : {&kLink, &kLetters, &kTabs, &kTools, &kPanes}) {
        const Made widget = Show(*one);
        FocusWindow(host.window);
        const auto without = Picture(*widget);
        FocusWindow(widget->window);
        EXPECT_NE(Picture(*widget), without) << one->name;
        FocusWindow(host.window);
        EXPECT_EQ(Picture(*widget), without) << one->name;
    }
}

TEST_F(WidgetsTest, WhatIsHeldLooksSoUntilTheMouseIsTakenAway)
{
    const std::pair<const Widget&, Point> rows[] = {{kLink, {10, 9}}, {kTools, {90, 12}}, {kSlide, {10, 10}}};
    for (const auto& [one, at] : rows) {
        const Made widget = Show(one);
        const auto free = Picture(*widget);
        TestPress(widget->window, at);
        EXPECT_NE(Picture(*widget), free) << one.name;
        SendTo(widget->window, kWmCaptureLost, 0, 0);
        EXPECT_EQ(Picture(*widget), free) << one.name;
        TestRelease(widget->window, at);
        EXPECT_EQ(host.Take(), Commands{}) << one.name;
    }
}

}  // namespace
}  // namespace jotlet
