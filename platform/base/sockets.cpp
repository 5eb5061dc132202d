#include "platform/base/sockets.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace jotlet {

namespace {

using SteadyClock = std::chrono::steady_clock;
using Deadline = SteadyClock::time_point;

struct Address {
    sockaddr_storage bytes{};
    socklen_t length = 0;
};

// Waits until `fd` is ready for `events`, has failed, or the deadline is there. False at the deadline.
bool WaitFor(int fd, short events, Deadline deadline)
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
        pollfd entry{fd, events, 0};
        const int ready = poll(&entry, 1, static_cast<int>(std::clamp<long long>(left, 0, 1 << 30)));
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return true;  // a failure shows in the call that follows
        if (ready == 0)
            return false;
    }
}

class TcpStream : public ByteStream {
public:
    TcpStream(int fd, std::chrono::milliseconds timeOut) : fd(fd), timeOut(timeOut) {}
    ~TcpStream() override { close(fd); }
    TcpStream(const TcpStream&) = delete;
    TcpStream& operator=(const TcpStream&) = delete;

    SocketError SendAll(std::span<const std::byte> bytes) override
    {
        const Deadline deadline = SteadyClock::now() + timeOut;
        while (!bytes.empty()) {
            const ssize_t sent = send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent > 0)
                bytes = bytes.subspan(static_cast<std::size_t>(sent));
            else if (!MayGoOn(POLLOUT, deadline))
                return lastError;
        }
        return SocketError::None;
    }

    SocketError ReceiveAll(std::span<std::byte> bytes) override
    {
        const Deadline deadline = SteadyClock::now() + timeOut;
        while (!bytes.empty()) {
            const ssize_t got = recv(fd, bytes.data(), bytes.size(), 0);
            if (got > 0)
                bytes = bytes.subspan(static_cast<std::size_t>(got));
            else if (got == 0)
                return SocketError::Closed;
            else if (!MayGoOn(POLLIN, deadline))
                return lastError;
        }
        return SocketError::None;
    }

private:
    // After a call that moved no byte: true when it is worth another try.
    bool MayGoOn(short events, Deadline deadline)
    {
        lastError = SocketError::Io;
        if (errno == EINTR)
            return true;
        if (errno != EAGAIN && errno != EWOULDBLOCK)
            return false;
        lastError = SocketError::TimedOut;
        return WaitFor(fd, events, deadline);
    }

    int fd;
    std::chrono::milliseconds timeOut;
    SocketError lastError = SocketError::None;
};

// What a look-up found. Shared with the helper thread, which may outlive the wait for it.
struct LookUp {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    std::vector<Address> addresses;
};

std::vector<Address> AddressesOf(const std::string& host, std::uint16_t port)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* found = nullptr;
    std::vector<Address> addresses;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return addresses;
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        Address address;
        if (entry->ai_addrlen > sizeof address.bytes)
            continue;
        std::memcpy(&address.bytes, entry->ai_addr, entry->ai_addrlen);
        address.length = entry->ai_addrlen;
        addresses.push_back(address);
    }
    freeaddrinfo(found);
    return addresses;
}

// The addresses; nothing when the deadline came first.
std::optional<std::vector<Address>> Resolve(std::string host, std::uint16_t port, Deadline deadline)
{
    if (host.size() > 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    if (host.empty() || host.find('\0') != std::string::npos)
        return std::vector<Address>();
    const auto lookUp = std::make_shared<LookUp>();
    try {
        std::thread([lookUp, host, port] {
            auto addresses = AddressesOf(host, port);
            const std::lock_guard lock(lookUp->mutex);
            lookUp->addresses = std::move(addresses);
            lookUp->done = true;
            lookUp->changed.notify_one();
        }).detach();
    } catch (const std::system_error&) {
        return AddressesOf(host, port);  // no thread to be had: then without the limit
    }
    std::unique_lock lock(lookUp->mutex);
    if (!lookUp->changed.wait_until(lock, deadline, [&] { return lookUp->done; }))
        return std::nullopt;
    return std::move(lookUp->addresses);
}

// A socket that never blocks, and the limit kept by poll: the socket's own time-outs hold for one system call each,
// which a slow peer can stretch, and not for connecting.
ConnectResult ConnectOne(const Address& address, std::chrono::milliseconds timeOut, Deadline deadline)
{
    const int fd = socket(address.bytes.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return {nullptr, SocketError::Create, errno};
    auto stream = std::make_unique<TcpStream>(fd, timeOut);
    const int flags = fcntl(fd, F_GETFL);
    if (flags < 0 || fcntl(fd, F_SETFL, flags | O_NONBLOCK) != 0)
        return {nullptr, SocketError::Option, errno};
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address.bytes), address.length) != 0) {
        if (errno != EINPROGRESS && errno != EINTR)
            return {nullptr, SocketError::Connect, errno};
        if (!WaitFor(fd, POLLOUT, deadline))
            return {nullptr, SocketError::TimedOut, ETIMEDOUT};
        int failure = 0;
        socklen_t size = sizeof failure;
        if (getsockopt(fd, SOL_SOCKET, SO_ERROR, &failure, &size) != 0)
            failure = errno;
        if (failure != 0)
            return {nullptr, SocketError::Connect, failure};
    }
    return {std::move(stream), SocketError::None, 0};
}

}  // namespace

ConnectResult ConnectTcp(const std::string& host, std::uint16_t port, std::chrono::milliseconds timeOut)
{
    const Deadline deadline = SteadyClock::now() + timeOut;
    const auto addresses = Resolve(host, port, deadline);
    if (!addresses)
        return {nullptr, SocketError::TimedOut, ETIMEDOUT};
    ConnectResult result{nullptr, SocketError::Resolve, 0};
    for (std::size_t i = 0; i < addresses->size(); ++i) {
        // An address that swallows everything must leave time for the next one.
        const auto share = (deadline - SteadyClock::now()) / static_cast<int>(addresses->size() - i);
        result = ConnectOne((*addresses)[i], timeOut, SteadyClock::now() + share);
        if (result.stream)
            break;
    }
    return result;
}

}  // namespace jotlet
