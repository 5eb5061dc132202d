// A copy on a drive that reads only what was changed lists the same as one that reads all.
#include <random>

#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

class CountingDrive : public FailingFileSystem {
public:
    CountingDrive() { isRemote = true; }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        ++calls;
        if (failOneRead > 0 && --failOneRead == 0) {
            errno = ESTALE;
            return -1;
        }
        const std::int64_t moved = FailingFileSystem::ReadAt(handle, buffer, offset);
        bytes += moved;
        return moved;
    }
    std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) override
    {
        const std::int64_t moved = FailingFileSystem::WriteAt(handle, buffer, offset);
        const int reason = errno;
        if (afterWrite)
            afterWrite();
        errno = reason;
        return moved;
    }
    int IdentifyAtServer(int handle, FileIdentity& out) override
    {
        ++calls;
        return FailingFileSystem::IdentifyAtServer(handle, out);
    }
    int IdentifyPath(const std::string& path, FileIdentity& out) override
    {
        ++calls;
        return FailingFileSystem::IdentifyPath(path, out);
    }
    std::function<void()> afterWrite;
    int failOneRead = 0;  // the nth from now on
    int calls = 0;
    std::int64_t bytes = 0;
};

void MakeQuery(RecordQuery& query, int kind)
{
    query.PrepareResults();
    if (kind == 0)
        query.AddAllTerm();
    else if (kind == 1)
        query.AddTextTerm(kCategoryAt, kCategoryWidth, TermKind::Equal, "ideas", Connective::And);
    else
        query.AddTextTerm(kTextAt, kTextWidth, TermKind::Contains, "7", Connective::And);
}

bool ListInto(TableFile& file, RecordQuery& query, int kind)
{
    const auto width = kind == 0 ? kTitleWidth : std::uint32_t{sizeof(DateValue)};
    return file.RunQuery(query) == 1 &&
           query.Sort(file, kind == 0 ? kTitleAt : kDateAt, width, kind == 0 ? CompareTitles : CompareDates) == 1;
}

class ChangeRingTest : public TableTest {
protected:
    Record AnyRecord(std::uint64_t id)
    {
        return RecordOf({.title = std::to_string(dice() % 1000),
                         .text = std::to_string(dice() % 100),
                         .category = dice() % 2 == 0 ? "Ideas" : "Calls",
                         .date = {static_cast<int>(dice() % 28 + 1), 3, 2011},
                         .id = id});
    }
    void ChangeAnything(TableFile& file)
    {
        RecordQuery all;
        MakeQuery(all, 0);
        ASSERT_EQ(file.RunQuery(all), 1);
        const int what = static_cast<int>(dice() % 10);
        if (what < 4 || all.resultCount == 0) {
            file.AddRecord(AnyRecord(dice()));
        } else if (what == 4 && dice() % 4 == 0) {
            Record many;
            for (unsigned i = dice() % 100; i > 0; --i)
                std::ranges::copy(AnyRecord(i), std::back_inserter(many));
            std::vector<RecordAddress> addresses;
            file.AddRecords(many, addresses);
        } else {
            const RecordAddress address = all.results[dice() % static_cast<unsigned>(all.resultCount)];
            if (what < 7)
                file.DeleteRecord(address);
            else
                file.WriteRecord(AnyRecord(address), address);
        }
        if (dice() % 2 == 0)
            file.Flush();
    }
    std::unique_ptr<TableFile> Opened() { return std::make_unique<TableFile>(path, ""); }
    // A copy on the server's own disk tells no ring.
    std::unique_ptr<TableFile> OpenedAtServer()
    {
        const ScopedFileSystem scope(RealFileSystem());
        return Opened();
    }

    CountingDrive drive;
    std::minstd_rand dice;
};

TEST_F(ChangeRingTest, AQueryAfterAnyForeignChangesGivesWhatAFullReadGives)
{
    table->Close();
    const std::string fresh = ReadAll(path);
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        WriteAll(path, fresh);
        dice.seed(seed);
        const ScopedFileSystem scope(drive);
        std::unique_ptr<TableFile> writers[] = {Opened(), Opened(), OpenedAtServer()};
        std::unique_ptr<TableFile> reader = Opened();
        std::array<RecordQuery, 3> queries;
        for (int step = 0; step < 60; ++step) {
            SCOPED_TRACE(step);
            for (unsigned changes = dice() % 3; changes > 0; --changes) {
                const unsigned who = dice() % 20;
                std::unique_ptr<TableFile>& writer = writers[who == 0 ? 2 : who % 2];
                // A call fails, and is put right; or all behind it fail, too, as when the copy is killed.
                const bool fails = who != 0 && dice() % 3 == 0;
                drive.failAt = fails ? drive.changes + 1 + static_cast<int>(dice() % 5) : 0;
                drive.andAllBehind = dice() % 2 == 0;
                drive.failure = EIO;
                // The reader may look in the middle of a change.
                drive.afterWrite = [&] {
                    RecordQuery between;
                    MakeQuery(between, 0);
                    if (dice() % 3 == 0)
                        reader->RunQuery(between);
                };
                ChangeAnything(*writer);
                drive.afterWrite = nullptr;
                if (fails && drive.andAllBehind && dice() % 2 == 0)
                    writer = nullptr;
                drive.failAt = 0;
                if (!writer)
                    writer = who == 0 ? OpenedAtServer() : Opened();
            }
            if (dice() % 50 == 0) {
                for (auto& writer : writers)
                    writer->Close();
                reader->Close();
                ASSERT_EQ(CheckAfterCrash(path, 1, nullptr), 1);
                writers[2] = OpenedAtServer();
                writers[0]->Open();
                writers[1]->Open();
                reader->Open();
            }
            const auto witness = OpenedAtServer();
            const int kind = static_cast<int>(dice() % 3);
            RecordQuery& query = queries[static_cast<std::size_t>(kind)];
            RecordQuery full;
            MakeQuery(query, kind);
            MakeQuery(full, kind);
            // The drive forgets the opening in the middle of a look; the next one is whole again.
            drive.failOneRead = static_cast<int>(dice() % 8);
            if (drive.failOneRead > 0)
                ListInto(*reader, query, kind);
            drive.failOneRead = 0;
            ASSERT_TRUE(ListInto(*reader, query, kind) && ListInto(*witness, full, kind));
            ASSERT_TRUE(std::ranges::equal(query.Results(), full.Results()));
            Record shown(kNoteRecordSize), there(kNoteRecordSize);
            for (const RecordAddress address : full.Results()) {
                reader->ReadListedRecord(shown, address);
                witness->ReadRecord(there, address);
                ASSERT_EQ(shown, there);
            }
        }
    }
}

TEST_F(ChangeRingTest, OneForeignChangeCostsFewCallsAndATableOfThisMachineStaysAsItWas)
{
    for (unsigned i = 0; i < 1500; ++i)
        Add({.title = "note " + std::to_string(i * 7919 % 1500), .id = i + 1});
    EXPECT_EQ(+Header().lastChanges.check, 0u);
    table->Close();
    const ScopedFileSystem scope(drive);
    const auto reader = Opened(), writer = Opened();
    RecordQuery query;
    const auto refresh = [&] {
        Record record(kNoteRecordSize);
        ASSERT_TRUE(reader->PathStillNamesThisFile() && reader->GetChangeStamp() != 0 && ListInto(*reader, query, 0));
        for (const RecordAddress address : query.Results().first(40))
            EXPECT_EQ(reader->ReadListedRecord(record, address), 1);
    };
    MakeQuery(query, 0);
    refresh();
    refresh();
    ASSERT_EQ(writer->WriteRecord(RecordOf({.title = "note 0a", .id = 1}), query.results[1]), 1);
    drive.calls = 0;
    drive.bytes = 0;
    refresh();
    EXPECT_LE(drive.calls, 6);
    EXPECT_LE(drive.bytes, 64 << 10);
    std::uint64_t id = 0;
    drive.calls = 0;
    EXPECT_EQ(reader->ReadListedField(BytesOf(id), {offsetof(RecordPrefix, uniqueId), 8}, query.results[1]), 1);
    EXPECT_EQ(id, 1u);
    EXPECT_EQ(drive.calls, 0);
    // What this copy has written itself is shown at once.
    ASSERT_EQ(reader->WriteRecord(RecordOf({.title = "own", .id = 2}), query.results[1]), 1);
    EXPECT_EQ(reader->ReadListedField(BytesOf(id), {offsetof(RecordPrefix, uniqueId), 8}, query.results[1]), 1);
    EXPECT_EQ(id, 2u);
}

}  // namespace
}  // namespace jotlet::test
