#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/sockets.h"

// One exchange with a Marlin Server: connect, send one frame that registers a user, read a status of four bytes, close.

namespace jotlet {

// What the server answers, and what this side finds; one number space.
inline constexpr std::uint32_t kRegistered = 0;
inline constexpr std::uint32_t kUserExists = 1;
inline constexpr std::uint32_t kNotResolved = 12;
inline constexpr std::uint32_t kNoSocketOption = 13;
inline constexpr std::uint32_t kNoSocket = 14;
inline constexpr std::uint32_t kNotConnected = 15;
inline constexpr std::uint32_t kExchangeFailed = 16;

// For each step: connecting, the look-up of the name included; sending; receiving.
inline constexpr std::chrono::milliseconds kServerTimeOut{60'000};

inline constexpr std::size_t kFrameEmailSize = 64;
inline constexpr std::size_t kFramePasswordSize = 32;
inline constexpr std::size_t kFrameSize = 4 + kFrameEmailSize + kFramePasswordSize;

// Command 1, the e-mail and the password, each zero-filled behind its text and cut at its width without a terminator.
std::array<std::byte, kFrameSize> RegistrationFrame(std::string_view email, std::string_view password);

// One object serves one exchange.
// Owns:    its connection, which is open during RegisterUser alone (or from Connect to the end).
// Threads: one, which it blocks, at most for the time-out a step.
// Errors:  by code.
class ServerClient {
public:
    using Connector =
        std::function<ConnectResult(const std::string& host, std::uint16_t port, std::chrono::milliseconds)>;

    explicit ServerClient(Connector connector = ConnectTcp) : connector(std::move(connector)) {}

    // Makes no connection. The host is cut at 256 bytes; of the port the low 16 bits count.
    void SetServer(std::string_view host, std::uint32_t port);
    // For tests.
    void SetTimeOut(std::chrono::milliseconds limit) { timeOut = limit; }

    // The server's answer, kNotConnected for every failure to connect, or kExchangeFailed: nothing was sent, or fewer
    // than four bytes came back.
    std::uint32_t RegisterUser(std::string_view email, std::string_view password);
    // 0, kNotResolved, kNoSocketOption, kNoSocket or kNotConnected.
    std::uint32_t Connect(std::chrono::milliseconds limit);

private:
    Connector connector;
    std::chrono::milliseconds timeOut = kServerTimeOut;
    std::unique_ptr<ByteStream> stream;
    std::string host;
    std::uint32_t port = 0;
};

}  // namespace jotlet
