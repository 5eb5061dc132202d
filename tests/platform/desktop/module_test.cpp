// The modules that are loaded on first use: print and sound.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/desktop/shell.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using ModuleTest = WindowTest;

TEST_F(ModuleTest, SoundWithoutADeviceOrAFileReturnsAtOnce)
{
    const auto wave = std::filesystem::temp_directory_path() / "jotlet_module_test.wav";
    std::ofstream(wave) << "RIFF no sound at all";
    const auto start = std::chrono::steady_clock::now();
    PlayWave((wave.parent_path() / "no such file.wav").string());
    PlayWave(wave.string());
    PlayWave(wave.string());
    ServeEvents();
    // Loading takes what it takes; waiting for a device would take seconds.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    std::filesystem::remove(wave);
}

std::string Bytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(ModuleTest, LongTextIsPrintedOnSeveralPages)
{
    const auto path = std::filesystem::temp_directory_path() / "jotlet_module_test.pdf";
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += "Line " + std::to_string(i) + " caf\xE9\r\n";
    std::string problem;
    ASSERT_TRUE(PrintTextToPdf(path.string(), "report.txt", text, problem)) << problem;
    const std::string bytes = Bytes(path);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
    const auto count = bytes.find("/Count ");
    ASSERT_NE(count, std::string::npos);
    EXPECT_GE(std::stoi(bytes.substr(count + 7)), 3);
    std::filesystem::remove(path);
}

TEST_F(ModuleTest, PrintingWhereNothingCanBeWrittenSaysSo)
{
    std::string problem;
    EXPECT_FALSE(PrintTextToPdf("/no/such/folder/a.pdf", "report.txt", "text", problem));
    EXPECT_FALSE(problem.empty());
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

TEST_F(ModuleTest, MissingFileIsNotOpened)
{
    EXPECT_FALSE(OpenWithDesktop("/no/such/file.txt"));
    EXPECT_FALSE(OpenWithDesktop(""));
}

}  // namespace
}  // namespace jotlet
