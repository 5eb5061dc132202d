// Many records in one turn: what AddRecord promises, for all of them.
#include "store/table_file.h"
#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

class AddRecordsTest : public TableTest {
protected:
    int AddAll(const std::vector<std::string>& titles)
    {
        Record records;
        for (const std::string& title : titles) {
            const Record record = RecordOf({.title = title});
            records.insert(records.end(), record.begin(), record.end());
        }
        return table->AddRecords(records, addresses);
    }

    std::vector<RecordAddress> addresses;
};

TEST_F(AddRecordsTest, FreeSlotsAreFilledFirstAndEveryRecordRaisesTheStamp)
{
    const RecordAddress first = Add({.title = "a"});
    const RecordAddress second = Add({.title = "b"});
    const RecordAddress third = Add({.title = "c"});
    table->DeleteRecord(first);
    table->DeleteRecord(third);
    const std::uint64_t stamp = table->GetChangeStamp();

    EXPECT_EQ(AddAll({"w", "x", "y", "z"}), 1);
    const auto size = static_cast<RecordAddress>(kNoteRecordSize);
    EXPECT_EQ(addresses, (std::vector<RecordAddress>{first, third, third + size, third + 2 * size}));
    EXPECT_EQ(TitleAt(second), "b");
    EXPECT_EQ(Titles(), (std::vector<std::string>{"w", "b", "x", "y", "z"}));
    EXPECT_EQ(FreeSlots(), 0);
    EXPECT_EQ(table->GetChangeStamp(), stamp + 4);
}

TEST_F(AddRecordsTest, AReaderAddsNothingAndHalfARecordIsRefused)
{
    SetPasswords("o", "a", "r");
    Reopen("r");
    EXPECT_EQ(AddAll({"x"}), kRefusedByRole);
    EXPECT_TRUE(addresses.empty());
    Reopen("a");
    EXPECT_EQ(table->AddRecords(Record(kNoteRecordSize + 1), addresses), 0);
    EXPECT_EQ(AddAll({}), 1);
    EXPECT_EQ(std::filesystem::file_size(path), kFirstRecordOffset);
}

// Every write fails once, in whole or after its first half: the addresses tell exactly what is in the file.
TEST_F(AddRecordsTest, AFailedWriteLeavesWhatWasToldAndNothingElse)
{
    for (const bool half : {false, true}) {
        for (int failAt = 1; failAt < 12; ++failAt) {
            SCOPED_TRACE(failAt);
            table.reset();
            std::filesystem::remove(path);
            table = std::make_unique<TableFile>(path, "");
            ASSERT_EQ(CreateNotes(*table), 1);
            const RecordAddress freed = Add({.title = "gone"});
            Add({.title = "kept"});
            table->DeleteRecord(freed);

            int result = 0;
            {
                FailingFileSystem files;
                files.failAt = failAt;
                files.halfWrite = half;
                const ScopedFileSystem use(files);
                result = AddAll({"x", "y", "z"});
            }
            std::vector<std::string> expected = {"kept"};
            if (!addresses.empty())
                expected = {"x", "kept"};
            if (result == 1)
                expected.insert(expected.end(), {"y", "z"});
            EXPECT_EQ(Titles(), expected);
            EXPECT_EQ(FreeSlots(), addresses.empty() ? -1 : 0);
            EXPECT_EQ((std::filesystem::file_size(path) - kFirstRecordOffset) % kNoteRecordSize, 0u);
        }
    }
}

}  // namespace
}  // namespace jotlet::test
