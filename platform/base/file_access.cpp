#include "platform/base/file_access.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

constexpr char kAccessList[] = "system.posix_acl_access";
constexpr char kUserAttributes[] = "user.";
// The lists that a server keeps, on NFS 4 and on SMB.
constexpr std::array kServerLists = {"system.nfs4_acl", "system.cifs_acl"};

constexpr unsigned kGroupShift = 3;
constexpr unsigned kOwnerShift = 6;

unsigned RightsOf(unsigned mode, unsigned shift)
{
    return mode >> shift & 7u;
}

bool IsMember(std::uint32_t user, std::uint32_t group)
{
    passwd found{};
    passwd* entry = nullptr;
    std::vector<char> text(1 << 14);
    if (getpwuid_r(user, &found, text.data(), text.size(), &entry) != 0 || !entry)
        return false;
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    if (getgrouplist(found.pw_name, found.pw_gid, groups.data(), &count) < 0) {
        groups.resize(static_cast<std::size_t>(count));
        if (getgrouplist(found.pw_name, found.pw_gid, groups.data(), &count) < 0)
            return false;
    }
    return std::find(groups.begin(), groups.begin() + count, group) != groups.begin() + count;
}

// Whether everybody keeps what he had, once `made` has the mode of `old`.
bool SamePeople(const FileIdentity& old, const FileIdentity& made, bool hasAccessList)
{
    const unsigned groupRights = RightsOf(old.mode, kGroupShift);
    const unsigned otherRights = RightsOf(old.mode, 0);
    if (made.user == old.user && made.group == old.group)
        return true;
    if (hasAccessList || (made.group != old.group && groupRights != otherRights))
        return false;
    if (made.user == old.user)
        return true;
    const unsigned left = groupRights == otherRights || !IsMember(old.user, old.group) ? otherRights : groupRights;
    return (RightsOf(old.mode, kOwnerShift) & ~left) == 0;
}

void GiveOwner(FileHandle to, const FileIdentity& old, const FileIdentity& made)
{
    if (made.user == old.user && made.group == old.group)
        return;
    if (Files().ChangeOwner(to, old.user, old.group) != 0 && made.group != old.group)
        Files().ChangeOwner(to, kSameOwner, old.group);
}

// The attribute's bytes; empty when there is none. Nothing when that can't be told.
std::optional<std::string> Attribute(FileHandle handle, const std::string& name)
{
    std::string value;
    if (Files().GetAttribute(handle, name, value) == 0)
        return value;
    return errno == ENODATA || errno == ENOTSUP ? std::optional<std::string>("") : std::nullopt;
}

// The mode is part of the access list where there is one. A new file may have got a list from its folder.
bool GiveRights(FileHandle to, unsigned mode, const std::string& accessList)
{
    if (!accessList.empty())
        return Files().SetAttribute(to, kAccessList, accessList) == 0;
    const auto inherited = Attribute(to, kAccessList);
    if (!inherited || (!inherited->empty() && Files().RemoveAttribute(to, kAccessList) != 0))
        return false;
    FileIdentity made;
    return Files().Identify(to, made) == 0 && (made.mode == mode || Files().ChangeMode(to, mode) == 0);
}

// A new file in the same folder mostly has the same list already; then none is set, which a server may refuse. The last
// step, since a list like these sets the mode, and the mode them.
bool GiveServerLists(FileHandle from, FileHandle to)
{
    return std::all_of(kServerLists.begin(), kServerLists.end(), [&](const char* name) {
        const auto list = Attribute(from, name);
        return list && (list->empty() || Attribute(to, name) == list || Files().SetAttribute(to, name, *list) == 0);
    });
}

bool CopyUserAttributes(FileHandle from, FileHandle to)
{
    std::vector<std::string> names;
    if (Files().ListAttributes(from, names) != 0)
        return errno == ENOTSUP;
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        std::string value;
        return !name.starts_with(kUserAttributes) ||
               (Files().GetAttribute(from, name, value) == 0 && Files().SetAttribute(to, name, value) == 0);
    });
}

}  // namespace

bool KeepAccess(FileHandle from, FileHandle to)
{
    FileIdentity old;
    FileIdentity made;
    const auto accessList = Attribute(from, kAccessList);
    if (!accessList || Files().Identify(from, old) != 0 || Files().Identify(to, made) != 0)
        return false;
    GiveOwner(to, old, made);
    return Files().Identify(to, made) == 0 && SamePeople(old, made, !accessList->empty()) &&
           CopyUserAttributes(from, to) && GiveRights(to, old.mode, *accessList) && GiveServerLists(from, to) &&
           Files().Identify(to, made) == 0 && made.mode == old.mode;
}

}  // namespace jotlet
