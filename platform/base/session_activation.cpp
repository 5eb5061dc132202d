#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "platform/base/session.h"

namespace jotlet {
namespace {

std::string TokenFile()
{
    const std::string folder = SessionFolder();
    return folder.empty() ? folder : folder + "/activation";
}

}  // namespace

void LeaveActivationToken()
{
    const char* token = std::getenv("XDG_ACTIVATION_TOKEN");
    const std::string path = TokenFile();
    if (!token || path.empty())
        return;
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return;
    const std::string text = token;
    if (write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        unlink(path.c_str());
    close(fd);
}

std::string TakeActivationToken()
{
    const std::string path = TokenFile();
    const int fd = path.empty() ? -1 : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return {};
    std::array<char, 1024> bytes;
    const ssize_t length = read(fd, bytes.data(), bytes.size());
    close(fd);
    unlink(path.c_str());
    return length > 0 ? std::string(bytes.data(), static_cast<std::size_t>(length)) : std::string();
}

}  // namespace jotlet
