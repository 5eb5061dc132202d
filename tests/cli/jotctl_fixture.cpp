#include "cli/jotctl_fixture.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace jotlet::test {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void Redirect(int descriptor, const std::string& path, int flags)
{
    const int opened = open(path.c_str(), flags, 0600);
    if (opened < 0 || dup2(opened, descriptor) < 0)
        _exit(126);
    close(opened);
}

}  // namespace

JotctlTest::JotctlTest()
{
    std::string name = (std::filesystem::temp_directory_path() / "jotctl-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    folder = name;
}

JotctlTest::~JotctlTest()
{
    std::error_code ignored;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(folder, ignored);
}

Outcome JotctlTest::Run(const Arguments& arguments, const std::string& input,
                        const std::map<std::string, std::string>& environment)
{
    const std::string inPath = Write(".in", input);
    std::vector<std::string> words = {JOTCTL_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings = {"PATH=/usr/bin:/bin", "HOME=" + folder.string()};
    for (const char* kept : {"ASAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = std::getenv(kept))
            settings.push_back(std::string(kept) + '=' + value);
    for (const auto& [name, value] : environment)
        settings.push_back(name + '=' + value);
    const std::vector<char*> wordPointers = Pointers(words);
    const std::vector<char*> settingPointers = Pointers(settings);

    const pid_t child = fork();
    if (child == 0) {
        setsid();  // no terminal to ask on
        Redirect(STDIN_FILENO, inPath, O_RDONLY);
        Redirect(STDOUT_FILENO, Path(".out"), O_WRONLY | O_CREAT | O_TRUNC);
        Redirect(STDERR_FILENO, Path(".err"), O_WRONLY | O_CREAT | O_TRUNC);
        execve(words[0].c_str(), wordPointers.data(), settingPointers.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read(Path(".out")), Read(Path(".err"))};
}

Outcome JotctlTest::RunAs(const std::string& password, const Arguments& arguments)
{
    return Run(arguments, {}, {{"JOTLET_PASSWORD", password}});
}

std::string JotctlTest::NewFile(const std::string& name)
{
    file = Path(name);
    EXPECT_THAT(Run({"new", file}), ExitsWith(0));
    return file;
}

std::string JotctlTest::Add(const std::string& title, const std::string& text, const Arguments& more)
{
    Arguments arguments = {"add", file, "--title", title, "--text", text};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome added = Run(arguments);
    EXPECT_THAT(added, ExitsWith(0));
    return added.out.substr(0, added.out.find('\n'));
}

std::vector<std::string> JotctlTest::Titles(Arguments arguments)
{
    arguments.push_back("--json");
    const Outcome listed = Run(arguments);
    EXPECT_THAT(listed, ExitsWith(0));
    std::vector<std::string> titles;
    for (const nlohmann::json& note : listed.Json())
        titles.push_back(note.value("title", "?"));
    return titles;
}

std::string JotctlTest::Write(const std::string& name, const std::string& bytes)
{
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
}

std::string JotctlTest::Read(const std::string& path)
{
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

}  // namespace jotlet::test
