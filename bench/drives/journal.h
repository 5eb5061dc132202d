// What one host did to a note file, kept on a disk of its own: an intent before each change, its outcome after.
// Whatever kills the host, the journal tells what was confirmed and what was open at that moment.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace jotlet {

enum class Mark : char {
    Intent = '?',
    Confirmed = '!',
    Refused = '-',  // the change failed; it may be in the file all the same
    Lost = 'L',     // the note isn't where it was, nor is its slot free for a reason that is known
    PutBack = 'B',  // the note has a text that was overwritten before
    Stuck = 'S',    // the note was locked for as long as a host waits
};

// What `deed` may be.
inline constexpr std::string_view kAdd = "add";
inline constexpr std::string_view kEdit = "edit";
inline constexpr std::string_view kDelete = "delete";
inline constexpr std::string_view kCount = "count";

struct Entry {
    std::int64_t ms = 0;  // the machine's clock, so that the journals of two hosts can be merged
    Mark mark = Mark::Intent;
    std::string deed;
    std::string key;          // the note's title
    int version = 0;          // of its text, from 1 on; 0 for a deletion
    std::uint64_t place = 0;  // the record's address, or its id where jotctl is called
    std::string host;
};

// What one host knows of one note.
struct NoteFate {
    int confirmed = 0;       // the last version; 0: none
    bool isDeleted = false;  // confirmed
    std::vector<int> open;   // versions (0: the deletion) that may or may not have reached the file
    std::uint64_t place = 0;
    bool isStuck = false;
    bool isFaulty = false;

    bool MayHave(int version) const;
    bool MayBeMissing() const;
    int NextVersion() const;
};

// The fate of every note, from a journal's entries in their order.
class Ledger {
public:
    void Apply(const Entry& entry);
    std::map<std::string, NoteFate> notes;
    int confirmed = 0;  // changes
};

class Journal {
public:
    // Appends to the file at `path`, which is made if need be.
    explicit Journal(const std::string& path);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // The entry has left this process when this returns. Time and host are filled in.
    void Write(Entry entry);
    // Everything that stands in the file; an entry that a kill cut short is left out.
    static std::vector<Entry> Read(const std::string& path);

private:
    int file;
};

std::string ToLine(const Entry& entry);
std::int64_t NowMs();

// The text of a note in one of its versions, of a length of its own.
std::string TextOf(std::string_view key, int version);
// The version that a text tells; -1 when it is no text of that note.
int VersionOf(std::string_view key, std::string_view text);

// A shared note counts for each host apart, so that a lost count tells whose it was.
inline constexpr int kSharedNotes = 5;
inline constexpr int kCountingHosts = 3;  // "a", "b", "c"
std::string SharedKey(int number);
bool IsShared(std::string_view key);
std::string CountText(const int (&counts)[kCountingHosts]);
bool ParseCounts(std::string_view text, int (&counts)[kCountingHosts]);

}  // namespace jotlet
