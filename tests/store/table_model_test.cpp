// Any changes of a table, by two openings of it, on a disk that fails now and then, against a list of slots.
#include <random>

#include "store/passwords.h"
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

struct Slot {
    Record record;
    int holder = -1;  // the opening that holds it

    bool IsLive() const { return record[4] == std::byte{1}; }
};

class TableModelTest : public TableTest {
protected:
    void Start(unsigned seed)
    {
        random.seed(seed);
        openings.clear();
        slots.clear();
        table.reset();
        std::filesystem::remove(path);
        table = std::make_unique<TableFile>(path, "");
        ASSERT_EQ(CreateNotes(*table), 1);
        isReader = seed % 4 == 0;
        if (isReader)
            SetPasswords("boss", "aide", "guest");
        table->Close();
        openings.push_back(std::make_unique<TableFile>(path, isReader ? "boss" : ""));
        openings.push_back(std::make_unique<TableFile>(path, isReader ? "guest" : ""));
        TableHeader header;
        ASSERT_EQ(openings[0]->ReadHeader(header), 1);
        server = FieldText(header.server);
        stamp = header.changeStamp;
    }

    static RecordAddress AddressOf(std::size_t slot)
    {
        return static_cast<RecordAddress>(kFirstRecordOffset + slot * kNoteRecordSize);
    }
    Record Fresh(std::uint8_t locked = 0)
    {
        Record record = RecordOf({.title = std::to_string(++made), .id = made});
        record[5] = std::byte{locked};
        return record;
    }
    // Where the next record goes.
    std::size_t NextSlot() const
    {
        const auto free = std::ranges::find_if(slots, [](const Slot& slot) { return !slot.IsLive(); });
        return static_cast<std::size_t>(free - slots.begin());
    }
    void PutIn(const Record& record)
    {
        const std::size_t at = NextSlot();
        if (at == slots.size())
            slots.emplace_back();
        slots[at].record = record;
        ++stamp;
    }

    // One change by one opening. What it answers unless the disk fails, and the model after it.
    void Change(int who, TableFile& by)
    {
        const bool mayChange = !isReader || who == 0;
        const int refused = mayChange ? 1 : kRefusedByRole;
        const std::size_t at = slots.empty() ? 0 : random() % slots.size();
        const RecordAddress address = AddressOf(at);
        const bool isLive = at < slots.size() && slots[at].IsLive();
        const bool isMine = isLive && slots[at].holder == who;
        const bool isFree = isLive && slots[at].holder == -1;
        switch (op = random() % 10) {
            case 0: {
                const Record record = Fresh();
                RecordAddress added = 0;
                const RecordAddress expected = AddressOf(NextSlot());
                Record given = record;
                given.resize(record.size() + random() % 2);  // what is too long is cut
                if (Answers(by.AddRecord(given, &added), refused)) {
                    EXPECT_EQ(added, expected);
                    PutIn(record);
                }
                break;
            }
            case 1: {
                Record all;
                std::vector<Record> records;
                for (std::size_t count = random() % 4; count > 0; --count) {
                    records.push_back(Fresh());
                    all.insert(all.end(), records.back().begin(), records.back().end());
                }
                std::vector<RecordAddress> addresses;
                if (Answers(by.AddRecords(all, addresses), refused)) {
                    EXPECT_EQ(addresses.size(), records.size());
                }
                for (std::size_t i = 0; i < addresses.size(); ++i) {
                    EXPECT_EQ(addresses[i], AddressOf(NextSlot()));
                    PutIn(records[i]);
                }
                break;
            }
            case 2:
            case 3:
                if (const Record record = Fresh(isMine); isMine || isFree) {
                    if (Answers(by.WriteRecord(record, address), refused)) {
                        slots[at].record = record;
                        ++stamp;
                    }
                }
                break;
            case 4:
                if ((isMine || isFree || !isLive) && Answers(by.DeleteRecord(address), mayChange ? isLive : refused)) {
                    slots[at].record[4] = std::byte{0};
                    slots[at].holder = -1;
                    ++stamp;
                    if (isMine)
                        by.UnlockRecord(address);
                }
                break;
            case 5:
                if (Answers(by.LockRecord(address), isFree)) {
                    slots[at].holder = who;
                    EXPECT_FALSE(IsRefreshEnabled());
                }
                break;
            case 6:
                if (isMine || isFree) {
                    if (Answers(by.UnlockRecord(address), isMine))
                        slots[at].holder = -1;
                    EXPECT_TRUE(IsRefreshEnabled());
                }
                break;
            case 7: {
                const RecordAddress wrong[] = {0,         -1, 12, address - 1, address + 1, AddressOf(slots.size()),
                                               0x7FFFFFFF};
                const RecordAddress one = wrong[random() % std::size(wrong)];
                Record record = Fresh();
                EXPECT_EQ(by.ReadRecord(record, one) + by.LockRecord(one) + by.UnlockRecord(one), 0);
                if (mayChange) {
                    EXPECT_EQ(by.WriteRecord(record, one) + by.DeleteRecord(one), 0);
                }
                break;
            }
            case 8: {
                const std::string name = std::to_string(++made);
                const int written = by.UpdateHeader([&](TableHeader& header) {
                    StoreText(header.server, name);
                    header.changeStamp = 3;
                    header.openCount = 99;
                    header.freeSlots = -7;
                    return made % 5 != 0;
                });
                if (Answers(written, made % 5 != 0))
                    server = name;
                break;
            }
            default:
                Answers(by.Flush(), 1);
        }
    }
    // True when the change was made: it gave 1, as it had to on a disk that is well.
    bool Answers(int answer, int expected)
    {
        EXPECT_EQ(answer, disk.failedCall.empty() ? expected : answer == 1 ? expected : 0) << op;
        return answer == 1;
    }

    void Compare()
    {
        std::int64_t live = 0;
        std::int64_t held = 0;
        for (std::size_t i = 0; i < slots.size(); ++i) {
            Record read = openings[0]->AllocRecordBuffer();
            ASSERT_EQ(openings[i % 2]->ReadRecord(read, AddressOf(i)), slots[i].IsLive() ? 1 : 0);
            if (!slots[i].IsLive())
                continue;
            slots[i].record[5] = std::byte{slots[i].holder >= 0};
            ASSERT_TRUE(read == slots[i].record) << "slot " << i;
            live += 1;
            held += slots[i].holder >= 0 ? 1 : 0;
        }
        SlotCounts counts;
        TableHeader header;
        ASSERT_EQ(openings[0]->DescribeSlots(counts) + openings[1]->ReadHeader(header), 2);
        ASSERT_EQ(counts.slots, static_cast<std::int64_t>(slots.size()));
        ASSERT_EQ(counts.live, live);
        ASSERT_EQ(counts.locked, held);
        ASSERT_EQ(counts.cutTailBytes, 0);
        ASSERT_EQ(+header.freeSlots, live - counts.slots);
        ASSERT_EQ(+header.changeStamp, stamp);
        ASSERT_EQ(openings[1]->GetChangeStamp(), stamp);
        ASSERT_EQ(+header.openCount, 2u);
        ASSERT_EQ(FieldText(header.server), server);
    }

    std::mt19937 random;
    FailingFileSystem disk;
    std::vector<std::unique_ptr<TableFile>> openings;
    std::vector<Slot> slots;
    std::string server;
    std::uint64_t stamp = 0;
    std::uint64_t made = 0;
    bool isReader = false;
    unsigned op = 0;
};

TEST_F(TableModelTest, AnyChangesGiveWhatANaiveModelGives)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Start(seed);
        for (int step = 0; step < 150; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
            disk.changes = 0;
            disk.failedCall.clear();
            disk.failAt = random() % 4 == 0 ? 1 + static_cast<int>(random() % 4) : 0;
            disk.halfWrite = random() % 2 == 0;
            const int who = static_cast<int>(random() % 2);
            {
                const ScopedFileSystem use(disk);
                Change(who, *openings[static_cast<std::size_t>(who)]);
            }
            ASSERT_NO_FATAL_FAILURE(Compare());
            if (HasFailure())
                return;
        }
    }
}

}  // namespace
}  // namespace jotlet::test
