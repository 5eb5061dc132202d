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
    fs::perms Mode() const { return fs::status(ini.Path()).permissions(); }

    test::TempFolder scratch;
    IniFile ini{scratch.File("Pinwell.ini")};
};

TEST_F(ProfileTest, WrittenValuesReadBackAndAMissingOneLeavesTheCallersNumberAlone)
{
    int number = 1;
    std::array<char, 5> small{'o', 'l', 'd'};
    EXPECT_EQ(ini.IniReadInt("Preference", "WPLeft", number), 0);
    EXPECT_EQ(ini.IniReadText("Preference", "WPLeft", small), 0);
    EXPECT_STREQ(small.data(), "");
    ASSERT_EQ(ini.IniWriteText("Preference", "WPLeft", ""), 1);
    EXPECT_EQ(ini.IniReadInt("Preference", "WPLeft", number), 0);
    EXPECT_EQ(ini.IniReadText("Preference", "WPLeft"), std::nullopt);
    EXPECT_EQ(number, 1);
    ASSERT_EQ(ini.IniWriteInt("Preference", "WPLeft", -12), 1);
    EXPECT_EQ(ini.IniReadInt("preference", "wpleft", number), 1);
    EXPECT_EQ(number, -12);
    ASSERT_EQ(ini.IniWriteText("Preference", "CurrSkin", "caf\u00e9.ini"), 1);
    EXPECT_EQ(ini.IniReadText("Preference", "CurrSkin", small), 1);
    EXPECT_STREQ(small.data(), "caf") << "cut to the caller's buffer";
}

// What is written, what mode the file had, and has then.
TEST_F(ProfileTest, AFileThatHoldsThePasswordIsClosedToOthersAndAnotherKeepsItsMode)
{
    const struct {
        const char *section, *key, *value;
        unsigned before, after;
    } rows[] = {{"Preference", "Sound", "1", 0, 0600},
                {"Preference", "Sound", "0", 0644, 0644},
                {"Marlin Server", "username", "Ann", 0664, 0664},
                {"Marlin Server", "password", "secret", 0664, 0600},
                {"Marlin Server", "password", "secret", 0644, 0600},  // also when nothing else changes
                {"Preference", "Sound", "1", 0644, 0600}};
    for (const auto& row : rows) {
        if (row.before)
            fs::permissions(ini.Path(), fs::perms{row.before});
        ASSERT_EQ(ini.IniWriteText(row.section, row.key, row.value), 1);
        EXPECT_EQ(Mode(), fs::perms{row.after}) << row.key << row.before;
    }
}

TEST_F(ProfileTest, ALinkedFileStaysALinkAndALeftoverOfAKilledWriterIsInNobodysWay)
{
    const std::string real = scratch.File("real.ini");
    const std::string longLine = "[A]\nLong=" + std::string(1 << 20, 'x') + "\n";
    test::WriteAll(real, longLine + "B=1\n");
    test::WriteAll(real + ".jotlet-new", "half a fi");
    fs::create_symlink(real, ini.Path());
    ASSERT_EQ(ini.IniWriteText("A", "B", "2"), 1);
    EXPECT_TRUE(fs::is_symlink(ini.Path()));
    EXPECT_EQ(test::ReadAll(real), longLine + "B=2\n");
    EXPECT_EQ(scratch.FileCount(), 2u);
}

TEST_F(ProfileTest, CopiesThatWriteAtOnceNeverLoseEachOthersKeys)
{
    const auto name = [](int who, int key) { return std::to_string(who) + "." + std::to_string(key); };
    const auto writer = [&](int who) {
        return [&, who] {
            for (int key = 0; key < 40; ++key) {
                if (ini.IniWriteInt("Copies", name(who, key), key) != 1)
                    return 1;
            }
            return 0;
        };
    };
    test::ChildProcess first(writer(0));
    test::ChildProcess second(writer(1));
    EXPECT_EQ(first.Wait() + second.Wait(), 0);
    for (int who = 0; who < 2; ++who) {
        for (int key = 0; key < 40; ++key) {
            int value = -1;
            ini.IniReadInt("Copies", name(who, key), value);
            EXPECT_EQ(value, key) << "writer " << who;
        }
    }
}

TEST_F(ProfileTest, WhatCannotBeASettingsFileReadsAsEmptyAndIsNotReplaced)
{
    const std::string pipe = scratch.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string large = scratch.File("large.ini");
    test::WriteAll(large, "[A]\nB=1\n");
    fs::resize_file(large, kMaxProfileBytes + 1);
    for (const std::string& path : {scratch.Path(), pipe, large, std::string(), scratch.File("no/such/folder.ini")}) {
        EXPECT_EQ(IniFile(path).IniReadText("A", "B"), std::nullopt) << path;
        EXPECT_EQ(IniFile(path).IniWriteText("A", "B", "1"), 0) << path;
    }
    EXPECT_EQ(fs::file_size(large), kMaxProfileBytes + 1);
    fs::resize_file(large, kMaxProfileBytes);
    EXPECT_EQ(IniFile(large).IniReadText("A", "B"), "1");
}

TEST_F(ProfileTest, AReadOnlyFileIsNotReplaced)
{
    test::WriteAll(ini.Path(), "[A]\nB=1\n");
    chmod(ini.Path().c_str(), 0444);
    EXPECT_EQ(test::RunAsOrdinaryUser(scratch.Path(), [&] { return ini.IniWriteText("A", "B", "2"); }), 0);
    EXPECT_EQ(test::ReadAll(ini.Path()), "[A]\nB=1\n");
    EXPECT_EQ(scratch.FileCount(), 1u);
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
        EXPECT_EQ(scratch.FileCount(), 1u);
        if (disk.failedCall.empty())
            break;
        ASSERT_LT(failAt, 20);
    }
}

TEST_F(ProfileTest, AReaderNeverSeesHalfAFileAndAKilledWriterSpoilsNothing)
{
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
            const std::string text = ReadProfileFile(ini.Path()).value_or("");
            ASSERT_EQ(FindProfileValue(text, "A", "One"), FindProfileValue(text, "A", "Two"));
            ASSERT_NE(FindProfileValue(text, "A", "Two"), std::nullopt);
        }
        writer.Kill();
        writer.Wait();
        ASSERT_EQ(ini.IniWriteInt("A", "Round", round), 1);
    }
}

}  // namespace
}  // namespace jotlet
