// One host's part in a trial of a shared drive. try_drive.sh puts the parts together.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/drives/check.h"
#include "bench/drives/host.h"
#include "bench/drives/measure.h"
#include "bench/drives/rival.h"

namespace {

constexpr const char* kUsage =
    "trial make FILE                                        a file with notes to count up\n"
    "trial work FILE HOST SEED CHANGES SECONDS JOURNAL KILLS [JOTCTL]\n"
    "trial check FILE after-kills|sound|unmoved JOURNAL...  changes confirmed, and faults by kind\n"
    "trial tell FILE COUNT                                  changes for another host to see\n"
    "trial watch FILE COUNT                                 how soon they are seen\n"
    "trial fill FILE COUNT\n"
    "trial cost FILE MOUNT FOREIGN-FILE                     server calls\n"
    "trial rival SERVER MOUNT FOREIGN-MOUNT FILE            times beside SQLite's\n";

int RunCheck(const std::vector<std::string>& words)
{
    using jotlet::Strictness;
    const Strictness strictness = words[2] == "unmoved" ? Strictness::Unmoved
                                  : words[2] == "sound" ? Strictness::Sound
                                                        : Strictness::AfterKills;
    return jotlet::Check(words[1], strictness, {words.begin() + 3, words.end()});
}

int RunWork(const std::vector<std::string>& words)
{
    return jotlet::Work({words[1], words[2][0], static_cast<unsigned>(std::stoul(words[3])), std::stoi(words[4]),
                         std::stoi(words[5]), words[6], std::stoi(words[7]), words.size() > 8 ? words[8] : ""});
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string command = words.empty() ? "" : words[0];
    if (command == "make" && words.size() == 2)
        return jotlet::MakeFile(words[1]);
    if (command == "work" && words.size() >= 8)
        return RunWork(words);
    if (command == "check" && words.size() >= 4)
        return RunCheck(words);
    if (command == "tell" && words.size() == 3)
        return jotlet::Tell(words[1], std::stoi(words[2]));
    if (command == "watch" && words.size() == 3)
        return jotlet::Watch(words[1], std::stoi(words[2]));
    if (command == "fill" && words.size() == 3)
        return jotlet::Fill(words[1], std::stoi(words[2]));
    if (command == "cost" && words.size() == 4)
        return jotlet::Cost(words[1], words[2], words[3]);
    if (command == "rival" && words.size() == 5)
        return jotlet::Rival(words[1], words[2], words[3], words[4]);
    std::fputs(kUsage, stderr);
    return 2;
}
