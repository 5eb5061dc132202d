// Blocking byte streams with a time limit, and TCP on IPv4 and IPv6.
//
// A limit holds for a whole call: a peer that sends a byte now and then does not stretch it.
// Threads: one. Looking up a name uses a helper thread, so that the limit holds there too.
// Errors:  by result; nothing throws and no signal is raised.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace jotlet {

enum class SocketError {
    None,
    Resolve,   // the name has no address
    Create,    // no socket
    Option,    // a socket option was refused
    Connect,   // refused, unreachable
    TimedOut,  // the limit passed
    Closed,    // the peer closed before the last byte
    Io,        // any other failure of sending or receiving
};

class ByteStream {
public:
    virtual ~ByteStream() = default;
    // All of `bytes`, or a failure.
    virtual SocketError SendAll(std::span<const std::byte> bytes) = 0;
    // Exactly as many bytes as `bytes` holds, or a failure; what it then holds is not settled.
    virtual SocketError ReceiveAll(std::span<std::byte> bytes) = 0;
};

struct ConnectResult {
    std::unique_ptr<ByteStream> stream;  // set when error is None
    SocketError error = SocketError::None;
    int systemError = 0;  // errno of a failed call, or 0
};

// Tries each address of `host` (a name, a dotted IPv4 or an IPv6 address, in brackets or bare) in the system's order,
// within `timeOut` in all. Each SendAll and ReceiveAll of the stream has `timeOut` to itself.
ConnectResult ConnectTcp(const std::string& host, std::uint16_t port, std::chrono::milliseconds timeOut);

}  // namespace jotlet
