#include "platform/base/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/scoped_variable.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

// A program folder, and a home for data beside it.
class PathsTest : public testing::Test {
protected:
    PathsTest() : dataHome("XDG_DATA_HOME", scratch.File("share"))
    {
        fs::create_directory(program);
        SetProgramPath(program + "/jotlet");
    }
    ~PathsTest() override { SetProgramPath({}); }

    test::TempFolder scratch;
    std::string program = scratch.File("program");
    std::string data = scratch.File("share/Jotlet");
    test::ScopedVariable dataHome;
};

TEST_F(PathsTest, APortableProgramsFolderHoldsEverything)
{
    test::UsePortableProgram(program);
    const std::pair<std::string, const char*> places[] = {{GetDataFolder() + "/", "/"},
                                                          {GetProgramFilePath("Pinwell.ini"), "/Pinwell.ini"},
                                                          {GetModuleIniPath().Path(), "/jotlet.ini"},
                                                          {GetSuiteIniPath().Path(), "/Pinwell.ini"},
                                                          {GetHelpFilePath("notes.htm"), "/Help/notes.htm"}};
    for (const auto& [place, name] : places)
        EXPECT_EQ(place, program + name);
    EXPECT_FALSE(fs::exists(scratch.File("share")));
    SetProgramPath(scratch.File("with.dot/jotlet.bin"));
    EXPECT_EQ(GetModuleIniPath().Path(), data + "/jotlet.ini") << "the extension of the program alone goes";
    SetProgramPath(scratch.File(".jotlet"));
    EXPECT_EQ(GetModuleIniPath().Path(), data + "/.jotlet.ini");
}

TEST_F(PathsTest, WhatIsWrittenGoesToTheUsersDataAndHidesWhatWasShipped)
{
    EXPECT_EQ(GetProgramFolder(), program);
    EXPECT_EQ(GetDataFolder(), data);
    EXPECT_TRUE(fs::is_directory(data));
    EXPECT_EQ(fs::status(data).permissions() & fs::perms::all, fs::perms::owner_all);
    std::string works;
    EXPECT_EQ(GetWorksFilePath(works, "My.jot"), 1);
    EXPECT_EQ(works, data + "/Works/My.jot");
    EXPECT_EQ(GetDataFilePath("E-Book.tb1"), data + "/E-Book.tb1");

    EXPECT_EQ(GetProgramFilePath("add.wav"), program + "/add.wav");
    test::WriteAll(data + "/add.wav", "own");
    EXPECT_EQ(GetProgramFilePath("add.wav"), data + "/add.wav");

    test::WriteAll(program + "/Pinwell.ini", "[Preference]\nLastYear=2099\nSound=1\nSplash=0\n");
    const IniFile ini = GetSuiteIniPath();
    EXPECT_EQ(ini.IniWriteText("Preference", "Sound", "0") + ini.IniWriteText("Preference", "Splash", ""), 2);
    EXPECT_EQ(ini.IniReadText("Preference", "LastYear"), "2099");
    EXPECT_EQ(ini.IniReadText("Preference", "Sound"), "0");
    EXPECT_EQ(ini.IniReadText("Preference", "Splash"), std::nullopt);
    EXPECT_EQ(test::ReadAll(data + "/Pinwell.ini"), "[Preference]\nSound=0\nSplash=\n");
}

TEST_F(PathsTest, SettingsNameFilesFromTheDataFolderSoThatItCanBeCopied)
{
    test::UsePortableProgram(program);
    const std::string inside = PathForSettings(program + "/Works/my.jot");
    EXPECT_EQ(inside, "Works/my.jot");
    const std::string outside = program + "2/my.jot";
    EXPECT_EQ(PathForSettings(outside), outside);
    const std::string copy = scratch.File("stick");
    fs::create_directory(copy);
    test::UsePortableProgram(copy);
    EXPECT_EQ(PathFromSettings(inside), copy + "/Works/my.jot");
    EXPECT_EQ(PathFromSettings(outside), outside);
    EXPECT_EQ(PathFromSettings(""), "");
}

TEST_F(PathsTest, ADeletedWorksFolderComesBackAndOneThatCannotBeMadeGivesNoPath)
{
    std::string works;
    EXPECT_EQ(GetWorksFolder(works), 1);
    EXPECT_TRUE(fs::remove(works));
    EXPECT_EQ(GetWorksFilePath(works, "a.jot"), 1);
    EXPECT_TRUE(fs::remove(data + "/Works"));
    test::WriteAll(data + "/Works", "a file in the way");
    EXPECT_EQ(GetWorksFilePath(works, "a.jot"), 0);
    EXPECT_EQ(works, "");
    EXPECT_EQ(EnsureWorksFolder(), 0);
}

TEST_F(PathsTest, ARelativeDataHomeIsNotUsed)
{
    const test::ScopedVariable relative("XDG_DATA_HOME", "share");
    const test::ScopedVariable home("HOME", scratch.File("home"));
    EXPECT_EQ(GetDataFolder(), scratch.File("home/.local/share/Jotlet"));
}

TEST(Paths, ABareFileNameIsWhatStandsBehindTheLastSlash)
{
    SetProgramPath({});
    EXPECT_EQ(GetProgramPath(), fs::read_symlink("/proc/self/exe").string());
    for (const auto& [path, name] : {std::pair{"/home/a/My.jot", "My.jot"}, {"My.jot", "My.jot"}, {"/home/a/", ""}})
        EXPECT_EQ(GetBareFileName(path), name);
}

}  // namespace
}  // namespace jotlet
