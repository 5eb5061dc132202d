#include "platform/base/profile.h"

#include <fcntl.h>

#include <algorithm>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "platform/base/replace_file.h"
#include "platform/base/text.h"

namespace jotlet {

namespace {

// A copy that stops while it holds the lock keeps the others from writing for this long, and no longer.
constexpr int kLockPatienceMs = 5'000;
constexpr char kCredentialSection[] = "Marlin Server";
constexpr char kCredentialKey[] = "password";

// The whole of a regular file; nothing when it isn't one, is too large, or cannot be read.
std::optional<std::string> ReadWhole(FileHandle handle)
{
    FileIdentity identity;
    if (Files().Identify(handle, identity) != 0 || !identity.isRegular || identity.size < 0 ||
        static_cast<std::size_t>(identity.size) > kMaxProfileBytes)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(identity.size), '\0');
    return FileReadWhole(handle, std::as_writable_bytes(std::span(text)), 0) ? std::optional(text) : std::nullopt;
}

// Opens (and makes) the file and locks it. The lock is on the file itself: as writers replace the file, who got the
// lock looks whether the path still names what it locked.
FileHandleOwner OpenLocked(const std::string& path, FileIdentity& opened)
{
    for (int attempt = 0; attempt < 1000; ++attempt) {
        FileHandleOwner file(Files().Open(path, O_RDWR | O_CREAT, kPrivateMode));
        if (!file || Files().Identify(file.Get(), opened) != 0 || !opened.isRegular)
            break;
        const LockOutcome locked = LockForHandleLife(file.Get(), kMutationByte, true, kLockPatienceMs);
        if (locked == LockOutcome::Refused || locked == LockOutcome::Failed)
            break;
        FileIdentity named;
        if (Files().IdentifyPath(path, named) == 0 && named.SameFile(opened))
            return file;
    }
    return {};
}

// Somebody else's file, written by the administrator, stays theirs; where that is not allowed, the new one is ours
// alone.
bool ReplaceFile(const std::string& path, std::string_view text, FileHandle old, unsigned mode)
{
    FileReplacement fresh;
    if (!fresh.Start(path))
        return false;
    if (!fresh.KeepAccessOf(old))
        mode &= 0700;
    FileIdentity made;
    return Files().Identify(fresh.Handle(), made) == 0 &&
           (made.mode == mode || Files().ChangeMode(fresh.Handle(), mode) == 0) &&
           FileWriteWhole(fresh.Handle(), std::as_bytes(std::span(text)), 0) && fresh.Finish();
}

// Where a file that is open can't be replaced: in one write, so that the server has the old text or the new one. What
// is left of a longer old text becomes empty lines before it is cut off.
bool WriteOver(FileHandle file, std::string text, std::size_t oldSize, unsigned mode)
{
    const std::size_t size = text.size();
    text.resize(std::max(size, oldSize), '\n');
    FileIdentity now;
    return Files().Identify(file, now) == 0 && (now.mode == mode || Files().ChangeMode(file, mode) == 0) &&
           FileWriteWhole(file, std::as_bytes(std::span(text)), 0) && Files().Sync(file) == 0 &&
           Files().Truncate(file, static_cast<std::int64_t>(size)) == 0;
}

}  // namespace

std::optional<std::string> ReadProfileFile(const std::string& path)
{
    if (path.empty())
        return std::nullopt;
    const FileHandleOwner file(Files().Open(path, O_RDONLY, 0));
    return file ? ReadWhole(file.Get()) : std::nullopt;
}

std::optional<std::string> IniFile::IniReadText(std::string_view section, std::string_view key) const
{
    for (const std::string& source : {path, fallbackPath}) {
        const auto text = ReadProfileFile(source);
        if (!text)
            continue;
        // An empty value is as good as none, but the user's own empty line hides what was shipped.
        if (auto value = FindProfileValue(*text, section, key))
            return value->empty() ? std::nullopt : value;
    }
    return std::nullopt;
}

int IniFile::IniReadText(std::string_view section, std::string_view key, std::span<char> out) const
{
    const auto value = IniReadText(section, key);
    StoreText(out, value ? *value : std::string_view());
    return value ? 1 : 0;
}

int IniFile::IniReadInt(std::string_view section, std::string_view key, int& out) const
{
    const auto value = IniReadText(section, key);
    if (!value)
        return 0;
    out = TextToInt(*value);
    return 1;
}

int IniFile::IniWriteText(std::string_view section, std::string_view key, std::string_view value) const
{
    const ProfileEntry entry{key, std::string(value)};
    return IniWriteTexts(section, {&entry, 1});
}

int IniFile::IniWriteTexts(std::string_view section, std::span<const ProfileEntry> entries) const
{
    if (path.empty())
        return 0;
    // A link to a settings file stays a link: what it names is replaced.
    const std::string target = RealPathOf(path);
    FileIdentity old;
    const FileHandleOwner file = OpenLocked(target, old);
    const auto before = file ? ReadWhole(file.Get()) : std::nullopt;
    if (!before)
        return 0;
    std::string after = *before;
    for (const ProfileEntry& entry : entries)
        after = WithProfileValue(after, section, entry.key, entry.value);
    if (after.size() > kMaxProfileBytes)
        return 0;
    unsigned mode = old.mode & 0777;
    if (const auto password = FindProfileValue(after, kCredentialSection, kCredentialKey);
        password && !password->empty())
        mode &= 0700;
    if (after == *before) {
        // Nothing to write, but a file that others could read does not stay so.
        if (mode != (old.mode & 0777))
            Files().ChangeMode(file.Get(), mode);
        return 1;
    }
    const bool isReplaced = Files().IsLocal(file.Get()) || Files().DriveUnder(file.Get()).replacesOpen;
    const bool isWritten =
        isReplaced ? ReplaceFile(target, after, file.Get(), mode) : WriteOver(file.Get(), after, before->size(), mode);
    return isWritten ? 1 : 0;
}

int IniFile::IniWriteInt(std::string_view section, std::string_view key, int value) const
{
    return IniWriteText(section, key, std::to_string(value));
}

}  // namespace jotlet
