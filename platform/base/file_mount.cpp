#include "platform/base/file_mount.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string>

namespace jotlet {
namespace {

// statfs numbers of file systems that only this machine writes: ext2 to ext4, XFS, Btrfs, tmpfs, overlayfs, ramfs,
// F2FS, ZFS, bcachefs, and FAT and exFAT on a stick.
constexpr std::array<unsigned long, 11> kLocalTypes = {0xEF53,     0x58465342, 0x9123683E, 0x01021994,
                                                       0x794C7630, 0x858458F6, 0xF2F52010, 0x2FC12FC1,
                                                       0xCA451A4E, 0x4D44,     0x2011BAB0};

bool HasOption(std::string_view options, std::string_view wanted)
{
    while (!options.empty()) {
        const std::size_t comma = std::min(options.find(','), options.size());
        if (options.substr(0, comma) == wanted)
            return true;
        options.remove_prefix(std::min(comma + 1, options.size()));
    }
    return false;
}

std::string_view TakeWord(std::string_view& line)
{
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

}  // namespace

bool MountIsLocal(int handle)
{
    struct statfs status {};
    if (fstatfs(handle, &status) != 0)
        return false;
    const auto type = static_cast<unsigned long>(status.f_type) & 0xFFFFFFFFul;
    return std::find(kLocalTypes.begin(), kLocalTypes.end(), type) != kLocalTypes.end();
}

Drive DriveOf(int handle)
{
    if (MountIsLocal(handle))
        return {};
    struct stat status {};
    std::string_view type;
    std::string_view options;
    std::ifstream file("/proc/self/mountinfo");
    const std::string mounts{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (fstat(handle, &status) == 0)
        FindMount(mounts, major(status.st_dev), minor(status.st_dev), type, options);
    return DriveOfMount(type, options);
}

Drive DriveOfMount(std::string_view fileSystem, std::string_view options)
{
    const auto is = [&](auto... types) { return ((fileSystem == types) || ...); };
    const auto has = [&](auto... words) { return (HasOption(options, words) || ...); };
    if (is("nfs", "nfs4"))
        return {.isCoherent = false,
                .locksTravel = !has("nolock", "local_lock=all", "local_lock=posix"),
                .writesDirect = true};
    if (is("cifs", "smb3"))
        return {.isCoherent = false,
                .locksTravel = !has("nobrl"),
                .writesDirect = true,
                .locksAgain = false,
                .replacesOpen = false};
    if (is("fuse.glusterfs", "fuse.ceph", "fuse.ceph-fuse", "ceph"))
        return {.isCoherent = false, .sizeFollowsRead = true};
    // Cluster file systems, whose caches follow each other.
    if (is("gfs2", "ocfs2", "lustre"))
        return {.locksTravel = !has("localflocks", "localflock")};
    // A disk of this machine behind a driver that we don't know by its number.
    if (is("fuseblk", "ntfs3", "hfsplus"))
        return {};
    // Other user-space and shared-folder file systems (sshfs, 9p, virtiofs, vboxsf, ...) answer locks on this side, or
    // don't tell. Nobody can know who else has the file.
    return {.isCoherent = false, .locksTravel = false, .asksAtOpen = true};
}

bool FindMount(std::string_view mountInfo, unsigned deviceMajor, unsigned deviceMinor, std::string_view& fileSystem,
               std::string_view& options)
{
    const std::string device = std::to_string(deviceMajor) + ":" + std::to_string(deviceMinor);
    while (!mountInfo.empty()) {
        const std::size_t end = std::min(mountInfo.find('\n'), mountInfo.size());
        std::string_view line = mountInfo.substr(0, end);
        mountInfo.remove_prefix(std::min(end + 1, mountInfo.size()));
        TakeWord(line);  // mount id
        TakeWord(line);  // parent
        if (TakeWord(line) != device)
            continue;
        const std::size_t dash = line.find(" - ");
        if (dash == std::string_view::npos)
            continue;
        line.remove_prefix(dash + 3);
        fileSystem = TakeWord(line);
        TakeWord(line);  // source
        options = TakeWord(line);
        return true;
    }
    return false;
}

}  // namespace jotlet
