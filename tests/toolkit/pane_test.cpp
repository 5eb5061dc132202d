// The pane list, the pane bar and the Intro pane.
#include "platform/base/paths.h"
#include "platform/desktop/shell.h"
#include "resources/command_ids.h"
#include "skin/skin_bitmaps.h"
#include "support/temp_folder.h"
#include "toolkit/intro_pane.h"
#include "toolkit/marlin_pane_bar.h"
#include "toolkit/pane_list.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A pane that keeps what is posted to it.
class ListeningPane : public MarlinPane {
public:
    explicit ListeningPane(const std::string& name) : MarlinPane({.backColour = 0x43E7FF}, name) {}
    MessageParam OnCommand(WndMessage& record) override
    {
        commands.push_back({LowWord(record.wParam), record.lParam, HighWord(record.wParam)});
        return 0;
    }
    Commands commands;
};

class PaneTest : public WindowTest {
protected:
    PaneTest() { test::UsePortableProgram(folder.Path()); }  // no skin: nothing but the program's own pictures
    ~PaneTest() override
    {
        FreeSkin();
        SetProgramPath("");
    }

    test::TempFolder folder;
    Host host;
    ListeningPane intro{"Intro"};
    ListeningPane work{"Work"};
};

TEST_F(PaneTest, TheListKnowsPanesByOrderAndByExactName)
{
    EXPECT_EQ(GetCurrentPane(), &intro);
    EXPECT_EQ(SetCurrentPaneIndex(1), 1);
    EXPECT_EQ(GetCurrentPane(), &work);
    EXPECT_EQ(SetCurrentPaneIndex(-1) + SetCurrentPaneIndex(2), 0);
    EXPECT_EQ(GetCurrentPaneIndex(), 1);
    std::vector<std::unique_ptr<ListeningPane>> many;
    for (int i = 2; i <= kMaxPanes; ++i)
        many.push_back(std::make_unique<ListeningPane>("p" + std::to_string(i)));
    EXPECT_EQ(GetCurrentPaneIndex(), 0) << "a new pane makes the first current";
    EXPECT_EQ(GetPaneCount(), kMaxPanes);
    EXPECT_EQ(FindPane("p100"), nullptr);
    EXPECT_EQ(FindPane("p99"), many[97].get());
    EXPECT_EQ(FindPane("P99"), nullptr);
    SetCurrentPaneIndex(2);
    many.clear();
    EXPECT_EQ(GetPaneCount(), 2);
    EXPECT_EQ(GetCurrentPane(), &intro);
}

TEST_F(PaneTest, ACommandIsPostedToAPaneByName)
{
    host.Hold(work, Rect::At(0, 0, 50, 50));
    EXPECT_EQ(PostToPane("Work", {0, kWmCommand, 1002, 7}), 1);
    EXPECT_THAT(work.commands, IsEmpty());
    ServeEvents();
    EXPECT_THAT(work.commands, ElementsAre(Command{1002, 7, 0}));
    EXPECT_EQ(PostToPane("Elsewhere", {0, kWmCommand, 1002, 7}), 0);
    EXPECT_FALSE(IsVisible(work.window));
    work.Show();
    work.Update();
    EXPECT_EQ(PixelAt(work.window, {20, 20}), 0x43E7FFu) << "a pane fills itself with its colour";
}

TEST_F(PaneTest, APressSendsTheIndexAndShowsTheButtonDownBeforeThePaneChanges)
{
    MarlinPaneBar bar;
    host.Hold(bar, Rect::At(1, 0, 398, 25));
    EXPECT_EQ(PaneButtonRect({398, 25}, 1), Rect::At(79, 4, 72, 16));
    const Point spot{84, 8};
    bar.Update();
    EXPECT_EQ(PixelAt(bar.window, {300, 12}), kUnsetColour) << "without a skin";
    const Colour up = PixelAt(bar.window, spot);
    Colour whileSent = 0;
    int currentWhileSent = -1;
    host.onCommand = [&](WndMessage&) {
        whileSent = PixelAt(bar.window, spot);
        currentWhileSent = GetCurrentPaneIndex();
    };
    TestPress(bar.window, {115, 12});
    EXPECT_THAT(host.commands, ElementsAre(Command{kCommandShowPane, 1, 0}));
    EXPECT_NE(whileSent, up);
    EXPECT_EQ(currentWhileSent, 0) << "only the frame changes the pane";
}

TEST_F(PaneTest, TheIntroLaysOutItsPartsAndItsLinkOpensAPage)
{
    const IntroLayout layout = LayOutIntro({371, 307});
    EXPECT_EQ(layout.picture, Rect::At(0, 26, 140, 250));
    EXPECT_EQ(layout.text, Rect::At(150, 55, 211, 242));
    EXPECT_EQ(layout.title, (Rect{150, 35, 371, 54}));

    std::vector<std::string> opened;
    const ScopedShellHook hook([&](std::string_view verb, std::string_view target) {
        opened.push_back(std::string(verb) + " " + std::string(target));
    });
    const std::string page = folder.File("Help/kestrel.htm");
    std::filesystem::create_directories(folder.File("Help"));
    test::WriteAll(page, "<html></html>");
    IntroPane pane{{.backColour = 0x43E7FF}, "Intro", "Jotlet"};
    host.Hold(pane, Rect::At(0, 0, 371, 307));
    pane.Show();
    pane.Update();
    EXPECT_EQ(PixelAt(pane.window, {145, 150}), 0x43E7FFu);
    auto& text = dynamic_cast<IntroText&>(
        *MarlinWnd::FromHandle(WindowFromScreenPoint(ClientToScreen(pane.window, {200, 100}))));
    const Rect link = text.GetLinkArea();
    for (const Point beside :
         {Point{link.left - 1, link.top + 2}, {link.left + 2, link.top - 1}, {link.left + 2, link.bottom}})
        TestPress(text.window, beside);
    EXPECT_THAT(opened, IsEmpty());
    TestPress(text.window, {link.left, link.top});
    pane.OnEntered();
    EXPECT_EQ(FocusedWindow(), text.window);
    TestKey(text.window, kKeyReturn);
    EXPECT_THAT(opened, ElementsAre("open " + page, "open " + page));
}

}  // namespace
}  // namespace jotlet
