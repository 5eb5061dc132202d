// How the program makes itself known to the desktop.
#include "core/file_type.h"

#include <sys/wait.h>

#include "core_fixture.h"
#include "platform/base/start_program.h"

namespace jotlet {
namespace {

using testing::HasSubstr;

class FileTypeTest : public CoreTest {
protected:
    std::vector<DesktopFile> Files(const std::string& program = "/opt/jotlet/jotlet")
    {
        return DesktopFiles(folder.File("data"), program, "jot");
    }
    std::string Entry() { return test::ReadAll(folder.File("data/applications/jotlet.desktop")); }
};

TEST_F(FileTypeTest, AnyPathBecomesOneWordOfAnExecLine)
{
    struct Case {
        std::string_view path;
        std::string_view word;
    };
    for (const Case& c : {Case{"/opt/jotlet", "\"/opt/jotlet\""}, Case{"/my notes/j", "\"/my notes/j\""},
                          Case{"/50%/j", "\"/50%%/j\""}, Case{"/a\"b", R"("/a\\"b")"}, Case{"/a$b", R"("/a\\$b")"},
                          Case{"/a`b", R"("/a\\`b")"}, Case{"/a\\b", R"("/a\\\\b")"}}) {
        EXPECT_EQ(ExecWord(c.path), c.word);
    }
}

TEST_F(FileTypeTest, TheEntryStartsThisProgramOnTheFileAndNamesItsType)
{
    ASSERT_EQ(WriteDesktopFiles(Files("/opt/my notes/jotlet")), 4);
    EXPECT_THAT(Entry(), HasSubstr("\nExec=\"/opt/my notes/jotlet\" %f\n"));
    EXPECT_THAT(Entry(), HasSubstr("\nMimeType=application/x-jotlet-notes;\n"));
    EXPECT_THAT(Entry(), testing::Not(HasSubstr("@")));
    EXPECT_THAT(test::ReadAll(folder.File("data/mime/packages/jotlet.xml")), HasSubstr("\"*.jot\""));
    EXPECT_TRUE(std::filesystem::exists(folder.File("data/icons/hicolor/scalable/apps/jotlet.svg")));
}

TEST_F(FileTypeTest, OnlyWhatDiffersIsWrittenAndNothingWhereFoldersCannotBeMade)
{
    ASSERT_EQ(WriteDesktopFiles(Files()), 4);
    EXPECT_EQ(WriteDesktopFiles(Files()), 0);
    EXPECT_EQ(WriteDesktopFiles(Files("/elsewhere/jotlet")), 1);
    std::filesystem::remove_all(folder.File("data"));
    test::WriteAll(folder.File("data"), "a file in the way");
    EXPECT_EQ(WriteDesktopFiles(Files()), 0);
    EXPECT_EQ(RegisterFileType("jot"), 1);
    EXPECT_EQ(test::ReadAll(folder.File("data")), "a file in the way");
}

TEST_F(FileTypeTest, TheDesktopsOwnToolsAcceptTheFiles)
{
    ASSERT_EQ(WriteDesktopFiles(Files("/opt/50% \"my\" $notes/jotlet")), 4);
    if (std::system("command -v desktop-file-validate >/dev/null") != 0)
        GTEST_SKIP() << "desktop-file-validate is not installed";
    EXPECT_EQ(std::system(("desktop-file-validate '" + folder.File("data/applications/jotlet.desktop") + "'").c_str()),
              0);
    if (std::system("command -v update-mime-database >/dev/null") != 0)
        GTEST_SKIP() << "update-mime-database is not installed";
    EXPECT_EQ(std::system(("update-mime-database '" + folder.File("data/mime") + "' 2>/dev/null").c_str()), 0);
    EXPECT_THAT(test::ReadAll(folder.File("data/mime/globs")), HasSubstr("application/x-jotlet-notes:*.jot"));
}

TEST_F(FileTypeTest, AProgramThatWasStartedLeavesNoDeadProcess)
{
    EXPECT_FALSE(StartProgram({"no-such-program-anywhere"}));
    ASSERT_TRUE(StartProgram({"true"}));
    siginfo_t info;
    EXPECT_TRUE(
        ServeUntil([&] { return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) < 0; }, std::chrono::seconds(5)));
}

}  // namespace
}  // namespace jotlet
