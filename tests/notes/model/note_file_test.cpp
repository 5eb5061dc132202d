#include "notes/model/note_file.h"

#include "note_fixture.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

class NoteFileTest : public NoteTest {
protected:
    std::string other = folder.File("other.jot");
};

TEST_F(NoteFileTest, ANewFileCanHoldTheFourExamplesAndIsOpenedAsItIsLater)
{
    ASSERT_TRUE(OpenNoteFile(other, "", WithExamples::Yes, nullptr, clock));
    path = other;
    Open("");
    EXPECT_EQ(Titles(), (std::vector<std::string>{"Alarm", "Colors", "Equivalent", "Texts"}));
    const std::uint32_t colours[] = {kGreen, kRed, kBlue, kYellow};
    const std::uint32_t* colour = colours;
    for (const NoteRecord& note : Notes()) {
        EXPECT_EQ(note.colour, *colour++);
        EXPECT_EQ(note.alarmDate.Get(), (DateValue{14, 3, 2007}));
        EXPECT_EQ(note.alarmTime.Get(), note.time.Get());
        EXPECT_EQ(note.alarmState, kAlarmNone);
        EXPECT_EQ(note.startKind, kStartDocument);
        EXPECT_NE(Text(note.text), "");
    }
    const OpenedTable again = OpenNoteFile(other, "", WithExamples::Yes, nullptr, clock);
    ASSERT_TRUE(again);
    EXPECT_EQ(Titles().size(), 4u);
    FileError error;
    EXPECT_EQ(CreateNoteFile(path, WithExamples::No, clock, &error), 0) << "what is there is never replaced";
    EXPECT_EQ(error.path, path);
    EXPECT_EQ(Titles().size(), 4u);
}

TEST_F(NoteFileTest, ADiskThatFailsAtAnyMomentLeavesNoFileAndSaysWhy)
{
    for (const auto& [errnoOfCall, kind, failure] : {std::tuple(ENOSPC, FileErrorKind::NoSpace, OpenFailure::Io),
                                                     {EACCES, FileErrorKind::Permission, OpenFailure::Permission}})
        for (int failAt = 1;; ++failAt) {
            SCOPED_TRACE(failAt);
            FailingFileSystem files;
            files.failAt = failAt;
            files.failure = errnoOfCall;
            files.andAllBehind = true;
            const ScopedFileSystem use(files);
            const OpenedTable opened = OpenNoteFile(other, "", WithExamples::Yes, nullptr, clock);
            if (std::filesystem::exists(other)) {
                std::filesystem::remove(other);
                break;
            }
            EXPECT_EQ(opened.failure, failure);
            EXPECT_EQ(opened.error.kind, kind);
            EXPECT_EQ(folder.FileCount(), 1u);
            ASSERT_LT(failAt, 60);
        }
    EXPECT_FALSE(OpenNoteFile(folder.File("missing/new.jot"), "", WithExamples::No));
}

}  // namespace
}  // namespace jotlet::test
