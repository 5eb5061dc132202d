#include "platform/base/file_mapping.h"

#include "platform/base/file_system.h"
#include "support/failing_file_system.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

class FileMappingTest : public testing::Test {
protected:
    FileMappingTest() : path(folder.File("file"))
    {
        WriteAll(path, std::string(100'000, 'a') + "b");
        file.Reset(FileOpen(path));
    }
    // The byte at `at`, or '!' when it can't be read.
    char At(const FileMapping& mapping, std::size_t at)
    {
        volatile char byte = 0;
        return mapping.Guarded([&] { byte = static_cast<char>(mapping.Bytes()[at]); }) ? byte : '!';
    }
    TempFolder folder;
    std::string path;
    FileHandleOwner file;
};

TEST_F(FileMappingTest, ShowsWhatIsWrittenAndFollowsTheSize)
{
    FileMapping mapping;
    ASSERT_TRUE(mapping.Cover(file.Get(), 100'001));
    EXPECT_EQ(At(mapping, 100'000), 'b');
    const std::byte byte{'c'};
    FileWriteWhole(file.Get(), {&byte, 1}, 100'000);
    EXPECT_EQ(At(mapping, 100'000), 'c');
    FileWriteWhole(file.Get(), {&byte, 1}, 5'000'000);
    ASSERT_TRUE(mapping.Cover(file.Get(), 5'000'001));
    EXPECT_EQ(At(mapping, 5'000'000), 'c');
    EXPECT_EQ(At(mapping, 0), 'a');
    ASSERT_TRUE(mapping.Cover(file.Get(), 10));
    EXPECT_EQ(mapping.Bytes().size(), 10u);
    EXPECT_FALSE(mapping.Cover(file.Get(), 0));
    EXPECT_TRUE(mapping.Bytes().empty());
    FailingFileSystem share;
    share.isRemote = true;
    const ScopedFileSystem scope(share);
    EXPECT_FALSE(mapping.Cover(file.Get(), 100'001)) << "files on other machines are not mapped";
    EXPECT_TRUE(mapping.Bytes().empty());
}

TEST_F(FileMappingTest, AFileThatShrinksUnderTheViewIsAFailureAndNoCrash)
{
    FileMapping mapping;
    ASSERT_TRUE(mapping.Cover(file.Get(), 100'001));
    std::filesystem::resize_file(path, 5000);
    EXPECT_EQ(At(mapping, 4999), 'a');
    EXPECT_EQ(At(mapping, 90'000), '!');
    EXPECT_EQ(At(mapping, 90'000), '!');  // and again: the signal isn't left blocked
    std::filesystem::resize_file(path, 0);
    EXPECT_EQ(At(mapping, 0), '!');
    std::filesystem::resize_file(path, 100'001);
    EXPECT_EQ(At(mapping, 90'000), '\0');
}

TEST_F(FileMappingTest, AFaultInsideNestedGuardsLeavesOnlyAsFarAsItsOwnView)
{
    WriteAll(folder.File("other"), std::string(50'000, 'o'));
    const FileHandleOwner other(FileOpen(folder.File("other")));
    FileMapping outer;
    FileMapping inner;
    ASSERT_TRUE(outer.Cover(file.Get(), 100'001));
    ASSERT_TRUE(inner.Cover(other.Get(), 50'000));
    std::filesystem::resize_file(folder.File("other"), 0);
    volatile char innerByte = 0;
    volatile char outerByte = 0;
    EXPECT_TRUE(outer.Guarded([&] {
        innerByte = At(inner, 40'000);
        outerByte = static_cast<char>(outer.Bytes()[1]);
    }));
    EXPECT_EQ(innerByte, '!');
    EXPECT_EQ(outerByte, 'a');
    // A fault of the outer view inside a guard of the inner one leaves both.
    std::filesystem::resize_file(path, 0);
    volatile bool behind = false;
    EXPECT_FALSE(outer.Guarded([&] {
        inner.Guarded([&] { outerByte = static_cast<char>(outer.Bytes()[1]); });
        behind = true;
    }));
    EXPECT_FALSE(behind);
}

TEST(FileMappingDeathTest, AnotherBusErrorStillEndsTheProcess)
{
    TempFolder folder;
    WriteAll(folder.File("file"), std::string(100'000, 'a'));
    const FileHandleOwner file(FileOpen(folder.File("file")));
    EXPECT_DEATH(
        {
            FileMapping mapping;
            mapping.Cover(file.Get(), 100'000);
            std::filesystem::resize_file(folder.File("file"), 0);
            volatile char byte = static_cast<char>(mapping.Bytes()[50'000]);  // unguarded
            (void)byte;
        },
        "");
}

}  // namespace
}  // namespace jotlet::test
