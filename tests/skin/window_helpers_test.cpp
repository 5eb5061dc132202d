#include "skin/window_helpers.h"

#include <filesystem>

#include "platform/base/paths.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/system_metrics.h"
#include "skin/animations.h"
#include "skin/fonts.h"
#include "skin/sound.h"
#include "support/temp_folder.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Rect kDesktop{0, 0, 1000, 800};

TEST(CentredPlaceTest, TheMiddleIsKeptOnTheDesktop)
{
    struct Case {
        Rect owner;
        Size window;
        Point place;
    };
    for (const Case& c : {Case{{100, 100, 500, 400}, {200, 100}, {200, 200}},
                          Case{{100, 100, 501, 401}, {201, 101}, {200, 200}},   // halves are cut
                          Case{{900, 700, 1000, 800}, {400, 300}, {600, 500}},  // back from right and bottom
                          Case{{-300, -300, 0, 0}, {400, 300}, {0, 0}},         // never off the left top
                          Case{{100, 100, 200, 200}, {3000, 2000}, {0, 0}}}) {  // larger than the desktop
        EXPECT_EQ(CentredPlace(c.owner, c.window, kDesktop), c.place) << c.owner << ' ' << c.window;
    }
}

class HelpersTest : public WindowTest {
protected:
    HelpersTest()
    {
        test::UsePortableProgram(folder.Path());
        SetSoundEnabled(1);
        SetAnimationEnabled(1);
    }
    ~HelpersTest() override { SetProgramPath({}); }
    test::TempFolder folder;
    std::vector<std::string> calls;
    ScopedShellHook shell{[this](std::string_view verb, std::string_view target) {
        calls.push_back(std::string(verb) + ' ' + std::string(target));
    }};
};

TEST_F(HelpersTest, MessagesComeFromTheStringTable)
{
    ScopedAnswers boxes({Answer::Ok, Answer::Yes, Answer::No});
    ShowMessage(0, 2010);
    EXPECT_TRUE(AskYesNo(0, 2011));
    EXPECT_FALSE(AskYesNo(0, 2012));
    EXPECT_THAT(boxes.texts, ElementsAre("January", "February", "March"));
}

TEST_F(HelpersTest, AWindowIsCentredOverItsOwner)
{
    RegisterWindowClass({.procedure = DefaultProcedure, .name = "TestCentred"});
    const WindowHandle owner = CreateNativeWindow("TestCentred", "", 0, Rect::At(100, 100, 300, 200), 0);
    const WindowHandle window = CreateNativeWindow("TestCentred", "", 0, Rect::At(0, 0, 100, 80), 0);
    CentreOver(owner, window);
    EXPECT_EQ(WindowRect(window), Rect::At(200, 160, 100, 80));
    DestroyNativeWindow(owner);
    CentreOver(owner, window);
    const Rect desktop = DesktopRect({200, 160});
    EXPECT_EQ(WindowRect(window), Rect::At(desktop.Width() / 2 - 50, desktop.Height() / 2 - 40, 100, 80));
    DestroyNativeWindow(window);
}

TEST_F(HelpersTest, HelpAndMailAreOpenedAndAMissingPageIsTold)
{
    const std::string page = folder.File("Help/notes.htm");
    ScopedAnswers boxes;
    OpenHelpPage("notes.htm", true);
    EXPECT_THAT(boxes.texts, ElementsAre("Help file '" + page + "'\r\ndoes not exist."));
    EXPECT_THAT(calls, IsEmpty());
    std::filesystem::create_directory(folder.File("Help"));
    test::WriteAll(page, "<p>");
    OpenHelpPage("notes.htm", true);
    OpenHelpPage("notes.htm", false);
    OpenMail("someone@pinwell.example");
    EXPECT_THAT(calls, ElementsAre("open " + page, "open " + page, "open mailto:someone@pinwell.example"));
}

TEST_F(HelpersTest, SoundsLieBesideTheProgramAndCanBeSwitchedOff)
{
    PlaySoundFile("add.wav");
    PlayPaneChange({0, 0, 100, 30}, {0, 0, 50, 20});
    EXPECT_THAT(calls, ElementsAre("play " + folder.File("add.wav"), "play " + folder.File("chpane.wav")));
    SetAnimationEnabled(0);
    PlayPaneChange({0, 0, 100, 30}, {0, 0, 50, 20});
    SetSoundEnabled(0);
    PlaySoundFile("add.wav");
    EXPECT_EQ(calls.size(), 2u);
}

TEST_F(HelpersTest, AFontIsMadeOncePerWeight)
{
    EXPECT_NE(&SmallFont(400), &SmallFont(700));
    EXPECT_EQ(&SmallFont(400), &SmallFont(400));
    EXPECT_NE(&SmallFont(400), &SmallLinkFont(400));
    EXPECT_NE(&SansFont(400), &ArialFont(400));
}

}  // namespace
}  // namespace jotlet
