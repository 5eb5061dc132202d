// A listening socket on this computer, for tests that play the peer.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace jotlet::test {

// Listens on a free port of 127.0.0.1 or ::1. False when this computer has no such address.
class Loopback {
public:
    explicit Loopback(int family, int backlog = 8) : family(family), fd(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_storage address{};
        address.ss_family = static_cast<sa_family_t>(family);
        auto& v4 = reinterpret_cast<sockaddr_in&>(address);
        if (family == AF_INET)
            v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        else
            reinterpret_cast<sockaddr_in6&>(address).sin6_addr = in6addr_loopback;
        socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (fd >= 0 && bind(fd, generic, length) == 0 && listen(fd, backlog) == 0 &&
            getsockname(fd, generic, &length) == 0)
            port = ntohs(v4.sin_port);  // both families have it in the same place
    }
    ~Loopback()
    {
        if (fd >= 0)
            close(fd);
    }
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;

    explicit operator bool() const { return port != 0; }
    std::string Host() const { return family == AF_INET ? "127.0.0.1" : "::1"; }
    std::uint16_t Port() const { return port; }

    // The next connection, which the caller closes; -1 once ShutDown was called.
    int Accept() const { return accept4(fd, nullptr, nullptr, SOCK_CLOEXEC); }
    // Wakes an Accept of another thread.
    void ShutDown() const { shutdown(fd, SHUT_RDWR); }

    // Reads until it has `size` bytes or the peer closes.
    static std::string Read(int connection, std::size_t size)
    {
        std::string text(size, '\0');
        std::size_t have = 0;
        while (have < size) {
            const ssize_t got = recv(connection, text.data() + have, size - have, 0);
            if (got <= 0)
                break;
            have += static_cast<std::size_t>(got);
        }
        text.resize(have);
        return text;
    }

private:
    int family;
    int fd;
    std::uint16_t port = 0;
};

}  // namespace jotlet::test
