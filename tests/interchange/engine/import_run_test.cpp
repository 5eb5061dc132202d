#include "interchange/engine/import_run.h"

#include "engine_fixture.h"
#include "store/progress_display.h"
#include "support/child_process.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

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

TEST_F(ImportRunTest, LongTextsAreCutAtAWholeCharacter)
{
    const std::string title = std::string(148, 't') + "\xC3\xA4";
    Import("Title,Text\r\n" + title + ",\"" + std::string(5000, 'x') + "\"\r\n");
    ASSERT_EQ(Notes().size(), 1u);
    EXPECT_EQ(Notes()[0].title, std::string(148, 't'));
    EXPECT_EQ(Notes()[0].text.size(), 2023u);
}

TEST_F(ImportRunTest, TextThatIsLeftOutIsTold)
{
    ImportCounts counts = Import("Title\r\nmilk\r\n\"bread");
    EXPECT_EQ(counts.added, 1u);
    EXPECT_TRUE(counts.incompleteEnd);
    EXPECT_FALSE(counts.textBehindZero);
    counts = Import("Title\r\ntea\r\n\0eggs\r\n"sv);
    EXPECT_EQ(counts.added, 1u);
    EXPECT_FALSE(counts.incompleteEnd);
    EXPECT_TRUE(counts.textBehindZero);
}

TEST_F(ImportRunTest, OnlyALineOfNamesIsNothingToAdd)
{
    const ImportCounts counts = Import("Title\r\n");
    EXPECT_EQ(counts.rows, 0u);
    EXPECT_EQ(counts.added, 0u);
    EXPECT_FALSE(counts.writeFailed);
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

TEST_F(ImportRunTest, ProgressCountsTheNamesAndStepsOncePerRow)
{
    RecordingProgress display;
    progress = &display;
    Import("Title\r\nmilk\r\nmilk\r\ntea\r\n");
    EXPECT_EQ(display.log, "Import... 4:...!");
    display.log.clear();
    Import("a,b\r\n", false);
    EXPECT_EQ(display.log, "Import... 1:.!");
}

TEST_F(ImportRunTest, TheRefreshSwitchIsPutBackAsItWas)
{
    Import("Title\r\nmilk\r\n");
    EXPECT_TRUE(IsRefreshEnabled());
    SuspendRefresh();
    Import("Title\r\nbread\r\n");
    EXPECT_FALSE(IsRefreshEnabled());
    ResumeRefresh();
}

TEST_F(ImportRunTest, EveryImportedNoteHasAnIdOfItsOwn)
{
    std::string text = "Title\r\n";
    for (int i = 0; i < 300; ++i)
        text += "note " + std::to_string(i) + "\r\n";
    EXPECT_EQ(Import(text).added, 300u);
    std::vector<std::uint64_t> ids;
    const FieldRange id[] = {{kUniqueIdOffset, 8}};
    table->ForEachRecord(id, [&](RecordAddress, std::span<const std::byte> bytes) {
        std::memcpy(&ids.emplace_back(), bytes.data(), 8);
        return true;
    });
    ASSERT_EQ(ids.size(), 300u);
    std::ranges::sort(ids);
    EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end());
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
    std::vector<std::string> titles = Titles();
    EXPECT_EQ(titles.size(), 2300u);
    std::ranges::sort(titles);
    EXPECT_EQ(std::ranges::adjacent_find(titles), titles.end());
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

// Quotes, lone line ends, zero bytes and invalid text, cut at every byte: no crash, and never more rows than lines.
TEST_F(ImportRunTest, HostileTextCutAnywhereDoesNoHarm)
{
    const std::string hostile = "Title,Text\r\n\"a\"\"b\",\xFF\xC3\r\n\"\r\n\n\r,\t\"\0\",\"\"\"\r\n,,,\r\n"s;
    for (std::size_t length = 1; length <= hostile.size(); ++length) {
        SCOPED_TRACE(length);
        const ImportCounts counts = Import(std::string_view(hostile).substr(0, length), false);
        EXPECT_LE(counts.rows, 6u);
        EXPECT_FALSE(counts.writeFailed);
    }
}

}  // namespace
}  // namespace jotlet::test
