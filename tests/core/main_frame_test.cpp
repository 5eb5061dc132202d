// The main window by real events: caption buttons, sizes, painting, menus, panes, keys, skins, broadcasts.
#include <unistd.h>

#include <fstream>

#include "module_fixture.h"
#include "platform/base/session.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

class MainFrameTest : public ModuleTest {
protected:
    MainFrameTest()
    {
        Start();
        MoveTo(module->window, Rect::At(60, 40, kFrameSmall.width, kFrameSmall.height));
        BringToForeground(module->window);
        ServeEvents();
    }
    Rect Place() const { return WindowRect(module->window); }
    Point On(CaptionButton button) const
    {
        return InWindow(MiddleOf(CaptionButtonRect({Place().Width(), Place().Height()}, button)));
    }
    Colour InWindowPixel(int x, int y) const { return PixelAt(module->window, InWindow({x, y})); }
    // Presses a caption button, does `whileHeld` in its nested loop, and ends there.
    void Hold(CaptionButton button, const std::function<void()>& whileHeld)
    {
        held = whileHeld;
        helper.Post(kWmCommand, 1, 0);
        TestPress(module->window, On(button));
        ServeEvents();
    }

    // Runs what a test wants to happen inside a nested loop.
    struct Helper : MarlinWnd {
        explicit Helper(std::function<void()>& work) : work(work) { Create(nullptr, kStyleVisible); }
        MessageParam OnCommand(WndMessage&) override
        {
            work();
            return 0;
        }
        std::function<void()>& work;
    };
    std::function<void()> held;
    Helper helper{held};
};

TEST_F(MainFrameTest, HoverShowsWithinATenthOfASecondOrSo)
{
    TestMove(module->window, On(CaptionButton::Close));
    EXPECT_TRUE(
        ServeUntil([this] { return module->GetButtonLook(CaptionButton::Close) == ButtonLook::UnderMouse; }, 1000ms));
    TestMove(module->window, {100, 200});
    EXPECT_TRUE(
        ServeUntil([this] { return module->GetButtonLook(CaptionButton::Close) == ButtonLook::Normal; }, 1000ms));
}

TEST_F(MainFrameTest, APressedButtonActsWhenTheMouseIsStillOnItAndADoubleClickOnTheTitleToggles)
{
    for (const Rect& place : {Rect::At(60, 40, 560, 580), Rect::At(60, 40, 420, 430)}) {
        ButtonLook look{};
        Hold(CaptionButton::Maximise, [&] {
            look = module->GetButtonLook(CaptionButton::Maximise);
            TestRelease(module->window, On(CaptionButton::Maximise));
        });
        EXPECT_EQ(look, ButtonLook::Pressed);
        EXPECT_EQ(Place(), place);
    }
    TestDoubleClick(module->window, InWindow({150, 14}));
    TestRelease(module->window, InWindow({150, 14}));
    ServeEvents();
    EXPECT_EQ(Place(), Rect::At(60, 40, 560, 580));
    Hold(CaptionButton::Close, [&] {
        TestMove(module->window, {100, 200}, true);
        TestRelease(module->window, {100, 200});
    });
    EXPECT_TRUE(Open()) << "released elsewhere";
    EXPECT_EQ(module->GetButtonLook(CaptionButton::Close), ButtonLook::Normal);
    EXPECT_EQ(CapturedWindow(), 0u);
    Hold(CaptionButton::Close, [&] { TestRelease(module->window, On(CaptionButton::Close)); });
    EXPECT_FALSE(Open());
    EXPECT_EQ(MainWindow(), 0u);
}

TEST_F(MainFrameTest, OnlyTheGripSizesTheWindowAndOnlyWithinTheLimits)
{
    for (const Point border : {Point{1, 200}, Point{418, 200}, Point{200, 1}, Point{2, 427}}) {
        TestPress(module->window, InWindow(border));
        TestMove(module->window, InWindow({border.x + 40, border.y + 40}), true);
        TestRelease(module->window, InWindow({border.x + 40, border.y + 40}));
        EXPECT_EQ(Place().Width(), 420) << border;
        EXPECT_EQ(Place().Height(), 430) << border;
    }
    MoveTo(module->window, Rect::At(60, 40, 420, 430));
    TestPress(module->window, InWindow({412, 420}));
    TestMove(module->window, InWindow({452, 440}), true);
    EXPECT_EQ(Place(), Rect::At(60, 40, 460, 450));
    TestMove(module->window, InWindow({2000, 2000}), true);
    EXPECT_EQ(Place(), Rect::At(60, 40, 560, 580));
    TestRelease(module->window, InWindow({2000, 2000}));
}

TEST_F(MainFrameTest, RingsAboutThePaneHaveItsColours)
{
    module->Update();
    EXPECT_EQ(module->Send(kWmSysCommand, kSysKeyMenu, 0) + module->Send(kWmSysCommand, kSysMouseMenu, 0), 0);
    for (const auto& [at, colour] : {std::pair(Point{5, 200}, Colour{45040}),
                                     {{9, 200}, 45040},
                                     {{10, 200}, 32497},
                                     {{16, 200}, 32497},
                                     {{390, 200}, 566775},  // the shadow
                                     {{399, 200}, 32497},
                                     {{404, 200}, 45040},
                                     {{200, 374}, 566775},
                                     {{405, 200}, kUnsetColour},
                                     {InWindow({2, 200}), kUnsetColour}})
        EXPECT_EQ(PixelAt(module->window, at), colour) << at;
}

TEST_F(MainFrameTest, KeysBecomeCommandsOnlyWhereTheyFit)
{
    ASSERT_EQ(GetCurrentPaneIndex(), 1);
    Command(kCommandKeyShowSecondPane);
    EXPECT_EQ(GetCurrentPaneIndex(), 1) << "Alt+2 acts in the first pane alone";
    Command(108);
    EXPECT_EQ(GetCurrentPaneIndex(), 0);
    Command(kCommandKeyCut);
    EXPECT_EQ(module->GetWorkPane().GetList().GetCount(), 4);
    Command(kCommandKeyShowSecondPane);
    EXPECT_EQ(GetCurrentPaneIndex(), 1);
}

TEST_F(MainFrameTest, SwitchingShowsOnePaneAndFocusesIt)
{
    for (const int index : {0, 7}) {
        module->SwitchPane(index, Animate::No);
        EXPECT_EQ(GetCurrentPaneIndex(), 0) << "an index outside stands for the first";
    }
    EXPECT_TRUE(IsVisible(module->GetIntroPane().window));
    EXPECT_FALSE(IsVisible(module->GetWorkPane().window));
    const WindowHandle link = FocusedWindow();
    EXPECT_EQ(ParentOf(link), module->GetIntroPane().window);
    TestKey(link, kKeyTab);
    EXPECT_EQ(FocusedWindow(), module->GetToolBar().window);
    TestKey(FocusedWindow(), kKeyTab, {.shift = true});
    EXPECT_EQ(FocusedWindow(), link);
    module->SwitchPane(1, Animate::No);
    EXPECT_EQ(FocusedWindow(), module->GetWorkPane().GetList().Grid().window);
}

TEST_F(MainFrameTest, ReturnWorksTheBarThatHasTheFocus)
{
    module->SwitchPane(0, Animate::No);
    FocusWindow(module->GetToolBar().window);
    static int shown;
    shown = 0;
    const ScopedMenuAnswer answer([](const std::vector<MenuEntry>& entries) -> std::optional<std::size_t> {
        ++shown;
        EXPECT_EQ(entries.front().text, "&New...\tCtrl+N");
        return std::nullopt;
    });
    Command(kCommandKeyReturn);
    EXPECT_EQ(shown, 1);
}

TEST_F(MainFrameTest, TabGoesFromThePaneThroughTheBarsAndBack)
{
    module->GetWorkPane().OnEntered();
    const WindowHandle list = FocusedWindow();
    std::vector<WindowHandle> visited;
    for (int i = 0; i < 20; ++i) {
        TestKey(FocusedWindow(), kKeyTab);
        if (FocusedWindow() == list)
            break;
        visited.push_back(FocusedWindow());
    }
    EXPECT_EQ(FocusedWindow(), list);
    EXPECT_THAT(visited, testing::Contains(module->GetToolBar().window));
    EXPECT_THAT(visited, testing::Contains(module->GetPaneBar().window));
    TestKey(list, kKeyTab, {.shift = true});
    EXPECT_EQ(FocusedWindow(), visited.back());
}

std::vector<std::string> lastMenu;
std::optional<std::size_t> KeepMenu(const std::vector<MenuEntry>& entries)
{
    lastMenu.clear();
    for (const MenuEntry& entry : entries)
        lastMenu.push_back((entry.checked ? "*" : "") + std::string(entry.greyed ? "-" : "") + entry.text);
    return std::nullopt;
}

TEST_F(MainFrameTest, TheMenusOfferTheirEntriesInOrder)
{
    const ScopedMenuAnswer keep(KeepMenu);
    Command(kCommandFileMenu);
    EXPECT_THAT(lastMenu, ElementsAre("&New...\tCtrl+N", "&Open...\tCtrl+O", "", "&Save As...", "Co&mpact...", "",
                                      "&Import...", "&Export...", "", "&Print Report..\tCtrl+P", "",
                                      "Network P&asswords...", "&Who has this file...", "", "E-Book",
                                      "Marlin &Server Setup", "General O&ptions...", "", "Ski&ns...", "", "&Exit"));
    Command(kCommandHelpMenu);
    EXPECT_THAT(lastMenu, ElementsAre("&Contents...\tF1", "", "&Company Web", "&Pinwell Web", "", "Try Kestrel Planner",
                                      "", "&About..."));
}

TEST_F(MainFrameTest, WebCommandsOpenTheirPages)
{
    Command(kCommandSuiteWeb);
    Command(kCommandCompanyWeb);
    EXPECT_THAT(shell, ElementsAre(testing::HasSubstr("pinwell.example"), testing::HasSubstr("pinwell.example")));
}

TEST_F(MainFrameTest, TheRightButtonListsTheSkinsAndTheChosenOneChangesTheLook)
{
    const auto pressRight = [this] { TestPress(module->window, {2, 390}, true); };
    lastMenu = {"untouched"};
    {
        const ScopedMenuAnswer keep(KeepMenu);
        pressRight();
        EXPECT_THAT(lastMenu, ElementsAre("untouched")) << "without skins there is no menu";
        std::filesystem::create_directory(folder.File("Styles"));
        test::WriteAll(folder.File("Styles/1_Metallic.ini"),
                       "[Preference]\nname=Metallic\ncolorFrame=1,2,3\ncolorBack=4,5,6\ncolorTextTitle=9,9,9\n");
        test::WriteAll(folder.File("Styles/2_Dark.ini"),
                       "[Preference]\nname=R & "
                       "D\ncolorFrame=255,0,128\ncolorBack=300,0,0\ncolorFrameDown=7,8,9\nbmpTitle=missing.bmp\n");
        pressRight();
        EXPECT_THAT(lastMenu, ElementsAre("*-Metallic", "R && D"));
        TestPress(module->GetPaneBar().window, {300, 10}, true);
        EXPECT_THAT(lastMenu, ElementsAre("*-Metallic", "R && D"));
    }
    const ScopedMenuAnswer second([](const auto&) -> std::optional<std::size_t> { return 1; });
    const auto receiver = BroadcastReceiver::Open(
        [this](const BroadcastMessage& m) { module->Send(kUniqueMessage, static_cast<MessageParam>(m.code), 0); });
    pressRight();
    ServeEvents();
    EXPECT_EQ(SuiteSetting("CurrSkin"), "2_Dark.ini");
    ASSERT_EQ(receiver->Dispatch(), 1);
    module->Update();
    EXPECT_EQ(InWindowPixel(2, 200), 0x8000FFu);
    EXPECT_EQ(InWindowPixel(200, kFrameSmall.height - 1), 0x090807u) << "the outline at the bottom";
    EXPECT_EQ(InWindowPixel(kFrameSmall.width - 1, 200), 0x090807u);
    EXPECT_EQ(PixelAt(module->window, {408, 200}), 0x00002Cu) << "the low 8 bits count";
    EXPECT_EQ(LoadSkin().colorTextTitle, 0u) << "kept from before, where the skin gives none";
}

TEST_F(MainFrameTest, ChangedSettingsOfAnotherCopyAreTakenOver)
{
    SetSuite("Sound", "0");
    SetSuite("Annimation", "1");
    module->Send(kUniqueMessage, kBroadcastSettingsChanged, static_cast<MessageParam>(module->window));
    EXPECT_EQ(IsSoundEnabled(), 1) << "its own message says nothing new";
    module->Send(kUniqueMessage, kBroadcastSettingsChanged, 0);
    EXPECT_EQ(IsSoundEnabled(), 0);
    EXPECT_EQ(IsAnimationEnabled(), 1);
    EXPECT_EQ(module->Send(kUniqueMessage, 777, 0), 0);
    Minimise(module->window);
    module->Send(kUniqueMessage, kBroadcastComeUp, 0);
    EXPECT_TRUE(ServeUntil([this] { return IsForeground(module->window); }, Milliseconds(1000)));
}

std::size_t OpenHandles()
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// Memory of this process that is no file's, in megabytes.
double OwnMemory()
{
    std::int64_t whole = 0;
    std::int64_t resident = 0;
    std::int64_t shared = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident >> shared;
    return static_cast<double>((resident - shared) * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

TEST_F(MainFrameTest, PaneSwitchesAndRepaintsCostNoHandlesAndNoMemory)
{
    const auto work = [this](int switches, int repaints) {
        for (int i = 0; i < switches; ++i)
            module->SwitchPane(i % 2, Animate::No);
        for (int i = 0; i < repaints; ++i) {
            module->GetWorkPane().GetList().Grid().Invalidate(nullptr, 1);
            module->Invalidate(nullptr, 1);
            module->Update();
        }
        ServeEvents();
    };
    work(20, 50);
    const std::size_t handles = OpenHandles();
    [[maybe_unused]] const double memory = OwnMemory();
    work(200, 10000);
    EXPECT_EQ(OpenHandles(), handles);
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed
    EXPECT_LT(OwnMemory() - memory, 1.0);
#endif
}

}  // namespace
}  // namespace jotlet
