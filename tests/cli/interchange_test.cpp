// export, report, import.
#include "cli/jotctl_fixture.h"

namespace jotlet::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class InterchangeTest : public JotctlTest {
protected:
    InterchangeTest() { NewFile(); }

    nlohmann::json Import(const std::string& bytes, Arguments more = {}, int code = 0)
    {
        Arguments arguments = {"import", file, Write("in.csv", bytes), "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome imported = Run(arguments);
        EXPECT_THAT(imported, ExitsWith(code));
        lastError = imported.err;
        return imported.Json();
    }
    static nlohmann::json Counts(int rows, int added, int dropped)
    {
        return {{"rows", rows}, {"added", added}, {"dropped", dropped}};
    }

    std::string lastError;
};

TEST_F(InterchangeTest, WhatIsExportedComesBackWithTitleTextColourAndCategory)
{
    Add("Milk", "two\nlines, and a comma", {"--colour", "blue", "--category", "Calls", "--date", "2010-01-02"});
    Add("Bread", "x", {"--colour", "grey", "--date", "2010-01-01"});
    const std::string csv = Path("out.csv");
    ASSERT_THAT(Run({"export", file, csv}), ExitsWith(0));
    EXPECT_EQ(Read(csv),
              "\"Title\",\"Text\",\"Color\",\"Category\"\r\n\"Bread\",\"x\",\"4\",\"\"\r\n"
              "\"Milk\",\"two\r\nlines, and a comma\",\"0\",\"Calls\"\r\n");

    NewFile("second.jot");
    EXPECT_EQ(Import(Read(csv)), Counts(2, 2, 0));
    const nlohmann::json notes = Run({"list", file, "--json"}).Json();
    EXPECT_EQ(notes[1]["title"], "Milk");
    EXPECT_EQ(notes[1]["text"], "two\r\nlines, and a comma");
    EXPECT_EQ(notes[1]["colour"], "blue");
    EXPECT_EQ(notes[1]["category"], "Calls");
    EXPECT_EQ(notes[0]["colour"], "grey");
    EXPECT_EQ(Import(Read(csv), {}, 1), Counts(2, 0, 2)) << "the same again adds nothing";
    EXPECT_THAT(lastError, HasSubstr("in.csv: Nothing was added"));

    Add("say \"hi\"");
    const Outcome exported = Run({"export", file, csv});
    EXPECT_THAT(exported, ExitsWith(0));
    EXPECT_THAT(exported.err, HasSubstr("quotation mark may not come back as it is from an import. Such notes: 1."));
}

TEST_F(InterchangeTest, ReportAndExportNarrowByDaysAndByText)
{
    Add("a", "x", {"--date", "2010-01-01"});
    Add("b", "find me", {"--date", "2010-01-02"});
    Add("c", "find me", {"--date", "2010-01-03"});
    const std::string report = Path("report.txt");
    ASSERT_THAT(Run({"report", file, report, "--from", "2010-01-01", "--to", "2010-01-02", "--find", "FIND"}),
                ExitsWith(0));
    EXPECT_EQ(Read(report),
              "Jotlet Report (from 1/1/2010 to 2/1/2010)\r\n\r\n"
              "Date: 2/1/2010\r\nCategory: \r\nTitle: b\r\nNotes: find me\r\n\r\n");
    ASSERT_THAT(Run({"export", file, Path("o.csv"), "--from", "2010-01-03", "--to", "2010-01-03"}), ExitsWith(0));
    EXPECT_EQ(Read(Path("o.csv")), "\"Title\",\"Text\",\"Color\",\"Category\"\r\n\"c\",\"find me\",\"3\",\"\"\r\n");
    EXPECT_THAT(Run({"report", file, report, "--from", "2010-01-03", "--to", "2010-01-02"}), Complains(2, "--from"));
    EXPECT_THAT(Run({"report", file, report, "--to", "never"}), Complains(2, "--to"));
}

TEST_F(InterchangeTest, ATargetThatCannotBeWrittenIsToldAndTheNoteFileIsNeverOverwritten)
{
    Add("a", "x", {"--date", "2010-01-01"});
    const std::string before = Read(file);
    EXPECT_THAT(Run({"export", file, Path("none/o.csv")}), Complains(1, Path("none/o.csv")));
    EXPECT_THAT(Run({"export", file, folder.string()}), Complains(1, folder.string()));
    EXPECT_THAT(Run({"export", file, "/dev/full"}), Complains(1, "/dev/full"));
    EXPECT_THAT(Run({"export", file, file}), Complains(1, file));
    EXPECT_EQ(Read(file), before);
}

TEST_F(InterchangeTest, ColumnsAreFoundByTheirNamesOrByTheMap)
{
    EXPECT_EQ(Import("Category,SUBJECT,Notes,Other\r\nCalls,t1,x1,o\r\n"), Counts(1, 1, 0));
    EXPECT_EQ(Import("one\ttwo\r\nx2\tt2\r\n", {"--map", "Title=2,text=1"}), Counts(1, 1, 0));
    EXPECT_EQ(Import("t3,x3,2\r\n", {"--no-header"}), Counts(1, 1, 0));
    const nlohmann::json notes = Run({"list", file, "--json"}).Json();
    ASSERT_EQ(notes.size(), 3u);
    EXPECT_EQ(notes[0]["category"], "Calls");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(notes[i]["title"], "t" + std::to_string(i + 1));
        EXPECT_EQ(notes[i]["text"], "x" + std::to_string(i + 1));
    }
    EXPECT_EQ(notes[2]["colour"], "red");
}

TEST_F(InterchangeTest, AMapThatDoesNotFitIsAUsageError)
{
    const std::string csv = Write("in.csv", "a,b\r\nc,d\r\n");
    const std::string before = Read(file);
    for (const char* map : {"Title", "Title=0", "Title=3", "Title=x", "Name=1", "=1", "Title=99999999999999999999"}) {
        SCOPED_TRACE(map);
        EXPECT_THAT(Run({"import", file, csv, "--map", map}), Complains(2, "--map"));
    }
    EXPECT_THAT(Run({"import", file, csv, "--separator", "semicolon"}), Complains(2, "semicolon"));
    EXPECT_THAT(Run({"import", file, csv}), Complains(1, csv)) << "no column has a known name";
    EXPECT_EQ(Read(file), before);
}

TEST_F(InterchangeTest, LineEndsSeparatorAndQualifierCanBeSetAndWhatStandsBehindAnOpenQuoteIsTold)
{
    EXPECT_EQ(Import("\xEF\xBB\xBFTitle,Text\na,\"x\r\ny\"\nb,y\n"), Counts(2, 2, 0));
    EXPECT_THAT(Run({"import", file, Write("lf.csv", "Title,Text\na,x\n"), "--line-ends", "crlf"}),
                Complains(1, Path("lf.csv")));
    EXPECT_EQ(Import("Title\tText, more\r\nc, b\tx\r\n", {"--separator", "tab", "--map", "Title=1,Text=2"}),
              Counts(1, 1, 0));
    EXPECT_EQ(Import("Title,Text\r\n5\" nail,x\r\n", {"--qualifier", "none"}), Counts(1, 1, 0));
    EXPECT_EQ(Import("Title,Text\r\nd,x\r\n\"b,y\r\nc,z\r\n"), Counts(1, 1, 0));
    EXPECT_THAT(lastError, HasSubstr("in.csv: Note: the last whole row ends on line 2"));
    EXPECT_THAT(Titles(), ElementsAre("5\" nail", "a", "b", "c, b", "d"));
}

TEST_F(InterchangeTest, AFileWithoutRowsIsRefusedWithTheReason)
{
    for (const std::string& bytes :
         {std::string(), std::string(1000, '\0'), std::string("\"a,b\r\nc"), std::string(3000, '"') + "x"}) {
        SCOPED_TRACE(bytes.substr(0, 10));
        EXPECT_THAT(Run({"import", file, Write("in.csv", bytes)}), Complains(1, Path("in.csv")));
    }
    EXPECT_THAT(Run({"import", file, Path("none.csv")}), Complains(3, Path("none.csv")));
    EXPECT_THAT(Run({"import", file, folder.string()}), Complains(3, folder.string()));
    EXPECT_THAT(Run({"import", file, "/dev/zero"}), Complains(3, "/dev/zero"));
    EXPECT_THAT(Titles(), IsEmpty());
}

}  // namespace
}  // namespace jotlet::test
