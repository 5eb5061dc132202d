// Out as delimited text and in again.
#include <random>

#include "engine_fixture.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

class RoundTripTest : public EngineTest {
protected:
    // Exports the open file and imports the text into a new one, which is open afterwards.
    ImportCounts Travel()
    {
        EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), out), 1);
        path = folder.File("second.jot");
        EXPECT_EQ(CreateNoteFile(path, WithExamples::No, clock), 1);
        Open("");
        return Import(ReadAll(out));
    }
};

TEST_F(RoundTripTest, TenThousandNotesComeBackButForTheirDates)
{
    constexpr std::size_t kNotes = 10'000;
    std::mt19937 random(7);
    const std::vector<std::string> words = {"milk",           "a,b", "two\r\nlines",    "\tindented",   "M\xC3\xBCll",
                                            "\xE2\x82\xAC 5", " ",   "lone\nline feed", "lone\rreturn", "caf\xE9",
                                            "'quoted'"};
    const auto phrase = [&](std::size_t longest) {
        std::string text;
        for (std::size_t i = random() % longest; i > 0; --i)
            text += words[random() % words.size()];
        return text;
    };
    std::vector<NoteText> notes;
    std::vector<std::byte> records;
    for (std::size_t i = 0; i < kNotes; ++i) {
        NoteText note{.title = "note " + std::to_string(i) + phrase(6),
                      .text = phrase(60),
                      .colour = IndexToColour(static_cast<std::int64_t>(random() % 5)),
                      .category = i % 3 == 0 ? "Calls" : "",
                      .date = {1, 5, 2007}};
        const NoteRecord record = Record(note);
        const auto bytes = BytesOf(record);
        records.insert(records.end(), bytes.begin(), bytes.end());
        note.date = {14, 3, 2007};  // the day of the import
        notes.push_back(note);
    }
    std::vector<RecordAddress> addresses;
    ASSERT_EQ(table->AddRecords(records, addresses), 1);

    const ImportCounts counts = Travel();
    EXPECT_EQ(counts.rows, kNotes);
    EXPECT_EQ(counts.added, kNotes);
    EXPECT_FALSE(counts.incompleteEnd);
    const std::vector<NoteText> back = Notes();
    ASSERT_EQ(back.size(), notes.size());
    for (std::size_t i = 0; i < kNotes; ++i)
        ASSERT_EQ(back[i], notes[i]);
    EXPECT_EQ(Import(ReadAll(out)).added, 0u);
}

}  // namespace
}  // namespace jotlet::test
