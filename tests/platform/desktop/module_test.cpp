// The modules that are loaded on first use: print and sound.
#include "platform/desktop/shell.h"
#include "support/temp_folder.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using ModuleTest = WindowTest;

TEST_F(ModuleTest, SoundWithoutADeviceOrAFileReturnsAtOnce)
{
    const test::TempFolder folder;
    const std::string wave = folder.File("a.wav");
    test::WriteAll(wave, "RIFF no sound at all");
    const auto start = std::chrono::steady_clock::now();
    PlayWave(folder.File("no such file.wav"));
    PlayWave(wave);
    PlayWave(wave);
    ServeEvents();
    // Loading takes what it takes; waiting for a device would take seconds.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

int PagesOf(const std::string& text)
{
    const test::TempFolder folder;
    std::string problem;
    EXPECT_TRUE(PrintTextToPdf(folder.File("a.pdf"), "report.txt", text, problem)) << problem;
    const std::string bytes = test::ReadAll(folder.File("a.pdf"));
    const auto count = bytes.find("/Count ");
    return bytes.starts_with("%PDF-") && count != std::string::npos ? std::stoi(bytes.substr(count + 7)) : 0;
}

std::string Lines(int count)
{
    std::string text;
    while (count-- > 0)
        text += "caf\xE9\r\n";
    return text;
}

TEST_F(ModuleTest, LongTextIsPrintedOnSeveralPagesAndANotesHeadIsNotParted)
{
    EXPECT_GE(PagesOf(Lines(200)), 3);
    EXPECT_EQ(PagesOf("milk\r\n" + std::string(400, '\n')), 1) << "blank lines at the end need no paper";
    int whole = 40;
    while (whole < 200 && PagesOf(Lines(whole + 1)) == 1)
        ++whole;
    // The head begins two lines above the end of the first page; what goes with it is too long for the second.
    const std::string note = "Date: 1\r\nCategory: \r\nTitle: milk\r\nNotes: " + Lines(whole - 2);
    EXPECT_EQ(PagesOf(Lines(whole - 1) + "No " + note), 2);
    EXPECT_EQ(PagesOf(Lines(whole - 1) + note), 3);
}

TEST_F(ModuleTest, HookSeesWhatWouldBeOpenedPrintedAndPlayed)
{
    std::vector<std::string> seen;
    const ScopedShellHook hook([&](std::string_view verb, std::string_view target) {
        seen.push_back(std::string(verb) + " " + std::string(target));
    });
    std::string problem;
    EXPECT_TRUE(OpenWithDesktop("https://pinwell.example"));
    EXPECT_TRUE(PrintText(0, "report", "text", problem));
    PlayWave("add.wav");
    EXPECT_THAT(seen, testing::ElementsAre("open https://pinwell.example", "print report", "play add.wav"));
}

TEST_F(ModuleTest, WhatIsNotThereIsNeitherOpenedNorWritten)
{
    EXPECT_FALSE(OpenWithDesktop("/no/such/file.txt"));
    EXPECT_FALSE(OpenWithDesktop("file:///no/such/file.txt"));
    for (const char* there : {"/etc/passwd", "file:///etc/passwd"})
        EXPECT_EQ(LocalTarget(there), "/etc/passwd");
    for (const char* elsewhere : {"", "/no/such/file.txt", "file:///no/such", "https://pinwell.example/etc/passwd"})
        EXPECT_EQ(LocalTarget(elsewhere), "") << elsewhere;
    EXPECT_FALSE(OpenWithDesktop(""));
    std::string problem;
    EXPECT_FALSE(PrintTextToPdf("/no/such/folder/a.pdf", "report.txt", "text", problem));
    EXPECT_FALSE(problem.empty());
}

}  // namespace
}  // namespace jotlet
