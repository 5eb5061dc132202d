// register, against a server of our own.
#include "cli/jotctl_fixture.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>

namespace jotlet::test {
namespace {

using testing::HasSubstr;

// Takes one exchange on a free port of this machine: reads a frame, answers with `reply`.
class OneShotServer {
public:
    explicit OneShotServer(std::string reply) : listener(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 1) != 0 ||
            getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("no port");
        port = ntohs(address.sin_port);
        server = std::thread([this, reply = std::move(reply)] {
            const int peer = accept(listener, nullptr, nullptr);
            char bytes[4096];
            for (ssize_t got = 0; frame.size() < 100 && (got = read(peer, bytes, sizeof bytes)) > 0;)
                frame.append(bytes, static_cast<std::size_t>(got));
            [[maybe_unused]] const ssize_t sent = write(peer, reply.data(), reply.size());
            close(peer);
        });
    }
    ~OneShotServer()
    {
        Finish();
        close(listener);
    }
    // What the client sent.
    std::string Finish()
    {
        shutdown(listener, SHUT_RDWR);
        if (server.joinable())
            server.join();
        return frame;
    }

    int port = 0;

private:
    int listener;
    std::string frame;
    std::thread server;
};

class RegisterTest : public JotctlTest {
protected:
    Outcome Register(int port, const std::string& input = "secret\n")
    {
        return Run({"register", "--server", "127.0.0.1", "--port", std::to_string(port), "--email", "a@b.example"},
                   input);
    }
};

TEST_F(RegisterTest, SendsTheAddressAndThePasswordAndTellsOfTheSuccess)
{
    OneShotServer server(std::string(4, '\0'));
    EXPECT_THAT(Register(server.port), ExitsWith(0));
    std::string wanted = std::string("\x01\0\0\0", 4) + "a@b.example";
    wanted.resize(68, '\0');
    wanted += "secret";
    wanted.resize(100, '\0');
    EXPECT_EQ(server.Finish(), wanted);
}

TEST_F(RegisterTest, AKnownUserABadAnswerAndNoServerAreToldApartFromSuccess)
{
    {
        OneShotServer known(std::string("\x01\0\0\0", 4));
        EXPECT_THAT(Register(known.port), Complains(1, "already exist"));
    }
    {
        OneShotServer silent("");
        EXPECT_THAT(Register(silent.port), Complains(1, "Unable to connect to server"));
    }
    {
        OneShotServer cutShort(std::string(2, '\0'));
        EXPECT_THAT(Register(cutShort.port), Complains(1, "code 16"));
    }
    EXPECT_THAT(Register(1), Complains(1, "127.0.0.1:1"));
}

TEST_F(RegisterTest, AMissingPasswordAndBadOptionsAreUsageErrors)
{
    EXPECT_THAT(Register(80, ""), Complains(2, "password"));
    EXPECT_THAT(Register(0), Complains(2, "--port"));
    EXPECT_THAT(Register(65536), Complains(2, "--port"));
}

}  // namespace
}  // namespace jotlet::test
