// Turns on a drive whose locks stay on each machine: who has made the file at a path has the turn, and gives it back by
// removing the file. Servers make a file exclusively for one of several callers only (NFS since its version 3).
//
// Nobody waits for ever for a holder that is gone: on its own computer its process is looked for; elsewhere it is taken
// for gone when its file shows no sign of life for kTurnSilenceMs, by the server's clock alone. So a holder that stays
// longer at work calls Beat, and one that was held up for longer than kTurnTrustMs no longer writes (IsSure).
//
// Threads: Beat may be called from another thread than the rest.
// Errors:  nothing throws; false, and errno (EAGAIN: somebody else has the turn).
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "platform/base/files.h"

namespace jotlet {

inline constexpr int kTurnSilenceMs = 20'000;
inline constexpr int kTurnTrustMs = 10'000;
// How often a holder at long work calls Beat.
inline constexpr int kTurnBeatMs = 3'000;

// What the drive does with names.
enum class TurnDrive {
    Server,  // asks the server; what is written is there after a sync alone
    // A program of this computer stands between (FUSE). It keeps the order of what is written, so the owner's name need
    // not be waited for, but the turn is trusted for less long. A name that was seen is remembered for a second.
    UserSpace,
};

class TurnFile {
public:
    TurnFile() = default;
    ~TurnFile() { Release(); }
    TurnFile(const TurnFile&) = delete;
    TurnFile& operator=(const TurnFile&) = delete;

    bool Take(const std::string& path, int patienceMs, TurnDrive drive = TurnDrive::Server);
    void Release();
    // A sign of life; nothing without the turn.
    void Beat();
    // The turn is held, and nobody can have taken it for abandoned.
    bool IsSure() const;

private:
    void LetOthersIn(TurnDrive drive);

    mutable std::mutex guard;
    std::string taken;  // the path; empty without the turn
    FileHandleOwner file;
    // Milliseconds, sleep of the computer included.
    std::int64_t given = 0;  // back, the last time
    std::int64_t lastSign = 0;
    int trustMs = 0;
    // Since when this object has left others no room, and no long one.
    std::int64_t streak = 0;
    std::int64_t longStreak = 0;
};

}  // namespace jotlet
