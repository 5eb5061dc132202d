#include "notes/model/note_file.h"

#include "note_fixture.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

class NoteFileTest : public NoteTest {
protected:
    std::string other = folder.File("other.jot");
};

TEST_F(NoteFileTest, ANewFileCanHoldTheFourExamples)
{
    ASSERT_EQ(CreateNoteFile(other, WithExamples::Yes, clock), 1);
    path = other;
    Open("");
    EXPECT_EQ(Titles(), (std::vector<std::string>{"Alarm", "Colors", "Equivalent", "Texts"}));
    const std::vector<NoteRecord> notes = Notes();
    const std::uint32_t colours[] = {kGreen, kRed, kBlue, kYellow};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes[i].colour, colours[i]);
        EXPECT_EQ(notes[i].date.Get(), (DateValue{14, 3, 2007}));
        EXPECT_EQ(notes[i].alarmDate.Get(), notes[i].date.Get());
        EXPECT_EQ(notes[i].alarmState, kAlarmNone);
        EXPECT_EQ(notes[i].startKind, kStartDocument);
        EXPECT_EQ(Text(notes[i].category), "");
        EXPECT_NE(Text(notes[i].text), "");
    }
    TableHeader header;
    ASSERT_EQ(table->ReadHeader(header), 1);
    EXPECT_EQ(Text(header.fileType), "Notes");
    EXPECT_EQ(Text(header.family), "Organizer");
    EXPECT_EQ(+header.version, 3u);
}

TEST_F(NoteFileTest, AFileThatIsThereIsNeverReplaced)
{
    Add(NewNote("kept"));
    FileError error;
    EXPECT_EQ(CreateNoteFile(path, WithExamples::Yes, clock, &error), 0);
    EXPECT_EQ(error.path, path);
    EXPECT_EQ(Titles(), std::vector<std::string>{"kept"});
}

TEST_F(NoteFileTest, OpeningMakesAMissingFileAndOpensTheOneThatIsThere)
{
    const auto titlesOf = [](const TableFile& file) {
        SlotCounts counts;
        EXPECT_EQ(file.DescribeSlots(counts), 1);
        return counts.live;
    };
    OpenedTable made = OpenNoteFile(other, "", WithExamples::Yes, nullptr, clock);
    ASSERT_TRUE(made);
    EXPECT_EQ(titlesOf(*made.table), 4);
    const OpenedTable again = OpenNoteFile(other, "", WithExamples::Yes, nullptr, clock);
    ASSERT_TRUE(again);
    EXPECT_EQ(titlesOf(*again.table), 4);
}

TEST_F(NoteFileTest, AFileThatCannotBeMadeSaysWhy)
{
    FileError error;
    EXPECT_EQ(CreateNoteFile(folder.File("missing/new.jot"), WithExamples::No, clock, &error), 0);
    EXPECT_EQ(error.kind, FileErrorKind::Missing);
    const OpenedTable opened = OpenNoteFile(folder.File("missing/new.jot"), "", WithExamples::No);
    EXPECT_FALSE(opened);
    EXPECT_NE(opened.failure, OpenFailure::None);
}

TEST_F(NoteFileTest, ADiskThatFillsUpAtAnyMomentLeavesNoFileAndSaysWhy)
{
    for (int failAt = 1;; ++failAt) {
        SCOPED_TRACE(failAt);
        FailingFileSystem files;
        files.failAt = failAt;
        files.andAllBehind = true;
        const ScopedFileSystem use(files);
        FileError error;
        if (CreateNoteFile(other, WithExamples::Yes, clock, &error) == 1)
            break;
        EXPECT_EQ(error.kind, FileErrorKind::NoSpace);
        EXPECT_EQ(folder.FileCount(), 1u);
        ASSERT_LT(failAt, 60);
    }
    path = other;
    Open("");
    EXPECT_EQ(Titles().size(), 4u);
}

}  // namespace
}  // namespace jotlet::test
