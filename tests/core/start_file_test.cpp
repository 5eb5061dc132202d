// Which file the program starts with, and where the window stood.
#include "core/start_file.h"
#include "core/frame_geometry.h"
#include "core/old_place.h"
#include "core/placement.h"
#include "core_fixture.h"
#include "platform/base/session.h"

namespace jotlet {
namespace {

class StartFileTest : public CoreTest {
protected:
    StartFile Find(const std::string& commandLine = "") { return FindStartFile(commandLine, "jot"); }
};

TEST_F(StartFileTest, TheFirstRunMakesAFileNamedAfterTheProgramInSmallLetters)
{
    test::UsePortableProgram(folder.Path(), "JotLet.bin");
    const StartFile start = Find();
    EXPECT_EQ(start.source, StartSource::FirstRun);
    EXPECT_EQ(start.path, folder.File("Works/jotlet.jot"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("Works")));
}

TEST_F(StartFileTest, ADefaultFileThatIsThereWithoutASettingIsLeftToTheUser)
{
    MakeNotes("jotlet.jot");
    EXPECT_EQ(Find().source, StartSource::AskUser);
}

TEST_F(StartFileTest, LaterRunsOpenTheLastFileIfItIsStillThere)
{
    const std::string path = MakeNotes("mine.jot");
    StoreDefaultFile(path);
    EXPECT_EQ(Find().source, StartSource::Default);
    EXPECT_EQ(Find().path, path);
    std::filesystem::remove(path);
    EXPECT_EQ(Find().source, StartSource::AskUser);
    EXPECT_EQ(Find().path, path) << "for the message";
}

// Once everything lay beside the program; a build cleaned it away.
TEST_F(StartFileTest, WhatLiesBesideTheProgramIsTakenOverOnceByCopying)
{
    const std::string old = MakeNotes("mine.jot");
    test::WriteAll(old + ".tsi", "people");
    GetModuleIniPath().IniWriteText("Preference", "DefaulFile", old);
    SetSuite("CurrSkin", "5_Meadow.ini");
    std::filesystem::remove(folder.File("portable"));
    SetProgramPath(folder.File("jotlet"));
    const std::string data = folder.File("data/Jotlet/");

    TakeOverOldPlace();
    EXPECT_EQ(Find().path, data + "Works/mine.jot");
    EXPECT_EQ(test::ReadAll(data + "Works/mine.jot"), test::ReadAll(old));
    EXPECT_EQ(test::ReadAll(data + "Works/mine.jot.tsi"), "people");
    EXPECT_EQ(SuiteSetting("CurrSkin"), "5_Meadow.ini");

    std::filesystem::remove(data + "Works/mine.jot");
    TakeOverOldPlace();
    EXPECT_FALSE(std::filesystem::exists(data + "Works/mine.jot"));
    EXPECT_TRUE(std::filesystem::exists(old));
}

TEST_F(StartFileTest, ACommandLineCountsWhenItNamesAnExistingFileAsItStands)
{
    const std::string mine = MakeNotes("mine.jot");
    const std::string odd = MakeNotes("50% \"of\" my n\xC3\xB6tes.jot");
    StoreDefaultFile(mine);
    EXPECT_EQ(Find(odd).source, StartSource::CommandLine);
    EXPECT_EQ(Find(odd).path, odd);
    EXPECT_EQ(Find("\"" + mine + "\"").source, StartSource::Default) << "quotes belong to the name";
    EXPECT_EQ(Find(folder.File("missing.jot")).path, mine);
    EXPECT_EQ(Find(std::string(300, 'x')).path, mine);
}

TEST_F(StartFileTest, WithoutAWorksFolderTheUserIsAsked)
{
    test::WriteAll(folder.File("Works"), "in the way");
    EXPECT_EQ(Find().source, StartSource::AskUser);
}

TEST_F(StartFileTest, TheExamplesBoxIsSetUnlessTheSettingSaysOtherwise)
{
    EXPECT_TRUE(WantsExamples());
    StoreWantsExamples(false);
    EXPECT_FALSE(WantsExamples());
    GetModuleIniPath().IniWriteText("Preference", "RecordExample", "yes");
    EXPECT_FALSE(WantsExamples());
    GetModuleIniPath().IniWriteText("Preference", "RecordExample", "");
    EXPECT_TRUE(WantsExamples()) << "an empty value counts as missing";
}

TEST_F(StartFileTest, ThePaneIsTheSecondUnlessStored)
{
    EXPECT_EQ(StoredPaneIndex(), 1);
    GetModuleIniPath().IniWriteText("Preference", "PaneId", "");
    EXPECT_EQ(StoredPaneIndex(), 1);
    StorePaneIndex(0);
    EXPECT_EQ(StoredPaneIndex(), 0);
}

class PlacementTest : public CoreTest {
protected:
    static Rect desktop(Point) { return {0, 30, 1280, 800}; }
};

TEST_F(PlacementTest, ThePlaceIsRememberedAndKeptWithinTheSizes)
{
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
    StorePlacement({100, 50, 600, 550});
    EXPECT_EQ(SavedPlacement(desktop), (Rect{100, 50, 600, 550}));
    StorePlacement({-500, -500, -400, 9000});
    EXPECT_EQ(SavedPlacement(desktop), Rect::At(0, 30, kFrameSmall.width, kFrameLarge.height))
        << "off to the left or above, and of a wrong size";
}

TEST_F(PlacementTest, APlaceOffTheDesktopOrWithAMissingKeyIsDropped)
{
    StorePlacement({1280, 50, 1700, 480});
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
    StorePlacement({100, 800, 520, 1230});
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
    StorePlacement({1279, 799, 1700, 1230});
    EXPECT_NE(SavedPlacement(desktop), std::nullopt);
    GetModuleIniPath().IniWriteText("Preference", "WPBottom", "");
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
}

TEST_F(PlacementTest, HugeNumbersInTheSettingsDoNoHarm)
{
    for (const char* key : {"WPLeft", "WPTop", "WPRight", "WPBottom"})
        GetModuleIniPath().IniWriteText("Preference", key, "-99999999999999999999");
    const auto place = SavedPlacement(desktop);
    ASSERT_NE(place, std::nullopt);
    EXPECT_EQ(place->Width(), kFrameSmall.width);
}

TEST_F(PlacementTest, ASecondRunningCopyDoesNotTakeTheSavedPlace)
{
    StorePlacement({100, 50, 600, 550});
    EXPECT_NE(SavedPlacement(desktop), std::nullopt);
    {
        SessionGuard otherCopy;  // holds its place as a second process would
        ASSERT_EQ(otherCopy.Take("MarlinWndApp_Jotlet_copy_3"), GuardResult::Taken);
        EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
    }
    EXPECT_NE(SavedPlacement(desktop), std::nullopt);
}

}  // namespace
}  // namespace jotlet
