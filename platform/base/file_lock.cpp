#include "platform/base/file_lock.h"

#include <sched.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;

// A turn is mostly over before a sleep would be, so the first attempts only let others run.
constexpr int kEagerAttempts = 16;
constexpr auto kLongestNap = 2000us;

LockOutcome OutcomeOf(int systemError)
{
    switch (systemError) {
        case EAGAIN:
        case EACCES:
            return LockOutcome::Refused;
        case EOPNOTSUPP:
        case ENOSYS:
        case EINVAL:
            return LockOutcome::Unsupported;
        default:  // ENOLCK, EIO, ETIMEDOUT, ESTALE, ...: somebody may hold it, and we were not told
            return LockOutcome::Failed;
    }
}

}  // namespace

LockOutcome LockForHandleLife(FileHandle handle, std::int64_t byte, bool exclusive, int patienceMs)
{
    const LockMode mode = exclusive ? LockMode::Exclusive : LockMode::Shared;
    if (Files().Lock(handle, byte, mode) == 0)
        return LockOutcome::Taken;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(patienceMs);
    std::chrono::microseconds nap = 50us;
    for (int attempt = 0;; ++attempt) {
        const LockOutcome outcome = OutcomeOf(errno);
        if (outcome != LockOutcome::Refused || std::chrono::steady_clock::now() >= deadline)
            return outcome;
        if (attempt < kEagerAttempts) {
            sched_yield();
        } else {
            std::this_thread::sleep_for(nap);
            nap = std::min<std::chrono::microseconds>(nap * 2, kLongestNap);
        }
        if (Files().Lock(handle, byte, mode) == 0)
            return LockOutcome::Taken;
    }
}

LockOutcome FileLock::TakeExclusive(FileHandle file, std::int64_t wantedByte, int patienceMs)
{
    Release();
    const LockOutcome outcome = LockForHandleLife(file, wantedByte, true, patienceMs);
    if (outcome == LockOutcome::Taken) {
        handle = file;
        byte = wantedByte;
    }
    return outcome;
}

void FileLock::Release()
{
    if (handle != kNoFile)
        Files().Lock(handle, byte, LockMode::Unlock);
    handle = kNoFile;
}

}  // namespace jotlet
