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

TEST_F(StartFileTest, TheCommandLineTheLastFileOrOneNamedAfterTheProgramIsTaken)
{
    test::UsePortableProgram(folder.Path(), "JotLet.bin");
    EXPECT_EQ(Find().source, StartSource::FirstRun);
    EXPECT_EQ(Find().path, folder.File("Works/jotlet.jot"));
    MakeNotes("jotlet.jot");
    EXPECT_EQ(Find().source, StartSource::AskUser) << "it is there without a setting";
    const std::string mine = MakeNotes("mine.jot");
    const std::string odd = MakeNotes("50% \"of\" my n\xC3\xB6tes.jot");
    StoreDefaultFile(mine);
    EXPECT_EQ(Find(odd).source, StartSource::CommandLine);
    EXPECT_EQ(Find(odd).path, odd);
    for (const std::string& none :
         {std::string(), "\"" + mine + "\"", folder.File("missing.jot"), std::string(300, 'x')}) {
        EXPECT_EQ(Find(none).source, StartSource::Default) << none;
        EXPECT_EQ(Find(none).path, mine) << none;
    }
    std::filesystem::remove_all(folder.File("Works"));
    EXPECT_EQ(Find().source, StartSource::AskUser);
    EXPECT_EQ(Find().path, mine) << "for the message";
    test::WriteAll(folder.File("Works"), "in the way");
    std::filesystem::remove(GetModuleIniPath().Path());
    EXPECT_EQ(Find().source, StartSource::AskUser) << "no folder can be made";
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

TEST_F(StartFileTest, ExamplesAndPaneAreWhatTheSettingsSay)
{
    const auto set = [](const char* key, const char* value) {
        GetModuleIniPath().IniWriteText("Preference", key, value);
    };
    EXPECT_TRUE(WantsExamples());
    EXPECT_EQ(StoredPaneIndex(), 1);
    StoreWantsExamples(false);
    StorePaneIndex(0);
    EXPECT_FALSE(WantsExamples());
    EXPECT_EQ(StoredPaneIndex(), 0);
    set("RecordExample", "yes");
    EXPECT_FALSE(WantsExamples());
    for (const char* key : {"RecordExample", "PaneId"})
        set(key, "");
    EXPECT_TRUE(WantsExamples()) << "an empty value counts as missing";
    EXPECT_EQ(StoredPaneIndex(), 1);
}

class PlacementTest : public CoreTest {
protected:
    static Rect desktop(Point) { return {0, 30, 1280, 800}; }
};

TEST_F(PlacementTest, ThePlaceIsRememberedWithinTheSizesAndDroppedOffTheDesktop)
{
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
    for (const auto& [stored, place] :
         {std::pair(Rect{100, 50, 600, 550}, std::optional(Rect{100, 50, 600, 550})),
          // off to the left or above, and of a wrong size
          {Rect{-500, -500, -400, 9000}, Rect::At(0, 30, kFrameSmall.width, kFrameLarge.height)},
          {Rect{1280, 50, 1700, 480}, std::nullopt},
          {Rect{100, 800, 520, 1230}, std::nullopt},
          {Rect{1279, 799, 1700, 1230}, Rect{1279, 799, 1700, 1230}}}) {
        StorePlacement(stored);
        EXPECT_EQ(SavedPlacement(desktop), place);
    }
    const auto setAll = [](const char* value) {
        for (const char* key : {"WPLeft", "WPTop", "WPRight", "WPBottom"})
            GetModuleIniPath().IniWriteText("Preference", key, value);
    };
    setAll("-99999999999999999999");
    EXPECT_EQ(SavedPlacement(desktop).value_or(Rect{}).Width(), kFrameSmall.width);
    GetModuleIniPath().IniWriteText("Preference", "WPBottom", "");
    EXPECT_EQ(SavedPlacement(desktop), std::nullopt);
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
