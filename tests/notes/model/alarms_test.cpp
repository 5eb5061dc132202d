// Which alarm is due, by clock and file alone; and who gets it when several copies ask.

#include "notes/model/alarms.h"

#include <map>
#include <memory>

#include "notes/model/note_file.h"
#include "platform/base/calendar.h"
#include "platform/base/clock.h"
#include "platform/base/text.h"
#include "store/open_table.h"
#include "store/passwords.h"
#include "store/refresh_switch.h"
#include "support/forked_process.h"
#include "support/temp_folder.h"

namespace jotlet {
namespace {

using namespace std::chrono_literals;
using test::ForkedProcess;
using test::Line;

constexpr LocalTime At(int day, int month, int year, int hour = 12, int minute = 0)
{
    return {.year = year, .month = month, .day = day, .hour = hour, .minute = minute};
}

struct WantedAlarm {
    std::string title;
    LocalTime moment;
    std::uint8_t state = kAlarmSet;
    bool confidential = false;
};

class AlarmsDue : public testing::Test {
protected:
    AlarmsDue()
    {
        SetCalendarLastYear(kCalendarDefaultLastYear);
        CreateNoteFile(path, WithExamples::No);
    }
    ~AlarmsDue() override
    {
        file.reset();
        SetCalendarLastYear(kCalendarDefaultLastYear);
        ResumeRefresh();
    }

    RecordAddress Add(const WantedAlarm& wanted)
    {
        TableFile other(path, ownerPassword);
        NoteRecord note;
        InitNoteRecord(other, note);
        StoreText(note.title, wanted.title);
        note.alarmState = wanted.state;
        note.confidential = wanted.confidential ? 1 : 0;
        const LocalTime& m = wanted.moment;
        note.alarmDate = DateValue{m.day, m.month, m.year};
        note.alarmTime = TimeValue{m.hour % 12, m.minute, 0, m.hour < 12 ? kBeforeNoon : kAfterNoon};
        RecordAddress address = 0;
        EXPECT_EQ(other.AddRecord(BytesOf(note), &address), 1);
        return address;
    }
    TableFile& File()
    {
        if (!file)
            file = std::make_unique<TableFile>(path, ownerPassword);
        return *file;
    }
    // Title of the alarm that one check gives, "" for none. It stays waiting.
    std::string DueAt(const LocalTime& moment)
    {
        const AlarmCheck check = FindDueAlarm(File(), ManualClock(moment));
        if (!check.due)
            return "";
        return std::string(FieldText(check.due->note.title));
    }
    // The same, and marked as fired.
    std::string FireAt(const LocalTime& moment)
    {
        AlarmCheck check = FindDueAlarm(File(), ManualClock(moment));
        if (!check.due)
            return "";
        EXPECT_TRUE(MarkAlarmFired(*check.due));
        return std::string(FieldText(check.due->note.title));
    }
    NoteRecord Stored(RecordAddress address)
    {
        NoteRecord note;
        EXPECT_EQ(File().ReadRecord(BytesOf(note), address), 1);
        return note;
    }

    test::TempFolder folder;
    const std::string path = folder.File("notes.jot");
    std::string ownerPassword;
    std::unique_ptr<TableFile> file;
};

TEST_F(AlarmsDue, AnAlarmComesWithTheFirstCheckAtItsMomentAndNotBefore)
{
    Add({.title = "ten", .moment = At(5, 3, 2010, 10, 0)});
    for (const auto& [moment, due] : {std::pair{At(4, 3, 2010, 23, 59), ""},
                                      {At(5, 3, 2010, 0, 0), ""},
                                      {At(5, 3, 2010, 9, 59), ""},
                                      {At(5, 3, 2010, 10, 0), "ten"},
                                      {At(5, 3, 2010, 10, 4), "ten"},
                                      {At(5, 3, 2010, 22, 0), "ten"},
                                      {At(6, 3, 2010, 0, 0), "ten"},
                                      {At(1, 1, 2020, 0, 0), "ten"}})
        EXPECT_EQ(DueAt(moment), due) << moment.day << " " << moment.hour << ":" << moment.minute;
}

TEST_F(AlarmsDue, NoonAndMidnightStandWhereTheDayHasThem)
{
    Add({.title = "noon", .moment = At(5, 3, 2010, 12, 0)});
    EXPECT_EQ(DueAt(At(5, 3, 2010, 11, 59)), "");
    EXPECT_EQ(FireAt(At(5, 3, 2010, 12, 0)), "noon");
    Add({.title = "midnight", .moment = At(5, 3, 2010, 0, 0)});
    EXPECT_EQ(DueAt(At(4, 3, 2010, 23, 59)), "");
    EXPECT_EQ(DueAt(At(5, 3, 2010, 0, 0)), "midnight");
}

TEST_F(AlarmsDue, SeveralComeOneACheckTheEarliestDayFirst)
{
    Add({.title = "third", .moment = At(9, 3, 2010)});
    Add({.title = "first", .moment = At(31, 12, 2009)});
    Add({.title = "tomorrow", .moment = At(11, 3, 2010)});
    Add({.title = "second", .moment = At(1, 2, 2010)});
    const LocalTime now = At(10, 3, 2010);
    EXPECT_EQ(FireAt(now), "first");
    EXPECT_EQ(FireAt(now), "second");
    EXPECT_EQ(FireAt(now), "third");
    EXPECT_EQ(FireAt(now), "");
    EXPECT_EQ(FireAt(At(11, 3, 2010)), "tomorrow");
}

TEST_F(AlarmsDue, OnlyAWaitingAlarmCounts)
{
    const LocalTime past = At(1, 1, 2005);
    Add({.title = "none", .moment = past, .state = kAlarmNone});
    Add({.title = "spent", .moment = past, .state = kAlarmFired});
    const ManualClock clock(At(1, 1, 2010));
    EXPECT_FALSE(FindDueAlarm(File(), clock).anyWaiting);

    const auto deleted = Add({.title = "deleted", .moment = past});
    File().DeleteRecord(deleted);
    EXPECT_FALSE(FindDueAlarm(File(), clock).anyWaiting);

    Add({.title = "future", .moment = At(2, 1, 2010)});
    const AlarmCheck check = FindDueAlarm(File(), clock);
    EXPECT_TRUE(check.anyWaiting);
    EXPECT_FALSE(check.due);
}

TEST_F(AlarmsDue, AFiredAlarmIsSpentUnlockedAndOtherwiseUnchanged)
{
    const auto address = Add({.title = "milk", .moment = At(1, 1, 2010, 9, 30)});
    NoteRecord before = Stored(address);
    EXPECT_EQ(FireAt(At(1, 1, 2010)), "milk");
    EXPECT_EQ(FireAt(At(1, 1, 2010)), "");
    before.alarmState = kAlarmFired;
    const NoteRecord after = Stored(address);
    EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0);
    EXPECT_EQ(after.locked, 0);
    EXPECT_TRUE(IsRefreshEnabled());
}

TEST_F(AlarmsDue, AnAlarmLeftWithoutAnAnswerComesAgain)
{
    const auto address = Add({.title = "milk", .moment = At(1, 1, 2010)});
    EXPECT_EQ(DueAt(At(1, 1, 2010)), "milk");
    EXPECT_EQ(Stored(address).locked, 0);
    EXPECT_EQ(DueAt(At(1, 1, 2010)), "milk");
}

TEST_F(AlarmsDue, ANoteThatSomebodyHoldsIsPassedOverUntilItIsFree)
{
    const auto held = Add({.title = "held", .moment = At(1, 1, 2010)});
    Add({.title = "free", .moment = At(2, 1, 2010)});
    TableFile other(path, "");
    ASSERT_EQ(other.LockRecord(held), 1);
    EXPECT_EQ(FireAt(At(3, 1, 2010)), "free");
    EXPECT_EQ(FireAt(At(3, 1, 2010)), "");
    other.UnlockRecord(held);
    EXPECT_EQ(FireAt(At(3, 1, 2010)), "held");
}

TEST_F(AlarmsDue, AConfidentialAlarmIsTheOwnersAlone)
{
    Add({.title = "secret", .moment = At(1, 1, 2010), .confidential = true});
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    for (const char* password : {"help", "look"}) {
        TableFile guest(path, password);
        EXPECT_FALSE(FindDueAlarm(guest, ManualClock(At(2, 1, 2010))).anyWaiting) << password;
    }
    ownerPassword = "boss";
    EXPECT_EQ(FireAt(At(2, 1, 2010)), "secret");
}

TEST_F(AlarmsDue, AReaderCannotMarkItSoItStaysForTheOthers)
{
    Add({.title = "milk", .moment = At(1, 1, 2010)});
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    {
        TableFile reader(path, "look");
        AlarmCheck check = FindDueAlarm(reader, ManualClock(At(2, 1, 2010)));
        ASSERT_TRUE(check.due);
        EXPECT_EQ(MarkAlarmFired(*check.due).state, SaveState::Refused);
    }
    ownerPassword = "help";
    EXPECT_EQ(FireAt(At(2, 1, 2010)), "milk");
}

TEST_F(AlarmsDue, WithTheCalendarTo2099TodaysAlarmsWorkAsPeopleExpect)
{
    SetCalendarLastYear(2099);
    Add({.title = "future", .moment = At(31, 12, 2099, 23, 55)});
    Add({.title = "today", .moment = At(22, 11, 2026, 15, 0)});
    Add({.title = "last year", .moment = At(22, 11, 2025, 23, 0)});
    EXPECT_EQ(FireAt(At(22, 11, 2026, 14, 59)), "last year");
    EXPECT_EQ(FireAt(At(22, 11, 2026, 14, 59)), "");
    EXPECT_EQ(FireAt(At(22, 11, 2026, 15, 0)), "today");
    EXPECT_EQ(DueAt(At(31, 12, 2099, 23, 54)), "");
    EXPECT_EQ(DueAt(At(31, 12, 2099, 23, 55)), "future");
}

TEST_F(AlarmsDue, WithTheCalendarTo2020AClockInsideItKnowsNoEarlyAlarm)
{
    Add({.title = "last day", .moment = At(31, 12, 2020, 23, 55)});
    EXPECT_EQ(DueAt(At(31, 12, 2020, 23, 54)), "");
    EXPECT_EQ(DueAt(At(31, 12, 2020, 23, 55)), "last day");
}

TEST_F(AlarmsDue, ADateOutsideTheCalendarIsDueAtOnceWhileTheClockIsInside)
{
    for (const LocalTime& moment : {At(1, 1, 2021), At(31, 12, 1999), At(31, 2, 2015)}) {
        Add({.title = "outside", .moment = moment});
        EXPECT_EQ(FireAt(At(1, 1, 2010)), "outside") << moment.year;
    }
}

TEST_F(AlarmsDue, AFileThatIsNotOpenHasNone)
{
    Add({.title = "due", .moment = At(1, 1, 2010)});
    File().Close();
    TableFile missing(folder.File("missing.jot"), "");
    for (TableFile* closed : {&File(), &missing}) {
        const AlarmCheck check = FindDueAlarm(*closed, ManualClock(At(2, 1, 2010)));
        EXPECT_FALSE(check.anyWaiting);
        EXPECT_FALSE(check.due);
    }
}

TEST_F(AlarmsDue, AClockPastTheCalendarFiresNoDateOfItAndTheOthersByTheirTime)
{
    Add({.title = "inside", .moment = At(1, 1, 2010)});
    EXPECT_EQ(DueAt(At(22, 11, 2026, 23, 55)), "");
    Add({.title = "outside", .moment = At(1, 1, 2027, 15, 0)});
    EXPECT_EQ(DueAt(At(22, 11, 2026, 14, 59)), "");
    EXPECT_EQ(DueAt(At(22, 11, 2026, 15, 0)), "outside");
}

TEST_F(AlarmsDue, ADamagedMomentHarmsNothing)
{
    const auto address = Add({.title = "odd", .moment = At(1, 1, 2010)});
    NoteRecord note = Stored(address);
    note.alarmTime = TimeValue{-5, 1 << 30, 0, 77};
    note.alarmDate = DateValue{1, 1, 2011};
    ASSERT_EQ(File().WriteRecord(BytesOf(note), address), 1);
    EXPECT_EQ(DueAt(At(31, 12, 2010)), "");
    EXPECT_EQ(DueAt(At(1, 1, 2011, 0, 0)), "odd");
}

// One copy of the program: at each "tick" it makes one check, shows nothing for as long as the other needs, and tells
// which alarm it had.
int CopyOfTheProgram(const std::string& path, const LocalTime& now, Line& line)
{
    TableFile file(path, "");
    const ManualClock clock(now);
    line.Say("ready");
    while (line.Hear() == "tick") {
        AlarmCheck check = FindDueAlarm(file, clock);
        if (check.due && !MarkAlarmFired(*check.due))
            return 2;
        line.Say(check.due ? std::string(FieldText(check.due->note.title)) : "-");
    }
    return 0;
}

TEST_F(AlarmsDue, TwoProcessesWithTenDueAlarmsFireEachOnceAndOneATick)
{
    constexpr int kAlarms = 10;
    for (int i = 0; i < kAlarms; ++i)
        Add({.title = "alarm " + std::to_string(i), .moment = At(1 + i % 2, 1, 2010)});
    const auto work = [this](Line& line) { return CopyOfTheProgram(path, At(1, 2, 2010), line); };
    std::array<std::unique_ptr<ForkedProcess>, 2> copies;
    for (auto& copy : copies) {
        copy = std::make_unique<ForkedProcess>(work);
        ASSERT_EQ(copy->Talk().Hear(), "ready");
    }
    std::map<std::string, int> fired;
    std::array<int, 2> had{};
    for (int tick = 0; tick < kAlarms + 2; ++tick) {
        for (auto& copy : copies)
            copy->Talk().Say("tick");
        for (std::size_t i = 0; i < copies.size(); ++i) {
            const std::string title = copies[i]->Talk().Hear();
            ASSERT_FALSE(title.empty());
            if (title == "-")
                continue;
            ++fired[title];
            ++had[i];
        }
    }
    for (auto& copy : copies) {
        copy->Talk().Say("end");
        EXPECT_EQ(copy->Wait(), 0);
    }
    EXPECT_EQ(fired.size(), kAlarms);
    for (const auto& [title, times] : fired)
        EXPECT_EQ(times, 1) << title;
    EXPECT_EQ(had[0] + had[1], kAlarms);
    EXPECT_EQ(FireAt(At(1, 2, 2010)), "");
}

TEST_F(AlarmsDue, AnAlarmOnViewInOneProcessIsPassedOverByTheOther)
{
    Add({.title = "shown", .moment = At(1, 1, 2010)});
    ForkedProcess other([this](Line& line) {
        TableFile theirs(path, "");
        AlarmCheck check = FindDueAlarm(theirs, ManualClock(At(1, 2, 2010)));
        line.Say(check.due ? "shown" : "-");
        line.Hear();
        return check.due && MarkAlarmFired(*check.due) ? 0 : 1;
    });
    ASSERT_EQ(other.Talk().Hear(), "shown");
    const AlarmCheck check = FindDueAlarm(File(), ManualClock(At(1, 2, 2010)));
    EXPECT_TRUE(check.anyWaiting);
    EXPECT_FALSE(check.due);
    other.Talk().Say("ok");
    EXPECT_EQ(other.Wait(), 0);
    EXPECT_EQ(FireAt(At(1, 2, 2010)), "");
}

TEST_F(AlarmsDue, ACopyKilledWithItsAlarmOnViewLeavesTheNoteRepairableAndTheAlarmComesAgain)
{
    const auto address = Add({.title = "milk", .moment = At(1, 1, 2010)});
    {
        ForkedProcess victim([this](Line& line) {
            OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
            const AlarmCheck check = FindDueAlarm(*opened.table, ManualClock(At(1, 2, 2010)));
            line.Say(check.due ? "shown" : "-");
            line.Hear();
            return 0;
        });
        ASSERT_EQ(victim.Talk().Hear(), "shown");
        victim.Kill();
    }
    {
        const TableFile unrepaired(path, "");
        NoteRecord note;
        ASSERT_EQ(unrepaired.ReadRecord(BytesOf(note), address), 1);
        ASSERT_EQ(note.locked, 1) << "the kill came while the note was held";
        ASSERT_EQ(note.alarmState, kAlarmSet);
    }
    OpenedTable repaired = OpenTable(path, "", kNoteRecordSize);
    ASSERT_TRUE(repaired);
    file = std::move(repaired.table);
    EXPECT_EQ(FireAt(At(1, 2, 2010)), "milk");
    EXPECT_EQ(FireAt(At(1, 2, 2010)), "");
}

}  // namespace
}  // namespace jotlet
