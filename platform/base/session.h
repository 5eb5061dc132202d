// What running copies of one user share on one computer: named guards and short broadcasts.
//
// Both live in a folder that only this user can enter: $XDG_RUNTIME_DIR/pinwell, or /tmp/pinwell-<user id> where there
// is no such directory. A folder of that name that belongs to somebody else, is a link, or lets others in is not used:
// this process then has a folder of its own in /tmp until it ends, and meets no other copy. Locks and sockets go with
// their process, whatever kills it.
//
// Threads: one. Errors: by result; nothing throws.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace jotlet {

// The folder told above, made when missing; empty when not even one of this process alone can be made.
std::string SessionFolder();
// False when the folder is this process's own, so that copies don't know of each other.
bool IsSessionShared();

enum class GuardResult {
    Taken,   // this object now holds the name
    InUse,   // somebody else, another object of this process included, holds it
    Failed,  // the lock file cannot be made
};

// Holds a name for as long as it lives. Names are letters, digits, '_', '-' and '.'; other bytes count as '_'.
class SessionGuard {
public:
    SessionGuard() = default;
    ~SessionGuard();
    SessionGuard(const SessionGuard&) = delete;
    SessionGuard& operator=(const SessionGuard&) = delete;

    // Gives back what it held before.
    GuardResult Take(std::string_view name);
    void Release();

private:
    int fd = -1;
};

// Codes of BroadcastToCopies.
inline constexpr std::uint32_t kBroadcastSettingsChanged = 100;
inline constexpr std::uint32_t kBroadcastSkinChanged = 101;
inline constexpr std::uint32_t kBroadcastComeUp = 102;  // a second start: whoever holds the guard shows its window

struct BroadcastMessage {
    std::uint32_t code = 0;
    std::int64_t value = 0;
    bool fromThisProcess = false;  // window handles of two processes can be equal; this tells them apart
};

// Hears what any copy of this user, this one included, sends. A process needs one, made before its first broadcast.
class BroadcastReceiver {
public:
    using Handler = std::function<void(const BroadcastMessage&)>;

    // Nothing when there is no session folder or no socket.
    static std::unique_ptr<BroadcastReceiver> Open(Handler handler);
    ~BroadcastReceiver();
    BroadcastReceiver(const BroadcastReceiver&) = delete;
    BroadcastReceiver& operator=(const BroadcastReceiver&) = delete;

    // Readable when a message waits; for the event loop.
    int Fd() const { return fd; }
    // Calls the handler for every message that waits, without blocking, and gives their number. What is no message of
    // ours is dropped. The handler must not destroy the receiver.
    int Dispatch();

private:
    BroadcastReceiver(int fd, std::string path, Handler handler);

    int fd;
    std::string path;
    Handler handler;
};

// The desktop's permission to come to the front, which it gave to the start that found another copy running: kept in
// the session folder until that copy takes it. Empty when there is none, as on most desktops.
void LeaveActivationToken();
std::string TakeActivationToken();

// Sends to the receiver of every running copy, this one included, without ever blocking; sockets of dead copies are
// swept. A copy whose queue is full misses the message. 1: sent, to nobody perhaps; 0: there is no session folder.
int BroadcastToCopies(std::uint32_t code, std::int64_t value);

}  // namespace jotlet
