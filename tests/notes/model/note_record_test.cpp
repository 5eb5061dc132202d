#include "notes/model/note_record.h"

#include <algorithm>
#include <set>

#include "note_fixture.h"
#include "notes/model/record_holder.h"

namespace jotlet::test {
namespace {

using NoteRecordTest = NoteTest;

TEST_F(NoteRecordTest, AFreshNoteIsStampedAndOwnedAndOtherwiseEmpty)
{
    NoteRecord note;
    std::ranges::fill(BytesOf(note), std::byte{0xEE});
    InitNoteRecord(*table, note, clock);

    EXPECT_EQ(note.recordSize, kNoteRecordSize);
    EXPECT_EQ(note.active, 1);
    EXPECT_EQ(note.locked, 0);
    EXPECT_EQ(note.eventStatus, 1);
    EXPECT_EQ(note.date.Get(), (DateValue{14, 3, 2007}));
    EXPECT_EQ(note.time.Get(), (TimeValue{10, 0, 30, kBeforeNoon}));
    EXPECT_EQ(note.createdDate.Get(), note.date.Get());
    EXPECT_EQ(note.createdTime.Get(), note.time.Get());
    EXPECT_EQ(Text(note.owner.name), "Pinwell");
    EXPECT_EQ(Text(note.creator.email), "PinwellMail");
    EXPECT_NE(note.uniqueId, 0u);

    // The same bytes for the same moment, but for the id.
    NoteRecord again;
    InitNoteRecord(*table, again, clock);
    EXPECT_NE(note.uniqueId, again.uniqueId);
    again.uniqueId = note.uniqueId;
    EXPECT_TRUE(std::ranges::equal(BytesOf(note), BytesOf(again)));
    // Behind the header everything is zero.
    EXPECT_TRUE(std::ranges::all_of(BytesOf(note).subspan(sizeof(RecordHeader)),
                                    [](std::byte b) { return b == std::byte{0}; }));
}

TEST_F(NoteRecordTest, AHeaderAloneLeavesTheBytesBehindIt)
{
    NoteRecord record;
    std::ranges::fill(BytesOf(record), std::byte{0xEE});
    InitRecordHeader(*table, record, 859, clock);
    EXPECT_EQ(record.recordSize, 859u);
    EXPECT_EQ(record.alarmState, 0xEE);
    EXPECT_EQ(record.text.back(), '\xEE');
}

TEST_F(NoteRecordTest, ATextWithoutATerminatorIsReadToTheEndOfItsFieldAlone)
{
    NoteRecord note = NewNote("x");
    note.title.fill('t');
    note.text.fill('u');
    EXPECT_EQ(Text(note.title), std::string(150, 't'));
    EXPECT_EQ(Text(note.text), std::string(2024, 'u'));
    StoreText(note.title, std::string(150, 'a'));
    StoreText(note.text, std::string(3000, 'b'));
    StoreText(note.category, std::string(30, 'c'));
    EXPECT_EQ(Text(note.title).size(), 149u);
    EXPECT_EQ(Text(note.text).size(), 2023u);
    EXPECT_EQ(Text(note.category).size(), 29u);
}

TEST_F(NoteRecordTest, SameNoteMeansColourTitleAndText)
{
    const NoteRecord note = NewNote("milk", "two");
    NoteRecord other = NewNote("milk", "two");
    StoreText(other.category, "Calls");
    // What lies behind the terminators does not count.
    other.title.back() = 'x';
    EXPECT_EQ(IsSameNote(note, other), 0);
    other.colour = kRed;
    EXPECT_EQ(IsSameNote(note, other), -1);
    EXPECT_EQ(IsSameNote(note, NewNote("Milk", "two")), -1);
    EXPECT_EQ(IsSameNote(note, NewNote("milk", "two ")), -1);
}

TEST_F(NoteRecordTest, AnAttachmentNeedsAKindAndAPath)
{
    NoteRecord note = NewNote("x");
    StoreText(note.attachmentPath, "/tmp/a.txt");
    EXPECT_FALSE(HasAttachment(note));
    note.attachmentKind = kAttachmentDocument;
    EXPECT_TRUE(HasAttachment(note));
    StoreText(note.attachmentPath, "");
    EXPECT_FALSE(HasAttachment(note));
}

TEST(RandomIdTest, IdsDifferAndAreNeverZero)
{
    std::set<std::uint64_t> ids;
    for (int i = 0; i < 10'000; ++i)
        ids.insert(RandomId());
    EXPECT_EQ(ids.size(), 10'000u);
    EXPECT_FALSE(ids.contains(0));
}

TEST(PaletteTest, ColoursAndIndexesOfDelimitedText)
{
    const std::uint32_t byIndex[] = {0xECB194, 0x76E476, 0x495EFF, 0x65E7FF, 0xF5F5F5};
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(IndexToColour(index), byIndex[index]);
        EXPECT_EQ(ColourToIndex(byIndex[index]), index);
    }
    EXPECT_EQ(IndexToColour(5), kYellow);
    EXPECT_EQ(IndexToColour(-1), kYellow);
    EXPECT_EQ(ColourToIndex(0x123456), 4);
    EXPECT_EQ(ColourName(0x495EFF), "red");
    EXPECT_EQ(ColourName(0x123456), std::nullopt);
    EXPECT_EQ(ColourByName("Grey"), kGrey);
    EXPECT_EQ(ColourByName("pink"), std::nullopt);
}

TEST(RecordHolderTest, HoldsACopyOfOneRecord)
{
    RecordHolder holder;
    std::vector<std::byte> record(16, std::byte{1});
    std::vector<std::byte> out(16);
    std::uint32_t size = 99;
    EXPECT_TRUE(holder.IsEmpty());
    EXPECT_EQ(holder.GetSize(size), 0);
    EXPECT_EQ(size, 99u);
    EXPECT_EQ(holder.Fetch(out), 0);

    EXPECT_EQ(holder.Store(record, 7), 1);
    record.assign(16, std::byte{2});
    EXPECT_EQ(holder.GetSize(size), 1);
    EXPECT_EQ(size, 16u);
    EXPECT_EQ(holder.Tag(), 7);
    EXPECT_EQ(holder.Fetch(out), 1);
    EXPECT_EQ(out, std::vector<std::byte>(16, std::byte{1}));
    std::vector<std::byte> small(15, std::byte{9});
    EXPECT_EQ(holder.Fetch(small), 0);
    EXPECT_EQ(small, std::vector<std::byte>(15, std::byte{9}));

    EXPECT_EQ(holder.Store(std::span(record).first(4), 8), 1);
    EXPECT_EQ(holder.GetSize(size), 1);
    EXPECT_EQ(size, 4u);
    holder.Clear();
    EXPECT_TRUE(holder.IsEmpty());
    EXPECT_EQ(holder.Fetch(out), 0);
}

}  // namespace
}  // namespace jotlet::test
