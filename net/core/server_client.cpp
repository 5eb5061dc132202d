#include "net/core/server_client.h"

#include <string.h>

#include <algorithm>
#include <cstring>

namespace jotlet {

namespace {

constexpr std::byte kCommandRegister{1};
constexpr std::size_t kHostBytes = 256;

void PutText(std::byte* field, std::size_t width, std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    std::memcpy(field, text.data(), std::min(text.size(), width));
}

}  // namespace

std::array<std::byte, kFrameSize> RegistrationFrame(std::string_view email, std::string_view password)
{
    std::array<std::byte, kFrameSize> frame{};
    frame[0] = kCommandRegister;  // 32 bits, little-endian
    PutText(frame.data() + 4, kFrameEmailSize, email);
    PutText(frame.data() + 4 + kFrameEmailSize, kFramePasswordSize, password);
    return frame;
}

void ServerClient::SetServer(std::string_view hostText, std::uint32_t portNumber)
{
    hostText = hostText.substr(0, hostText.find('\0'));
    host = hostText.substr(0, kHostBytes);
    port = portNumber;
}

std::uint32_t ServerClient::Connect(std::chrono::milliseconds limit)
{
    stream.reset();
    ConnectResult result = connector(host, static_cast<std::uint16_t>(port), limit);
    switch (result.error) {
        case SocketError::None:
            stream = std::move(result.stream);
            return 0;
        case SocketError::Resolve:
            return kNotResolved;
        case SocketError::Option:
            return kNoSocketOption;
        case SocketError::Create:
            return kNoSocket;
        default:
            return kNotConnected;
    }
}

std::uint32_t ServerClient::RegisterUser(std::string_view email, std::string_view password)
{
    Connect(timeOut);
    if (!stream)
        return kNotConnected;
    auto frame = RegistrationFrame(email, password);
    std::array<std::byte, 4> reply{};
    const bool answered = stream->SendAll(frame) == SocketError::None && stream->ReceiveAll(reply) == SocketError::None;
    stream.reset();
    explicit_bzero(frame.data(), frame.size());  // it held the password
    if (!answered)
        return kExchangeFailed;
    std::uint32_t status = 0;
    for (std::size_t i = 0; i < reply.size(); ++i)
        status |= std::to_integer<std::uint32_t>(reply[i]) << (8 * i);
    return status;
}

}  // namespace jotlet
