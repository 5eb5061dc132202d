#include "platform/base/start_program.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace jotlet {

bool StartProgram(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (words.empty() || posix_spawnp(&child, words[0].c_str(), nullptr, nullptr, arguments.data(), environ) != 0)
        return false;
    try {
        std::thread([child] {
            while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
            }
        }).detach();
    } catch (const std::system_error&) {
        // Without a thread its entry stays until we end; it runs all the same.
    }
    return true;
}

}  // namespace jotlet
