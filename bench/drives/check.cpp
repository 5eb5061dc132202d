#include "bench/drives/check.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "bench/drives/journal.h"
#include "notes/model/note_record.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

enum Kind { kLost, kDoubled, kMoved, kPutBack, kStuck, kCounters, kKinds };
constexpr const char* kNames[] = {"LOST", "DOUBLED", "MOVED", "PUT BACK", "STUCK", "COUNTERS"};
constexpr int kStoriesTold = 6;
constexpr std::size_t kEntriesTold = 14;

struct Slot {
    std::uint64_t address = 0;
    NoteRecord note;
};

class Comparison {
public:
    Comparison(std::vector<char> bytes, Strictness strictness) : bytes(std::move(bytes)), strictness(strictness) {}

    bool ReadFile();
    void ReadJournal(const std::string& path);
    void Compare();
    int Report() const;

private:
    void CompareNote(const std::string& key, const NoteFate& fate);
    void CompareContents(const std::string& key, const NoteFate& fate, const Slot& slot);
    void CompareShared(int number);
    void CompareCounters();
    void LookForStrangers();
    void Fault(Kind kind, const std::string& key, std::uint64_t place, const std::string& what);
    void TellStory(const std::string& key, std::uint64_t place) const;

    std::vector<char> bytes;
    Strictness strictness;
    TableHeader header{};
    std::map<std::string, std::vector<Slot>> live;
    std::int64_t freeSlots = 0;
    int lockedRecords = 0;
    std::vector<Entry> entries;
    std::map<std::string, Ledger> ledgers;  // by host
    std::array<int, kKinds> faults{};
    std::set<std::string> faulty;  // a note counts once
};

bool Comparison::ReadFile()
{
    if (bytes.size() < kFirstRecordOffset)
        return false;
    std::memcpy(&header, bytes.data() + sizeof(SizeBlock), sizeof header);
    for (std::size_t at = kFirstRecordOffset; at + kNoteRecordSize <= bytes.size(); at += kNoteRecordSize) {
        Slot slot{at, {}};
        std::memcpy(&slot.note, bytes.data() + at, kNoteRecordSize);
        if (slot.note.active == 0) {
            ++freeSlots;
            continue;
        }
        lockedRecords += slot.note.locked != 0 ? 1 : 0;
        live[std::string(FieldText(slot.note.title))].push_back(slot);
    }
    return true;
}

void Comparison::ReadJournal(const std::string& path)
{
    for (const Entry& entry : Journal::Read(path)) {
        ledgers[entry.host].Apply(entry);
        entries.push_back(entry);
    }
}

void Comparison::Compare()
{
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.ms < b.ms; });
    // What a host met while it worked comes first: it tells the moment.
    for (const Entry& entry : entries) {
        if (entry.mark == Mark::Lost)
            Fault(kLost, entry.key, entry.place, "host " + entry.host + " no longer found it");
        if (entry.mark == Mark::PutBack)
            Fault(kPutBack, entry.key, entry.place, "host " + entry.host + " read an older text under its lock");
        if (entry.mark == Mark::Stuck)
            Fault(kStuck, entry.key, entry.place, "host " + entry.host + " could not lock it");
    }
    for (const auto& [host, ledger] : ledgers)
        for (const auto& [key, fate] : ledger.notes)
            if (!IsShared(key))
                CompareNote(key, fate);
    for (int number = 0; number < kSharedNotes; ++number)
        CompareShared(number);
    LookForStrangers();
    CompareCounters();
}

void Comparison::CompareNote(const std::string& key, const NoteFate& fate)
{
    const auto found = live.find(key);
    if (found == live.end()) {
        if (!fate.MayBeMissing())
            Fault(kLost, key, fate.place, "confirmed in version " + std::to_string(fate.confirmed));
        return;
    }
    if (found->second.size() > 1)
        Fault(kDoubled, key, found->second[1].address, std::to_string(found->second.size()) + " times");
    CompareContents(key, fate, found->second.front());
}

void Comparison::CompareContents(const std::string& key, const NoteFate& fate, const Slot& slot)
{
    const std::string_view text = FieldText(slot.note.text);
    const int version = VersionOf(key, text);
    if (!fate.MayHave(version))
        Fault(kPutBack, key, slot.address,
              "version " + std::to_string(version) + ", confirmed " +
                  (fate.isDeleted ? "as deleted" : std::to_string(fate.confirmed)));
    else if (fate.open.empty() && text != TextOf(key, version))
        Fault(kLost, key, slot.address, "version " + std::to_string(version) + " in pieces");
    if (strictness == Strictness::Unmoved && fate.open.empty() && fate.place != slot.address)
        Fault(kMoved, key, slot.address, "was put at " + std::to_string(fate.place));
}

void Comparison::CompareShared(int number)
{
    const std::string key = SharedKey(number);
    const auto found = live.find(key);
    if (found == live.end())
        return Fault(kLost, key, 0, "a shared note");
    if (found->second.size() > 1)
        Fault(kDoubled, key, found->second[1].address, "a shared note");
    int counts[kCountingHosts] = {};
    const bool isWhole = ParseCounts(FieldText(found->second.front().note.text), counts);
    for (const auto& [host, ledger] : ledgers) {
        const auto known = ledger.notes.find(key);
        if (known == ledger.notes.end())
            continue;
        const int count = isWhole ? counts[host[0] - 'a'] : 0;
        if (!isWhole || count < known->second.confirmed)
            Fault(kLost, key, 0,
                  "host " + host + " counted to " + std::to_string(known->second.confirmed) + ", it stands at " +
                      std::to_string(count));
        else if (count >= known->second.NextVersion())
            Fault(kPutBack, key, 0, "host " + host + " never counted to " + std::to_string(count));
    }
}

void Comparison::LookForStrangers()
{
    std::map<std::uint64_t, std::string> ids;
    for (const auto& [key, slots] : live) {
        const bool isKnown = IsShared(key) || std::any_of(ledgers.begin(), ledgers.end(), [&](const auto& ledger) {
                                 return ledger.second.notes.contains(key);
                             });
        if (!isKnown)
            Fault(kPutBack, key, slots.front().address, "nobody made it");
        for (const Slot& slot : slots)
            if (const auto [other, isNew] = ids.emplace(slot.note.uniqueId, key); !isNew)
                Fault(kDoubled, key, slot.address, "the same id as " + other->second);
    }
}

void Comparison::CompareCounters()
{
    const std::int64_t counted = -std::int64_t{header.freeSlots};
    if (counted > freeSlots || (strictness != Strictness::AfterKills && counted < freeSlots))
        Fault(kCounters, "freeSlots", 0, std::to_string(counted) + " counted, " + std::to_string(freeSlots) + " there");
    if (strictness != Strictness::AfterKills && lockedRecords > 0)
        Fault(kStuck, "locked", 0, std::to_string(lockedRecords) + " records left locked");
    std::uint64_t changes = kSharedNotes;
    for (const auto& [host, ledger] : ledgers)
        changes += static_cast<std::uint64_t>(ledger.confirmed);
    if (header.changeStamp < kFirstChangeStamp + changes)
        Fault(kCounters, "changeStamp", 0,
              std::to_string(header.changeStamp) + " after " + std::to_string(changes) + " changes");
}

void Comparison::Fault(Kind kind, const std::string& key, std::uint64_t place, const std::string& what)
{
    if (!faulty.insert(key).second)
        return;
    ++faults[kind];
    std::fprintf(stderr, "%s %s at %llu: %s\n", kNames[kind], key.c_str(), static_cast<unsigned long long>(place),
                 what.c_str());
    if (faulty.size() <= kStoriesTold)
        TellStory(key, place);
}

// What all hosts did to the note, and to whatever else lay in its slot.
void Comparison::TellStory(const std::string& key, std::uint64_t place) const
{
    std::vector<const Entry*> told;
    for (const Entry& entry : entries)
        if (entry.key == key || (place != 0 && entry.place == place))
            told.push_back(&entry);
    const std::size_t skipped = told.size() > kEntriesTold ? told.size() - kEntriesTold : 0;
    for (std::size_t i = skipped; i < told.size(); ++i)
        std::fprintf(stderr, "    %s: %s\n", told[i]->host.c_str(), ToLine(*told[i]).c_str());
}

int Comparison::Report() const
{
    int confirmed = 0;
    for (const auto& [host, ledger] : ledgers)
        confirmed += ledger.confirmed;
    std::printf("%d", confirmed);
    for (const int count : faults)
        std::printf(" %d", count);
    std::printf("\n");
    return std::any_of(faults.begin(), faults.end(), [](int count) { return count > 0; }) ? 1 : 0;
}

}  // namespace

int Check(const std::string& file, Strictness strictness, const std::vector<std::string>& journals)
{
    std::ifstream in(file, std::ios::binary);
    Comparison comparison({std::istreambuf_iterator<char>(in), {}}, strictness);
    if (!comparison.ReadFile()) {
        std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
        return 3;
    }
    for (const std::string& journal : journals)
        comparison.ReadJournal(journal);
    comparison.Compare();
    return comparison.Report();
}

}  // namespace jotlet
