// Files that other programs wrote. Rows come out as the text between the separators; doubled quotes stay doubled.
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

}  // namespace
}  // namespace jotlet::test
