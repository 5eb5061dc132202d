#include "interchange/engine/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "engine_fixture.h"
#include "interchange/engine/report_target.h"
#include "support/failing_file_system.h"

namespace jotlet::test {
namespace {

constexpr std::string_view kNames = "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";

class ReportTest : public EngineTest {
protected:
    // The text that a request makes; "(failed)" when it makes none.
    std::string Make(const ReportRequest& request)
    {
        return GenerateReportFile(request, out, &outcome) == 1 ? ReadAll(out) : "(failed)";
    }
    std::string Export() { return Make(Request(ReportKind::Export)); }
    static std::string Row(const std::string& title) { return '"' + title + "\",\"\",\"3\",\"\"\r\n"; }

    ReportOutcome outcome;
};

struct Model {
    std::string text;
    std::size_t notes = 0;
    std::size_t withQuotes = 0;
};

// What a request must give, told as simply as can be.
Model Expected(const std::vector<NoteText>& notes, const ReportRequest& request)
{
    const bool isReport = request.kind == ReportKind::Report;
    const bool isRange = request.selection == ReportSelection::DateRange;
    const DateValue from = isRange ? request.fromDate : DateValue{1, 1, 2000};
    const DateValue to = isRange ? request.toDate : DateValue{31, 1, CalendarLastYear()};
    const auto day = [](const DateValue& date) {
        const bool is12 = GetClockFormat() == ClockFormat::Hours12;
        return std::to_string(is12 ? date.month : date.day) + '/' + std::to_string(is12 ? date.day : date.month) + '/' +
               std::to_string(date.year);
    };
    std::vector<NoteText> chosen;
    std::ranges::copy_if(notes, std::back_inserter(chosen), [&](const NoteText& note) {
        const std::string words = LowerAscii(note.title + '\n' + note.text);
        return DayNumberOf(note.date) >= DayNumberOf(from) && DayNumberOf(note.date) <= DayNumberOf(to) &&
               (!request.findEnabled || words.find(LowerAscii(request.findText)) != std::string::npos);
    });
    std::ranges::stable_sort(chosen, {}, [](const NoteText& note) { return DayNumberOf(note.date); });
    Model model;
    model.text = isReport ? "Jotlet Report (from " + day(from) + " to " + day(to) + ")\r\n\r\n" : std::string(kNames);
    model.notes = chosen.size();
    for (const NoteText& note : chosen) {
        const int colour = std::ranges::find(kPalette, note.colour, &PaletteColour::colour)->index;
        model.text += isReport ? "Date: " + day(note.date) + "\r\nCategory: " + note.category +
                                     "\r\nTitle: " + note.title + "\r\nNotes: " + note.text + "\r\n\r\n"
                               : '"' + note.title + "\",\"" + note.text + "\",\"" + std::to_string(colour) + "\",\"" +
                                     note.category + "\"\r\n";
        model.withQuotes += (note.title + note.text + note.category).find('"') != std::string::npos ? 1 : 0;
    }
    return model;
}

// Few notes are read one by one, many in one scan.
TEST_F(ReportTest, TheTextIsThatOfANaiveModel)
{
    std::mt19937 random(11);
    const std::vector<std::string> words = {"milk", "MILK", "a,b\r\nc", "say \"hi\"", "bread", " "};
    const auto pick = [&](int from, int to) { return from + static_cast<int>(random() % unsigned(to - from + 1)); };
    const auto date = [&] { return DateValue{pick(0, 31), pick(0, 13), pick(1999, 2021)}; };
    std::vector<NoteText> notes;
    for (const std::size_t count : {0, 1, 3, 40, 99, 100, 260}) {
        while (notes.size() < count) {
            notes.push_back({words[random() % 6] + std::to_string(count), words[random() % 6],
                             kPalette[random() % 5].colour, words[random() % 6],
                             random() % 3 ? date() : DateValue{pick(1, 4), 5, 2007}});
            Add(notes.back());
        }
        for (int i = 0; i < 16; ++i) {
            SetCalendarLastYear(i % 4 ? kCalendarDefaultLastYear : 2021);
            SetClockFormat(i % 3 ? ClockFormat::Hours24 : ClockFormat::Hours12);
            ReportRequest request = Request(i % 2 ? ReportKind::Report : ReportKind::Export);
            request.selection = i < 4 ? ReportSelection::All : ReportSelection::DateRange;
            request.fromDate = i < 10 ? DateValue{pick(1, 4), 5, 2007} : date();
            request.toDate = i < 10 ? DateValue{pick(1, 4), 5, 2007} : date();
            request.findEnabled = random() % 2;
            request.findText = words[random() % 5];
            if (DayNumberOf(request.fromDate) < 0 || DayNumberOf(request.toDate) < 0)
                continue;
            SCOPED_TRACE(count * 100 + i);
            const Model expected = Expected(notes, request);
            ASSERT_EQ(Make(request), expected.text);
            ASSERT_EQ(outcome.notes, expected.notes);
            ASSERT_EQ(outcome.withQuotes, expected.withQuotes);
        }
    }
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(ReportTest, TheCurrentNoteIsTakenWhateverItsDateAndTheTextAndSecretsAreTheOwners)
{
    NoteRecord old = Record({"old", "", kYellow, "", {1, 1, 1990}});
    Add(old);
    NoteRecord secret = Record({"secret"});
    secret.confidential = 1;
    Add(secret);
    Add({"open"});
    ReportRequest request = Request(ReportKind::Export);
    request.selection = ReportSelection::CurrentRecord;
    request.currentId = old.uniqueId;
    request.findEnabled = true;
    request.findText = "open";
    EXPECT_EQ(Make(request), kNames.data() + Row("old"));
    EXPECT_EQ(Export(), kNames.data() + Row("secret") + Row("open"));
    SetPasswords();
    Open("a");
    EXPECT_EQ(Export(), kNames.data() + Row("open"));
}

// A note that the drive refuses must not vanish from a file that replaces the last whole one.
TEST_F(ReportTest, WithAnyReadFailingTheTextIsWholeOrTheOldFileStays)
{
    for (const std::size_t count : {3, 120}) {
        AddMany(std::vector<NoteRecord>(count, Record({"note"})));
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
    const auto addresses = AddMany(std::vector<NoteRecord>(kMaxResults + 1, Record({"note"})));
    ReportRequest request = Request(ReportKind::Export);
    Make(request);
    EXPECT_TRUE(outcome.limitReached);
    EXPECT_EQ(outcome.notes, 10'000u);
    request.everyNote = true;
    Make(request);
    EXPECT_FALSE(outcome.limitReached);
    EXPECT_EQ(outcome.notes, 10'001u);
    ASSERT_EQ(table->DeleteRecord(addresses[5]), 1);
    request.everyNote = false;
    Make(request);
    EXPECT_FALSE(outcome.limitReached) << "exactly as many as there may be is all of them";
}

TEST_F(ReportTest, WhatCannotBeATargetSaysWhyAndLeavesNothingBehind)
{
    const std::pair<std::string, FileErrorKind> cases[] = {
        {"", FileErrorKind::Missing},
        {folder.Path(), FileErrorKind::NotRegularFile},
        {folder.File("missing/out.csv"), FileErrorKind::Missing},
        {"/dev/full", FileErrorKind::NoSpace},
        {path, FileErrorKind::Busy},  // a note file in use
    };
    for (const auto& [target, kind] : cases) {
        EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), target, &outcome), 0) << target;
        EXPECT_EQ(outcome.error.kind, kind) << target;
        EXPECT_EQ(folder.FileCount(), 1u);
    }
}

// The target is given by a link; what it leads to is replaced and keeps its mode.
TEST_F(ReportTest, WithAnyWriteFailingTheOldTargetStaysWhole)
{
    AddMany(std::vector<NoteRecord>(300, Record({"note", std::string(1500, 'x')})));
    WriteAll(out, "old");
    chmod(out.c_str(), 0640);
    const std::string link = folder.File("link.csv");
    std::filesystem::create_symlink(out, link);
    int failAt = 1;
    for (;; ++failAt) {
        SCOPED_TRACE(failAt);
        ASSERT_LT(failAt, 40) << "the text goes out in large pieces";
        FailingFileSystem files;
        files.failAt = failAt;
        const ScopedFileSystem use(files);
        const int made = GenerateReportFile(Request(ReportKind::Export), link, &outcome);
        EXPECT_EQ(folder.FileCount(), 3u);
        if (files.failedCall.empty() || files.failedCall == "sync folder") {
            EXPECT_EQ(made, 1);
            break;
        }
        ASSERT_EQ(made, 0) << "success in spite of a failed " << files.failedCall;
        EXPECT_EQ(ReadAll(out), "old");
        EXPECT_EQ(outcome.error.kind, FileErrorKind::NoSpace);
        EXPECT_EQ(outcome.error.path, out);
    }
    EXPECT_GT(failAt, 4);
    EXPECT_GT(ReadAll(out).size(), 300u * 1500u);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(std::filesystem::status(out).permissions(), std::filesystem::perms{0640});
}

TEST_F(ReportTest, APipeGetsTheTextAtOnceAndFailsWhenItsReaderGoesAway)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);  // as both programs do
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), pipe), 0) << "nobody reads: no waiting";

    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ReportTarget target(pipe);
    EXPECT_EQ(GenerateReportFile(Request(ReportKind::Export), pipe), 1);
    std::string received(kNames.size(), '\0');
    EXPECT_EQ(read(reader, received.data(), received.size()), static_cast<ssize_t>(received.size()));
    EXPECT_EQ(received, kNames);
    close(reader);
    target.Append("milk");
    EXPECT_FALSE(target.Finish());
    EXPECT_EQ(target.Error().systemError, EPIPE);
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace jotlet::test
