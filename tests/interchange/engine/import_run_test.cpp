#include "interchange/engine/import_run.h"

#include <set>

#include "engine_fixture.h"
#include "store/progress_display.h"
#include "support/child_process.h"
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

TEST_F(ImportRunTest, RowsBecomeNotesOfToday)
{
    const ImportCounts counts = Import(
        "Category,Color,Notes,Subject\r\n"
        "Calls,2,\"two\r\nlines\",milk\r\n"
        ",,,\r\n"
        "Ideas,9,,tea\r\n");
    EXPECT_EQ(counts.rows, 3u);
    EXPECT_EQ(counts.added, 3u);
    EXPECT_EQ(counts.dropped, 0u);
    EXPECT_EQ(Notes(), (std::vector<NoteText>{
                           {"milk", "two\r\nlines", kRed, "Calls", kToday},
                           {"Untitled", "", kBlue, "", kToday},  // no colour given is index 0
                           {"tea", "", kYellow, "Ideas", kToday},
                       }));
}

TEST_F(ImportRunTest, TheSecondTimeNothingIsAdded)
{
    const std::string text = "Title,Text\r\nmilk,one\r\nbread,two\r\nmilk,one\r\n";
    ImportCounts counts = Import(text);
    EXPECT_EQ(counts.rows, 3u);
    EXPECT_EQ(counts.added, 2u);  // the row that comes twice is one note
    EXPECT_EQ(counts.dropped, 1u);
    counts = Import(text);
    EXPECT_EQ(counts.added, 0u);
    EXPECT_EQ(counts.dropped, 3u);
    EXPECT_EQ(Titles(), (std::vector<std::string>{"milk", "bread"}));
}

TEST_F(ImportRunTest, ShortRowsKeepTheRestAsItWasAndExtraFieldsVanish)
{
    Import("a,b,3,Calls\r\nc\r\nd,e,1,Ideas,more,and more\r\n", false);
    EXPECT_EQ(Notes(), (std::vector<NoteText>{
                           {"a", "b", kYellow, "Calls", kToday},
                           {"c", "", kBlue, "", kToday},
                           {"d", "e", kGreen, "Ideas", kToday},
                       }));
}

TEST_F(ImportRunTest, TextThatIsLeftOutIsTold)
{
    ImportCounts counts = Import("Title\r\nmilk\r\n\"bread");
    EXPECT_EQ(counts.added, 1u);
    EXPECT_TRUE(counts.incompleteEnd);
    EXPECT_EQ(counts.lastLine, 2u);
    counts = Import("Title\r\n");  // a line of names alone
    EXPECT_EQ(counts.rows + counts.added + counts.lastLine, 0u);
    EXPECT_FALSE(counts.writeFailed || counts.incompleteEnd);
}

// A row whose date cannot be read is dropped whole, and the rows round it are not.
TEST_F(ImportRunTest, ARowWithAnUnreadableValueIsDropped)
{
    DelimitedReader reader;
    reader.SetText("milk,1/2/2007,x\r\nbread,soon,y,z\r\ntea,3/4/2007,w\r\n");
    const std::vector<ImportField> fields = {
        {true, 0, kTitleOffset, ImportType::Text, kTitleSize, "Title"},
        {true, 1, kDateOffset, ImportType::Date, kDateSize, "Date"},
        {true, 2, kTextOffset, ImportType::Text, kTextSize, "Text"},
    };
    const ImportRequest request{.table = table.get(),
                                .reader = &reader,
                                .fields = fields,
                                .firstLineNames = false,
                                .prepare = [](std::span<std::byte>) { return 1; },
                                .added = {},
                                .progress = nullptr};
    const ImportCounts counts = RunImportRows(request, clock);
    EXPECT_EQ(counts.rows, 3u);
    EXPECT_EQ(counts.added, 2u);
    EXPECT_EQ(counts.dropped, 1u);
    EXPECT_EQ(Notes(), (std::vector<NoteText>{{"milk", "x", 0, "", {2, 1, 2007}}, {"tea", "w", 0, "", {4, 3, 2007}}}));
}

TEST_F(ImportRunTest, ProgressCountsTheNamesAndTheRefreshSwitchIsPutBackAsItWas)
{
    RecordingProgress display;
    progress = &display;
    Import("Title\r\nmilk\r\nmilk\r\ntea\r\n");
    EXPECT_EQ(display.log, "Import... 4:...!");
    EXPECT_TRUE(IsRefreshEnabled());
    SuspendRefresh();
    Import("a,b\r\n", false);
    EXPECT_FALSE(IsRefreshEnabled());
    ResumeRefresh();
    EXPECT_EQ(display.log, "Import... 4:...!Import... 1:.!");
}

TEST_F(ImportRunTest, AnotherCopysNotesOfTheSameMomentAreNotLost)
{
    std::string text = "Title\r\n";
    for (int i = 0; i < 2000; ++i)
        text += "ours " + std::to_string(i) + "\r\n";
    ChildProcess other([&] {
        TableFile theirs(path, "");
        for (int i = 0; i < 300; ++i) {
            const NoteRecord note = Record({"theirs " + std::to_string(i)});
            if (theirs.AddRecord(BytesOf(note)) != 1)
                return 1;
        }
        return 0;
    });
    EXPECT_EQ(Import(text).added, 2000u);
    EXPECT_EQ(other.Wait(), 0);
    const std::vector<std::string> titles = Titles();
    EXPECT_EQ(titles.size(), 2300u);
    EXPECT_EQ(std::set<std::string>(titles.begin(), titles.end()).size(), 2300u);
    std::set<std::uint64_t> ids;
    const FieldRange id[] = {{kUniqueIdOffset, 8}};
    table->ForEachRecord(id, [&](RecordAddress, std::span<const std::byte> bytes) {
        std::uint64_t value = 0;
        std::memcpy(&value, bytes.data(), 8);
        return ids.insert(value).second;
    });
    EXPECT_EQ(ids.size(), 2300u);
}

TEST_F(ImportRunTest, AReaderAddsNothing)
{
    SetPasswords();
    Open("r");
    const ImportCounts counts = Import("Title\r\nmilk\r\n");
    EXPECT_TRUE(counts.refused);
    EXPECT_EQ(counts.added, 0u);
    Open("o");
    EXPECT_EQ(Titles(), std::vector<std::string>{});
}

TEST_F(ImportRunTest, AFullDiskEndsTheRunAndTellsHowFarItCame)
{
    std::string text = "Title\r\n";
    for (int i = 0; i < 1000; ++i)
        text += "note " + std::to_string(i) + "\r\n";
    ImportCounts counts;
    {
        FailingFileSystem files;
        files.failAt = 8;
        files.halfWrite = true;
        const ScopedFileSystem use(files);
        counts = Import(text);
    }
    EXPECT_TRUE(counts.writeFailed);
    EXPECT_LT(counts.added, 1000u);
    EXPECT_GT(counts.added, 0u);
    EXPECT_EQ(Titles().size(), counts.added);
}

}  // namespace
}  // namespace jotlet::test
