// Who a process is, for others that meet its name on a shared drive.
#pragma once

#include <cstdint>
#include <string>

namespace jotlet {

struct ProcessIdentity {
    // This start of this system, and the numbering of its processes: two containers with one name are two.
    std::string system;
    std::int32_t process = 0;
    std::uint64_t started = 0;  // in ticks since the system's start; a number that is given again has another

    bool operator==(const ProcessIdentity&) const = default;
};

ProcessIdentity ThisProcess();
// True when the process ran on this system and is there no more. False also when nobody here can tell.
bool IsKnownDead(const ProcessIdentity& who);

// What people call this computer and this user.
std::string HostName();
std::string UserName();

}  // namespace jotlet
