#include "core/start_up.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "core/jotlet_module.h"
#include "core/old_place.h"
#include "core/process.h"
#include "core/splash_dialog.h"
#include "platform/base/session.h"
#include "platform/desktop/application.h"
#include "resources/accelerators.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"

namespace jotlet {
namespace {

// The path that the first argument names, made whole so that it stays right whatever the current folder becomes.
std::string CommandLinePath(int argc, char** argv)
{
    if (argc < 2 || argv[1][0] == '\0')
        return {};
    std::error_code failed;
    const auto whole = std::filesystem::absolute(argv[1], failed);
    return failed ? std::string(argv[1]) : whole.lexically_normal().string();
}

// True for a copy that may run. The guard is held to the end of the process.
bool MayRun()
{
    static SessionGuard guard;
    if (!GetCommandLineText().empty())
        return true;
    if (guard.Take(FrameClassName()) != GuardResult::InUse)
        return true;
    LeaveActivationToken();
    BroadcastToCopies(kBroadcastComeUp, 0);
    return false;
}

void TellAboutSession()
{
    if (!IsSessionShared())
        std::fputs(
            "jotlet: There is no private folder for the session, so copies of the program don't know of each other. "
            "Set XDG_RUNTIME_DIR to a folder that only you can enter.\n",
            stderr);
}

// What other copies say becomes a message to the frame. Window numbers of two processes can be equal, so only a message
// of this process keeps its sender.
void DeliverBroadcast(MainFrame& frame, const BroadcastMessage& message)
{
    SendTo(frame.window, kUniqueMessage, static_cast<MessageParam>(message.code),
           message.fromThisProcess ? static_cast<MessageParam>(message.value) : 0);
}

class BroadcastHearing {
public:
    explicit BroadcastHearing(MainFrame& frame)
        : receiver(BroadcastReceiver::Open([&frame](const BroadcastMessage& m) { DeliverBroadcast(frame, m); }))
    {
        if (receiver)
            WatchDescriptor(receiver->Fd(), [this] { receiver->Dispatch(); });
    }
    ~BroadcastHearing()
    {
        if (receiver)
            UnwatchDescriptor(receiver->Fd());
    }
    BroadcastHearing(const BroadcastHearing&) = delete;
    BroadcastHearing& operator=(const BroadcastHearing&) = delete;

private:
    std::unique_ptr<BroadcastReceiver> receiver;
};

// A request to end (logout, Ctrl+C in the terminal) closes the frame as its close button does, so that the file is
// closed and the window's place kept.
class EndRequests {
public:
    explicit EndRequests(MainFrame& frame)
    {
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            return;
        writeEnd = ends[1];
        WatchDescriptor(ends[0], [this, &frame] {
            std::array<char, 16> bytes;
            while (read(ends[0], bytes.data(), bytes.size()) > 0) {
            }
            PostTo(frame.window, kWmClose, 0, 0);
        });
        for (const int signal : kSignals)
            std::signal(signal, [](int) { [[maybe_unused]] const auto told = write(writeEnd, "", 1); });
    }
    ~EndRequests()
    {
        for (const int signal : kSignals)
            std::signal(signal, SIG_DFL);
        if (writeEnd < 0)
            return;
        UnwatchDescriptor(ends[0]);
        close(ends[0]);
        close(ends[1]);
    }
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

private:
    static constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
    static inline int writeEnd = -1;
    std::array<int, 2> ends{-1, -1};
};

void RunSplash()
{
    SplashDialog splash;
    splash.DoModal(nullptr, splash_dialog_ids::kDialog);
}

int RunFrame(Application& application)
{
    JotletModule module;
    module.Create(nullptr);
    const BroadcastHearing hearing(module);
    const EndRequests requests(module);
    module.Show();
    module.Update();
    return application.Run(module.window, MainAccelerators());
}

}  // namespace

int RunProgram(int argc, char** argv)
{
    // An export into a pipe whose reader has gone, or a server that hangs up, is a failed write and not our end.
    std::signal(SIGPIPE, SIG_IGN);
    SetProcessNames("Jotlet", CommandLinePath(argc, argv));
    if (!MayRun())
        return 0;
    TellAboutSession();
    TakeOverOldPlace();
    Application application(argc, argv);
    LoadSharedResources();
    if (IsSplashEnabled())
        RunSplash();
    const int code = RunFrame(application);
    FreeSharedResources();
    return code;
}

}  // namespace jotlet
