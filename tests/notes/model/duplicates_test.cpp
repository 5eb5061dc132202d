#include "notes/model/duplicates.h"

#include "note_fixture.h"

namespace jotlet::test {
namespace {

using DuplicatesTest = NoteTest;

TEST_F(DuplicatesTest, AnImportedNoteIsCompletedAndDroppedWhenItStandsInTheFile)
{
    // As the importer fills it: the colour is still an index.
    const auto imported = [&](const std::string& title, std::uint32_t index) {
        NoteRecord note = NewNote(title, "two");
        note.colour = index;
        return note;
    };
    NoteRecord note = imported("", 7);
    EXPECT_EQ(PrepareImportedNote(note, *table, clock), 1);
    EXPECT_EQ(Text(note.title), "Untitled");
    EXPECT_EQ(note.colour, kYellow);
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{14, 3, 2007}));
    EXPECT_EQ(note.alarmTime.Get(), (TimeValue{10, 0, 30, kBeforeNoon}));
    NoteRecord stored = NewNote("milk", "two");
    StoreText(stored.category, "Calls");
    const RecordAddress address = Add(stored);
    for (const auto& [title, index, kept] : {std::tuple("milk", 3u, 0), {"milk", 0u, 1}, {"tea", 3u, 1}}) {
        note = imported(title, index);
        EXPECT_EQ(PrepareImportedNote(note, *table, clock), kept) << title << index;
    }
    table->DeleteRecord(address);
    EXPECT_EQ(PrepareImportedNote(note = imported("milk", 3), *table, clock), 1);
}

TEST_F(DuplicatesTest, WhatIsExpectedAddedOrDoneByAnotherCopyCountsAtOnce)
{
    NoteDuplicates duplicates(*table);
    const NoteRecord ours = NewNote("ours");
    const NoteRecord theirs = NewNote("theirs");
    EXPECT_FALSE(duplicates.Contains(ours));
    duplicates.Expect(ours);
    EXPECT_TRUE(duplicates.Contains(ours));
    EXPECT_FALSE(duplicates.Contains(theirs));
    const RecordAddress address = Add(ours);
    duplicates.Added(ours, address);
    EXPECT_TRUE(duplicates.Contains(ours));

    TableFile other(path, "");
    RecordAddress added = 0;
    ASSERT_EQ(other.AddRecord(BytesOf(theirs), &added), 1);
    EXPECT_TRUE(duplicates.Contains(theirs));
    ASSERT_EQ(other.DeleteRecord(added), 1);
    EXPECT_FALSE(duplicates.Contains(theirs));
    // While notes are expected nothing is scanned again; what was found is read anew all the same.
    duplicates.Expect(NewNote("next"));
    ASSERT_EQ(other.WriteRecord(BytesOf(theirs), address), 1);
    EXPECT_FALSE(duplicates.Contains(ours));
    ASSERT_EQ(other.WriteRecord(BytesOf(ours), address), 1);
    EXPECT_TRUE(duplicates.Contains(ours));
    ASSERT_EQ(other.DeleteRecord(address), 1);
    EXPECT_FALSE(duplicates.Contains(ours));
}

TEST_F(DuplicatesTest, ConfidentialNotesCountForTheOwnerAlone)
{
    NoteRecord secret = NewNote("secret");
    secret.confidential = 1;
    Add(secret);
    SetPasswords("o", "a", "r");
    for (const char* password : {"a", "o"}) {
        Open(password);
        EXPECT_EQ(NoteDuplicates(*table).Contains(secret), password == std::string("o"));
    }
}

}  // namespace
}  // namespace jotlet::test
