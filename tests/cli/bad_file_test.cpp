// Files that are no note files, damaged ones, and places where nothing can be written: one line of complaint, the right
// exit code, and every byte as it was.
#include "cli/jotctl_fixture.h"

#include <sys/stat.h>

#include "support/child_process.h"

namespace jotlet::test {
namespace {

using testing::HasSubstr;

class BadFileTest : public JotctlTest {
protected:
    // All commands that take an existing file.
    std::vector<Arguments> Commands(const std::string& path)
    {
        const std::string csv = Write("in.csv", "Title,Text\r\na,b\r\n");
        const std::string id = "0123456789abcdef";
        return {{"info", path, "--json"},
                {"list", path},
                {"show", path, id},
                {"find", path, "x"},
                {"add", path, "--title", "a", "--text", "b"},
                {"edit", path, id, "--title", "a"},
                {"delete", path, id},
                {"export", path, Path("out.csv")},
                {"report", path, Path("out.txt")},
                {"import", path, csv},
                {"check", path},
                {"compact", path},
                {"passwd", path}};
    }

    std::string NoteFileBytes()
    {
        NewFile("sound.jot");
        Add("a");
        return Read(file);
    }
};

std::string WithNumber(std::string bytes, std::size_t at, std::uint32_t number)
{
    for (int i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(number >> 8 * i);
    return bytes;
}

TEST_F(BadFileTest, WhatIsNoNoteFileIsRefusedByEveryCommandAndStaysAsItIs)
{
    const std::string sound = NoteFileBytes();
    const std::map<std::string, std::string> files = {
        {"empty", ""},
        {"a picture", "\xFF\xD8\xFF\xE0" + std::string(5000, '\x42')},
        {"text", std::string(9000, 'a')},
        {"cut in the categories", sound.substr(0, 2000)},
        {"header size 4 GB", WithNumber(sound, 0, 0xFFFFFFFF)},
        {"record size 4 GB", WithNumber(sound, 8, 0xFFFFFFFF)},
        {"a contact book", WithNumber(sound, 8, 859)},
    };
    for (const auto& [name, bytes] : files) {
        const std::string path = Write("bad.jot", bytes);
        for (const Arguments& arguments : Commands(path)) {
            // Repairing needs no notes in a table: a contact book is one.
            const bool isUpkeep = arguments[0] == "check" || arguments[0] == "compact";
            if (name == "a contact book" && isUpkeep)
                continue;
            // Every command on one file; on the others those that open, write and rewrite.
            if (name != "text" && !isUpkeep && arguments[0] != "list" && arguments[0] != "add")
                continue;
            SCOPED_TRACE(name + ": " + arguments[0]);
            ASSERT_THAT(Run(arguments), Complains(3, path));
            ASSERT_EQ(Read(path), bytes);
        }
    }
    EXPECT_FALSE(std::filesystem::exists(Path("out.csv")));
    EXPECT_FALSE(std::filesystem::exists(Path("bad.jot.temp")));
}

TEST_F(BadFileTest, FoldersDevicesPipesAndMissingFilesAreRefusedWithoutWaiting)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {folder.string(), Path("none.jot"), Path("pipe"), std::string("/dev/zero"),
                                    std::string("/dev/full"), std::string()})
        for (const Arguments& arguments : Commands(path)) {
            SCOPED_TRACE(path + ": " + arguments[0]);
            ASSERT_THAT(Run(arguments), Complains(3, path));
        }
    EXPECT_FALSE(std::filesystem::exists(Path("none.jot")));
}

// A limit of the file size stops a write in its middle as a full disk does, and needs no disk of its own.
TEST_F(BadFileTest, AFullDiskLeavesTheFileAsItWasAndNothingHalfMade)
{
    std::string bytes = NoteFileBytes();
    const std::string csv = Write("in.csv", "Title,Text\r\na,b\r\n");
    const std::string outPath = Path("said");
    const auto runWithin = [&](int halfKilobytes, const Arguments& arguments) {
        std::string command = "trap '' XFSZ; ulimit -f " + std::to_string(halfKilobytes) + "; exec";
        for (const std::string& word : arguments)
            command += " '" + word + "'";
        const int status = std::system((command + " >/dev/null 2>'" + outPath + "'").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    };
    constexpr int kRoomForHalfANote = 16;  // 8192 bytes; the file has 6182
    for (const Arguments& arguments :
         {Arguments{JOTCTL_PATH, "add", file, "--title", "a", "--text", "b"}, {JOTCTL_PATH, "import", file, csv}}) {
        SCOPED_TRACE(arguments[1]);
        EXPECT_EQ(runWithin(kRoomForHalfANote, arguments), 1);
        EXPECT_THAT(Read(outPath), HasSubstr(file));
        EXPECT_EQ(Read(file), bytes);
    }
    constexpr int kRoomForHalfAFile = 8;  // 4096 bytes
    EXPECT_EQ(runWithin(kRoomForHalfAFile, {JOTCTL_PATH, "compact", file}), 1);
    EXPECT_EQ(Read(file), bytes);
    EXPECT_FALSE(std::filesystem::exists(file + ".temp"));
    EXPECT_EQ(runWithin(4, {JOTCTL_PATH, "new", Path("new.jot")}), 3);
    EXPECT_EQ(runWithin(kRoomForHalfANote, {JOTCTL_PATH, "new", Path("new.jot"), "--examples"}), 3);
    EXPECT_FALSE(std::filesystem::exists(Path("new.jot")));

    EXPECT_THAT(Run({"add", file, "--title", "c", "--text", "b"}), ExitsWith(0)) << "with room again all is well";
    EXPECT_EQ(Titles({"list", file}).size(), 2u);
}

TEST_F(BadFileTest, AFileThatMayNotBeWrittenIsRefused)
{
    const std::string bytes = NoteFileBytes();
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::group_read |
                                           std::filesystem::perms::others_read);
    const std::string outPath = Path("said");
    const int failures = RunAsOrdinaryUser(folder.string(), [&] {
        int wrong = 0;
        for (const Arguments& arguments : Commands(file)) {
            std::string command = std::string("'") + JOTCTL_PATH + "'";
            for (const std::string& argument : arguments)
                command += " '" + argument + "'";
            const int status = std::system((command + " </dev/null >/dev/null 2>>'" + outPath + "'").c_str());
            wrong += WIFEXITED(status) && WEXITSTATUS(status) == 3 ? 0 : 1;
        }
        return wrong;
    });
    EXPECT_EQ(failures, 0) << Read(outPath);
    EXPECT_THAT(Read(outPath), HasSubstr(file));
    EXPECT_EQ(Read(file), bytes);
}

}  // namespace
}  // namespace jotlet::test
