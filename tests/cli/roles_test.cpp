// Who may do what, and where passwords come from.
#include "cli/jotctl_fixture.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

#include "store/open_table.h"

namespace jotlet::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class RolesTest : public JotctlTest {
protected:
    RolesTest()
    {
        NewFile();
        openId = Add("open");
        secretId = Add("secret", "hush", {"--confidential"});
    }

    void SetPasswords(const std::string& three = "own\nass\nread\n")
    {
        ASSERT_THAT(Run({"passwd", file}, three), ExitsWith(0));
    }
    std::vector<std::string> TitlesAs(const std::string& password)
    {
        std::vector<std::string> titles;
        for (const nlohmann::json& note : RunAs(password, {"list", file, "--json"}).Json())
            titles.push_back(note["title"]);
        return titles;
    }

    std::string openId;
    std::string secretId;
};

TEST_F(RolesTest, EachRoleMayDoItsShareAndNoMore)
{
    SetPasswords();
    EXPECT_THAT(TitlesAs("own"), ElementsAre("open", "secret"));
    EXPECT_THAT(TitlesAs("ass"), ElementsAre("open"));
    EXPECT_THAT(TitlesAs("read"), ElementsAre("open"));
    const std::string report = Path("report.txt");
    EXPECT_THAT(RunAs("ass", {"report", file, report, "--to", "2099-12-31"}), ExitsWith(0));
    EXPECT_THAT(Read(report), AllOf(HasSubstr("open"), Not(HasSubstr("hush"))));

    const std::string csv = Write("in.csv", "Title,Text\r\na,b\r\n");
    struct Case {
        const char* role;
        Arguments arguments;
        int code;
    };
    const std::string before = Read(file);
    for (const Case& c : {Case{"ass", {"show", file, secretId}, 1},
                          {"read", {"show", file, secretId}, 1},
                          {"ass", {"edit", file, secretId, "--title", "x"}, 1},
                          {"ass", {"delete", file, secretId}, 1},
                          {"ass", {"edit", file, openId, "--confidential"}, 4},
                          {"ass", {"add", file, "--title", "a", "--text", "b", "--confidential"}, 4},
                          {"read", {"add", file, "--title", "a", "--text", "b"}, 4},
                          {"read", {"edit", file, openId, "--title", "a"}, 4},
                          {"read", {"delete", file, openId}, 4},
                          {"read", {"import", file, csv}, 4},
                          {"OWN", {"list", file}, 3},
                          {"", {"delete", file, openId}, 3},
                          {"no", {"export", file, Path("out.csv")}, 3}}) {
        SCOPED_TRACE(c.role + (' ' + c.arguments[0]));
        EXPECT_THAT(RunAs(c.role, c.arguments), Complains(c.code, file));
        EXPECT_EQ(Read(file), before);
    }
    EXPECT_FALSE(std::filesystem::exists(Path("out.csv")));
    EXPECT_THAT(Run({"show", file, openId}), Complains(3, "--password-file"));
    EXPECT_THAT(RunAs("own", {"edit", file, secretId, "--title", "told"}), ExitsWith(0));
    EXPECT_THAT(RunAs("ass", {"edit", file, openId, "--title", "b"}), ExitsWith(0));
    EXPECT_THAT(TitlesAs("own"), ElementsAre("b", "told"));
}

// The empty password equals those that are not set, and the Assistant's is tested first.
TEST_F(RolesTest, APasswordThatIsNotSetIsTheEmptyOne)
{
    SetPasswords("own\n\n\n");
    EXPECT_THAT(Titles(), ElementsAre("open"));
    EXPECT_THAT(Run({"edit", file, openId, "--title", "b"}), ExitsWith(0));
    EXPECT_THAT(Run({"edit", file, secretId, "--title", "b"}), Complains(1, file));
    ASSERT_THAT(Run({"passwd", file}, "\nass\nread\n", {{"JOTLET_PASSWORD", "own"}}), ExitsWith(0));
    EXPECT_THAT(TitlesAs("whatever"), ElementsAre("b", "secret"));
}

TEST_F(RolesTest, ThePasswordFileComesBeforeTheEnvironmentAndItsFirstLineCounts)
{
    SetPasswords();
    const std::string secret = Write("secret", "own\r\nsecond line");
    const Outcome listed = RunAs("wrong", {"list", file, "--json", "--password-file", secret});
    ASSERT_THAT(listed, ExitsWith(0));
    EXPECT_EQ(listed.Json().size(), 2u);
    EXPECT_THAT(RunAs("own", {"list", file, "--password-file", Path("none")}), Complains(3, Path("none")));
    EXPECT_THAT(RunAs("own", {"list", file, "--password-file", folder.string()}), Complains(3, folder.string()));
}

TEST_F(RolesTest, OnlyTheOwnerReplacesThePasswordsByThreeLinesOfAtMostNineteenBytes)
{
    SetPasswords();
    const std::string before = Read(file);
    const auto passwd = [&](const std::string& role, const std::string& input) {
        return Run({"passwd", file}, input, {{"JOTLET_PASSWORD", role}});
    };
    EXPECT_THAT(passwd("ass", "a\nb\nc\n"), Complains(4, file));
    EXPECT_THAT(passwd("nobody", "a\nb\nc\n"), Complains(3, file));
    EXPECT_THAT(passwd("own", "own\nass\n"), Complains(2, "three passwords"));
    EXPECT_THAT(passwd("own", "own\nass\n" + std::string(20, 'x') + "\n"), Complains(2, "19"));
    EXPECT_EQ(Read(file), before);
    ASSERT_THAT(passwd("own", std::string(19, 'x') + "\n\nlast, unended"), ExitsWith(0));
    const nlohmann::json set = {{"owner", true}, {"assistant", false}, {"reader", true}};
    EXPECT_EQ(Info()["passwords"], set);
    EXPECT_THAT(TitlesAs(std::string(19, 'x')), ElementsAre("open", "secret"));
}

TEST_F(RolesTest, ANoteThatAnotherUserHoldsIsRefusedAndReadable)
{
    const OpenedTable other = OpenTable(file, "", kNoteRecordSize);
    ASSERT_TRUE(other);
    ASSERT_EQ(other.table->LockRecord(kFirstRecordOffset), 1);
    EXPECT_THAT(Run({"edit", file, openId, "--title", "x"}), Complains(5, file));
    EXPECT_THAT(Run({"delete", file, openId}), Complains(5, "another user"));
    EXPECT_EQ(Run({"show", file, openId, "--json"}).Json()["locked"], true);
    EXPECT_THAT(Run({"edit", file, secretId, "--title", "free"}), ExitsWith(0));
}

// Plays the user at a terminal: waits for each question, types the answer, gives all that the terminal showed.
class TerminalSession {
public:
    explicit TerminalSession(const Arguments& arguments)
    {
        child = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            std::vector<std::string> words = {JOTCTL_PATH};
            words.insert(words.end(), arguments.begin(), arguments.end());
            std::vector<char*> pointers;
            for (std::string& word : words)
                pointers.push_back(word.data());
            pointers.push_back(nullptr);
            unsetenv("JOTLET_PASSWORD");
            execv(JOTCTL_PATH, pointers.data());
            _exit(127);
        }
    }
    ~TerminalSession()
    {
        close(terminal);
        if (child > 0)
            kill(child, SIGKILL);
    }

    // Reads until `text` stands at the end of what is shown; false at the end of the program, or when nothing comes.
    bool WaitFor(const std::string& text)
    {
        char c = 0;
        while (!shown.ends_with(text)) {
            pollfd wanted{terminal, POLLIN, 0};
            if (poll(&wanted, 1, 30'000) != 1 || read(terminal, &c, 1) != 1)
                return false;
            shown += c;
        }
        return true;
    }
    void Type(const std::string& text) { ASSERT_EQ(write(terminal, text.data(), text.size()), ssize_t(text.size())); }
    int Wait()
    {
        WaitFor(std::string(1, '\0'));
        int status = 0;
        waitpid(std::exchange(child, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string shown;

private:
    int terminal = -1;
    pid_t child = -1;
};

TEST_F(RolesTest, OnATerminalNewPasswordsAreTypedTwice)
{
    TerminalSession session({"passwd", file});
    for (const auto& [question, typed] :
         std::vector<std::pair<std::string, std::string>>{{"New Owner password (empty: none): ", "own"},
                                                          {"again: ", "own"},
                                                          {"New Assistant password (empty: none): ", ""},
                                                          {"again: ", ""},
                                                          {"New Reader password (empty: none): ", "read"},
                                                          {"again: ", "reed"}}) {
        ASSERT_TRUE(session.WaitFor(question)) << session.shown;
        session.Type(typed + "\n");
    }
    EXPECT_EQ(session.Wait(), 1) << session.shown;
    EXPECT_THAT(session.shown, HasSubstr("You did not enter the same password."));
    EXPECT_EQ(Info()["passwords"]["owner"], false);
}

TEST_F(RolesTest, AtThePromptNothingIsShownTheFileIsNotYetOpenAndCtrlCGivesUp)
{
    SetPasswords("own\n\n\n");  // without a password the user would be the Assistant
    const std::string before = Read(file);
    for (const auto& [typed, code] : {std::pair{"own\n", 0}, {"ow\x03", 3}}) {
        TerminalSession session({"list", file});
        ASSERT_TRUE(session.WaitFor(": ")) << session.shown;
        EXPECT_EQ(Read(file), before);
        session.Type(typed);
        EXPECT_EQ(session.Wait(), code) << session.shown;
        EXPECT_THAT(session.shown, Not(HasSubstr("own\r")));
        EXPECT_EQ(session.shown.find("\topen\r") != std::string::npos, code == 0) << session.shown;
    }
}

}  // namespace
}  // namespace jotlet::test
