#include "platform/base/silent_drive.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <thread>

#include "platform/base/file_system.h"
#include "platform/base/replace_file.h"
#include "support/temp_folder.h"

namespace jotlet {
namespace {

TEST(SilentDriveTest, CallsInItsFoldersAreRefusedUntilAllWhoSaidSoTakeItBack)
{
    const test::TempFolder folder;
    const std::string path = folder.File("a");
    const FileHandleOwner handle(Files().Open(path, O_RDWR | O_CREAT, 0600));
    ASSERT_TRUE(handle);
    const FileHandle closing = Files().OpenAgain(handle.Get(), 0);
    FileIdentity identity;
    std::byte byte{};
    const auto refused = [&](auto call) {
        errno = 0;
        return call() == -1 && errno == ETIMEDOUT;
    };
    const auto all = [&] {
        return refused([&] { return Files().Open(path, O_RDONLY, 0); }) && refused([&] {
                   return Files().ReadAt(handle.Get(), {&byte, 1}, 0);
               }) &&
               refused([&] {
                   return Files().WriteAt(handle.Get(), {&byte, 1}, 0);
               }) &&
               refused([&] { return Files().Lock(handle.Get(), 0, LockMode::Exclusive); }) &&
               refused([&] { return Files().Sync(handle.Get()); }) &&
               refused([&] { return Files().IdentifyPath(path, identity); }) &&
               refused([&] { return Files().Remove(path); });
    };
    {
        std::optional<SilentDrive> first(std::in_place, FoldersOf(path, handle.Get()));
        const SilentDrive second({folder.Path() + "/deeper", folder.Path()});
        first.reset();
        EXPECT_TRUE(all());
        EXPECT_FALSE(IsOnSilentDrive(folder.Path() + "er/a")) << "a folder that only begins with its name";
        EXPECT_EQ(RealPathOf(path), path);
        Files().Close(closing);
        std::thread([&] {
            const AskSilentDrives asks;
            EXPECT_EQ(Files().IdentifyPath(path, identity), 0);
        }).join();
        EXPECT_TRUE(all()) << "another thread's right is its own";
    }
    EXPECT_EQ(Files().IdentifyPath(path, identity), 0);
}

TEST(SilentDriveTest, BothFoldersOfALinkedFileCount)
{
    const test::TempFolder folder;
    const test::TempFolder links;
    ASSERT_EQ(symlink(folder.File("a").c_str(), links.File("b").c_str()), 0);
    const FileHandleOwner handle(Files().Open(folder.File("a"), O_RDWR | O_CREAT, 0600));
    EXPECT_THAT(FoldersOf(links.File("b"), handle.Get()), testing::ElementsAre(links.Path(), folder.Path()));
}

}  // namespace
}  // namespace jotlet
