// What the mount under an open file can promise.
#pragma once

#include <string_view>

namespace jotlet {

// True when the file lies on a disk or in the memory of this machine, so that nobody else writes it and a mapping is
// coherent with reads and writes.
bool MountIsLocal(int handle);

// What several computers that use one file on the drive have to do for it.
struct Drive {
    // A plain read gives what was written last, by whomever. Nothing below then matters but `locksTravel`.
    bool isCoherent = true;
    // A lock on the file is seen by every computer that can open it.
    bool locksTravel = true;
    // What is written through an uncached descriptor (O_DIRECT) is at the server when the call returns, whatever its
    // offset and size. Elsewhere it is there after a sync.
    bool writesDirect = false;
    // The drive's client keeps a cache of its own behind each open descriptor, so that only a new one asks the server.
    bool asksAtOpen = false;
    // A size is asked of the server only once data was read from it, and small files are read from the client's memory
    // until something is asked of them that may change them.
    bool sizeFollowsRead = false;
    // Who has a lock may ask for it again, and so learn whether he still has it.
    bool locksAgain = true;
    // A file that somebody has open, the caller among them, can be replaced by another.
    bool replacesOpen = true;
};

Drive DriveOf(int handle);
// For a mount of type `fileSystem` ("nfs4", "cifs", "fuse.sshfs", ...) with these comma-separated `options`, of the
// types that aren't a disk of this machine.
Drive DriveOfMount(std::string_view fileSystem, std::string_view options);

// The type and options of the mount of a device, from text in the form of /proc/self/mountinfo. False when not listed.
bool FindMount(std::string_view mountInfo, unsigned deviceMajor, unsigned deviceMinor, std::string_view& fileSystem,
               std::string_view& options);

}  // namespace jotlet
