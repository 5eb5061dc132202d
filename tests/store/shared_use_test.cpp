// A copy killed at any moment, and two processes at work as hard as they can: what they have confirmed is there, and
// the next start puts the rest right.
#include <map>
#include <random>
#include <thread>

#include "store/open_table.h"
#include "support/forked_process.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

constexpr int kKills = 100;
constexpr int kSteps = 3000;

RecordPrefix PrefixAt(TableFile& table, Record& record, RecordAddress address)
{
    RecordPrefix prefix{};
    if (table.ReadRecord(record, address) == 1)
        std::memcpy(&prefix, record.data(), sizeof prefix);
    return prefix;
}

// Counts up the number in the text of a record that others count up, too.
bool CountUp(TableFile& table, Record& record, RecordAddress address)
{
    for (int attempt = 0; attempt < 200'000; ++attempt) {
        if (table.LockRecord(address) != 1)
            continue;
        std::uint64_t count = 0;
        const int read = table.ReadRecord(record, address);
        std::memcpy(&count, record.data() + kTextAt, sizeof count);
        Put(record, kTextAt, count + 1);
        return read + table.WriteRecord(record, address) + table.UnlockRecord(address) == 3;
    }
    return false;
}

// Adds, edits and deletes notes in random order; 0 when all went as it should. Ids begin at `firstId`.
//
// To be killed: for ever, with all notes of the file; each change is flushed and told, and from then on it must be
// there. "+id title" for an add or an edit, "-id" for a delete; "?..." before, for what may be half done.
// To be alone with others: for kSteps steps, with its own notes, counting up the first record between. What it believes
// to be there is told at the end, and how often it counted.
int Toil(const std::string& path, std::uint64_t seed, std::uint64_t firstId, bool isToBeKilled, Line& line)
{
    std::mt19937_64 random(seed);
    const OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return 1;
    TableFile& table = *opened.table;
    Record record = table.AllocRecordBuffer();
    struct Kept {
        RecordAddress address;
        std::string title;
    };
    std::map<std::uint64_t, Kept> notes;
    if (isToBeKilled) {
        RecordQuery query;
        query.PrepareResults();
        query.AddAllTerm();
        table.RunQuery(query);
        for (const RecordAddress address : query.Results())
            notes[+PrefixAt(table, record, address).uniqueId] = {address, ""};
    } else {
        line.Say("ready");
        line.Hear();
    }
    const auto tell = [&](const std::string& what) {
        if (isToBeKilled)
            line.Say(what);
    };
    const auto done = [&](const std::string& what) {
        if (isToBeKilled)
            table.Flush();
        tell(what);
    };
    int counted = 0;
    for (std::uint64_t step = 1; isToBeKilled || step <= kSteps; ++step) {
        const unsigned dice = random() % 4;
        const std::string title = std::to_string(seed) + "." + std::to_string(step);
        if (dice == 3 && !isToBeKilled) {
            if (!CountUp(table, record, kFirstRecordOffset))
                return 2;
            ++counted;
            continue;
        }
        if (notes.empty() || dice == 0 || (isToBeKilled && (dice == 1 || notes.size() < 20))) {
            const std::uint64_t id = firstId + step;
            const std::string what = std::to_string(id) + " " + title;
            tell("?" + what);
            RecordAddress address = 0;
            if (table.AddRecord(RecordOf({.title = title, .text = std::string(2000, 'x'), .id = id}), &address) != 1)
                return 3;
            done("+" + what);
            notes[id] = {address, title};
            continue;
        }
        const auto note = std::next(notes.begin(), static_cast<long>(random() % notes.size()));
        const RecordAddress address = note->second.address;
        const std::string id = std::to_string(note->first);
        if (table.LockRecord(address) != 1)
            return 4;
        if (PrefixAt(table, record, address).uniqueId != note->first)
            return 5;  // somebody else's record in our slot
        if (dice == (isToBeKilled ? 2 : 1)) {
            tell("?" + id + " " + title);
            PutText(record, kTitleAt, kTitleWidth, title);
            if (table.WriteRecord(record, address) + table.UnlockRecord(address) != 2)
                return 6;
            done("+" + id + " " + title);
            note->second.title = title;
        } else {
            tell("?" + id);
            if (table.DeleteRecord(address) != 1)
                return 7;
            table.UnlockRecord(address);
            done("-" + id);
            notes.erase(note);
        }
    }
    for (const auto& [id, note] : notes)
        line.Say("+" + std::to_string(id) + " " + note.title);
    line.Say("#" + std::to_string(counted));
    return 0;
}

class SharedUseTest : public TableTest {
protected:
    // Reads what the victim said until it was killed.
    void Listen(ForkedProcess& victim)
    {
        unsure.clear();
        for (std::string line = victim.Talk().Hear(); !line.empty(); line = victim.Talk().Hear()) {
            const char sign = line[0];
            const std::size_t blank = line.find(' ');
            const std::uint64_t id = std::stoull(line.substr(1));
            if (sign == '#') {
                counted += id;
                continue;
            }
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
    std::uint64_t counted = 0;
};

TEST_F(SharedUseTest, ConfirmedNotesOutliveAKillAtAnyMomentAndTheNextStartRepairs)
{
    table->Close();
    std::mt19937_64 random(7);
    int repairs = 0;
    for (std::uint64_t kill = 1; kill <= kKills; ++kill) {
        SCOPED_TRACE(kill);
        ForkedProcess victim([&](Line& line) { return Toil(path, kill, kill << 32, true, line); });
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

TEST_F(SharedUseTest, AKilledCompactionLeavesTheOldFileOrTheNew)
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

TEST_F(SharedUseTest, TwoProcessesLoseNoNoteNoCountAndNoLock)
{
    const RecordAddress shared = Add({.title = "shared"});
    const std::uint64_t stampBefore = table->GetChangeStamp();
    table->Close();
    confirmed[0] = "shared";
    ForkedProcess first([&](Line& line) { return Toil(path, 1, std::uint64_t{1} << 32, false, line); });
    ForkedProcess second([&](Line& line) { return Toil(path, 2, std::uint64_t{2} << 32, false, line); });
    for (ForkedProcess* worker : {&first, &second})
        EXPECT_EQ(worker->Talk().Hear(), "ready");
    for (ForkedProcess* worker : {&first, &second})
        worker->Talk().Say("go");
    for (ForkedProcess* worker : {&first, &second}) {
        Listen(*worker);
        EXPECT_EQ(worker->Wait(), 0);
    }

    ASSERT_EQ(FileIsBusy(path), 0);
    EXPECT_EQ(RepairTable(path, false), RepairOutcome::Clean);  // openCount is 0
    ASSERT_EQ(table->Open(), 1);
    EXPECT_EQ(+Header().openCount, 1u);
    EXPECT_EQ(+Header().changeStamp, stampBefore + 2 * kSteps);
    SlotCounts counts;
    ASSERT_EQ(table->DescribeSlots(counts), 1);
    EXPECT_EQ(counts.locked, 0);
    EXPECT_EQ(counts.cutTailBytes, 0);
    EXPECT_EQ(+Header().freeSlots, -(counts.slots - counts.live));
    Check(*table);
    Record record = table->AllocRecordBuffer();
    ASSERT_EQ(table->ReadRecord(record, shared), 1);
    std::uint64_t count = 0;
    std::memcpy(&count, record.data() + kTextAt, sizeof count);
    EXPECT_EQ(count, counted);  // nobody's counting was lost under another's
}

TEST_F(SharedUseTest, ACopyThatOpensDuringACompactionGetsTheNewFile)
{
    for (int i = 0; i < 400; ++i)
        Add({.title = std::to_string(i)});
    table->Close();
    for (int round = 0; round < 20; ++round) {
        ForkedProcess compactor([&](Line& line) {
            line.Say("ready");
            return RepairTable(path, true) == RepairOutcome::Compacted ? 0 : 1;
        });
        compactor.Talk().Hear();
        int added = 0;
        {
            TableFile late(path, "");
            ASSERT_TRUE(late.IsOpen());
            added = late.AddRecord(RecordOf({.title = "late"}));
        }
        compactor.Wait();  // it may have found the file busy; what counts is that the note isn't lost
        EXPECT_EQ(added, 1);
        Reopen();
        EXPECT_EQ(Titles().size(), 401u + static_cast<std::size_t>(round));
        table->Close();
    }
}

}  // namespace
}  // namespace jotlet::test
