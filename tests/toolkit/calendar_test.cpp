#include "platform/desktop/menu.h"
#include "toolkit/drag_commands.h"
#include "toolkit/main_window.h"
#include "toolkit/marli_mini_calendar.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A picked date as the parent gets it: code and date, copied while the message is handled.
struct Picked {
    int code;
    DateValue date;
    bool operator==(const Picked&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Picked& p)
{
    return out << "code " << p.code << ' ' << p.date.day << '.' << p.date.month << '.' << p.date.year;
}

// Every month of the calendar against a sheet that is filled day by day.
TEST(MonthDayRectTest, DaysStandUnderTheirWeekday)
{
    const Size client{110, 89};  // columns of 15, rows of 14; what does not divide is left over
    int weekday = 6;             // 1 January 2000, a Saturday
    for (int year = 2000; year <= CalendarLastYear(); ++year) {
        for (int month = 1; month <= 12; ++month) {
            int row = 0;
            for (int day = 1; day <= DaysInMonth(year, month); ++day) {
                ASSERT_EQ(MonthDayRect(client, year, month, day), Rect::At(weekday * 15, row * 14, 15, 14))
                    << day << '.' << month << '.' << year;
                row += weekday == 6 ? 1 : 0;
                weekday = (weekday + 1) % 7;
            }
            ASSERT_FALSE(MonthDayRect(client, year, month, DaysInMonth(year, month) + 1).has_value());
        }
    }
    EXPECT_FALSE(MonthDayRect(client, 2000, 13, 1).has_value());
    EXPECT_FALSE(MonthDayRect(client, 2000, 3, 0).has_value());
}

class CalendarTest : public WindowTest {
protected:
    void Show(int day, int month, int year)
    {
        calendar = std::make_unique<MarliMiniCalendar>(100, day, month, year, 0xC0FFFF, 0xB2E2E1, 0x0000FF, 0x0000D4,
                                                       0xFFFFFF);
        host.onCommand = nullptr;
        host.Hold(*calendar, Rect::At(20, 20, 106, 130));
        picked.clear();
        host.onCommand = [this](WndMessage& record) {
            if (LowWord(record.wParam) == 100)
                picked.push_back({HighWord(record.wParam), *reinterpret_cast<DateValue*>(record.lParam)});
        };
    }
    std::vector<Picked> Take()
    {
        ServeEvents();
        return std::exchange(picked, {});
    }
    Point Day(int day)
    {
        const DateValue date = calendar->GetDate();
        Rect cell;
        EXPECT_EQ(calendar->Grid().GetDayRect(date.year, date.month, day, cell), 1);
        return MiddleOf(cell);
    }
    // The child at a point of the calendar.
    WindowHandle ChildAt(Point p) { return WindowFromScreenPoint(ClientToScreen(calendar->window, p)); }
    void Previous() { TestClick(ChildAt({5, 120}), {3, 3}); }
    void Next() { TestClick(ChildAt({101, 120}), {3, 3}); }
    // Opens a menu at a point, chooses its nth entry, and gives all that were shown.
    std::vector<MenuEntry> Choose(Point menu, std::optional<std::size_t> nth)
    {
        static std::vector<MenuEntry> shown;
        static std::optional<std::size_t> wanted;
        wanted = nth;
        const ScopedMenuAnswer scoped([](const std::vector<MenuEntry>& entries) {
            shown = entries;
            return wanted;
        });
        TestClick(ChildAt(menu), {4, 7});
        return shown;
    }
    static constexpr Point kYears{5, 5};
    static constexpr Point kMonths{60, 5};

    Host host;
    std::unique_ptr<MarliMiniCalendar> calendar;
    std::vector<Picked> picked;
};

TEST_F(CalendarTest, AClickOnADayIsToldEvenWhenItWasSelected)
{
    Show(5, 3, 2000);
    for (int i = 0; i < 2; ++i) {
        TestClick(calendar->Grid().window, Day(17));
        EXPECT_THAT(Take(), ElementsAre(Picked{0, {17, 3, 2000}}));
    }
    UpdateNow(calendar->Grid().window);
    Rect cell;
    calendar->Grid().GetDayRect(2000, 3, 17, cell);
    EXPECT_EQ(PixelAt(calendar->Grid().window, {cell.left + 2, cell.top + 2}), 0xB2E2E1u);
    EXPECT_EQ(PixelAt(calendar->Grid().window, {cell.left, cell.top}), 0u);
    EXPECT_EQ(PixelAt(calendar->Grid().window, {cell.left - 1, cell.top + 1}), 0xC0FFFFu);
    const auto ink = PixelsWhere(calendar->Grid(), [](Colour c) { return c != 0xC0FFFF && c != 0xB2E2E1; });
    for (int day = 1; day <= 31; ++day) {
        calendar->Grid().GetDayRect(2000, 3, day, cell);
        EXPECT_TRUE(std::ranges::any_of(ink, [&](Point p) { return cell.Contains(p); })) << day;
    }
    EXPECT_EQ(ChildAt({34, 5}), ChildAt(kYears));
    EXPECT_EQ(ChildAt({35, 5}), ChildAt(kMonths));
    const AccessibleDescription heard = DescriptionOf(calendar->Grid());
    ASSERT_EQ(heard.parts.size(), 31u);
    EXPECT_EQ(heard.parts[16].name, heard.name);
    EXPECT_EQ(std::ranges::count(heard.parts, true, &AccessiblePart::selected), heard.parts[16].selected);
    const auto red = PixelsWhere(*calendar, [](Colour c) { return (c & 0xFF) > (c >> 8 & 0xFF) + 80; });
    EXPECT_FALSE(red.empty()) << "the letter of Sunday";
    for (const Point p : red)
        EXPECT_TRUE((Rect{0, 15, 15, 29}.Contains(p)));
}

TEST_F(CalendarTest, TodayIsToldOnlyFromAnotherDayAndSeenByItsColour)
{
    SetCalendarLastYear(kCalendarMaxLastYear);
    DateValue today;
    Today(today);
    Show(1, 1, 2000);
    const auto red = [&] { return PixelsWhere(calendar->Grid(), [](Colour c) { return c == 0x0000FF; }).size(); };
    EXPECT_EQ(red(), 0u);
    TestClick(ChildAt({53, 120}), {3, 3});
    EXPECT_THAT(Take(), ElementsAre(Picked{0, today}));
    EXPECT_GT(red(), 3u);
    TestClick(ChildAt({53, 120}), {3, 3});
    EXPECT_THAT(Take(), IsEmpty());
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(CalendarTest, AYearWithoutTheDayTakesTheMonthsLastAndTheYearsGoToTheLast)
{
    Show(29, 2, 2000);
    const std::vector<MenuEntry> years = Choose(kYears, 1);
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {28, 2, 2001}}));
    ASSERT_EQ(years.size(), 21u);
    EXPECT_EQ(years.back().text, "2020");
    for (int i = 0; i < 21; ++i)
        EXPECT_EQ(years[static_cast<std::size_t>(i)].checked, i == 0) << "the year that is shown";
    EXPECT_TRUE(Choose(kMonths, 11)[1].checked);
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {28, 12, 2001}}));
    SetCalendarLastYear(kCalendarMaxLastYear);
    Show(1, 1, 2005);
    EXPECT_EQ(Choose(kYears, {}).size(), 100u);
    SetCalendarLastYear(kCalendarDefaultLastYear);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(CalendarTest, SetDateTellsNobodyAndRefusesOtherYears)
{
    Show(1, 1, 2005);
    calendar->SetDate(2006, 2, 30);
    for (const DateValue& outside : {DateValue{1, 1, CalendarLastYear() + 1}, {31, 12, 1999}, {1, 13, 2006}})
        calendar->SetDate(outside.year, outside.month, outside.day);
    EXPECT_EQ(calendar->GetDate(), (DateValue{28, 2, 2006}));
    EXPECT_EQ(calendar->Grid().GetDate(), (DateValue{28, 2, 2006}));
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(CalendarTest, KeysAndButtonsWalkTheDaysAndStopAtTheCalendarsEnds)
{
    const int last = CalendarLastYear();
    const struct {
        int key;  // 0 and 1: the buttons
        DateValue from, to;
    } rows[] = {
        {kKeyLeft, {1, 3, 2000}, {29, 2, 2000}},
        {kKeyDown, {29, 2, 2000}, {7, 3, 2000}},
        {kKeyUp, {7, 3, 2000}, {29, 2, 2000}},
        {kKeyHome, {29, 2, 2000}, {1, 2, 2000}},
        {kKeyEnd, {1, 2, 2000}, {29, 2, 2000}},
        {kKeyPageUp, {29, 2, 2000}, {29, 1, 2000}},
        {kKeyPageDown, {31, 1, 2000}, {29, 2, 2000}},
        {kKeyUp, {3, 1, 2000}, {3, 1, 2000}},
        {kKeyPageUp, {3, 1, 2000}, {3, 1, 2000}},
        {kKeyPageDown, {10, 12, last}, {10, 12, last}},
        {kKeyRight, {31, 12, last}, {31, 12, last}},
        {0, {10, 1, 2000}, {10, 1, 2000}},
        {1, {10, 12, last}, {10, 12, last}},
        {1, {31, 1, 2000}, {29, 2, 2000}},
        {1, {29, 2, 2000}, {29, 3, 2000}},
        {0, {29, 3, 2000}, {29, 2, 2000}},
    };
    for (const auto& [key, from, to] : rows) {
        Show(from.day, from.month, from.year);
        if (key > 1)
            TestKey(calendar->Grid().window, key);
        else
            key ? Next() : Previous();
        EXPECT_EQ(calendar->GetDate(), to) << "key " << key;
        EXPECT_EQ(Take(), std::vector<Picked>(from == to ? 0 : 1, {0, to})) << "key " << key;
    }
}

TEST_F(CalendarTest, AScreenReaderFindsTheDaysAndTheSelectedOne)
{
    Show(5, 3, 2000);
    const AccessibleDescription heard = DescriptionOf(calendar->Grid());
    EXPECT_EQ(heard.role, AccessibleRole::Calendar);
    ASSERT_EQ(heard.parts.size(), 31u);
    std::string date;
    FormatDate(date, 5, 3, 2000);
    EXPECT_EQ(heard.parts[4].name, date);
    EXPECT_EQ(std::ranges::count(heard.parts, true, &AccessiblePart::selected), heard.parts[4].selected);
}

TEST_F(CalendarTest, ADayTakesADropAndTellsItWithoutSelecting)
{
    Show(5, 3, 2000);
    SetMainWindow(host.window);
    BringToForeground(host.window);
    ServeUntil([this] { return IsForeground(host.window); }, std::chrono::milliseconds(500));
    const struct {
        int command;
        Point at;
        MessageParam taken;
        std::vector<Picked> told;
    } rows[] = {
        {kDragOver, Day(9), 1, {}},
        {kDragMoveDrop, Day(9), 1, {{kDragMoveDrop, {9, 3, 2000}}}},
        {kDragCopyDrop, Day(10), 1, {{kDragCopyDrop, {10, 3, 2000}}}},
        {kDragMoveDrop, Day(5), 1, {}},  // the selected day
        {kDragOver, {2, 2}, 0, {}},      // before the first day
        {kDragMoveDrop, {2, 2}, 0, {}},
        {kDragCopyDrop + 1, Day(9), 0, {}},
        {kDragMoveDrop, Day(9), 0, {}},  // with another program in front
    };
    for (const auto& row : rows) {
        if (&row == std::end(rows) - 1)
            SetMainWindow(0);
        Point place = ClientToScreen(calendar->Grid().window, row.at);
        EXPECT_EQ(SendTo(calendar->Grid().window, kWmCommand, row.command, reinterpret_cast<MessageParam>(&place)),
                  row.taken);
        EXPECT_EQ(Take(), row.told);
    }
    EXPECT_EQ(calendar->Grid().GetDate(), (DateValue{5, 3, 2000}));
    EXPECT_EQ(calendar->GetDate(), (DateValue{5, 3, 2000})) << "or the Today button would take a drop for a choice";
}

}  // namespace
}  // namespace jotlet
