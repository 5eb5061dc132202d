// register, against a server of our own.
#include <thread>

#include "cli/jotctl_fixture.h"
#include "tests/support/loopback.h"

namespace jotlet::test {
namespace {

class RegisterTest : public JotctlTest {
protected:
    Outcome Register(int port, const std::string& input = "secret\n")
    {
        return Run({"register", "--server", "127.0.0.1", "--port", std::to_string(port), "--email", "a@b.example"},
                   input);
    }
};

TEST_F(RegisterTest, SendsTheAddressAndThePasswordAndTellsWhatCameOfIt)
{
    std::string wanted = std::string("\x01\0\0\0", 4) + "a@b.example";
    wanted.resize(68, '\0');
    wanted += "secret";
    wanted.resize(100, '\0');
    for (const auto& [answer, code, told] : {std::tuple(std::string("\0\0\0\0", 4), 0, ""),
                                             {std::string("\1\0\0\0", 4), 1, "already exist"},
                                             {std::string(), 1, "Unable to connect to server"},
                                             {std::string(2, '\0'), 1, "code 16"}}) {
        Loopback listener(AF_INET);
        std::string frame;
        std::thread server([&, sent = answer] {
            const int connection = listener.Accept();
            frame = Loopback::Read(connection, 100);
            send(connection, sent.data(), sent.size(), MSG_NOSIGNAL);
            close(connection);
        });
        const Outcome outcome = Register(listener.Port());
        listener.ShutDown();
        server.join();
        EXPECT_EQ(outcome.code, code);
        EXPECT_THAT(outcome.err, testing::HasSubstr(told));
        EXPECT_EQ(frame, wanted);
    }
    EXPECT_THAT(Register(1), Complains(1, "127.0.0.1:1"));
    EXPECT_THAT(Register(80, ""), Complains(2, "password"));
    for (const int port : {0, 65536})
        EXPECT_THAT(Register(port), Complains(2, "--port"));
}

}  // namespace
}  // namespace jotlet::test
