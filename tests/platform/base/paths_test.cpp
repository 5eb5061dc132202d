#include "platform/base/paths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/child_process.h"
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
    ~PathsTest() override
    {
        chmod(program.c_str(), 0755);
        SetProgramPath({});
    }

    // An installed program: its folder is there, and nobody may write to it.
    void MakeProgramFolderReadOnly()
    {
        if (geteuid() == 0)
            installed = "/usr/share";  // root could write there, and the program does not
        else
            chmod(program.c_str(), 0555);
        SetProgramPath(installed + "/jotlet");
    }

    test::TempFolder scratch;
    std::string program = scratch.File("program");
    std::string installed = program;
    test::ScopedVariable dataHome;
};

TEST_F(PathsTest, AWritableProgramFolderHoldsEverything)
{
    EXPECT_EQ(GetProgramFolder(), program);
    EXPECT_EQ(GetDataFolder(), program);
    EXPECT_EQ(GetProgramFilePath("Pinwell.ini"), program + "/Pinwell.ini");
    EXPECT_EQ(GetModuleIniPath().Path(), program + "/jotlet.ini");
    EXPECT_EQ(GetSuiteIniPath().Path(), program + "/Pinwell.ini");
    EXPECT_EQ(GetHelpFilePath("notes.htm"), program + "/Help/notes.htm");
    EXPECT_FALSE(fs::exists(scratch.File("share")));
}

TEST_F(PathsTest, TheModuleIniReplacesTheExtensionOfTheProgramAlone)
{
    SetProgramPath(program + "/with.dot/jotlet.bin");
    EXPECT_EQ(GetModuleIniPath().Path().substr(GetModuleIniPath().Path().rfind('/')), "/jotlet.ini");
    SetProgramPath(program + "/.jotlet");
    EXPECT_EQ(GetModuleIniPath().Path(), program + "/.jotlet.ini");
}

TEST_F(PathsTest, AReadOnlyProgramFolderSendsWhatIsWrittenToTheUsersData)
{
    MakeProgramFolderReadOnly();
    const std::string data = scratch.File("share/Jotlet");
    EXPECT_EQ(GetProgramFolder(), installed);
    EXPECT_EQ(GetDataFolder(), data);
    EXPECT_TRUE(fs::is_directory(data));
    EXPECT_EQ(fs::status(data).permissions() & fs::perms::all, fs::perms::owner_all);
    std::string works;
    EXPECT_EQ(GetWorksFilePath(works, "My.jot"), 1);
    EXPECT_EQ(works, data + "/Works/My.jot");
    EXPECT_EQ(GetDataFilePath("E-Book.tb1"), data + "/E-Book.tb1");

    EXPECT_EQ(GetProgramFilePath("add.wav"), installed + "/add.wav");
    test::WriteAll(data + "/add.wav", "own");
    EXPECT_EQ(GetProgramFilePath("add.wav"), data + "/add.wav");
}

TEST_F(PathsTest, SettingsOfTheUserHideTheShippedOnesKeyByKey)
{
    test::WriteAll(program + "/Pinwell.ini", "[Preference]\nLastYear=2099\nSound=1\nSplash=0\n");
    chmod(program.c_str(), 0555);
    EXPECT_EQ(test::RunAsOrdinaryUser(scratch.Path(),
                                      [&] {
                                          SetProgramPath(program + "/jotlet");
                                          const IniFile ini = GetSuiteIniPath();
                                          return ini.IniWriteText("Preference", "Sound", "0") == 1 &&
                                                         ini.IniWriteText("Preference", "Splash", "") == 1 &&
                                                         ini.IniReadText("Preference", "LastYear") == "2099" &&
                                                         ini.IniReadText("Preference", "Sound") == "0" &&
                                                         !ini.IniReadText("Preference", "Splash")
                                                     ? 0
                                                     : 1;
                                      }),
              0);
    EXPECT_EQ(test::ReadAll(scratch.File("share/Jotlet/Pinwell.ini")), "[Preference]\nSound=0\nSplash=\n");
}

TEST_F(PathsTest, ADeletedWorksFolderComesBackAndTheCurrentFolderStays)
{
    const fs::path before = fs::current_path();
    std::string works;
    EXPECT_EQ(GetWorksFolder(works), 1);
    EXPECT_EQ(GetWorksFolder(works), 1);
    EXPECT_TRUE(fs::remove(works));
    EXPECT_EQ(GetWorksFilePath(works, "a.jot"), 1);
    EXPECT_TRUE(fs::is_directory(program + "/Works"));
    EXPECT_EQ(fs::current_path(), before);
}

TEST_F(PathsTest, AWorksFolderThatCannotBeMadeGivesNoPath)
{
    test::WriteAll(program + "/Works", "a file in the way");
    std::string works = "before";
    EXPECT_EQ(GetWorksFilePath(works, "a.jot"), 0);
    EXPECT_EQ(works, "");
    EXPECT_EQ(EnsureWorksFolder(), 0);
}

TEST_F(PathsTest, ARelativeDataHomeIsNotUsed)
{
    MakeProgramFolderReadOnly();
    const test::ScopedVariable relative("XDG_DATA_HOME", "share");
    const test::ScopedVariable home("HOME", scratch.File("home"));
    EXPECT_EQ(GetDataFolder(), scratch.File("home/.local/share/Jotlet"));
}

TEST(Paths, TheRealProgramIsThisTest)
{
    SetProgramPath({});
    EXPECT_EQ(GetProgramPath(), fs::read_symlink("/proc/self/exe").string());
}

TEST(Paths, ABareFileNameIsWhatStandsBehindTheLastSlash)
{
    EXPECT_EQ(GetBareFileName("/home/a/My.jot"), "My.jot");
    EXPECT_EQ(GetBareFileName("My.jot"), "My.jot");
    EXPECT_EQ(GetBareFileName("/home/a/"), "");
    EXPECT_EQ(GetBareFileName(""), "");
}

}  // namespace
}  // namespace jotlet
