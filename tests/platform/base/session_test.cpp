#include "platform/base/session.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

class SessionTest : public testing::Test {
protected:
    std::size_t SocketsInFolder() const
    {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(SessionFolder()))
            count += entry.is_socket();
        return count;
    }

    test::TempFolder scratch;
    test::ScopedVariable runtime{"XDG_RUNTIME_DIR", scratch.Path()};
};

bool AwaitMessage(const BroadcastReceiver& receiver)
{
    pollfd entry{receiver.Fd(), POLLIN, 0};
    return poll(&entry, 1, 5000) == 1;
}

TEST_F(SessionTest, TheFolderIsForThisUserAloneOrNotTrusted)
{
    const std::string own = scratch.File("pinwell");
    EXPECT_EQ(SessionFolder(), own);
    EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
    fs::permissions(own, fs::perms{0755});
    EXPECT_NE(SessionFolder(), own);
    fs::permissions(own, fs::perms::owner_all);
    fs::rename(own, scratch.File("elsewhere"));
    fs::create_directory_symlink(scratch.File("elsewhere"), own);
    EXPECT_NE(SessionFolder(), own);
    const test::ScopedVariable none("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(SessionFolder(), "/tmp/pinwell-" + std::to_string(geteuid()));
}

TEST_F(SessionTest, ANameIsHeldOnceAndGivenBack)
{
    SessionGuard first;
    SessionGuard second;
    EXPECT_EQ(first.Take("Jotlet"), GuardResult::Taken);
    EXPECT_EQ(second.Take("Jotlet"), GuardResult::InUse);
    EXPECT_EQ(second.Take("Other"), GuardResult::Taken);
    EXPECT_EQ(second.Take("../x/y"), GuardResult::Taken);
    EXPECT_FALSE(fs::exists(scratch.File("x")));
    first.Release();
    EXPECT_EQ(second.Take("Jotlet"), GuardResult::Taken);
}

TEST_F(SessionTest, AKilledCopyGivesTheNameBackEvenIfAProgramItStartedLivesOn)
{
    test::Signal held;
    const std::string startedBy = scratch.File("started");
    test::ChildProcess copy([&] {
        SessionGuard guard;
        if (guard.Take("Jotlet") != GuardResult::Taken)
            return 1;
        const pid_t started = fork();
        if (started == 0) {
            execlp("sleep", "sleep", "60", nullptr);  // as a help viewer would run on
            _exit(1);
        }
        test::WriteAll(startedBy, std::to_string(started));
        held.Give();
        pause();
        return 0;
    });
    ASSERT_TRUE(held.Await());
    const pid_t started = std::stoi(test::ReadAll(startedBy));
    SessionGuard guard;
    EXPECT_EQ(guard.Take("Jotlet"), GuardResult::InUse);
    copy.Kill();
    EXPECT_EQ(copy.Wait(), -1);
    // The started program gives inherited handles up as it begins to run, which may be a moment away.
    GuardResult result = GuardResult::InUse;
    for (int i = 0; i < 500 && result == GuardResult::InUse; ++i) {
        usleep(10000);
        result = guard.Take("Jotlet");
    }
    EXPECT_EQ(result, GuardResult::Taken);
    EXPECT_EQ(kill(started, SIGKILL), 0) << "it still ran";
}

TEST_F(SessionTest, EveryCopyHearsABroadcastAndKnowsItsOwn)
{
    std::vector<BroadcastMessage> heard;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage& message) { heard.push_back(message); });
    ASSERT_NE(receiver, nullptr);
    test::Signal ready;
    test::ChildProcess other([&] {
        int right = 0;
        const auto own = BroadcastReceiver::Open([&](const BroadcastMessage& message) {
            right += message.code == 101 && message.value == -5 && !message.fromThisProcess;
        });
        if (!own || BroadcastToCopies(kBroadcastSettingsChanged, 1LL << 40) != 1 || own->Dispatch() != 1)
            return 1;
        ready.Give();
        return AwaitMessage(*own) && own->Dispatch() == 1 && right == 1 ? 0 : 2;
    });
    ASSERT_TRUE(ready.Await());
    ASSERT_TRUE(AwaitMessage(*receiver));
    EXPECT_EQ(receiver->Dispatch(), 1);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].code, kBroadcastSettingsChanged);
    EXPECT_EQ(heard[0].value, 1LL << 40);
    EXPECT_FALSE(heard[0].fromThisProcess);

    EXPECT_EQ(BroadcastToCopies(kBroadcastSkinChanged, -5), 1);
    EXPECT_EQ(other.Wait(), 0);
    EXPECT_EQ(receiver->Dispatch(), 1);
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_TRUE(heard[1].fromThisProcess);
}

TEST_F(SessionTest, SocketsOfDeadCopiesAreSweptAtTheNextBroadcast)
{
    test::Signal ready;
    test::ChildProcess copy([&] {
        const auto own = BroadcastReceiver::Open({});
        ready.Give();
        pause();
        return 0;
    });
    ASSERT_TRUE(ready.Await());
    copy.Kill();
    copy.Wait();
    EXPECT_EQ(SocketsInFolder(), 1u);
    EXPECT_EQ(BroadcastToCopies(100, 0), 1);
    EXPECT_EQ(SocketsInFolder(), 0u);
    {
        const auto own = BroadcastReceiver::Open({});
        EXPECT_EQ(SocketsInFolder(), 1u);
    }
    EXPECT_EQ(SocketsInFolder(), 0u);
}

TEST_F(SessionTest, ACopyThatNeverListensBlocksNobodyAndStrayDatagramsAreDropped)
{
    int heard = 0;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage&) { ++heard; });
    ASSERT_NE(receiver, nullptr);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = fs::directory_iterator(SessionFolder())->path().string();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::strcpy(address.sun_path, path.c_str());
    const int stranger = socket(AF_UNIX, SOCK_DGRAM, 0);
    for (const std::string_view junk : {"", "x", "twenty-four bytes long..", "a text that is longer than a message is"})
        EXPECT_EQ(sendto(stranger, junk.data(), junk.size(), 0, reinterpret_cast<sockaddr*>(&address), sizeof address),
                  static_cast<ssize_t>(junk.size()));
    close(stranger);
    EXPECT_EQ(receiver->Dispatch(), 0);

    for (int i = 0; i < 2000; ++i)
        ASSERT_EQ(BroadcastToCopies(100, i), 1);
    while (receiver->Dispatch() > 0) {
    }
    EXPECT_GT(heard, 0);
    EXPECT_LT(heard, 2000);
}

TEST_F(SessionTest, ALongRuntimePathIsNoObstacle)
{
    const std::string deep = scratch.File(std::string(120, 'd'));
    fs::create_directory(deep);
    const test::ScopedVariable longer("XDG_RUNTIME_DIR", deep);
    const auto receiver = BroadcastReceiver::Open({});
    ASSERT_NE(receiver, nullptr);
    EXPECT_EQ(BroadcastToCopies(100, 0), 1);
    EXPECT_EQ(receiver->Dispatch(), 1);
}

}  // namespace
}  // namespace jotlet
