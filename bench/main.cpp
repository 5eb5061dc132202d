// Everyday work on 10,000 notes in proportion to SQLite, or to a bare write. What is measured stands in
// notes_contests.cpp and interchange_contests.cpp.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "bench/interchange_contests.h"
#include "bench/notes_contests.h"

namespace {

// Removed with all that is in it at the end. Beside the program and not in /tmp, which may live in memory, where a
// flush costs nothing.
struct WorkFolder {
    WorkFolder()
    {
        std::string name = (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "bench-XXXXXX").string();
        path = mkdtemp(name.data()) ? name : std::string();
    }
    ~WorkFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::string path;
};

}  // namespace

int main(int argc, char** argv)
{
    const WorkFolder folder;
    if (folder.path.empty()) {
        std::perror("The work folder cannot be made");
        return 1;
    }
    std::vector<jotlet::Contest> contests = jotlet::MakeNotesContests(folder.path);
    for (jotlet::Contest& contest : jotlet::MakeInterchangeContests(folder.path))
        contests.push_back(std::move(contest));
    const int missed = jotlet::RunContests(contests, argc, argv);
    if (missed > 0)
        std::printf("\n%d of the ratios above %s larger than wanted.\n", missed, missed == 1 ? "is" : "are");
    return missed < 0 ? 2 : 0;
}
