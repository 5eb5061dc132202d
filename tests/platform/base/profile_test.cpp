#include "platform/base/profile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>

#include "tests/support/child_process.h"
#include "tests/support/failing_file_system.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

class ProfileTest : public testing::Test {
protected:
    mode_t Mode() const
    {
        struct stat info {};
        return stat(ini.Path().c_str(), &info) == 0 ? info.st_mode & 0777 : 0;
    }
    // What lies in the folder, so that no test leaves anything but the settings file there.
    std::size_t FilesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(scratch.Path()), {}));
    }

    test::TempFolder scratch;
    IniFile ini{scratch.File("Pinwell.ini")};
};

TEST_F(ProfileTest, AMissingOrEmptyValueLeavesTheCallersNumberAlone)
{
    int pane = 1;
    std::array<char, 8> text{'o', 'l', 'd'};
    EXPECT_EQ(ini.IniReadInt("Preference", "PaneId", pane), 0);
    EXPECT_EQ(ini.IniReadText("Preference", "PaneId", text), 0);
    EXPECT_STREQ(text.data(), "");
    ASSERT_EQ(ini.IniWriteText("Preference", "PaneId", ""), 1);
    EXPECT_EQ(ini.IniReadInt("Preference", "PaneId", pane), 0);
    EXPECT_EQ(ini.IniReadText("Preference", "PaneId"), std::nullopt);
    EXPECT_EQ(pane, 1);
}

TEST_F(ProfileTest, WrittenValuesReadBackAndFitTheCallersBuffer)
{
    ASSERT_EQ(ini.IniWriteInt("Preference", "WPLeft", -12), 1);
    ASSERT_EQ(ini.IniWriteText("Preference", "CurrSkin", "caf\u00e9.ini"), 1);
    int left = 0;
    EXPECT_EQ(ini.IniReadInt("preference", "wpleft", left), 1);
    EXPECT_EQ(left, -12);
    std::array<char, 5> small{};
    EXPECT_EQ(ini.IniReadText("Preference", "CurrSkin", small), 1);
    EXPECT_STREQ(small.data(), "caf");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(ProfileTest, ANewFileIsReadableByItsUserAloneAndAnOldOneKeepsItsMode)
{
    ASSERT_EQ(ini.IniWriteText("Preference", "Sound", "1"), 1);
    EXPECT_EQ(Mode(), 0600u);
    chmod(ini.Path().c_str(), 0644);
    ASSERT_EQ(ini.IniWriteText("Preference", "Sound", "0"), 1);
    EXPECT_EQ(Mode(), 0644u);
}

TEST_F(ProfileTest, AFileThatHoldsThePasswordIsClosedToOthers)
{
    test::WriteAll(ini.Path(), "[Preference]\nSound=1\n");
    chmod(ini.Path().c_str(), 0664);
    ASSERT_EQ(ini.IniWriteText("Marlin Server", "username", "Ann"), 1);
    EXPECT_EQ(Mode(), 0664u);
    ASSERT_EQ(ini.IniWriteText("Marlin Server", "password", "secret"), 1);
    EXPECT_EQ(Mode(), 0600u);
    chmod(ini.Path().c_str(), 0644);
    ASSERT_EQ(ini.IniWriteText("Marlin Server", "password", "secret"), 1);
    EXPECT_EQ(Mode(), 0600u) << "also when nothing else changes";
    chmod(ini.Path().c_str(), 0644);
    ASSERT_EQ(ini.IniWriteText("Preference", "Sound", "0"), 1);
    EXPECT_EQ(Mode(), 0600u);
}

TEST_F(ProfileTest, WhatCannotBeASettingsFileReadsAsEmptyAndIsNotReplaced)
{
    const IniFile folder(scratch.Path());
    EXPECT_EQ(folder.IniReadText("A", "B"), std::nullopt);
    EXPECT_EQ(folder.IniWriteText("A", "B", "1"), 0);

    const std::string pipe = scratch.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(IniFile(pipe).IniReadText("A", "B"), std::nullopt);
    EXPECT_EQ(IniFile(pipe).IniWriteText("A", "B", "1"), 0);

    test::WriteAll(ini.Path(), "[A]\nB=1\n");
    fs::resize_file(ini.Path(), kMaxProfileBytes + 1);
    EXPECT_EQ(ini.IniReadText("A", "B"), std::nullopt);
    EXPECT_EQ(ini.IniWriteText("A", "B", "2"), 0);
    EXPECT_EQ(fs::file_size(ini.Path()), kMaxProfileBytes + 1);

    EXPECT_EQ(IniFile("").IniWriteText("A", "B", "1"), 0);
    EXPECT_EQ(IniFile(scratch.File("no/such/folder.ini")).IniWriteText("A", "B", "1"), 0);
}

TEST_F(ProfileTest, AMegabyteLineIsReadAndKept)
{
    const std::string longLine = "[A]\nLong=" + std::string(1 << 20, 'x') + "\n";
    test::WriteAll(ini.Path(), longLine);
    std::array<char, 260> text{};
    EXPECT_EQ(ini.IniReadText("A", "Long", text), 1);
    EXPECT_EQ(std::string(text.data()), std::string(259, 'x'));
    ASSERT_EQ(ini.IniWriteText("A", "B", "1"), 1);
    EXPECT_EQ(test::ReadAll(ini.Path()), longLine + "B=1\n");
}

TEST_F(ProfileTest, ALinkedFileStaysALink)
{
    const std::string real = scratch.File("real.ini");
    test::WriteAll(real, "[A]\nB=1\n");
    fs::create_symlink(real, ini.Path());
    ASSERT_EQ(ini.IniWriteText("A", "B", "2"), 1);
    EXPECT_TRUE(fs::is_symlink(ini.Path()));
    EXPECT_EQ(test::ReadAll(real), "[A]\nB=2\n");
}

TEST_F(ProfileTest, ALeftoverOfAKilledWriterIsInNobodysWay)
{
    test::WriteAll(ini.Path() + ".jotlet-new", "half a fi");
    ASSERT_EQ(ini.IniWriteText("A", "B", "1"), 1);
    EXPECT_EQ(test::ReadAll(ini.Path()), "[A]\nB=1\n");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(ProfileTest, AReadOnlyFileIsNotReplaced)
{
    test::WriteAll(ini.Path(), "[A]\nB=1\n");
    chmod(ini.Path().c_str(), 0444);
    EXPECT_EQ(test::RunAsOrdinaryUser(scratch.Path(), [&] { return ini.IniWriteText("A", "B", "2"); }), 0);
    EXPECT_EQ(test::ReadAll(ini.Path()), "[A]\nB=1\n");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(ProfileTest, AtEveryFailingCallTheFileIsTheOldOneOrTheNewOne)
{
    const std::string old = "[A]\nB=1\n";
    for (int failAt = 1;; ++failAt) {
        test::WriteAll(ini.Path(), old);
        test::FailingFileSystem disk;
        disk.failAt = failAt;
        disk.halfWrite = true;
        SCOPED_TRACE(failAt);
        const std::array<ProfileEntry, 2> together{{{"B", "2"}, {"C", "3"}}};
        {
            const ScopedFileSystem scope(disk);
            const bool written = ini.IniWriteTexts("A", together) == 1;
            EXPECT_EQ(written, disk.failedCall.empty() || disk.failedCall == "sync folder");
            EXPECT_EQ(test::ReadAll(ini.Path()), written ? "[A]\nB=2\nC=3\n" : old);
        }
        EXPECT_EQ(FilesInFolder(), 1u);
        if (disk.failedCall.empty())
            break;
        ASSERT_LT(failAt, 20);
    }
}

TEST_F(ProfileTest, CopiesThatWriteAtOnceNeverLoseEachOthersKeys)
{
    constexpr int kWriters = 3;
    constexpr int kKeys = 40;
    const auto writer = [&](int who) {
        return [this, who] {
            for (int key = 0; key < kKeys; ++key)
                if (ini.IniWriteInt("Copy" + std::to_string(who % 2), std::to_string(who) + "." + std::to_string(key),
                                    key) != 1)
                    return 1;
            return 0;
        };
    };
    test::ChildProcess first(writer(0));
    test::ChildProcess second(writer(1));
    test::ChildProcess third(writer(2));
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
    EXPECT_EQ(third.Wait(), 0);
    for (int who = 0; who < kWriters; ++who)
        for (int key = 0; key < kKeys; ++key) {
            int value = -1;
            ini.IniReadInt("Copy" + std::to_string(who % 2), std::to_string(who) + "." + std::to_string(key), value);
            EXPECT_EQ(value, key) << "writer " << who;
        }
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(ProfileTest, AReaderNeverSeesHalfAFileAndAKilledWriterSpoilsNothing)
{
    ASSERT_EQ(ini.IniWriteText("A", "Fixed", "here"), 1);
    for (int round = 0; round < 10; ++round) {
        test::Signal running;
        test::ChildProcess writer([&] {
            for (int i = 0;; ++i) {
                const std::string both = std::to_string(i);
                const std::string longOne(static_cast<std::size_t>(i % 7 + 1) * 3000, 'x');
                ini.IniWriteTexts("A", std::array<ProfileEntry, 3>{{{"One", both}, {"Long", longOne}, {"Two", both}}});
                if (i == round)
                    running.Give();
            }
            return 0;
        });
        ASSERT_TRUE(running.Await());
        for (int i = 0; i < 50; ++i) {
            ASSERT_EQ(ini.IniReadText("A", "Fixed"), "here");
            const std::string text = ReadProfileFile(ini.Path()).value_or("");
            ASSERT_EQ(FindProfileValue(text, "A", "One"), FindProfileValue(text, "A", "Two"));
        }
        writer.Kill();
        writer.Wait();
        ASSERT_EQ(ini.IniReadText("A", "Fixed"), "here");
        ASSERT_EQ(ini.IniWriteInt("A", "Round", round), 1);
    }
    int last = -1;
    EXPECT_EQ(ini.IniReadInt("A", "Round", last), 1);
    EXPECT_EQ(last, 9);
}

}  // namespace
}  // namespace jotlet
