#include "toolkit/records/stamp_look.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/desktop/application.h"
#include "store/stamp_watch.h"

namespace jotlet {
namespace {

StampLook::Answer LookOnce(const StampWatch& watch)
{
    StampLook::Answer answer;
    FileError error;
    const bool isSeen = watch.Look(answer.stamp, error);
    const StampWatch::PathState path = watch.LookAtPath();
    answer.driveAnswers =
        path != StampWatch::PathState::Unmounted && (isSeen || path != StampWatch::PathState::Unknown);
    answer.asksTable = path == StampWatch::PathState::Elsewhere || (!isSeen && answer.driveAnswers);
    return answer;
}

}  // namespace

// What a look has, also after its window is gone.
struct StampLook::Shared {
    explicit Shared(const TableFile& table) : watch(table), wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Shared()
    {
        if (wake >= 0)
            close(wake);
    }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    const StampWatch watch;
    const int wake;
    std::mutex guard;
    Answer answer;
};

StampLook::StampLook(const TableFile& table, std::function<void(const Answer&)> answered)
    : shared(std::make_shared<Shared>(table)), answered(std::move(answered))
{
    WatchDescriptor(shared->wake, [this] { OnAnswer(); });
}

StampLook::~StampLook()
{
    UnwatchDescriptor(shared->wake);
}

bool StampLook::Start()
{
    if (isUnderWay || shared->wake < 0)
        return false;
    try {
        std::thread([shared = shared] {
            const Answer answer = LookOnce(shared->watch);
            {
                const std::lock_guard lock(shared->guard);
                shared->answer = answer;
            }
            eventfd_write(shared->wake, 1);
        }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    isUnderWay = true;
    return true;
}

void StampLook::OnAnswer()
{
    eventfd_t count = 0;
    if (eventfd_read(shared->wake, &count) != 0)
        return;
    isUnderWay = false;
    Answer answer;
    {
        const std::lock_guard lock(shared->guard);
        answer = shared->answer;
    }
    const auto tell = answered;
    tell(answer);
}

}  // namespace jotlet
