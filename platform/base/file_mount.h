// What the mount under an open file can promise.
#pragma once

#include <string_view>

namespace jotlet {

// True when the file lies on a disk or in the memory of this machine, so that nobody else writes it and a mapping is
// coherent with reads and writes.
bool MountIsLocal(int handle);

// True when a lock on the file is seen by every computer that can open it.
bool MountSharesLocks(int handle);

// Whether a mount of type `fileSystem` ("nfs4", "cifs", "fuse.sshfs", ...) with these comma-separated `options` keeps
// locks on this machine. For types that other computers can write to; a local disk has nobody to tell.
bool MountKeepsLocksLocal(std::string_view fileSystem, std::string_view options);

// The type and options of the mount of a device, from text in the form of /proc/self/mountinfo. False when not listed.
bool FindMount(std::string_view mountInfo, unsigned deviceMajor, unsigned deviceMinor, std::string_view& fileSystem,
               std::string_view& options);

}  // namespace jotlet
