#include "platform/base/sockets.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <thread>

#include "tests/support/loopback.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;
using test::Loopback;

std::span<const std::byte> Bytes(std::string_view text)
{
    return std::as_bytes(std::span(text.data(), text.size()));
}

class SocketsTest : public testing::TestWithParam<int> {};

TEST_P(SocketsTest, AnAnswerInPiecesArrivesWhole)
{
    Loopback server(GetParam());
    if (!server)
        GTEST_SKIP() << "this computer has no such loopback address";
    std::thread peer([&] {
        const int connection = server.Accept();
        EXPECT_EQ(Loopback::Read(connection, 5), "hello");
        for (const char* piece : {"a", "bc", "d"}) {
            EXPECT_EQ(send(connection, piece, std::strlen(piece), MSG_NOSIGNAL),
                      static_cast<ssize_t>(std::strlen(piece)));
            std::this_thread::sleep_for(5ms);
        }
        close(connection);
    });
    const ConnectResult result = ConnectTcp(server.Host(), server.Port(), 5s);
    ASSERT_EQ(result.error, SocketError::None);
    EXPECT_EQ(result.stream->SendAll(Bytes("hello")), SocketError::None);
    std::array<char, 4> answer{};
    EXPECT_EQ(result.stream->ReceiveAll(std::as_writable_bytes(std::span(answer))), SocketError::None);
    EXPECT_EQ(std::string_view(answer.data(), 4), "abcd");
    std::array<std::byte, 1> more{};
    EXPECT_EQ(result.stream->ReceiveAll(more), SocketError::Closed);
    peer.join();
}

INSTANTIATE_TEST_SUITE_P(Families, SocketsTest, testing::Values(AF_INET, AF_INET6),
                         [](const auto& family) { return family.param == AF_INET ? "IPv4" : "IPv6"; });

TEST(Sockets, ARefusedConnectionAndAnUnknownNameAreToldApart)
{
    std::uint16_t closedPort = 0;
    {
        Loopback server(AF_INET);
        closedPort = server.Port();
    }
    EXPECT_EQ(ConnectTcp("127.0.0.1", closedPort, 5s).error, SocketError::Connect);
    EXPECT_EQ(ConnectTcp("127.0.0.1", 0, 5s).error, SocketError::Connect);
    EXPECT_EQ(ConnectTcp("", 80, 5s).error, SocketError::Resolve);
    EXPECT_EQ(ConnectTcp("no such host", 80, 5s).error, SocketError::Resolve);
    EXPECT_EQ(ConnectTcp(std::string(100000, 'x'), 80, 5s).error, SocketError::Resolve);
}

TEST(Sockets, APeerThatDribblesDoesNotStretchTheLimit)
{
    Loopback server(AF_INET);
    std::thread peer([&] {
        const int connection = server.Accept();
        while (send(connection, "x", 1, MSG_NOSIGNAL) == 1)
            std::this_thread::sleep_for(20ms);
        close(connection);
    });
    ConnectResult result = ConnectTcp("127.0.0.1", server.Port(), 100ms);
    ASSERT_EQ(result.error, SocketError::None);
    std::array<std::byte, 1000> answer{};
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(result.stream->ReceiveAll(answer), SocketError::TimedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
    result.stream.reset();
    peer.join();
}

TEST(Sockets, APeerThatNeverReadsEndsASendByItsLimit)
{
    Loopback server(AF_INET);
    const ConnectResult result = ConnectTcp("127.0.0.1", server.Port(), 100ms);
    ASSERT_EQ(result.error, SocketError::None);
    const std::string flood(64 << 20, 'x');
    EXPECT_EQ(result.stream->SendAll(Bytes(flood)), SocketError::TimedOut);
}

TEST(Sockets, ConnectingToAFullQueueEndsByItsLimit)
{
    Loopback server(AF_INET, 0);
    std::vector<ConnectResult> waiting;
    const auto begin = std::chrono::steady_clock::now();
    SocketError last = SocketError::None;
    for (int i = 0; i < 8 && last == SocketError::None; ++i) {
        waiting.push_back(ConnectTcp("127.0.0.1", server.Port(), 200ms));
        last = waiting.back().error;
    }
    EXPECT_EQ(last, SocketError::TimedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

}  // namespace
}  // namespace jotlet
