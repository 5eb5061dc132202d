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

TEST(MonthDayRectTest, DaysStandUnderTheirWeekday)
{
    const Size client{105, 84};  // columns of 15, rows of 14
    EXPECT_EQ(MonthDayRect(client, 2000, 3, 1), (Rect{45, 0, 60, 14})) << "a Wednesday";
    EXPECT_EQ(MonthDayRect(client, 2000, 3, 5), (Rect{0, 14, 15, 28})) << "the first Sunday";
    EXPECT_EQ(MonthDayRect(client, 2000, 7, 31), (Rect{15, 70, 30, 84})) << "begins on a Saturday: sixth row";
    EXPECT_EQ(MonthDayRect({110, 89}, 2000, 3, 1), (Rect{45, 0, 60, 14})) << "what does not divide is left over";
    EXPECT_TRUE(MonthDayRect(client, 2000, 2, 29).has_value());
    EXPECT_FALSE(MonthDayRect(client, 2001, 2, 29).has_value());
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
    void Choose(WindowHandle menu, MenuAnswer answer)
    {
        const ScopedMenuAnswer scoped(answer);
        TestClick(menu, {4, 7});
    }
    WindowHandle YearMenu() { return ChildAt({5, 5}); }
    WindowHandle MonthMenu() { return ChildAt({60, 5}); }

    Host host;
    std::unique_ptr<MarliMiniCalendar> calendar;
    std::vector<Picked> picked;
};

TEST_F(CalendarTest, AClickOnADayIsToldEvenWhenItWasSelected)
{
    Show(5, 3, 2000);
    TestClick(calendar->Grid().window, Day(17));
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {17, 3, 2000}}));
    TestClick(calendar->Grid().window, Day(17));
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {17, 3, 2000}}));
    UpdateNow(calendar->Grid().window);
    Rect cell;
    calendar->Grid().GetDayRect(2000, 3, 17, cell);
    EXPECT_EQ(PixelAt(calendar->Grid().window, {cell.left + 1, cell.top + 1}), 0xB2E2E1u);
}

TEST_F(CalendarTest, TodayIsToldOnlyFromAnotherDay)
{
    SetCalendarLastYear(kCalendarMaxLastYear);
    DateValue today;
    Today(today);
    Show(1, 1, 2000);
    TestClick(ChildAt({53, 120}), {3, 3});
    EXPECT_THAT(Take(), ElementsAre(Picked{0, today}));
    TestClick(ChildAt({53, 120}), {3, 3});
    EXPECT_THAT(Take(), IsEmpty());
    SetCalendarLastYear(kCalendarDefaultLastYear);
}

TEST_F(CalendarTest, AYearWithoutTheDayTakesTheMonthsLast)
{
    Show(29, 2, 2000);
    Choose(YearMenu(), [](const std::vector<MenuEntry>&) { return std::optional<std::size_t>(1); });
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {28, 2, 2001}}));
    Choose(MonthMenu(), [](const std::vector<MenuEntry>&) { return std::optional<std::size_t>(11); });
    EXPECT_THAT(Take(), ElementsAre(Picked{0, {28, 12, 2001}}));
}

TEST_F(CalendarTest, TheYearMenuGoesToTheLastYear)
{
    static std::vector<MenuEntry> shown;
    const MenuAnswer look = [](const std::vector<MenuEntry>& entries) {
        shown = entries;
        return std::optional<std::size_t>();
    };
    Show(1, 1, 2005);
    Choose(YearMenu(), look);
    ASSERT_EQ(shown.size(), 21u);
    EXPECT_EQ(shown.front().text, "2000");
    EXPECT_EQ(shown.back().text, "2020");
    EXPECT_TRUE(shown[5].checked);
    SetCalendarLastYear(kCalendarMaxLastYear);
    Show(1, 1, 2005);
    Choose(YearMenu(), look);
    ASSERT_EQ(shown.size(), 100u);
    EXPECT_EQ(shown.back().text, "2099");
    SetCalendarLastYear(kCalendarDefaultLastYear);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(CalendarTest, SetDateTellsNobodyAndRefusesOtherYears)
{
    Show(1, 1, 2005);
    calendar->SetDate(2006, 2, 30);
    EXPECT_EQ(calendar->GetDate(), (DateValue{28, 2, 2006}));
    calendar->SetDate(CalendarLastYear() + 1, 1, 1);
    calendar->SetDate(1999, 12, 31);
    calendar->SetDate(2006, 13, 1);
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

class CalendarDropTest : public CalendarTest {
protected:
    CalendarDropTest()
    {
        Show(5, 3, 2000);
        SetMainWindow(host.window);
        BringToForeground(host.window);
        ServeUntil([this] { return IsForeground(host.window); }, std::chrono::milliseconds(500));
    }
    ~CalendarDropTest() override { SetMainWindow(0); }
    MessageParam Drag(int command, Point inGrid)
    {
        place = ClientToScreen(calendar->Grid().window, inGrid);
        return SendTo(calendar->Grid().window, kWmCommand, command, reinterpret_cast<MessageParam>(&place));
    }
    Point place;
};

TEST_F(CalendarDropTest, ADayTakesADropAndTellsItWithoutSelecting)
{
    EXPECT_EQ(Drag(kDragOver, Day(9)), 1);
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(Drag(kDragMoveDrop, Day(9)), 1);
    EXPECT_THAT(Take(), ElementsAre(Picked{kDragMoveDrop, {9, 3, 2000}}));
    EXPECT_EQ(calendar->Grid().GetDate(), (DateValue{5, 3, 2000}));
    EXPECT_EQ(calendar->GetDate(), (DateValue{5, 3, 2000})) << "or the Today button would take a drop for a choice";
    EXPECT_EQ(Drag(kDragCopyDrop, Day(10)), 1);
    EXPECT_THAT(Take(), ElementsAre(Picked{kDragCopyDrop, {10, 3, 2000}}));
}

TEST_F(CalendarDropTest, TheSelectedDayTakesADropAndDoesNothing)
{
    EXPECT_EQ(Drag(kDragOver, Day(5)), 1);
    EXPECT_EQ(Drag(kDragMoveDrop, Day(5)), 1);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(CalendarDropTest, OffTheDaysOrWithAnotherProgramInFrontItIsRefused)
{
    EXPECT_EQ(Drag(kDragOver, {2, 2}), 0) << "before the first day";
    EXPECT_EQ(Drag(kDragMoveDrop, {2, 2}), 0);
    SetMainWindow(0);
    EXPECT_EQ(Drag(kDragOver, Day(9)), 0);
    EXPECT_THAT(Take(), IsEmpty());
}

}  // namespace
}  // namespace jotlet
