#include "platform/base/turn_file.h"

#include <fcntl.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <random>
#include <sstream>
#include <thread>

#include "platform/base/file_system.h"
#include "platform/base/process_identity.h"
#include "platform/base/shared_file.h"

namespace jotlet {
namespace {

// How long a waiter waits before it looks whether the holder is still there, and then between two looks.
constexpr int kFirstLookMs = 300;
constexpr int kNextLookMs = 1000;
constexpr int kLongestNapMs = 8;
// A file that names nobody yet is abandoned after this; who has taken half of it to write his name gives up.
constexpr int kNamelessMs = 6000;
// Who takes one turn after the other pauses once in a while, for longer than those who wait nap.
constexpr int kLongestStreakMs = 100;
constexpr int kPauseMs = 2 * kLongestNapMs;
// Where names are remembered those who wait may need a whole second to see that the file is gone.
constexpr int kLongestBusyMs = 3000;
constexpr int kLongPauseMs = 1100;
// How often a waiter opens the file: only that tells such a drive that it is gone.
constexpr int kQuestionMs = 100;
// Between one second and two: a turn is shorter, and so is what a drive remembers of names.
constexpr int kMostRefusals = 200;
constexpr std::size_t kMaxText = 300;

// Goes on while the computer sleeps: others don't.
std::int64_t NowMs()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1'000'000;
}

FileHandle MakeNew(const std::string& path)
{
    return Files().Open(path, O_RDWR | O_CREAT | O_EXCL, 0644);
}

// What stands in the file, and when somebody wrote to it last.
struct Sight {
    std::string text;
    std::int64_t modified = 0;
};

bool Look(const std::string& path, Sight& sight)
{
    SharedFile file(Files().Open(path, O_RDONLY, 0));
    FileIdentity identity;
    if (!file)
        return false;
    const std::int64_t size = file.Size();
    if (size < 0 || Files().IdentifyAtServer(file.Get(), identity) != 0)
        return false;
    sight.modified = identity.modified;
    sight.text.resize(std::min(static_cast<std::size_t>(size), kMaxText));
    return file.Read(std::as_writable_bytes(std::span(sight.text)), 0);
}

bool IsAbandoned(const Sight& sight, std::int64_t now)
{
    ProcessIdentity owner;
    std::istringstream words(sight.text);
    std::string numbering;
    if (words >> owner.system >> numbering >> owner.process >> owner.started) {
        owner.system += " " + numbering;
        if (IsKnownDead(owner))
            return true;
    }
    return now - sight.modified > (sight.text.empty() ? kNamelessMs : kTurnSilenceMs) * 1'000'000LL;
}

// Takes an abandoned file away. Only one at a time may judge and remove, so that nobody removes the file of the next
// holder: that right is a file of its own, whose making also tells the server's time.
void RemoveAbandoned(const std::string& path)
{
    const std::string rightPath = path + ".break";
    const FileHandleOwner right(MakeNew(rightPath));
    FileIdentity made;
    Sight sight;
    if (!right) {
        // Its owner was killed in the middle of these few calls. Nobody needs longer than this for them.
        const FileHandleOwner probe(MakeNew(rightPath + ".now"));
        if (probe && Files().IdentifyAtServer(probe.Get(), made) == 0 && Look(rightPath, sight) &&
            made.modified - sight.modified > 3 * kTurnSilenceMs * 1'000'000LL)
            Files().Remove(rightPath);
        if (probe)
            Files().Remove(rightPath + ".now");
        return;
    }
    if (Files().IdentifyAtServer(right.Get(), made) == 0 && Look(path, sight) && IsAbandoned(sight, made.modified))
        Files().Remove(path);
    Files().Remove(rightPath);
}

}  // namespace

void TurnFile::LetOthersIn(TurnDrive drive)
{
    const std::int64_t now = NowMs();
    const auto isOver = [now](std::int64_t since, int longest) { return now - since >= longest; };
    if (isOver(given, kPauseMs))
        streak = now;
    if (isOver(given, kLongPauseMs))
        longStreak = now;
    const bool longOne = drive == TurnDrive::UserSpace && isOver(longStreak, kLongestBusyMs);
    if (longOne || isOver(streak, kLongestStreakMs)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(longOne ? kLongPauseMs : kPauseMs));
        streak = NowMs();
        longStreak = longOne ? streak : longStreak;
    }
}

bool TurnFile::Take(const std::string& path, int patienceMs, TurnDrive drive)
{
    Release();
    thread_local std::minstd_rand dice(std::random_device{}());
    LetOthersIn(drive);
    const std::int64_t begin = NowMs();
    std::int64_t nextQuestion = begin + kQuestionMs;
    std::int64_t nextLook = begin + std::min(kFirstLookMs, patienceMs);
    int napMs = 1;
    int refusals = 0;
    for (;;) {
        const std::int64_t asked = NowMs();
        FileHandleOwner made(MakeNew(path));
        if (made) {
            const ProcessIdentity here = ThisProcess();
            const std::string text = here.system + " " + std::to_string(here.process) + " " +
                                     std::to_string(here.started) + " " + HostName();
            FileWriteWhole(made.Get(), std::as_bytes(std::span(text)), 0);
            const bool isKnown = drive == TurnDrive::Server && Files().Sync(made.Get()) == 0;
            if (NowMs() - asked > kNamelessMs / 2) {
                Files().Remove(path);
                errno = EAGAIN;
                return false;
            }
            const std::lock_guard lock(guard);
            taken = path;
            file = std::move(made);
            lastSign = asked;
            trustMs = isKnown ? kTurnTrustMs : kNamelessMs / 2;
            return true;
        }
        // Some drives have but one word for all that a server refuses, a file that exists among it; others remember a
        // file that was removed elsewhere, and don't find it.
        const bool mayPass = errno == EPERM || errno == ENOENT || errno == ESTALE;
        if (errno != EEXIST && (!mayPass || ++refusals > kMostRefusals))
            return false;
        if (drive == TurnDrive::UserSpace && asked >= nextQuestion) {
            FileHandleOwner question(Files().Open(path, O_RDONLY, 0));
            nextQuestion = asked + kQuestionMs;
        }
        if (asked >= nextLook) {
            RemoveAbandoned(path);
            nextLook = asked + kNextLookMs;
        } else if (asked - begin >= patienceMs) {
            errno = EAGAIN;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(napMs * 1000 + static_cast<int>(dice() % 1000)));
        napMs = std::min(napMs * 2, kLongestNapMs);
    }
}

void TurnFile::Release()
{
    const std::lock_guard lock(guard);
    if (taken.empty())
        return;
    file.Reset();
    // Held up for so long that it may be somebody else's by now: then he, or the next who waits, removes it.
    if (NowMs() - lastSign < 2 * trustMs)
        Files().Remove(taken);
    taken.clear();
    given = NowMs();
}

void TurnFile::Beat()
{
    const std::lock_guard lock(guard);
    const std::int64_t now = NowMs();
    if (taken.empty() || now - lastSign > trustMs)
        return;
    constexpr std::byte kSign{'.'};
    const std::int64_t end = FileSize(file.Get());
    if (end >= 0 && FileWriteWhole(file.Get(), {&kSign, 1}, end) && Files().Sync(file.Get()) == 0) {
        lastSign = now;
        trustMs = kTurnTrustMs;
    }
}

bool TurnFile::IsSure() const
{
    const std::lock_guard lock(guard);
    return !taken.empty() && NowMs() - lastSign < trustMs;
}

}  // namespace jotlet
