// Settings text: `[section]` and `key=value` lines in ini files that several running copies share.
//
// Reading:  section and key names are compared without regard to ASCII case; the first match counts. Blanks round a
//           name and a value are dropped, and then one pair of equal quotes ('...' or "...") round the value. Lines
//           that begin with ';' and lines without '=' are carried along and never read. Line ends may be LF, CR LF or
//           CR.
// Writing:  one key, or some of one section. All other lines stay byte for byte as they are. The file is replaced in
//           one step (written beside, synced, renamed) under a lock, so that two copies never lose each other's keys
//           and a reader never sees half a file or half of what is written together. A new file has mode 0600, since it
//           may hold a password; an old one keeps its mode, except that a file with a "password" key never stays
//           readable for others.
// Errors:   nothing throws. A file that is missing, unreadable or larger than kMaxProfileBytes reads as one with all
//           keys missing; a write to one that exists but cannot be read fails and leaves it as it was.
// Threads:  one.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace jotlet {

// A larger file is no settings file: it is neither read nor written.
inline constexpr std::size_t kMaxProfileBytes = 4u << 20;

// The value of `key` in `text`; nothing when there is no such line. An empty value is a value here.
std::optional<std::string> FindProfileValue(std::string_view text, std::string_view section, std::string_view key);

// `text` with `key` set to `value`: in its line where there is one, else at the end of its section, else in a new
// section at the end. Line breaks and NULs in the names and the value are dropped; a value that reading would trim or
// unquote is put in quotes, so that it reads back as it was given.
std::string WithProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value);

// The text of the settings file at `path`, for who reads many keys of it at one time; nothing when it is missing, no
// regular file, larger than kMaxProfileBytes or cannot be read.
std::optional<std::string> ReadProfileFile(const std::string& path);

struct ProfileEntry {
    std::string_view key;
    std::string value;
};

// The path of a settings file, and of one to fall back on. Holds nothing else: every read looks at the file anew.
class IniFile {
public:
    explicit IniFile(std::string path) : path(std::move(path)) {}
    // Reads what `path` has no line for from `fallbackPath`; writes go to `path` alone.
    IniFile(std::string path, std::string fallbackPath) : path(std::move(path)), fallbackPath(std::move(fallbackPath))
    {
    }

    const std::string& Path() const { return path; }

    // 1 and the value in `out`, cut to fit and always terminated; 0 and an empty text when the key is missing or its
    // value is empty.
    int IniReadText(std::string_view section, std::string_view key, std::span<char> out) const;
    // The whole value; nothing when the key is missing or its value is empty.
    std::optional<std::string> IniReadText(std::string_view section, std::string_view key) const;

    // 1 and the number (TextToInt of the value), or 0 with `out` unchanged when missing or empty.
    int IniReadInt(std::string_view section, std::string_view key, int& out) const;

    // 1 when the value is in the file, 0 when the file could not be written.
    int IniWriteText(std::string_view section, std::string_view key, std::string_view value) const;
    int IniWriteInt(std::string_view section, std::string_view key, int value) const;
    // All of them in one step: another copy that writes the same keys never mixes its values with these.
    int IniWriteTexts(std::string_view section, std::span<const ProfileEntry> entries) const;

private:
    std::string path;
    std::string fallbackPath;
};

// Leading blanks, a sign, then digits up to the first other byte; 0 when there are none, the nearest int when too
// large.
int TextToInt(std::string_view text);

}  // namespace jotlet
