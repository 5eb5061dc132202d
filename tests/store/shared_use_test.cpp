// Two processes at work on one file, as hard as they can.
#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "store/open_table.h"
#include "support/forked_process.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

constexpr int kSteps = 3000;

using SharedUseTest = TableTest;

std::uint64_t IdAt(TableFile& table, Record& record, RecordAddress address)
{
    RecordPrefix prefix{};
    if (table.ReadRecord(record, address) == 1)
        std::memcpy(&prefix, record.data(), sizeof prefix);
    return prefix.uniqueId;
}

// Counts up the number in the text of a record that others count up, too. Result 1 when it was done.
int CountUp(TableFile& table, Record& record, RecordAddress address)
{
    for (int attempt = 0; attempt < 200'000; ++attempt) {
        if (table.LockRecord(address) != 1)
            continue;
        std::uint64_t count = 0;
        const int read = table.ReadRecord(record, address);
        std::memcpy(&count, record.data() + kTextAt, sizeof count);
        Put(record, kTextAt, count + 1);
        return read == 1 && table.WriteRecord(record, address) == 1 && table.UnlockRecord(address) == 1 ? 1 : 0;
    }
    return 0;
}

// Adds, edits and deletes notes of its own in random order, counts up the shared one between, and tells at the end
// which it believes to be there with which text. The upper half of an id is the worker's number.
int Work(const std::string& path, std::uint64_t worker, Line& line)
{
    TableFile table(path, "");
    if (!table.IsOpen())
        return 1;
    std::mt19937_64 random(worker);
    struct Kept {
        RecordAddress address;
        std::string title;
    };
    std::map<std::uint64_t, Kept> notes;
    int counted = 0;
    Record record = table.AllocRecordBuffer();
    line.Say("ready");
    line.Hear();
    for (std::uint64_t step = 1; step <= kSteps; ++step) {
        const unsigned dice = random() % 4;
        if (dice == 3) {
            if (CountUp(table, record, kFirstRecordOffset) != 1)
                return 8;
            ++counted;
            continue;
        }
        if (notes.empty() || dice == 0) {
            const std::uint64_t id = worker << 32 | step;
            const std::string title = "new " + std::to_string(step);
            RecordAddress address = 0;
            if (table.AddRecord(RecordOf({.title = title, .id = id}), &address) != 1)
                return 2;
            notes[id] = {address, title};
            continue;
        }
        auto note = std::next(notes.begin(), static_cast<long>(random() % notes.size()));
        const RecordAddress address = note->second.address;
        if (table.LockRecord(address) != 1)
            return 3;
        if (IdAt(table, record, address) != note->first)
            return 4;  // somebody else's record in our slot
        if (dice == 1) {
            note->second.title = "edit " + std::to_string(step);
            PutText(record, kTitleAt, kTitleWidth, note->second.title);
            if (table.WriteRecord(record, address) != 1 || table.UnlockRecord(address) != 1)
                return 5;
        } else {
            if (table.DeleteRecord(address) != 1)
                return 6;
            table.UnlockRecord(address);
            notes.erase(note);
        }
        if (step % 500 == 0 && table.Flush() != 1)
            return 7;
    }
    for (const auto& [id, note] : notes)
        line.Say(std::to_string(id) + " " + note.title);
    line.Say("done " + std::to_string(counted));
    return 0;
}

TEST_F(SharedUseTest, TwoProcessesLoseNoNoteNoCountAndNoLock)
{
    const RecordAddress shared = Add({.title = "shared"});
    const std::uint64_t stampBefore = table->GetChangeStamp();
    table->Close();
    ForkedProcess first([&](Line& line) { return Work(path, 1, line); });
    ForkedProcess second([&](Line& line) { return Work(path, 2, line); });
    std::map<std::uint64_t, std::string> confirmed = {{0, "shared"}};
    std::uint64_t counted = 0;
    first.Talk().Hear();
    second.Talk().Hear();
    first.Talk().Say("go");
    second.Talk().Say("go");
    for (ForkedProcess* worker : {&first, &second}) {
        std::string line = worker->Talk().Hear();
        for (; !line.empty() && !line.starts_with("done "); line = worker->Talk().Hear())
            confirmed[std::stoull(line)] = line.substr(line.find(' ') + 1);
        counted += line.empty() ? 0 : std::stoull(line.substr(5));
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
    std::multimap<std::uint64_t, std::string> found;
    const std::vector<FieldRange> fields = {{offsetof(RecordPrefix, uniqueId), 8}, {kTitleAt, kTitleWidth}};
    table->ForEachRecord(fields, [&](RecordAddress, std::span<const std::byte> bytes) {
        std::uint64_t id = 0;
        std::memcpy(&id, bytes.data(), sizeof id);
        found.emplace(id, reinterpret_cast<const char*>(bytes.data() + 8));
        return true;
    });
    EXPECT_EQ(found.size(), confirmed.size());
    EXPECT_TRUE(std::equal(found.begin(), found.end(), confirmed.begin(), confirmed.end(),
                           [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; }));
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
