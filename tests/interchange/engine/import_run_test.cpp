#include "interchange/engine/import_run.h"

#include "engine_fixture.h"
#include "platform/base/progress_display.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

constexpr DateValue kToday = {14, 3, 2007};

class ImportRunTest : public EngineTest {};

class RecordingProgress : public ProgressDisplay {
public:
    void Open(const std::string& title, int steps) override { log += title + ' ' + std::to_string(steps) + ':'; }
    void Step() override { log += '.'; }
    void Close() override { log += '!'; }
    void ShowText(const std::string& text) override { log += text; }

    std::string log;
};

TEST_F(ImportRunTest, RowsBecomeNotesOfTodayAndTheSecondTimeNothingIsAdded)
{
    const std::string text =
        "Category,Color,Notes,Subject\r\n"
        "Calls,2,\"two\r\nlines\",milk\r\n"
        ",,,\r\n"
        "Ideas,9,,tea,and,more\r\n"
        "Calls,2,\"two\r\nlines\",milk\r\n"
        "\"open";
    RecordingProgress display;
    progress = &display;
    for (const std::size_t added : {3, 0}) {
        const ImportCounts counts = Import(text);
        EXPECT_EQ(counts.rows, 4u);
        EXPECT_EQ(counts.added, added);
        EXPECT_EQ(counts.dropped, 4 - added);
        EXPECT_TRUE(counts.incompleteEnd);
        EXPECT_EQ(counts.lastLine, 7u);
    }
    EXPECT_EQ(Notes(), (std::vector<NoteText>{{"milk", "two\r\nlines", kRed, "Calls", kToday},
                                              {"Untitled", "", kBlue, "", kToday},  // no colour given is index 0
                                              {"tea", "", kYellow, "Ideas", kToday}}));
    EXPECT_EQ(display.log, "Import... 5:....!Import... 5:....!") << "the names count as a step";
    EXPECT_TRUE(IsRefreshEnabled());
    SuspendRefresh();
    EXPECT_EQ(Import("a,b\r\n", false).lastLine, 0u);
    EXPECT_EQ(Notes().back(), (NoteText{"a", "b", kBlue, "", kToday})) << "a short row";
    EXPECT_FALSE(IsRefreshEnabled()) << "the switch is put back as it was";
    ResumeRefresh();
}

// A row whose date cannot be read is dropped whole, and the rows round it are not.
TEST_F(ImportRunTest, ARowWithAnUnreadableValueIsDropped)
{
    DelimitedReader reader;
    reader.SetText("milk,1/2/2007,x\r\nbread,soon,y,z\r\ntea,3/4/2007,w\r\n");
    const std::vector<ImportField> fields = {{true, 0, kTitleOffset, ImportType::Text, kTitleSize, "Title"},
                                             {true, 1, kDateOffset, ImportType::Date, kDateSize, "Date"},
                                             {true, 2, kTextOffset, ImportType::Text, kTextSize, "Text"}};
    ImportRequest request;
    request.table = table.get();
    request.reader = &reader;
    request.fields = fields;
    request.firstLineNames = false;
    request.prepare = [](std::span<std::byte>) { return 1; };
    const ImportCounts counts = RunImportRows(request, clock);
    EXPECT_EQ(counts.dropped, 1u);
    EXPECT_EQ(Notes(), (std::vector<NoteText>{{"milk", "x", 0, "", {2, 1, 2007}}, {"tea", "w", 0, "", {4, 3, 2007}}}));
}

TEST_F(ImportRunTest, AReaderAddsNothing)
{
    SetPasswords();
    Open("r");
    const ImportCounts counts = Import("Title\r\nmilk\r\n");
    EXPECT_TRUE(counts.refused);
    EXPECT_FALSE(counts.writeFailed);
    EXPECT_EQ(counts.added, 0u);
    Open("o");
    EXPECT_EQ(Notes(), std::vector<NoteText>{});
}

// Whichever call fails, what is told as added is in the file, and a run that did not reach the disk says so.
TEST_F(ImportRunTest, WithAnyWriteFailingTheRunTellsHowFarItCame)
{
    std::string text = "Title\r\n";
    for (int i = 0; i < 200; ++i)
        text += "note " + std::to_string(i) + "\r\n";
    std::size_t partly = 0;
    for (int failAt = 1; failAt < 60; ++failAt) {
        SCOPED_TRACE(failAt);
        Create(folder.File("failing" + std::to_string(failAt)));
        ImportCounts counts;
        {
            FailingFileSystem files;
            files.failAt = failAt;
            files.halfWrite = true;
            const ScopedFileSystem use(files);
            counts = Import(text);
            EXPECT_EQ(counts.writeFailed, files.changes >= failAt);
        }
        EXPECT_EQ(Notes().size(), counts.added);
        partly += counts.added > 0 && counts.added < 200 ? 1 : 0;
        if (!counts.writeFailed)
            break;
    }
    EXPECT_GT(partly, 0u);
}

}  // namespace
}  // namespace jotlet::test
