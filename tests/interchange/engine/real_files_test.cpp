// Files that other programs wrote. Rows come out as the text between the separators; doubled quotes stay doubled.
#include <cstdlib>

#include "engine_fixture.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

Rows ReadRows(DelimitedReader& reader)
{
    Rows rows;
    reader.Reset();
    while (reader.NextRecord() == 1) {
        Row& row = rows.emplace_back();
        reader.Rewind();
        for (int code = DelimitedReader::kField; code == DelimitedReader::kField;) {
            code = reader.NextField();
            row.emplace_back(reader.Field());
        }
    }
    return rows;
}

std::string Replaced(std::string text, std::string_view what, std::string_view by)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

// The rows of the sheet behind the samples (samples/README), as they must come out. The spreadsheet dropped the tab of
// "tabhere" itself.
Rows SheetRows()
{
    return {{"Subject", "Notes Body", "Color", "Category"},
            {"plain", "text", "1", "Calls"},
            {"comma, inside", "a;b", "2", "Ideas"},
            {"line\r\nbreak", "two\r\nlines", "3", ""},
            {"quote \"\"inside\"\"", "\"\"all\"\"", "0", "Test"},
            {"M\xC3\xBCll \xE2\x82\xAC", "\xF0\x9F\x98\x80 ok", "4", "Personal"},
            {"", "only text", "", ""},
            {"007", "=1+1", "1.5", "Clients"},
            {"tabhere", " blanks ", "-1", "Travel"}};
}

class RealFilesTest : public EngineTest {
protected:
    static std::string Sample(const std::string& name)
    {
        return JOTLET_SOURCE_DIR "/tests/interchange/samples/calc-" + name + ".csv";
    }
    Rows Load(const std::string& file, char separator, LineEnds lineEnds = LineEnds::Auto)
    {
        EXPECT_TRUE(LoadImportText(reader, file, lineEnds)) << file;
        EXPECT_EQ(DelimitedReader::DetectSeparator(reader.Text()), separator);
        reader.separator = separator;
        return ReadRows(reader);
    }

    DelimitedReader reader;
};

TEST_F(RealFilesTest, EveryFormOfASpreadsheetsTextGivesTheRowsOfTheSheet)
{
    for (const char* name : {"comma", "all-quoted", "utf16"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Load(Sample(name), ','), SheetRows());
        EXPECT_FALSE(reader.HasIncompleteEnd());
    }
    EXPECT_EQ(Load(Sample("tab"), '\t'), SheetRows());
    // Bytes of Windows-1252 stay; what that has no byte for was a question mark already.
    const Rows western = Load(Sample("windows-1252"), ',');
    ASSERT_EQ(western.size(), SheetRows().size());
    EXPECT_EQ(western[5], (Row{"M\xFCll \x80", "? ok", "4", "Personal"}));
    // Its lines end in LF alone. Taken as they stand they are one row without an end.
    EXPECT_EQ(Load(Sample("comma"), ',', LineEnds::CrLf), Rows{});
    EXPECT_TRUE(reader.HasIncompleteEnd());
}

TEST_F(RealFilesTest, ASpreadsheetsNotesComeInByTheNamesOfItsColumns)
{
    ASSERT_TRUE(LoadImportText(reader, Sample("comma")));
    const ImportCounts counts = Import(reader.Text());
    EXPECT_EQ(counts.rows, 8u);
    EXPECT_EQ(counts.added, 8u);
    const std::vector<NoteText> notes = Notes();
    ASSERT_EQ(notes.size(), 8u);
    const DateValue today{14, 3, 2007};
    EXPECT_EQ(notes[0], (NoteText{"plain", "text", IndexToColour(1), "Calls", today}));
    EXPECT_EQ(notes[2], (NoteText{"line\r\nbreak", "two\r\nlines", IndexToColour(3), "", today}));
    EXPECT_EQ(notes[5].text, "only text");
    EXPECT_EQ(notes[6].colour, IndexToColour(1));  // of "1.5" the whole number counts
}

// Python's csv module writes the rows; its dialects differ in separator, quoting and line ends.
class PythonDialect : public RealFilesTest, public testing::WithParamInterface<const char*> {
protected:
    bool Write(const Rows& rows)
    {
        constexpr std::string_view kScript =
            "import csv, sys\n"
            "fields = open(sys.argv[2], newline='', encoding='utf-8').read()\n"
            "rows = [row.split('\\x1f') for row in fields.split('\\x1e')]\n"
            "with open(sys.argv[3], 'w', newline='', encoding='utf-8') as out:\n"
            "    csv.writer(out, dialect=sys.argv[1]).writerows(rows)\n";
        std::string fields;
        for (const Row& row : rows) {
            fields += fields.empty() ? "" : "\x1e";
            for (std::size_t i = 0; i < row.size(); ++i)
                fields += (i == 0 ? "" : "\x1f") + row[i];
        }
        WriteAll(folder.File("write.py"), kScript);
        WriteAll(folder.File("fields"), fields);
        const std::string command = "python3 '" + folder.File("write.py") + "' " + GetParam() + " '" +
                                    folder.File("fields") + "' '" + out + "'";
        return std::system(command.c_str()) == 0;
    }
};

TEST_P(PythonDialect, RowsComeBackWithDoubledQuotes)
{
    if (std::system("python3 -c 'import csv' 2>/dev/null") != 0)
        GTEST_SKIP() << "python3 is not installed";
    const bool isUnix = std::string_view(GetParam()) == "unix";
    const char separator = std::string_view(GetParam()) == "excel-tab" ? '\t' : ',';
    const std::string lineEnd = isUnix ? "\n" : "\r\n";
    Rows rows = {{"Title", "Text", "Color"},
                 {"plain", "", "1"},
                 {"", "", ""},
                 {"comma, here", "tab\there", "both,\t"},
                 {"a \"quoted\" word", "\"all\"", "\""},
                 {"ends in a quote\"", "\",\"", "\"\t\""},
                 {"two" + lineEnd + "lines", "quote\"" + lineEnd + "and end", lineEnd},
                 {"M\xC3\xBCll", "\xE2\x82\xAC,\xF0\x9F\x98\x80", " blanks "},
                 {"fewer"},
                 {"more", "2", "3", "4", "5"}};
    if (!isUnix)
        rows.push_back({"lone\rreturn", "lone\nfeed", "'single'"});
    ASSERT_TRUE(Write(rows));

    Rows wanted = rows;
    for (Row& row : wanted) {
        for (std::string& field : row) {
            field = Replaced(field, "\"", "\"\"");
            if (isUnix)  // the file holds no CR LF, so every line end of it becomes one
                field = Replaced(field, "\n", "\r\n");
        }
    }
    EXPECT_EQ(Load(out, separator), wanted);
    EXPECT_FALSE(reader.HasIncompleteEnd());
}

INSTANTIATE_TEST_SUITE_P(Dialects, PythonDialect, testing::Values("excel", "excel-tab", "unix"),
                         [](const auto& dialect) { return Replaced(dialect.param, "-", "_"); });

}  // namespace
}  // namespace jotlet::test
