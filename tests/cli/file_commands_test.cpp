// new, info, check, compact.
#include "cli/jotctl_fixture.h"
#include "store/open_table.h"

namespace jotlet::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

using FileCommandsTest = JotctlTest;

constexpr std::size_t kOpenCountAt = 12 + 1018;

TEST_F(FileCommandsTest, ANewFileIsEmptyAndHasTheFifteenCategories)
{
    NewFile();
    EXPECT_EQ(std::filesystem::file_size(file), 2625u);
    const nlohmann::json info = Info();
    EXPECT_EQ(info["categories"].size(), 15u);
    EXPECT_EQ(info["categories"][0], "Calls");
    EXPECT_EQ(info["categories"][14], "Test");
    const nlohmann::json passwords = {{"owner", false}, {"assistant", false}, {"reader", false}};
    EXPECT_EQ(info["passwords"], passwords);
    EXPECT_EQ(info["copies"], nlohmann::json::array());
    const std::map<std::string, nlohmann::json> values = {
        {"headerSize", 1581},    {"categorySize", 1032}, {"recordSize", 3557}, {"fileType", "Notes"},
        {"family", "Organizer"}, {"version", 3},         {"freeSlots", 0},     {"changeStamp", 10},
        {"openCount", 0},        {"slots", 0},           {"live", 0},          {"locked", 0}};
    for (const auto& [name, value] : values)
        EXPECT_EQ(info[name], value) << name;
    EXPECT_EQ(info.size(), values.size() + 3);
}

TEST_F(FileCommandsTest, NewRefusesAFileThatIsThereAndAPlaceWhereNoneCanBe)
{
    const std::string text = Write("letter.txt", "dear");
    EXPECT_THAT(Run({"new", text}), Complains(1, text));
    EXPECT_EQ(Read(text), "dear");
    const std::string lost = Path("nowhere/notes.jot");
    EXPECT_THAT(Run({"new", lost}), Complains(3, lost));
    EXPECT_THAT(Run({"new", "/proc/notes.jot"}), Complains(3, "/proc/notes.jot"));
    EXPECT_THAT(Run({"new", folder.string()}), Complains(1, folder.string()));
    file = Path("examples.jot");
    ASSERT_THAT(Run({"new", file, "--examples"}), ExitsWith(0));
    EXPECT_THAT(Titles(), ElementsAre("Alarm", "Colors", "Equivalent", "Texts"));
}

TEST_F(FileCommandsTest, AFileInUseShowsItsUsersAndIsNeitherCheckedNorCompacted)
{
    NewFile();
    Add("a");
    Add("b");
    Run({"delete", file, Add("c")});
    {
        const OpenedTable other = OpenTable(file, "", kNoteRecordSize);
        ASSERT_TRUE(other);
        ASSERT_EQ(other.table->LockRecord(kFirstRecordOffset), 1);
        EXPECT_EQ(Info()["openCount"], 1);
        EXPECT_EQ(Info()["locked"], 1);
        EXPECT_EQ(Info()["live"], 2);
        const std::string before = Read(file);
        EXPECT_THAT(Run({"compact", file}), Complains(1, file));
        EXPECT_THAT(Run({"check", file}), Complains(1, file));
        EXPECT_EQ(Read(file), before);
        other.table->UnlockRecord(kFirstRecordOffset);
    }
    EXPECT_EQ(Info()["openCount"], 0);
    EXPECT_THAT(Run({"info", file}).out, HasSubstr("live:          2\n"));
}

TEST_F(FileCommandsTest, CheckLeavesASoundFileAloneAndRepairsOneThatWasNotClosed)
{
    NewFile();
    const std::string kept = Add("a");
    Run({"delete", file, Add("b")});
    const std::string before = Read(file);
    EXPECT_THAT(Run({"check", file}).out, EndsWith("in order\n"));
    EXPECT_EQ(Read(file), before);

    std::string crashed = before;
    crashed[kOpenCountAt] = 1;  // a copy was killed
    crashed[2625 + 5] = 1;      // while it held the first note
    Write("notes.jot", crashed);
    EXPECT_THAT(Run({"check", file}).out, EndsWith("repaired\n"));
    EXPECT_EQ(Read(file),
              before.substr(0, 12 + 1006) + std::string(4, '\0') + before.substr(12 + 1010, 2625 + 3557 - 12 - 1010));
    Write("notes.jot", crashed);
    EXPECT_THAT(Run({"edit", file, kept, "--title", "c"}), ExitsWith(0)) << "every command repairs first";
}

// What no crash has left: the counters say that all is well.
TEST_F(FileCommandsTest, CheckTellsWhatIsWrongInAFileThatWasClosed)
{
    NewFile();
    Add("a");
    Run({"delete", file, Add("b")});
    const std::string sound = Read(file);
    struct Damage {
        std::size_t at;
        char value;
        const char* told;
    };
    for (const Damage& damage : {Damage{12 + 1006, '\xFE', "Free slots: 1, counted in the header: 2"},
                                 {2625 + 5, 1, "Locked notes that nobody holds: 1"},
                                 {2625 + 2 * 3557, 'x', "The last 1 bytes are no whole note"}}) {
        std::string bytes = sound;
        bytes.resize(std::max(bytes.size(), damage.at + 1));
        bytes[damage.at] = damage.value;
        Write("notes.jot", bytes);
        EXPECT_THAT(Run({"check", file}), Complains(1, damage.told));
        EXPECT_THAT(Run({"check", file}), Complains(1, "jotctl compact"));
        const Outcome listed = Run({"list", file, "--json"});
        EXPECT_EQ(listed.Json().size(), 1u);
        EXPECT_EQ(listed.err.find("1 bytes") != std::string::npos, damage.at == 2625 + 2 * 3557) << listed.err;
        EXPECT_EQ(Read(file), bytes);
        EXPECT_THAT(Run({"compact", file}).out, EndsWith("compacted\n"));
        EXPECT_EQ(std::filesystem::file_size(file), 2625u + 3557u);
        EXPECT_THAT(Run({"check", file}), ExitsWith(0));
    }
}

// The last year of the calendar is a setting beside the program, shared with the desktop program.
TEST_F(FileCommandsTest, TheCalendarEndsWhereTheSettingsSay)
{
    NewFile();
    const auto addIn = [&](const std::string& year) {
        return Run({"add", file, "--title", "t", "--text", "t", "--date", year + "-12-31"}).code;
    };
    EXPECT_EQ(addIn("2000"), 0);
    EXPECT_EQ(addIn("2099"), 0);
    EXPECT_EQ(addIn("2100"), 2);
}

}  // namespace
}  // namespace jotlet::test
