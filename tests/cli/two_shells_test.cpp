// Two shells at work on one file at the same time.
#include "cli/jotctl_fixture.h"

#include <fstream>
#include <set>

#include "support/child_process.h"

namespace jotlet::test {
namespace {

constexpr int kRounds = 25;

class TwoShellsTest : public JotctlTest {
protected:
    // Runs a shell script in a process of its own. `$1` is jotctl, `$2` the note file, `$3` the name of the shell.
    ChildProcess Shell(const std::string& script, const std::string& name)
    {
        return ChildProcess([=, this] {
            const std::string command = "set -eu; jotctl=$1; file=$2; name=$3; cd '" + folder.string() + "'; " + script;
            execl("/bin/sh", "sh", "-c", command.c_str(), "sh", JOTCTL_PATH, file.c_str(), name.c_str(), nullptr);
            return 127;
        });
    }
};

TEST_F(TwoShellsTest, EveryNoteThatWasConfirmedIsThereOnceAndNoCountIsLost)
{
    NewFile();
    // Adds; edits what it added last; deletes every fifth.
    const std::string script = "i=0; while [ $i -lt " + std::to_string(kRounds) + R"( ]; do
        i=$((i + 1))
        id=$("$jotctl" add "$file" --title "$name $i" --text new)
        "$jotctl" edit "$file" "$id" --text "changed by $name"
        if [ $((i % 5)) -eq 0 ]; then "$jotctl" delete "$file" "$id"; else echo "$id" >>"ids-$name"; fi
    done)";
    {
        ChildProcess first = Shell(script, "one");
        ChildProcess second = Shell(script, "two");
        EXPECT_EQ(first.Wait(), 0);
        EXPECT_EQ(second.Wait(), 0);
    }
    std::multiset<std::string> confirmed;
    for (const char* name : {"ids-one", "ids-two"}) {
        std::ifstream ids(Path(name));
        for (std::string id; ids >> id;)
            confirmed.insert(id);
    }
    std::multiset<std::string> found;
    for (const nlohmann::json& note : Run({"list", file, "--json"}).Json()) {
        found.insert(note["id"].get<std::string>());
        const std::string title = note["title"];
        EXPECT_EQ(note["text"], "changed by " + title.substr(0, title.find(' ')));
        EXPECT_EQ(note["locked"], false);
    }
    EXPECT_EQ(found.size(), 2u * kRounds * 4 / 5);
    EXPECT_EQ(found, confirmed);

    const nlohmann::json info = Info();
    EXPECT_EQ(info["openCount"], 0);
    EXPECT_EQ(info["locked"], 0);
    EXPECT_EQ(info["live"], found.size());
    EXPECT_EQ(info["freeSlots"].get<int>(), info["live"].get<int>() - info["slots"].get<int>());
    // Adds, edits and deletes raise the stamp by 1 each.
    EXPECT_EQ(info["changeStamp"], 10 + 2 * (kRounds + kRounds + kRounds / 5));
}

}  // namespace
}  // namespace jotlet::test
