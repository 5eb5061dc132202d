// register, against a server of our own.
#include "cli/jotctl_fixture.h"
#include "tests/net/core/marlin_server.h"

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
    MarlinServer server;
    EXPECT_THAT(Register(server.Port()), ExitsWith(0));
    std::string wanted = std::string("\x01\0\0\0", 4) + "a@b.example";
    wanted.resize(68, '\0');
    wanted += "secret";
    wanted.resize(100, '\0');
    EXPECT_EQ(server.Frames(), std::vector<std::string>{wanted});
    EXPECT_THAT(Register(server.Port()), Complains(1, "already exist"));

    MarlinServer silent(Conduct::CloseAtOnce);
    EXPECT_THAT(Register(silent.Port()), Complains(1, "Unable to connect to server"));
    MarlinServer cutShort(Conduct::Answer, std::string(2, '\0'));
    EXPECT_THAT(Register(cutShort.Port()), Complains(1, "code 16"));
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
