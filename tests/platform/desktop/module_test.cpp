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
