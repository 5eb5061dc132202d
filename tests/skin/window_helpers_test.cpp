#include "skin/window_helpers.h"

#include <filesystem>
#include <fstream>

#include "platform/base/paths.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
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
    ~HelpersTest() override
    {
        SetProgramPath({});
        SetSoundEnabled(1);
        SetAnimationEnabled(1);
    }
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

TEST_F(HelpersTest, AMissingHelpPageIsTold)
{
    ScopedAnswers boxes;
    OpenHelpPage("notes.htm", true);
    EXPECT_THAT(boxes.texts, ElementsAre("Help file '" + folder.File("Help/notes.htm") + "'\r\ndoes not exist."));
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(HelpersTest, AHelpPageOpensEitherWay)
{
    std::filesystem::create_directory(folder.File("Help"));
    std::ofstream(folder.File("Help/notes.htm")) << "<p>";
    OpenHelpPage("notes.htm", true);
    OpenHelpPage("notes.htm", false);
    EXPECT_THAT(calls, testing::Each("open " + folder.File("Help/notes.htm")));
    EXPECT_EQ(calls.size(), 2u);
}

TEST_F(HelpersTest, MailGoesToTheAddressOrToNobody)
{
    OpenMail("someone@pinwell.example");
    OpenMail("");
    EXPECT_THAT(calls, ElementsAre("open mailto:someone@pinwell.example", "open mailto:"));
}

TEST_F(HelpersTest, SoundsLieBesideTheProgramAndCanBeSwitchedOff)
{
    PlaySoundFile("add.wav");
    EXPECT_THAT(calls, ElementsAre("play " + folder.File("add.wav")));
    SetSoundEnabled(0);
    PlaySoundFile("add.wav");
    EXPECT_EQ(calls.size(), 1u);
}

TEST_F(HelpersTest, WithAnimationOffAPaneChangeIsSilent)
{
    PlayPaneChange({0, 0, 100, 30}, {0, 0, 50, 20});
    EXPECT_THAT(calls, ElementsAre("play " + folder.File("chpane.wav")));
    SetAnimationEnabled(0);
    PlayPaneChange({0, 0, 100, 30}, {0, 0, 50, 20});
    PlayOpenZoom(0, 0, 100, 100);
    EXPECT_EQ(calls.size(), 1u);
}

TEST_F(HelpersTest, AFontIsMadeOncePerWeight)
{
    const Font& plain = SmallFont(400);
    const Font& bold = SmallFont(700);
    EXPECT_NE(&plain, &bold);
    EXPECT_EQ(&plain, &SmallFont(400));
    EXPECT_NE(&plain, &SmallLinkFont(400));
    EXPECT_NE(&SansFont(400), &ArialFont(400));
}

}  // namespace
}  // namespace jotlet
