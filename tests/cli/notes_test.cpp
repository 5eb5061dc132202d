// list, show, find, add, edit, delete.
#include <functional>
#include <sstream>

#include "cli/jotctl_fixture.h"
#include "notes/model/note_record.h"
#include "platform/base/text.h"
#include "store/open_table.h"

namespace jotlet::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class NotesTest : public JotctlTest {
protected:
    NotesTest() { NewFile(); }

    nlohmann::json Show(const std::string& id) { return Run({"show", file, id, "--json"}).Json(); }
};

TEST_F(NotesTest, AddPrintsTheIdUnderWhichShowFindsAllThatWasGiven)
{
    const Outcome added = Run({"add", file, "--title", "Milk", "--text", "two\nlines", "--category", "Calls",
                               "--colour", "red", "--date", "2010-02-03", "--confidential"});
    ASSERT_THAT(added, ExitsWith(0));
    EXPECT_THAT(added.out, MatchesRegex("[0-9a-f]{16}\n"));

    nlohmann::json note = Show(added.out.substr(0, 16));
    EXPECT_THAT(note["time"].get<std::string>(), MatchesRegex("[0-2][0-9]:[0-5][05]"));
    const nlohmann::json wanted = {{"id", added.out.substr(0, 16)},
                                   {"address", 2625},
                                   {"title", "Milk"},
                                   {"text", "two\r\nlines"},
                                   {"category", "Calls"},
                                   {"colour", "red"},
                                   {"date", "2010-02-03"},
                                   {"time", note["time"]},
                                   {"confidential", true},
                                   {"locked", false},
                                   {"alarm", nullptr},
                                   {"attachment", nullptr},
                                   {"eventState", 0},
                                   {"eventStatus", 1},
                                   {"subject", ""}};
    EXPECT_EQ(note, wanted);

    note = Show(Add("a"));
    const std::time_t now = std::time(nullptr);
    char today[16];
    std::strftime(today, sizeof today, "%Y-%m-%d", std::localtime(&now));
    EXPECT_EQ(note["date"], today);
    EXPECT_EQ(note["colour"], "yellow");
    EXPECT_EQ(note["category"], "");
    EXPECT_EQ(note["confidential"], false);
}

TEST_F(NotesTest, ListAndFindNarrowAndSort)
{
    Add("Tax return", "x", {"--category", "Calls", "--date", "2010-01-03"});
    Add("other", "see the TAXI", {"--category", "Call", "--date", "2010-01-01"});
    Add("taxi", "\u00C4RGER", {"--category", "Calls", "--date", "2010-01-02"});
    struct Case {
        Arguments options;
        std::vector<std::string> byTitle;
    };
    for (const Case& c : {Case{{}, {"other", "Tax return", "taxi"}},
                          {{"--sort", "date"}, {"other", "taxi", "Tax return"}},
                          {{"--category", "calls"}, {"Tax return", "taxi"}},
                          {{"--date", "2010-01-01"}, {"other"}},
                          {{"--date", "2010-01-03", "--category", "Calls"}, {"Tax return"}},
                          {{"--category", "Ideas"}, {}}}) {
        Arguments list = {"list", file};
        list.insert(list.end(), c.options.begin(), c.options.end());
        EXPECT_EQ(Titles(list), c.byTitle) << testing::PrintToString(list);
    }
    EXPECT_THAT(Titles({"find", file, "tax"}), ElementsAre("other", "taxi", "Tax return"));
    EXPECT_THAT(Titles({"find", file, "tax", "--category", "Calls"}), ElementsAre("taxi", "Tax return"));
    EXPECT_THAT(Titles({"find", file, "\u00E4rger"}), ElementsAre("taxi"));
    EXPECT_THAT(Titles({"find", file, "%"}), IsEmpty());
    EXPECT_EQ(Run({"list", file, "--category", "Ideas", "--json"}).out, "[]\n");
    EXPECT_THAT(Run({"find", file, ""}), Complains(2, "find"));
}

TEST_F(NotesTest, EditChangesOnlyWhatItsOptionsName)
{
    const std::string id =
        Add("Milk", "text", {"--category", "Calls", "--colour", "red", "--date", "2010-02-03", "--confidential"});
    nlohmann::json before = Show(id);
    ASSERT_THAT(Run({"edit", file, id, "--title", "Bread"}), ExitsWith(0));
    before["title"] = "Bread";
    EXPECT_EQ(Show(id), before);
    ASSERT_THAT(Run({"edit", file, id, "--text", "new", "--category", "", "--colour", "grey", "--date", "2011-12-31",
                     "--no-confidential"}),
                ExitsWith(0));
    before.update(
        {{"text", "new"}, {"category", ""}, {"colour", "grey"}, {"date", "2011-12-31"}, {"confidential", false}});
    EXPECT_EQ(Show(id), before);
}

TEST_F(NotesTest, DeleteRemovesOneNoteAndTheNextAddTakesItsPlace)
{
    const std::string first = Add("a");
    Add("b");
    ASSERT_THAT(Run({"delete", file, first}), ExitsWith(0));
    EXPECT_THAT(Titles(), ElementsAre("b"));
    EXPECT_EQ(Info()["freeSlots"], -1);
    EXPECT_THAT(Run({"show", file, first}), Complains(1, file));
    EXPECT_THAT(Run({"delete", file, first}), Complains(1, file));
    EXPECT_THAT(Run({"edit", file, first, "--title", "x"}), Complains(1, file));
    EXPECT_EQ(Show(Add("c"))["address"], 2625);
    EXPECT_EQ(Info()["freeSlots"], 0);
}

TEST_F(NotesTest, ATextThatIsTooLongIsRefusedOrWithCutEndsAtAWholeCharacter)
{
    const std::string title = std::string(148, 'a') + "\xC3\xA4";  // the last character would end at byte 150
    const std::string id = Add("kept");
    const std::string before = Read(file);
    for (const auto& [option, size] : {std::pair{"--title", 150}, {"--text", 2024}, {"--category", 30}})
        EXPECT_THAT(Run({"edit", file, id, option, std::string(size, 'x')}), Complains(1, option));
    EXPECT_THAT(Run({"add", file, "--title", title, "--text", "x"}), Complains(1, "--title"));
    EXPECT_EQ(Read(file), before);

    const Outcome added = Run({"add", file, "--title", title, "--text", std::string(3000, 'x'), "--cut"});
    ASSERT_THAT(added, ExitsWith(0));
    EXPECT_THAT(added.err, HasSubstr("--title: Note: cut at 148 bytes"));
    EXPECT_THAT(added.err, HasSubstr("--text: Note: cut at 2023 bytes"));
    const nlohmann::json note = Show(added.out.substr(0, 16));
    EXPECT_EQ(note["title"], std::string(148, 'a'));
    EXPECT_EQ(note["text"], std::string(2023, 'x'));
}

TEST_F(NotesTest, OtherBytesAreShownAsWindows1252AndCannotSteerTheTerminal)
{
    const nlohmann::json note = Show(Add("caf\xE9 \x80", "\xFF\xFE"));
    EXPECT_EQ(note["title"], "caf\u00E9 \u20AC");
    EXPECT_EQ(note["text"], "\u00FF\u00FE");
    const std::string id = Add("a\x1B[2Jb\tc\nd",
                               "\x1B]0;x\x07\xC2\x9B"
                               "1m\nnext");
    const std::string list = Run({"list", file}).out;
    EXPECT_THAT(list, HasSubstr("a?[2Jb c d\n"));
    const std::string page = Run({"show", file, id}).out;
    EXPECT_THAT(page, HasSubstr("?]0;x??1m\nnext\n"));
    EXPECT_THAT(list + page, Not(HasSubstr("\x1B")));
}

TEST_F(NotesTest, ThePageOfANoteNamesWhatItHasAndNothingElse)
{
    const std::string id = Add("plain");
    const auto lines = [&] {
        std::string found;
        std::istringstream page(Run({"show", file, id}).out);
        for (std::string line; std::getline(page, line);)
            for (const char* name : {"Confidential:", "Locked:", "Alarm:", "Attachment:", "Event:"})
                if (line.starts_with(name))
                    found += line + '\n';
        return found;
    };
    EXPECT_EQ(lines(), "");
    const auto change = [&](const std::function<void(NoteRecord&)>& act) {
        const OpenedTable table = OpenTable(file, "", kNoteRecordSize);
        NoteRecord note;
        ASSERT_EQ(table.table->ReadRecord(BytesOf(note), kFirstRecordOffset), 1);
        act(note);
        ASSERT_EQ(table.table->WriteRecord(BytesOf(note), kFirstRecordOffset), 1);
    };
    change([](NoteRecord& note) {
        note.alarmState = kAlarmSet;
        note.alarmDate = DateValue{3, 2, 2010};
        note.alarmTime = TimeValue{1, 5, 0, kAfterNoon};
        note.confidential = 1;
        note.attachmentKind = kAttachmentUrl;
        StoreText(note.attachmentPath, "plan.txt");
        StoreText(note.subject, "Tea");
    });
    const std::string all = lines();
    EXPECT_THAT(all, testing::MatchesRegex("Confidential: +yes\nAlarm: +2010-02-03 13:05\nAttachment: +plan.txt\n"
                                           "Event: +Tea\n"));
    const nlohmann::json note = Show(id);
    EXPECT_NE(note["alarm"], nullptr);
    EXPECT_NE(note["attachment"], nullptr);
    change([](NoteRecord& note) { note.alarmState = kAlarmFired; });
    EXPECT_THAT(lines(), HasSubstr("13:05 (has fired)\n"));
}

TEST_F(NotesTest, ValuesThatNoNoteCanTakeAreUsageErrorsAndChangeNothing)
{
    const std::string id = Add("a");
    const std::string before = Read(file);
    const std::vector<std::pair<Arguments, std::string>> cases = {
        {{"add", file, "--title", "", "--text", "x"}, "--title"},
        {{"add", file, "--title", "x", "--text", ""}, "--text"},
        {{"add", file, "--title", "x"}, "--text"},
        {{"add", file, "--title", "x", "--text", "x", "--colour", "pink"}, "--colour"},
        {{"add", file, "--title", "x", "--text", "x", "--date", "2010-02-30"}, "--date"},
        {{"add", file, "--title", "x", "--text", "x", "--date", "1999-12-31"}, "--date"},
        {{"add", file, "--title", "x", "--text", "x", "--date", "2010-2-3"}, "--date"},
        {{"add", file, "--title", "x", "--text", "x", "--date", "2010-02/03"}, "--date"},
        {{"add", file, "--title", "x", "--text", "x", "--date", "2010/02-03"}, "--date"},
        {{"edit", file, id, "--title", ""}, "--title"},
        {{"edit", file, "xyz", "--title", "b"}, "xyz"},
        {{"show", file, "12345678901234567"}, "12345678901234567"},
        {{"delete", file, "-1"}, ""},
        {{"list", file, "--date", "tomorrow"}, "--date"},
        {{"list", file, "--sort", "size"}, "size"},
        {{"list"}, "FILE"},
        {{"frob", file}, ""},
        {{}, ""},
    };
    for (const auto& [arguments, subject] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_THAT(Run(arguments), Complains(2, subject));
    }
    EXPECT_EQ(Read(file), before);
    const Outcome help = Run({"--help"});
    EXPECT_THAT(help, ExitsWith(0));
    EXPECT_THAT(help.out, HasSubstr("register"));
}

TEST_F(NotesTest, OutputThatCannotBeWrittenIsAFailureButAReaderWhoHasSeenEnoughIsNot)
{
    for (int i = 0; i < 30; ++i)
        Add("note " + std::to_string(i), std::string(2000, 'x'));
    const std::string command = std::string(JOTCTL_PATH) + " list --json '" + file + "' 2>'" + Path("err") + "'";
    EXPECT_EQ(WEXITSTATUS(std::system((command + " >/dev/full").c_str())), 1);
    EXPECT_THAT(Read(Path("err")), HasSubstr("standard output"));
    EXPECT_EQ(std::system(("bash -c \"set -o pipefail; " + command + " | head -c 1\" >/dev/null").c_str()), 0);
    EXPECT_EQ(Read(Path("err")), "");
    EXPECT_EQ(Read(file).substr(12 + 1018, 4), std::string(4, '\0')) << "no opening is left behind";
}

}  // namespace
}  // namespace jotlet::test
