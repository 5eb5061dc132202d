#include "net/core/server_client.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "net/core/server_account.h"
#include "tests/support/loopback.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

std::string FrameText(std::string_view email, std::string_view password)
{
    std::string frame = "\1\0\0\0"s;
    frame.append(email).resize(68);
    frame.append(password).resize(100);
    return frame;
}

// A server in a connection of its own kind: it takes what is sent, and answers, or one of its steps fails.
class Scripted : public ByteStream {
public:
    Scripted(std::string* sent, std::string answer, SocketError sending, SocketError receiving)
        : sent(sent), answer(std::move(answer)), sending(sending), receiving(receiving)
    {
    }
    SocketError SendAll(std::span<const std::byte> bytes) override
    {
        sent->assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return sending;
    }
    SocketError ReceiveAll(std::span<std::byte> bytes) override
    {
        std::memcpy(bytes.data(), answer.data(), std::min(answer.size(), bytes.size()));
        return receiving;
    }

private:
    std::string* sent;
    std::string answer;
    SocketError sending, receiving;
};

TEST(ServerClient, SendsOneFrameAndGivesTheAnswerAsALittleEndianNumber)
{
    struct Case {
        std::string answer;
        std::uint32_t result;
        SocketError sending = SocketError::None, receiving = SocketError::None;
    };
    for (const Case& c :
         {Case{"\x78\x56\x34\x12"s, 0x12345678}, Case{"\0\0\0\0"s, kRegistered}, Case{"\xFF\xFF\xFF\xFF"s, 0xFFFFFFFF},
          Case{"\1\0\0\0"s, kUserExists}, Case{"\0\0\0\0"s, kExchangeFailed, SocketError::Io},
          Case{"\0\0\0\0"s, kExchangeFailed, SocketError::None, SocketError::Closed}}) {
        std::string sent;
        ServerClient client([&](const std::string&, std::uint16_t, std::chrono::milliseconds) {
            return ConnectResult{std::make_unique<Scripted>(&sent, c.answer, c.sending, c.receiving), SocketError::None,
                                 0};
        });
        const std::string email(64, 'e');
        const std::string password(32, 'p');
        EXPECT_EQ(client.RegisterUser(email + "more", password + "more"), c.result);
        EXPECT_EQ(sent, FrameText(email, password));
        client.RegisterUser("a@b.example", "pw"s + '\0' + "x");
        EXPECT_EQ(sent, FrameText("a@b.example", "pw"));
    }
}

TEST(ServerClient, ConnectsToTheHostAndTheLowBitsOfThePortAndTellsEveryFailureAlike)
{
    struct Case {
        SocketError error;
        std::uint32_t code;
    };
    for (const Case& c : {Case{SocketError::Resolve, kNotResolved}, Case{SocketError::Option, kNoSocketOption},
                          Case{SocketError::Create, kNoSocket}, Case{SocketError::Connect, kNotConnected},
                          Case{SocketError::TimedOut, kNotConnected}}) {
        std::string host;
        std::chrono::milliseconds limit{};
        ServerClient client([&](const std::string& asked, std::uint16_t port, std::chrono::milliseconds given) {
            host = asked + ":" + std::to_string(port);
            limit = given;
            return ConnectResult{nullptr, c.error, 0};
        });
        client.SetServer(std::string(300, 'h'), 0x12345);
        EXPECT_EQ(client.RegisterUser("a", "b"), kNotConnected);
        EXPECT_EQ(host, std::string(256, 'h') + ":9029");
        EXPECT_EQ(limit, 60'000ms);
        EXPECT_EQ(client.Connect(1s), c.code);
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
    const std::string text(300, 't');
    const ServerAccount account{text, text, text, text, "", "1"};
    EXPECT_EQ(WriteServerAccount(account, ini), 1);
    const ServerAccount read = ReadServerAccount(ini);
    EXPECT_EQ(read.userName.size(), 49u);
    EXPECT_EQ(read.email.size(), 259u);
    EXPECT_EQ(read.password.size(), 9u);
    EXPECT_EQ(read.server.size(), 259u);
    EXPECT_EQ(read.port, "");
    EXPECT_EQ(read.defaultPort, "4242");
    EXPECT_EQ(WriteServerAccount(account, IniFile(scratch.File("no/folder.ini"))), 0);
}

TEST_F(ServerAccountTest, ARegistrationGoesToTheAccountsServerAndElseToTheGateway)
{
    for (const auto& [settings, where] :
         {std::pair("[Marlin Server]\nserver=own\nport=1\n[Gateway]\nserver=gate\nport=2\n", "own:1"),
          {"[Marlin Server]\nserver=\nport=\n[Gateway]\nserver=gate\nport=2\n", "gate:2"},
          {"[Marlin Server]\nserver=own\n[Gateway]\nserver=gate\nport=2x\n", "own:2"},
          {"[Gateway]\nserver=gate\nport=http\n", "gate:0"}}) {
        test::WriteAll(ini.Path(), settings);
        const Registration registration = ReadRegistration(ini);
        EXPECT_EQ(registration.server + ":" + std::to_string(registration.port), where) << settings;
    }
}

TEST_F(ServerAccountTest, TheStoredAccountIsWhatTheServerGets)
{
    test::Loopback listener(AF_INET);
    std::string frame;
    std::thread server([&] {
        const int connection = listener.Accept();
        frame = test::Loopback::Read(connection, 100);
        send(connection, "\1\0\0\0", 4, MSG_NOSIGNAL);
        close(connection);
    });
    WriteServerAccount({"Ann", "ann@x.example", "secret", listener.Host(), std::to_string(listener.Port()), ""}, ini);
    EXPECT_EQ(RegisterOnServer(ReadRegistration(ini)), kUserExists);
    listener.ShutDown();
    server.join();
    EXPECT_EQ(frame, FrameText("ann@x.example", "secret"));
    for (const auto& [code, text] :
         {std::pair(kRegistered, 136), {kUserExists, 137}, {2u, 138}, {kExchangeFailed, 138}})
        EXPECT_EQ(RegistrationText(code), text);
}

}  // namespace
}  // namespace jotlet
