#include "interchange/engine/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "engine_fixture.h"
#include "interchange/engine/report_target.h"
#include "support/child_process.h"
#include "support/failing_file_system.h"
#include "support/temp_folder.h"

namespace jotlet::test {
namespace {

class ReportTest : public EngineTest {
protected:
    // The text that a request makes; "(failed)" when it makes none.
    std::string Make(const ReportRequest& request)
    {
        return GenerateReportFile(request, out, &outcome) == 1 ? ReadAll(out) : "(failed)";
    }
    std::string Export() { return Make(Request(ReportKind::Export)); }
    // Titles in the export of that range, in order.
    std::string Range(const DateValue& from, const DateValue& to, const std::string& find = {})
    {
        ReportRequest request = Request(ReportKind::Export);
        request.selection = ReportSelection::DateRange;
        request.fromDate = from;
        request.toDate = to;
        request.findEnabled = !find.empty();
        request.findText = find;
        return TitlesOf(Make(request));
    }
    static std::string TitlesOf(const std::string& csv)
    {
        std::string titles;
        DelimitedReader reader;
        reader.SetText(csv);
        reader.NextRecord();
        while (reader.NextRecord() == 1) {
            reader.Rewind();
            reader.NextField();
            titles += std::string(reader.Field()) + ' ';
            while (reader.NextField() == DelimitedReader::kField) {
            }
        }
        return titles;
    }

    ReportOutcome outcome;
};

TEST_F(ReportTest, AReportReadsAsText)
{
    Add({"milk", "two\r\nlines", kRed, "Calls", {2, 1, 2005}});
    Add({"bread", "", kRed, "", {1, 1, 2005}});
    EXPECT_EQ(Make(Request(ReportKind::Report)),
              "Jotlet Report (from 1/1/2000 to 31/1/2020)\r\n\r\n"
              "Date: 1/1/2005\r\nCategory: \r\nTitle: bread\r\nNotes: \r\n\r\n"
              "Date: 2/1/2005\r\nCategory: Calls\r\nTitle: milk\r\nNotes: two\r\nlines\r\n\r\n");
    EXPECT_EQ(outcome.notes, 2u);
    SetClockFormat(ClockFormat::Hours12);
    EXPECT_EQ(Make(Request(ReportKind::Report)).substr(0, 45), "Jotlet Report (from 1/1/2000 to 1/31/2020)\r\n\r");
}

TEST_F(ReportTest, AnExportQuotesEveryColumnAndEscapesNothing)
{
    Add({"say \"hi\"", "a,b\r\nc", kBlue, "Calls", {1, 1, 2005}});
    Add({"odd", "", 0x123456, "", {2, 1, 2005}});
    EXPECT_EQ(Export(),
              "\"Title\",\"Text\",\"Color\",\"Category\"\r\n"
              "\"say \"hi\"\",\"a,b\r\nc\",\"0\",\"Calls\"\r\n"
              "\"odd\",\"\",\"4\",\"\"\r\n");
}

TEST_F(ReportTest, NothingToTellIsAHeadAlone)
{
    EXPECT_EQ(Export(), "\"Title\",\"Text\",\"Color\",\"Category\"\r\n");
    EXPECT_EQ(Make(Request(ReportKind::Report)), "Jotlet Report (from 1/1/2000 to 31/1/2020)\r\n\r\n");
}

TEST_F(ReportTest, AllEndsWithJanuaryOfTheLastYear)
{
    Add({"past", "", kRed, "", {31, 12, 1999}});
    Add({"first", "", kRed, "", {1, 1, 2000}});
    Add({"last", "", kRed, "", {31, 1, 2020}});
    Add({"behind", "", kRed, "", {1, 2, 2020}});
    EXPECT_EQ(TitlesOf(Export()), "first last ");
    SetCalendarLastYear(2099);
    EXPECT_EQ(TitlesOf(Export()), "first last behind ");
    EXPECT_TRUE(Make(Request(ReportKind::Report)).starts_with("Jotlet Report (from 1/1/2000 to 31/1/2099)"));
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(ReportTest, ARangeHoldsBothItsEnds)
{
    Add({"c", "", kRed, "", {3, 5, 2007}});
    Add({"a", "", kRed, "", {1, 5, 2007}});
    Add({"b", "", kRed, "", {2, 5, 2007}});
    EXPECT_EQ(Range({1, 5, 2007}, {2, 5, 2007}), "a b ");
    EXPECT_EQ(Range({2, 5, 2007}, {2, 5, 2007}), "b ");
    EXPECT_EQ(Range({3, 5, 2007}, {1, 5, 2007}), "");
    EXPECT_EQ(Range({1, 2, 2020}, {31, 12, 2020}), "");
}

TEST_F(ReportTest, TheTextToFindStandsInTitleOrTextAndInTheRange)
{
    Add({"Milk", "", kRed, "", {1, 5, 2007}});
    Add({"tea", "with mILK", kRed, "", {2, 5, 2007}});
    Add({"bread", "plain", kRed, "milk", {2, 5, 2007}});  // a category is not looked at
    Add({"late milk", "", kRed, "", {9, 5, 2007}});
    EXPECT_EQ(Range({1, 5, 2007}, {2, 5, 2007}, "milk"), "Milk tea ");
}

TEST_F(ReportTest, TheCurrentNoteIsTakenWhateverItsDateAndTheText)
{
    NoteRecord old = Record({"old", "", kRed, "", {1, 1, 1990}});
    ASSERT_EQ(table->AddRecord(BytesOf(old)), 1);
    Add({"other"});
    ReportRequest request = Request(ReportKind::Export);
    request.selection = ReportSelection::CurrentRecord;
    request.currentId = old.uniqueId;
    request.findEnabled = true;
    request.findText = "other";
    EXPECT_EQ(TitlesOf(Make(request)), "old ");
}

TEST_F(ReportTest, AnAssistantsReportHoldsNoConfidentialNote)
{
    NoteRecord secret = Record({"secret"});
    secret.confidential = 1;
    ASSERT_EQ(table->AddRecord(BytesOf(secret)), 1);
    Add({"open"});
    SetPasswords();
    Open("a");
    EXPECT_EQ(TitlesOf(Export()), "open ");
    Open("o");
    EXPECT_EQ(TitlesOf(Export()), "secret open ");
}

TEST_F(ReportTest, FieldsWithoutTerminatorsAreWrittenToTheirEnd)
{
    NoteRecord note = Record({"x"});
    note.title.fill('t');
    note.text.fill('u');
    note.category.fill('c');
    ASSERT_EQ(table->AddRecord(BytesOf(note)), 1);
    EXPECT_EQ(Export(), "\"Title\",\"Text\",\"Color\",\"Category\"\r\n\"" + std::string(150, 't') + "\",\"" +
                            std::string(2024, 'u') + "\",\"3\",\"" + std::string(30, 'c') + "\"\r\n");
}

// Few notes are read one by one, many in one scan; the text must be the same.
TEST_F(ReportTest, ManyNotesReadLikeFewOnes)
{
    std::string few;
    const std::string head = Export();
    for (int i = 0; i < 150; ++i) {
        const DateValue day = {1 + i * 7 % 28, 1 + i % 12, 2001 + i % 9};
        Add({"note " + std::to_string(i), std::string(static_cast<std::size_t>(i), 'x'), kBlue, "Calls", day});
    }
    for (int year = 2001; year < 2010; ++year) {
        for (int month = 1; month <= 12; ++month) {
            ReportRequest request = Request(ReportKind::Export);
            request.selection = ReportSelection::DateRange;
            request.fromDate = {1, month, year};
            request.toDate = {DaysInMonth(year, month), month, year};
            few += Make(request).substr(head.size());
        }
    }
    EXPECT_EQ(Export(), head + few);
    EXPECT_EQ(outcome.notes, 150u);
    EXPECT_EQ(outcome.skipped, 0u);
}

// --- the target

class ReportTargetTest : public ReportTest {
protected:
    // The reason why there is no target, with nothing left behind.
    FileErrorKind Refusal(const std::string& target)
    {
        const std::size_t before = folder.FileCount();
        EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), target, &outcome), 0) << target;
        EXPECT_EQ(folder.FileCount(), before);
        return outcome.error.kind;
    }
};

TEST_F(ReportTargetTest, AFinishedTargetReplacesTheOldOneAndLeavesNothingBeside)
{
    WriteAll(out, "old text that is longer than the new one, to see that nothing of it stays behind");
    chmod(out.c_str(), 0640);
    const std::size_t before = folder.FileCount();
    EXPECT_EQ(Export(), "\"Title\",\"Text\",\"Color\",\"Category\"\r\n");
    EXPECT_EQ(folder.FileCount(), before);
    struct stat state {};
    ASSERT_EQ(stat(out.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0640u);
}

TEST_F(ReportTargetTest, ALinkIsFollowed)
{
    WriteAll(out, "old");
    const std::string link = folder.File("link.csv");
    std::filesystem::create_symlink(out, link);
    EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), link), 1);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_NE(ReadAll(out), "old");
}

TEST_F(ReportTargetTest, WhatCannotBeATargetSaysWhy)
{
    EXPECT_EQ(Refusal(""), FileErrorKind::Missing);
    EXPECT_EQ(Refusal(folder.Path()), FileErrorKind::NotRegularFile);
    EXPECT_EQ(Refusal(folder.File("missing/out.csv")), FileErrorKind::Missing);
    EXPECT_EQ(Refusal("/dev/full"), FileErrorKind::NoSpace);
}

TEST_F(ReportTargetTest, ANoteFileInUseIsNeverOverwritten)
{
    Add({"milk"});
    EXPECT_EQ(Refusal(path), FileErrorKind::Busy);
    EXPECT_EQ(Titles(), std::vector<std::string>{"milk"});
}

TEST_F(ReportTargetTest, WithAnyFailureTheOldTargetStaysWhole)
{
    for (int i = 0; i < 300; ++i)
        Add({"note " + std::to_string(i), std::string(1500, 'x')});
    WriteAll(out, "old");
    int failAt = 1;
    for (;; ++failAt) {
        SCOPED_TRACE(failAt);
        ASSERT_LT(failAt, 40);
        FailingFileSystem files;
        files.failAt = failAt;
        const ScopedFileSystem use(files);
        const int made = GenerateReportFile(Request(ReportKind::Export), out, &outcome);
        if (files.failedCall.empty()) {
            EXPECT_EQ(made, 1);
            break;
        }
        if (made == 0) {
            EXPECT_EQ(ReadAll(out), "old");
            EXPECT_EQ(outcome.error.kind, FileErrorKind::NoSpace);
            EXPECT_EQ(outcome.error.path, out);
        } else {
            ADD_FAILURE() << "success in spite of a failed " << files.failedCall;
        }
        EXPECT_EQ(folder.FileCount(), 2u);
    }
    EXPECT_GT(failAt, 4);
    EXPECT_GT(ReadAll(out).size(), 300u * 1500u);
}

TEST_F(ReportTargetTest, AFolderOrFileThatMayNotBeWrittenIsRefused)
{
    const std::string locked = folder.File("locked");
    std::filesystem::create_directory(locked);
    WriteAll(locked + "/out.csv", "old");
    chmod((locked + "/out.csv").c_str(), 0444);
    chmod(locked.c_str(), 0555);
    const std::string notes = folder.File("copy.jot");
    table->Close();
    std::filesystem::copy_file(path, notes);
    chmod(notes.c_str(), 0666);
    const int kinds = RunAsOrdinaryUser(folder.Path(), [&] {
        TableFile mine(notes, "");
        ReportRequest request = Request(ReportKind::Export);
        request.table = &mine;
        int right = 0;
        for (const char* name : {"/new.csv", "/out.csv"}) {
            ReportOutcome result;
            if (GenerateReportFile(request, locked + name, &result) == 0 &&
                result.error.kind == FileErrorKind::Permission)
                ++right;
        }
        return right;
    });
    chmod(locked.c_str(), 0755);
    EXPECT_EQ(kinds, 2);
    EXPECT_EQ(ReadAll(locked + "/out.csv"), "old");
}

TEST_F(ReportTargetTest, APipeGetsTheTextAtOnce)
{
    Add({"milk"});
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_NE(Refusal(pipe), FileErrorKind::None);  // nobody reads: no waiting

    const int reader = open(pipe.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), pipe), 1);
    std::string received(4096, '\0');
    received.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(reader, received.data(), received.size()))));
    close(reader);
    EXPECT_EQ(TitlesOf(received), "milk ");
}

TEST_F(ReportTargetTest, APipeWhoseReaderGoesAwayIsAFailedExport)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);  // as both programs do
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    {
        ReportTarget target(pipe);
        EXPECT_FALSE(target.Error());
        close(reader);
        target.Append("milk");
        EXPECT_FALSE(target.Finish());
        EXPECT_EQ(target.Error().systemError, EPIPE);
    }
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace jotlet::test
