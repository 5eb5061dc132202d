#include "notes/model/note_record.h"

#include <algorithm>

#include "note_fixture.h"
#include "notes/model/import_fields.h"
#include "notes/model/record_holder.h"
#include "notes/model/start_target.h"

namespace jotlet::test {
namespace {

using NoteRecordTest = NoteTest;

TEST_F(NoteRecordTest, AFreshNoteIsStampedAndOwnedAndOtherwiseEmpty)
{
    NoteRecord note;
    std::ranges::fill(BytesOf(note), std::byte{0xEE});
    InitRecordHeader(*table, note, 859, clock);
    EXPECT_EQ(note.recordSize, 859u);
    EXPECT_EQ(note.alarmState, 0xEE) << "behind the header nothing is touched";
    InitNoteRecord(*table, note, clock);
    EXPECT_EQ(note.date.Get(), (DateValue{14, 3, 2007}));
    EXPECT_EQ(note.time.Get(), (TimeValue{10, 0, 30, kBeforeNoon}));
    EXPECT_EQ(Text(note.owner.name) + " " + Text(note.owner.email), "Pinwell PinwellMail");
    EXPECT_NE(note.uniqueId, NewNote("x").uniqueId);
    EXPECT_NE(note.uniqueId, 0u);
    NoteRecord expected{};
    expected.recordSize = kNoteRecordSize;
    expected.active = 1;
    expected.eventStatus = 1;
    expected.uniqueId = note.uniqueId;
    expected.date = expected.createdDate = note.date;
    expected.time = expected.createdTime = note.time;
    expected.owner = expected.creator = note.owner;
    EXPECT_TRUE(std::ranges::equal(BytesOf(note), BytesOf(expected)));
}

TEST_F(NoteRecordTest, SameNoteMeansColourTitleAndTextAndAnAttachmentNeedsAKindAndAPath)
{
    const NoteRecord note = NewNote("milk", "two");
    NoteRecord other = NewNote("milk", "two");
    StoreText(other.category, "Calls");
    other.title.back() = 'x';  // behind the terminator
    EXPECT_EQ(IsSameNote(note, other), 0);
    other.colour = kRed;
    EXPECT_EQ(IsSameNote(note, other), -1);
    EXPECT_EQ(IsSameNote(note, NewNote("Milk", "two")), -1);
    EXPECT_EQ(IsSameNote(note, NewNote("milk", "two ")), -1);
    for (const auto& [kind, path, has] : {std::tuple(kAttachmentDocument, "/tmp/a.txt", true),
                                          {kAttachmentNone, "/tmp/a.txt", false},
                                          {kAttachmentDocument, "", false}}) {
        other.attachmentKind = kind;
        StoreText(other.attachmentPath, path);
        EXPECT_EQ(HasAttachment(other), has) << path;
    }
}

TEST(PaletteTest, ColoursHaveAnIndexAndAName)
{
    const std::uint32_t byIndex[] = {0xECB194, 0x76E476, 0x495EFF, 0x65E7FF, 0xF5F5F5};
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(IndexToColour(index), byIndex[index]);
        EXPECT_EQ(ColourToIndex(byIndex[index]), index);
        EXPECT_EQ(ColourByName(ColourName(byIndex[index]).value_or("")), byIndex[index]);
    }
    for (const int none : {-1, 5})
        EXPECT_EQ(IndexToColour(none), kYellow);
    EXPECT_EQ(ColourToIndex(0x123456), 4);
    EXPECT_EQ(ColourName(0x123456), std::nullopt);
    EXPECT_EQ(ColourByName("Grey"), kGrey);
    EXPECT_EQ(ColourByName("pink"), std::nullopt);
}

TEST(RecordHolderTest, HoldsACopyOfTheLastRecord)
{
    RecordHolder holder;
    std::vector<std::byte> out(16);
    std::uint32_t size = 99;
    for (const std::size_t stored : {std::size_t{0}, std::size_t{16}, std::size_t{4}, std::size_t{0}}) {
        if (stored == 0)
            holder.Clear();
        else
            EXPECT_EQ(holder.Store(std::vector(stored, std::byte{1}), 7), 1);
        EXPECT_EQ(holder.IsEmpty(), stored == 0);
        EXPECT_EQ(holder.GetSize(size), stored == 0 ? 0 : 1);
        EXPECT_TRUE(stored == 0 || size == stored);
        EXPECT_EQ(holder.Tag(), stored == 0 ? 0 : 7);
        EXPECT_EQ(holder.Fetch(out), stored == 0 ? 0 : 1);
        EXPECT_EQ(holder.Fetch(std::span(out).first(3)), 0);
    }
    EXPECT_EQ(out[15], std::byte{1});
}

TEST(ImportFieldsTest, EveryCallFillsItsListAnew)
{
    std::vector<ImportField> fields;
    std::vector<ImportAlias> aliases;
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(GetNoteImportFields(fields), 4);
        EXPECT_EQ(GetNoteFieldAliases(aliases), 17);
        EXPECT_EQ(aliases.size(), 17u);
    }
}

TEST(StartTarget, WhatHasAGlyphStaysAndWhatHasNoneIsNamed)
{
    for (const auto& [target, shown] :
         {std::pair{"https://pinwell.example/a?b=1&c=<2>", "https://pinwell.example/a?b=1&c=<2>"},
          {"/home/anna/Über uns/日本語 🎉.pdf", "/home/anna/Über uns/日本語 🎉.pdf"},
          {"\xE2\x80\xAEtxt.sh", "<U+202E>txt.sh"},
          {"list.txt\r\n\t\x7F", "list.txt<U+000D><U+000A><U+0009><U+007F>"},
          {"\xE2\x80\x8B\xC2\xAD\xEF\xBB\xBF", "<U+200B><U+00AD><U+FEFF>"},
          {"x\xF3\xA0\x81\x81y", "x<U+E0041>y"},
          {"caf\xE9", "café"}})
        EXPECT_EQ(WithHiddenCharactersShown(target), shown);
}

}  // namespace
}  // namespace jotlet::test
