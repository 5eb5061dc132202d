// A copy killed at any moment: what it had confirmed is there, and the next start puts the rest right.
#include <map>
#include <random>
#include <thread>

#include "store/open_table.h"
#include "support/forked_process.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

constexpr int kKills = 100;

// What the victim has confirmed: after Flush it says so, and from then on it must be there. "+id title" for an add or
// an edit, "-id" for a delete; "?..." before, for what may be half done.
int Toil(const std::string& path, std::uint64_t seed, std::uint64_t firstId, Line& line)
{
    std::mt19937_64 random(seed);
    std::map<std::uint64_t, RecordAddress> notes;
    OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return 1;
    TableFile& table = *opened.table;
    Record record = table.AllocRecordBuffer();
    const auto find = [&] {
        RecordQuery query;
        query.PrepareResults();
        query.AddAllTerm();
        table.RunQuery(query);
        for (const RecordAddress address : query.Results()) {
            table.ReadRecord(record, address);
            RecordPrefix prefix;
            std::memcpy(&prefix, record.data(), sizeof prefix);
            notes[+prefix.uniqueId] = address;
        }
    };
    find();
    for (std::uint64_t step = 0;; ++step) {
        const std::string title = std::to_string(seed) + "." + std::to_string(step);
        const unsigned dice = random() % 4;
        if (notes.size() < 20 || dice < 2) {
            const std::uint64_t id = firstId + step;
            line.Say("?" + std::to_string(id) + " " + title);
            RecordAddress address = 0;
            if (table.AddRecord(RecordOf({.title = title, .text = std::string(2000, 'x'), .id = id}), &address) != 1)
                return 2;
            table.Flush();
            line.Say("+" + std::to_string(id) + " " + title);
            notes[id] = address;
            continue;
        }
        const auto note = std::next(notes.begin(), static_cast<long>(random() % notes.size()));
        if (table.LockRecord(note->second) != 1)
            return 3;
        table.ReadRecord(record, note->second);
        if (dice == 2) {
            line.Say("?" + std::to_string(note->first) + " " + title);
            PutText(record, kTitleAt, kTitleWidth, title);
            table.WriteRecord(record, note->second);
            table.UnlockRecord(note->second);
            table.Flush();
            line.Say("+" + std::to_string(note->first) + " " + title);
        } else {
            line.Say("?" + std::to_string(note->first));
            table.DeleteRecord(note->second);
            table.UnlockRecord(note->second);
            table.Flush();
            line.Say("-" + std::to_string(note->first));
            notes.erase(note);
        }
    }
}

class CrashTest : public TableTest {
protected:
    // Reads what the victim said until it was killed.
    void Listen(ForkedProcess& victim)
    {
        unsure.clear();
        for (std::string line = victim.Talk().Hear(); !line.empty(); line = victim.Talk().Hear()) {
            const char sign = line[0];
            const std::size_t blank = line.find(' ');
            const std::uint64_t id = std::stoull(line.substr(1));
            const std::string title = blank == std::string::npos ? "" : line.substr(blank + 1);
            unsure.clear();
            if (sign == '?')
                unsure[id] = title;
            else if (sign == '+')
                confirmed[id] = title;
            else
                confirmed.erase(id);
        }
    }
    // Every confirmed note once, with its text; of the one that was in the works, the old or the new.
    void Check(TableFile& found)
    {
        std::map<std::uint64_t, std::string> present;
        const std::vector<FieldRange> fields = {{offsetof(RecordPrefix, uniqueId), 8}, {kTitleAt, kTitleWidth}};
        ASSERT_EQ(found.ForEachRecord(fields,
                                      [&](RecordAddress, std::span<const std::byte> bytes) {
                                          std::uint64_t id = 0;
                                          std::memcpy(&id, bytes.data(), sizeof id);
                                          EXPECT_EQ(present.count(id), 0u);
                                          present[id] = reinterpret_cast<const char*>(bytes.data() + 8);
                                          return true;
                                      }),
                  1);
        for (const auto& [id, title] : unsure) {
            const auto it = present.find(id);
            const auto old = confirmed.find(id);
            if (it == present.end()) {
                // A new one that isn't there yet, or a deleted one that is gone already.
                EXPECT_TRUE(title.empty() || old == confirmed.end());
                confirmed.erase(id);
            } else {
                EXPECT_TRUE(it->second == title || (old != confirmed.end() && it->second == old->second)) << it->second;
                confirmed[id] = it->second;
            }
        }
        EXPECT_EQ(present, confirmed);
    }

    std::map<std::uint64_t, std::string> confirmed;
    std::map<std::uint64_t, std::string> unsure;
};

TEST_F(CrashTest, ConfirmedNotesOutliveAKillAtAnyMomentAndTheNextStartRepairs)
{
    table->Close();
    std::mt19937_64 random(7);
    int repairs = 0;
    for (std::uint64_t kill = 1; kill <= kKills; ++kill) {
        SCOPED_TRACE(kill);
        ForkedProcess victim([&](Line& line) { return Toil(path, kill, kill << 32, line); });
        std::this_thread::sleep_for(std::chrono::microseconds(1000 + random() % 15'000));
        victim.Kill();
        Listen(victim);
        OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
        ASSERT_TRUE(opened);
        repairs += opened.repaired;
        ASSERT_NO_FATAL_FAILURE(Check(*opened.table));
        TableHeader header;
        SlotCounts counts;
        ASSERT_EQ(opened.table->ReadHeader(header) + opened.table->DescribeSlots(counts), 2);
        EXPECT_EQ(+header.openCount, 1u);
        EXPECT_EQ(counts.locked + counts.cutTailBytes, 0);
        EXPECT_EQ(+header.freeSlots, -(counts.slots - counts.live));
    }
    EXPECT_GT(repairs, kKills / 2);
    EXPECT_GT(confirmed.size(), 20u);
}

TEST_F(CrashTest, AKilledCompactionLeavesTheOldFileOrTheNew)
{
    for (std::uint64_t id = 1; id <= 1500; ++id)
        confirmed[id] = std::to_string(id);
    for (const auto& [id, title] : confirmed)
        Add({.title = title, .id = id});
    for (std::uint64_t id = 1; id <= 1500; id += 3) {
        table->DeleteRecord(static_cast<RecordAddress>(2625 + (id - 1) * 3557));
        confirmed.erase(id);
    }
    table->Close();
    std::mt19937_64 random(11);
    for (int kill = 1; kill <= kKills; ++kill) {
        SCOPED_TRACE(kill);
        ForkedProcess victim([&](Line& line) {
            line.Say("go");
            for (;;)
                CheckAfterCrash(path, 1);
            return 0;
        });
        victim.Talk().Hear();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        victim.Kill();
        TableFile found(path, "");
        ASSERT_TRUE(found.IsOpen());
        ASSERT_NO_FATAL_FAILURE(Check(found));
    }
    EXPECT_EQ(CheckAfterCrash(path, 1), 1);
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST_F(CrashTest, AKilledCreationLeavesNoFileOrAWholeOne)
{
    table->Close();
    std::mt19937_64 random(13);
    for (int kill = 1; kill <= 30; ++kill) {
        SCOPED_TRACE(kill);
        const std::string fresh = folder.File("fresh.jot");
        ForkedProcess victim([&](Line& line) {
            line.Say("go");
            TableFile made(fresh, "");
            CreateNotes(made);
            line.Say("made");
            line.Hear();
            return 0;
        });
        victim.Talk().Hear();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
        victim.Kill();
        const bool told = victim.Talk().Hear() == "made";
        EXPECT_TRUE(!told || TableFile::Exists(fresh));
        if (TableFile::Exists(fresh)) {
            EXPECT_TRUE(OpenTable(fresh, "", kNoteRecordSize));
            std::filesystem::remove(fresh);
        }
    }
}

}  // namespace
}  // namespace jotlet::test
