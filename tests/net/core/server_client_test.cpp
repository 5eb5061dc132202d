#include "net/core/server_client.h"

#include <gtest/gtest.h>

#include "net/core/server_account.h"
#include "tests/net/core/marlin_server.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::Conduct;
using test::MarlinServer;

std::uint32_t Register(const MarlinServer& server, std::string_view email = "ann@x.example",
                       std::chrono::milliseconds limit = 5s)
{
    ServerClient client;
    client.SetTimeOut(limit);
    client.SetServer(server.Host(), server.Port());
    return client.RegisterUser(email, "secret");
}

std::string FrameText(std::string_view email, std::string_view password)
{
    const auto frame = RegistrationFrame(email, password);
    return {reinterpret_cast<const char*>(frame.data()), frame.size()};
}

TEST(RegistrationFrame, HasItsFieldsAtTheirOffsetsZeroFilledAndCutsLongerTexts)
{
    const std::string email(64, 'e');
    const std::string password(32, 'p');
    EXPECT_EQ(FrameText("a@b.example", "pw"),
              "\1\0\0\0"s + "a@b.example" + std::string(53, '\0') + "pw" + std::string(30, '\0'));
    EXPECT_EQ(FrameText(email + "more", password + "more"), "\1\0\0\0"s + email + password);
}

TEST(ServerClient, RegistersAUserOnceAndHearsTheSecondTimeThatItIsThere)
{
    MarlinServer server;
    EXPECT_EQ(Register(server), kRegistered);
    EXPECT_EQ(Register(server), kUserExists);
    const std::string full(64, 'x');
    EXPECT_EQ(Register(server, full), kRegistered);
    EXPECT_EQ(Register(server, full + "y"), kUserExists);
    const auto frames = server.Frames();
    ASSERT_EQ(frames.size(), 4u);
    EXPECT_EQ(frames[0], FrameText("ann@x.example", "secret"));
}

TEST(ServerClient, SpeaksIPv6)
{
    MarlinServer server(Conduct::Serve, {}, AF_INET6);
    if (!server)
        GTEST_SKIP() << "this computer has no IPv6 loopback address";
    EXPECT_EQ(Register(server), kRegistered);
}

TEST(ServerClient, GivesTheServersAnswerAsALittleEndianNumberAndAShortOrLateOneAsAFailure)
{
    for (const auto& [answer, result] : {std::pair("\x78\x56\x34\x12"s, 0x12345678u),
                                         {"\0\0\0\0 and more"s, kRegistered},
                                         {"\xFF\xFF\xFF\xFF"s, 0xFFFFFFFFu},
                                         {""s, kExchangeFailed},
                                         {"\0\0"s, kExchangeFailed}})
        EXPECT_EQ(Register(MarlinServer(Conduct::Answer, answer)), result);
    EXPECT_EQ(Register(MarlinServer(Conduct::CloseAtOnce)), kExchangeFailed);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Register(MarlinServer(Conduct::Hang), "ann@x.example", 150ms), kExchangeFailed);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 150ms);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}

TEST(ServerClient, EveryFailureToConnectIsTheSameToTheCallerAndHasItsCodeInConnect)
{
    struct Case {
        SocketError error;
        std::uint32_t code;
    };
    for (const Case& c : {Case{SocketError::Resolve, kNotResolved}, Case{SocketError::Option, kNoSocketOption},
                          Case{SocketError::Create, kNoSocket}, Case{SocketError::Connect, kNotConnected},
                          Case{SocketError::TimedOut, kNotConnected}}) {
        const auto failing = [&](const std::string&, std::uint16_t, std::chrono::milliseconds) {
            return ConnectResult{nullptr, c.error, 0};
        };
        EXPECT_EQ(ServerClient(failing).Connect(1s), c.code);
        EXPECT_EQ(ServerClient(failing).RegisterUser("a", "b"), kNotConnected);
    }
}

TEST(ServerClient, ConnectsToTheHostAndTheLowBitsOfThePortWithinAMinute)
{
    std::string host;
    std::uint16_t port = 0;
    std::chrono::milliseconds limit{};
    ServerClient client([&](const std::string& h, std::uint16_t p, std::chrono::milliseconds l) {
        host = h;
        port = p;
        limit = l;
        return ConnectResult{nullptr, SocketError::Connect, 0};
    });
    client.RegisterUser("a", "b");
    EXPECT_EQ(host + ":" + std::to_string(port), ":0");
    client.SetServer(std::string(300, 'h'), 0x12345);
    client.RegisterUser("a", "b");
    EXPECT_EQ(host, std::string(256, 'h'));
    EXPECT_EQ(port, 0x2345);
    EXPECT_EQ(limit, 60'000ms);
}

// A connection of which one step fails.
class ScriptedStream : public ByteStream {
public:
    ScriptedStream(SocketError sending, SocketError receiving) : sending(sending), receiving(receiving) {}
    SocketError SendAll(std::span<const std::byte>) override { return sending; }
    SocketError ReceiveAll(std::span<std::byte>) override { return receiving; }

private:
    SocketError sending;
    SocketError receiving;
};

TEST(ServerClient, AFailedSendOrReceiveIsAFailedExchange)
{
    for (const auto& [sending, receiving] :
         {std::pair(SocketError::Io, SocketError::None), std::pair(SocketError::TimedOut, SocketError::None),
          std::pair(SocketError::None, SocketError::Io), std::pair(SocketError::None, SocketError::Closed)}) {
        ServerClient client([&](const std::string&, std::uint16_t, std::chrono::milliseconds) {
            return ConnectResult{std::make_unique<ScriptedStream>(sending, receiving), SocketError::None, 0};
        });
        EXPECT_EQ(client.RegisterUser("a", "b"), kExchangeFailed);
    }
}

class ServerAccountTest : public testing::Test {
protected:
    test::TempFolder scratch;
    IniFile ini{scratch.File("Pinwell.ini")};
};

TEST_F(ServerAccountTest, TheAccountReadsBackCutAtItsWidthsAndLeavesTheDefaultPortAlone)
{
    test::WriteAll(ini.Path(), "[Marlin Server]\ndefaultport=4242\n");
    ServerAccount account{.userName = std::string(60, 'n'),
                          .email = "ann@x.example",
                          .password = "0123456789",
                          .server = "relay.example",
                          .port = "",
                          .defaultPort = "1"};
    EXPECT_EQ(WriteServerAccount(account, ini), 1);
    const ServerAccount read = ReadServerAccount(ini);
    EXPECT_EQ(read.userName, std::string(49, 'n'));
    EXPECT_EQ(read.email, "ann@x.example");
    EXPECT_EQ(read.password, "012345678");
    EXPECT_EQ(read.server, "relay.example");
    EXPECT_EQ(read.port, "");
    EXPECT_EQ(read.defaultPort, "4242");
    EXPECT_EQ(WriteServerAccount(account, IniFile(scratch.File("no/folder.ini"))), 0);
}

TEST_F(ServerAccountTest, ARegistrationGoesToTheAccountsServerAndElseToTheGateway)
{
    struct Case {
        std::string_view ini;
        std::string_view where;
    };
    for (const Case& c : {
             Case{"[Marlin Server]\nserver=own\nport=1\n[Gateway]\nserver=gate\nport=2\n", "own:1"},
             Case{"[Marlin Server]\nserver=\nport=\n[Gateway]\nserver=gate\nport=2\n", "gate:2"},
             Case{"[Marlin Server]\nserver=own\n[Gateway]\nserver=gate\nport=2x\n", "own:2"},
             Case{"[Gateway]\nserver=gate\nport=http\n", "gate:0"},
             Case{"", ":0"},
         }) {
        SCOPED_TRACE(c.ini);
        test::WriteAll(ini.Path(), std::string(c.ini) + "[Marlin Server]\nemail=e\npassword=p\n");
        const Registration registration = ReadRegistration(ini);
        EXPECT_EQ(registration.server + ":" + std::to_string(registration.port), c.where);
        EXPECT_EQ(registration.email, "e");
        EXPECT_EQ(registration.password, "p");
    }
}

TEST_F(ServerAccountTest, TheStoredAccountIsWhatTheServerGets)
{
    MarlinServer server;
    WriteServerAccount({.userName = "Ann",
                        .email = "ann@x.example",
                        .password = "secret",
                        .server = server.Host(),
                        .port = std::to_string(server.Port()),
                        .defaultPort = ""},
                       ini);
    EXPECT_EQ(RegistrationText(RegisterOnServer(ReadRegistration(ini))), 136);
    EXPECT_EQ(RegistrationText(RegisterOnServer(ReadRegistration(ini))), 137);
    ini.IniWriteText("Marlin Server", "port", "no digits");
    EXPECT_EQ(RegistrationText(RegisterOnServer(ReadRegistration(ini))), 138);
    for (const std::uint32_t code : {2u, 12u, 15u, 16u, 0x100u, 0xFFFFFFFFu})
        EXPECT_EQ(RegistrationText(code), 138) << code;
    ASSERT_EQ(server.Frames().size(), 2u);
    EXPECT_EQ(server.Frames()[0], FrameText("ann@x.example", "secret"));
}

}  // namespace
}  // namespace jotlet
