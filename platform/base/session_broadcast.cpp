#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/base/session.h"

namespace jotlet {

namespace {

constexpr std::uint32_t kMagic = 0x314D5750;  // "PWM1"
constexpr std::string_view kSocketPrefix = "copy-";
// A flood is served in portions, so that the event loop gets its turn.
constexpr int kMostInOneDispatch = 64;

// What travels. Both ends run on one computer, so its byte order will do.
struct Datagram {
    std::uint32_t magic;
    std::uint32_t code;
    std::int64_t value;
    std::uint64_t sender;
};
static_assert(sizeof(Datagram) == 24);

std::uint64_t RandomNumber()
{
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<std::uint64_t>(getpid());
    return number;
}

// Tells this process from all others, a forked child from its parent included.
std::uint64_t SenderId()
{
    static pid_t owner = 0;
    static std::uint64_t id = 0;
    if (owner != getpid()) {
        owner = getpid();
        id = RandomNumber();
    }
    return id;
}

// A socket's address holds 108 bytes, and the folder's path alone may be longer; so the address goes through an open
// handle on the folder.
class FolderHandle {
public:
    explicit FolderHandle(const std::string& folder)
        : fd(folder.empty() ? -1 : open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~FolderHandle()
    {
        if (fd >= 0)
            close(fd);
    }
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;

    int Get() const { return fd; }

    bool Address(const char* name, sockaddr_un& address) const
    {
        address = {};
        address.sun_family = AF_UNIX;
        const int length = std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", fd, name);
        return length > 0 && static_cast<std::size_t>(length) < sizeof address.sun_path;
    }

private:
    int fd;
};

std::vector<std::string> SocketNames(const std::string& folder)
{
    std::vector<std::string> names;
    if (DIR* walk = opendir(folder.c_str())) {
        while (const dirent* entry = readdir(walk))
            if (std::string_view(entry->d_name).starts_with(kSocketPrefix))
                names.emplace_back(entry->d_name);
        closedir(walk);
    }
    return names;
}

int NewSocket()
{
    return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

}  // namespace

BroadcastReceiver::BroadcastReceiver(int fd, std::string path, Handler handler)
    : fd(fd), path(std::move(path)), handler(std::move(handler))
{
}

BroadcastReceiver::~BroadcastReceiver()
{
    unlink(path.c_str());
    close(fd);
}

std::unique_ptr<BroadcastReceiver> BroadcastReceiver::Open(Handler handler)
{
    const std::string folderPath = SessionFolder();
    const FolderHandle folder(folderPath);
    const int fd = folder.Get() >= 0 ? NewSocket() : -1;
    if (fd < 0)
        return nullptr;
    for (int attempt = 0; attempt < 10; ++attempt) {
        char number[20];
        std::snprintf(number, sizeof number, "%016llx", static_cast<unsigned long long>(RandomNumber()));
        // Bound under another name first: a sender that met the file before the socket stands behind it would take it
        // for a dead copy's and sweep it.
        const std::string fresh = std::string("new-") + number;
        const std::string name = std::string(kSocketPrefix) + number;
        sockaddr_un address;
        if (!folder.Address(fresh.c_str(), address))
            break;
        if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            if (renameat(folder.Get(), fresh.c_str(), folder.Get(), name.c_str()) == 0)
                return std::unique_ptr<BroadcastReceiver>(
                    new BroadcastReceiver(fd, folderPath + '/' + name, std::move(handler)));
            unlinkat(folder.Get(), fresh.c_str(), 0);
            break;
        }
        if (errno != EADDRINUSE)
            break;
    }
    close(fd);
    return nullptr;
}

int BroadcastReceiver::Dispatch()
{
    int delivered = 0;
    for (int taken = 0; taken < kMostInOneDispatch; ++taken) {
        Datagram datagram{};
        const ssize_t length = recv(fd, &datagram, sizeof datagram, MSG_TRUNC);
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            break;
        if (length != sizeof datagram || datagram.magic != kMagic)
            continue;
        ++delivered;
        if (handler)
            handler({datagram.code, datagram.value, datagram.sender == SenderId()});
    }
    return delivered;
}

int BroadcastToCopies(std::uint32_t code, std::int64_t value)
{
    const std::string folderPath = SessionFolder();
    const FolderHandle folder(folderPath);
    const int fd = folder.Get() >= 0 ? NewSocket() : -1;
    if (fd < 0)
        return 0;
    const Datagram datagram{kMagic, code, value, SenderId()};
    for (const std::string& name : SocketNames(folderPath)) {
        sockaddr_un address;
        if (!folder.Address(name.c_str(), address))
            continue;
        const ssize_t sent = sendto(fd, &datagram, sizeof datagram, MSG_NOSIGNAL,
                                    reinterpret_cast<const sockaddr*>(&address), sizeof address);
        // Nobody holds the socket any more: its process died before it could clean up.
        if (sent < 0 && errno == ECONNREFUSED)
            unlinkat(folder.Get(), name.c_str(), 0);
    }
    close(fd);
    return 1;
}

}  // namespace jotlet
