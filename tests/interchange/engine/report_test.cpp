#include "interchange/engine/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "engine_fixture.h"
#include "interchange/engine/report_target.h"
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

std::size_t CountOf(std::string_view text, std::string_view piece)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(piece, at)) != std::string_view::npos; at += piece.size())
        ++count;
    return count;
}

// What a request must give, told as simply as can be.
std::string Expected(const std::vector<NoteText>& notes, const ReportRequest& request)
{
    const bool isRange = request.selection == ReportSelection::DateRange;
    const DateValue from = isRange ? request.fromDate : DateValue{1, 1, 2000};
    const DateValue to = isRange ? request.toDate : DateValue{31, 1, CalendarLastYear()};
    const auto day = [](const DateValue& date) {
        return std::to_string(date.day) + '/' + std::to_string(date.month) + '/' + std::to_string(date.year);
    };
    std::string text = request.kind == ReportKind::Report
                           ? "Jotlet Report (from " + day(from) + " to " + day(to) + ")\r\n\r\n"
                           : "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";
    std::vector<NoteText> chosen;
    std::ranges::copy_if(notes, std::back_inserter(chosen), [&](const NoteText& note) {
        const std::string words = LowerAscii(note.title + '\n' + note.text);
        return DayNumberOf(note.date) >= DayNumberOf(from) && DayNumberOf(note.date) <= DayNumberOf(to) &&
               (!request.findEnabled || words.find(LowerAscii(request.findText)) != std::string::npos);
    });
    std::ranges::stable_sort(chosen, {}, [](const NoteText& note) { return DayNumberOf(note.date); });
    for (const NoteText& note : chosen) {
        const int colour = std::ranges::find(kPalette, note.colour, &PaletteColour::colour)->index;
        text += request.kind == ReportKind::Report
                    ? "Date: " + day(note.date) + "\r\nCategory: " + note.category + "\r\nTitle: " + note.title +
                          "\r\nNotes: " + note.text + "\r\n\r\n"
                    : '"' + note.title + "\",\"" + note.text + "\",\"" + std::to_string(colour) + "\",\"" +
                          note.category + "\"\r\n";
    }
    return text;
}

// Few notes are read one by one, many in one scan, and more than a query holds one by one again.
TEST_F(ReportTest, TheTextIsThatOfANaiveModel)
{
    std::mt19937 random(11);
    const std::vector<std::string> words = {"milk", "MILK", "a,b\r\nc", "say \"hi\"", "bread", " "};
    const auto pick = [&](int from, int to) { return from + static_cast<int>(random() % unsigned(to - from + 1)); };
    const auto date = [&] { return DateValue{pick(0, 31), pick(0, 13), pick(1999, 2021)}; };
    std::vector<NoteText> notes;
    for (const std::size_t count : {0, 1, 3, 40, 99, 100, 101, 260}) {
        while (notes.size() < count) {
            notes.push_back({words[random() % 6] + std::to_string(count), words[random() % 6],
                             kPalette[random() % 5].colour, words[random() % 6],
                             random() % 3 ? date() : DateValue{pick(1, 4), 5, 2007}});
            Add(notes.back());
        }
        for (int i = 0; i < 16; ++i) {
            SetCalendarLastYear(i % 4 ? kCalendarDefaultLastYear : 2021);
            ReportRequest request = Request(i % 2 ? ReportKind::Report : ReportKind::Export);
            request.selection = i < 4 ? ReportSelection::All : ReportSelection::DateRange;
            request.fromDate = i < 10 ? DateValue{pick(1, 4), 5, 2007} : date();
            request.toDate = i < 10 ? DateValue{pick(1, 4), 5, 2007} : date();
            request.findEnabled = random() % 2;
            request.findText = words[random() % 5];
            if (DayNumberOf(request.fromDate) < 0 || DayNumberOf(request.toDate) < 0)
                continue;
            SCOPED_TRACE(count * 100 + i);
            const std::string expected = Expected(notes, request);
            ASSERT_EQ(Make(request), expected);
            ASSERT_EQ(outcome.notes, CountOf(expected, request.kind == ReportKind::Report ? "Date: " : "\"\r\n") -
                                         (request.kind == ReportKind::Export ? 1 : 0));
        }
    }
    SetCalendarLastYear(kCalendarDefaultLastYear);
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

// A note that the drive refuses must not vanish from a file that replaces the last whole one.
TEST_F(ReportTest, WithAnyReadFailingTheTextIsWholeOrTheOldFileStays)
{
    for (const int count : {3, 120}) {
        while (static_cast<int>(Titles().size()) < count)
            Add({"note " + std::to_string(Titles().size())});
        const std::string whole = Export();
        int refused = 0;
        FailingFileSystem files;
        files.isRemote = true;
        for (int nth = 1; files.reads >= nth - 1; ++nth) {
            files.reads = 0;
            const ScopedFileSystem use(files);
            TableFile far(path, "");
            ReportRequest request = Request(ReportKind::Export);
            request.table = &far;
            WriteAll(out, "old");
            files.failRead = nth;
            const bool isMade = GenerateReportFile(request, out, &outcome) == 1;
            EXPECT_EQ(ReadAll(out), isMade ? whole : "old") << nth;
            EXPECT_EQ(outcome.error.path, isMade ? "" : path);
            refused += isMade ? 0 : 1;
        }
        EXPECT_GT(refused, 0);
    }
}

TEST_F(ReportTest, PastTheLimitOfAQueryTheRestIsLeftOutAndToldOrWritten)
{
    const NoteRecord note = Record({"note", "say \"hi\""});
    std::vector<std::byte> records;
    for (int i = 0; i <= kMaxResults; ++i)
        records.insert(records.end(), BytesOf(note).begin(), BytesOf(note).end());
    std::vector<RecordAddress> addresses;
    ASSERT_EQ(table->AddRecords(records, addresses), 1);
    ReportRequest request = Request(ReportKind::Export);
    Make(request);
    EXPECT_TRUE(outcome.limitReached);
    EXPECT_EQ(outcome.notes, 10'000u);
    request.everyNote = true;
    Make(request);
    EXPECT_FALSE(outcome.limitReached);
    EXPECT_EQ(outcome.notes, 10'001u);
    EXPECT_EQ(outcome.withQuotes, 10'001u);
    ASSERT_EQ(table->DeleteRecord(addresses[5]), 1);
    request.everyNote = false;
    Make(request);
    EXPECT_FALSE(outcome.limitReached) << "exactly as many as there may be is all of them";
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

TEST_F(ReportTargetTest, AFinishedTargetReplacesWhatALinkLeadsToAndLeavesNothingBeside)
{
    WriteAll(out, "old text that is longer than the new one, to see that nothing of it stays behind");
    chmod(out.c_str(), 0640);
    const std::string link = folder.File("link.csv");
    std::filesystem::create_symlink(out, link);
    const std::size_t before = folder.FileCount();
    EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), link), 1);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(ReadAll(out), "\"Title\",\"Text\",\"Color\",\"Category\"\r\n");
    EXPECT_EQ(folder.FileCount(), before);
    struct stat state {};
    ASSERT_EQ(stat(out.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0640u);
}

TEST_F(ReportTargetTest, WhatCannotBeATargetSaysWhy)
{
    EXPECT_EQ(Refusal(""), FileErrorKind::Missing);
    EXPECT_EQ(Refusal(folder.Path()), FileErrorKind::NotRegularFile);
    EXPECT_EQ(Refusal(folder.File("missing/out.csv")), FileErrorKind::Missing);
    EXPECT_EQ(Refusal("/dev/full"), FileErrorKind::NoSpace);
    EXPECT_EQ(Refusal(path), FileErrorKind::Busy) << "a note file in use";
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
        if (files.failedCall.empty() || files.failedCall == "sync folder") {
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

TEST_F(ReportTargetTest, APipeGetsTheTextAtOnceAndFailsWhenItsReaderGoesAway)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);  // as both programs do
    Add({"milk"});
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_NE(Refusal(pipe), FileErrorKind::None);  // nobody reads: no waiting

    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    {
        ReportTarget target(pipe);
        EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), pipe), 1);
        std::string received(4096, '\0');
        received.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(reader, received.data(), received.size()))));
        EXPECT_EQ(TitlesOf(received), "milk ");
        close(reader);
        target.Append("milk");
        EXPECT_FALSE(target.Finish());
        EXPECT_EQ(target.Error().systemError, EPIPE);
    }
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace jotlet::test
