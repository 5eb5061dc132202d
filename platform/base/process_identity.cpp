#include "platform/base/process_identity.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace jotlet {
namespace {

// 0 when there is no such process, or none that we may look at.
std::uint64_t StartOf(std::int32_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    const std::string line{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::size_t nameEnd = line.rfind(')');  // a program's name may hold anything
    if (nameEnd == std::string::npos)
        return 0;
    std::istringstream words(line.substr(nameEnd + 1));
    constexpr int kStartField = 20;  // counted behind the name
    std::string word;
    for (int i = 0; i < kStartField && words >> word; ++i)
        ;
    const bool isZombie = line.compare(nameEnd + 1, 2, " Z") == 0;
    return isZombie || word.empty() ? 0 : std::strtoull(word.c_str(), nullptr, 10);
}

std::string SystemName()
{
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string boot;
    std::getline(file, boot);
    std::error_code error;
    return boot + " " + std::filesystem::read_symlink("/proc/self/ns/pid", error).string();
}

}  // namespace

ProcessIdentity ThisProcess()
{
    static const std::string system = SystemName();
    return {system, getpid(), StartOf(getpid())};
}

bool IsKnownDead(const ProcessIdentity& who)
{
    const ProcessIdentity here = ThisProcess();
    // Without a /proc that shows ourselves nothing can be said of others.
    return who.system == here.system && here.started != 0 && StartOf(who.process) != who.started;
}

std::string HostName()
{
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string UserName()
{
    const passwd* entry = getpwuid(geteuid());
    return entry && entry->pw_name ? entry->pw_name : std::to_string(geteuid());
}

}  // namespace jotlet
