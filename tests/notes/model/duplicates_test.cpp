#include "notes/model/duplicates.h"

#include "note_fixture.h"

namespace jotlet::test {
namespace {

class DuplicatesTest : public NoteTest {
protected:
    // A note as the importer fills it: the colour is still an index.
    NoteRecord Imported(const std::string& title, const std::string& text, std::uint32_t index = 3) const
    {
        NoteRecord note = NewNote(title, text);
        note.colour = index;
        return note;
    }
};

TEST_F(DuplicatesTest, AnImportedNoteIsCompleted)
{
    NoteRecord note = Imported("", "x", 7);
    EXPECT_EQ(PrepareImportedNote(note, *table, clock), 1);
    EXPECT_EQ(Text(note.title), "Untitled");
    EXPECT_EQ(note.colour, kYellow);
    EXPECT_EQ(note.alarmState, kAlarmNone);
    EXPECT_EQ(note.startKind, 0);
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{14, 3, 2007}));
    EXPECT_EQ(note.alarmTime.Get(), (TimeValue{10, 0, 30, kBeforeNoon}));
}

TEST_F(DuplicatesTest, WhatStandsInTheFileIsDroppedAndWhatWasDeletedIsNot)
{
    NoteRecord stored = NewNote("milk", "two");
    StoreText(stored.category, "Calls");
    const RecordAddress address = Add(stored);
    NoteRecord same = Imported("milk", "two");
    EXPECT_EQ(PrepareImportedNote(same, *table, clock), 0);
    NoteRecord otherColour = Imported("milk", "two", 0);
    EXPECT_EQ(PrepareImportedNote(otherColour, *table, clock), 1);
    table->DeleteRecord(address);
    same = Imported("milk", "two");
    EXPECT_EQ(PrepareImportedNote(same, *table, clock), 1);
}

TEST_F(DuplicatesTest, ExpectedAndAddedNotesCountAtOnce)
{
    NoteDuplicates duplicates(*table);
    const NoteRecord note = NewNote("milk", "two");
    EXPECT_FALSE(duplicates.Contains(note));
    duplicates.Expect(note);
    EXPECT_TRUE(duplicates.Contains(note));
    duplicates.Added(note, Add(note));
    EXPECT_TRUE(duplicates.Contains(note));
    EXPECT_FALSE(duplicates.Contains(NewNote("milk", "three")));
}

TEST_F(DuplicatesTest, AnotherCopysChangesAreSeen)
{
    NoteDuplicates duplicates(*table);
    const NoteRecord ours = NewNote("ours");
    const NoteRecord theirs = NewNote("theirs");
    EXPECT_FALSE(duplicates.Contains(theirs));
    duplicates.Added(ours, Add(ours));

    TableFile other(path, "");
    RecordAddress address = 0;
    ASSERT_EQ(other.AddRecord(BytesOf(theirs), &address), 1);
    EXPECT_TRUE(duplicates.Contains(theirs));
    EXPECT_TRUE(duplicates.Contains(ours));
    ASSERT_EQ(other.DeleteRecord(address), 1);
    EXPECT_FALSE(duplicates.Contains(theirs));
}

TEST_F(DuplicatesTest, ConfidentialNotesCountForTheOwnerAlone)
{
    NoteRecord secret = NewNote("secret");
    secret.confidential = 1;
    Add(secret);
    SetPasswords("o", "a", "r");
    Open("a");
    EXPECT_FALSE(NoteDuplicates(*table).Contains(secret));
    Open("o");
    EXPECT_TRUE(NoteDuplicates(*table).Contains(secret));
}

// Past the limit of a query too.
TEST_F(DuplicatesTest, EveryNoteOfALargeFileCounts)
{
    std::vector<std::byte> records;
    for (int i = 0; i < 10'100; ++i) {
        NoteRecord note{};
        note.recordSize = kNoteRecordSize;
        note.active = 1;
        note.colour = kYellow;
        StoreText(note.title, std::to_string(i));
        const auto bytes = BytesOf(note);
        records.insert(records.end(), bytes.begin(), bytes.end());
    }
    std::vector<RecordAddress> addresses;
    ASSERT_EQ(table->AddRecords(records, addresses), 1);
    NoteDuplicates duplicates(*table);
    EXPECT_TRUE(duplicates.Contains(NewNote("10099")));
    EXPECT_FALSE(duplicates.Contains(NewNote("10100")));
}

}  // namespace
}  // namespace jotlet::test
