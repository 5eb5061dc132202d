#include "toolkit/marlin_cal_month.h"

#include <string>

#include "skin/drawing.h"
#include "skin/fonts.h"
#include "toolkit/drag_commands.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

constexpr int kColumns = 7;
constexpr int kRows = 6;
constexpr int kDayTimerId = 160;
constexpr Milliseconds kDayPeriod{10'000};

bool PreviousDay(DateValue& date)
{
    if (date.day > 1) {
        --date.day;
        return true;
    }
    if (!PreviousMonth(date.year, date.month, date.day))
        return false;
    date.day = DaysInMonth(date.year, date.month);
    return true;
}

// False where the calendar ends.
bool AddDays(DateValue& date, int days)
{
    for (; days > 0; --days) {
        if (!NextDay(date.year, date.month, date.day))
            return false;
    }
    for (; days < 0; ++days) {
        if (!PreviousDay(date))
            return false;
    }
    return true;
}

}  // namespace

std::optional<Rect> MonthDayRect(Size client, int year, int month, int day)
{
    const int firstColumn = DayOfWeek(year, month, 1);
    if (firstColumn < 0 || !IsValidDate(day, month, year))
        return std::nullopt;
    const int width = client.width / kColumns;
    const int height = client.height / kRows;
    const int cell = firstColumn + day - 1;
    return Rect::At(cell % kColumns * width, cell / kColumns * height, width, height);
}

MarlinCalMonth::MarlinCalMonth(int id, int year, int month, int day, Colour backColour, Colour selectColour,
                               Colour todayColour)
    : id(id),
      year(year),
      month(month),
      day(day),
      backColour(backColour),
      selectColour(selectColour),
      todayColour(todayColour)
{
}

void MarlinCalMonth::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinCalMonth";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::None;
}

MessageParam MarlinCalMonth::OnCreate(WndMessage&)
{
    StartTimer(window, kDayTimerId, kDayPeriod);
    return 0;
}

// Midnight comes without a click.
MessageParam MarlinCalMonth::OnTimer(WndMessage&)
{
    DateValue today;
    Today(today);
    if (today != shownToday)
        Invalidate(nullptr, 0);
    return 0;
}

void MarlinCalMonth::SetDate(int newYear, int newMonth, int newDay)
{
    if (newYear < kCalendarFirstYear || newYear > CalendarLastYear() || !IsValidMonth(newMonth))
        return;
    year = newYear;
    month = newMonth;
    day = DayNumber(newYear, newMonth, newDay) == -1 ? DaysInMonth(newYear, newMonth) : newDay;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
}

int MarlinCalMonth::GetDayRect(int ofYear, int ofMonth, int ofDay, Rect& rect) const
{
    const Rect client = GetClientArea();
    const auto cell = MonthDayRect({client.Width(), client.Height()}, ofYear, ofMonth, ofDay);
    if (!cell)
        return 0;
    rect = *cell;
    return 1;
}

int MarlinCalMonth::DayAt(Point p) const
{
    Rect cell;
    for (int d = 1; GetDayRect(year, month, d, cell); ++d) {
        if (cell.Contains(p))
            return d;
    }
    return 0;
}

void MarlinCalMonth::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.FillRect(GetClientArea(), backColour);
    Today(shownToday);
    Rect cell;
    for (int d = 1; GetDayRect(year, month, d, cell); ++d) {
        if (d == day) {
            dc.FillRect(cell, selectColour);
            dc.FrameRect(cell, 0);
            if (FocusedWindow() == window)
                dc.DrawFocusRect(cell.Inset(1, 1), 0);
        }
        dc.DrawText(cell, std::to_string(d), SmallFont(400), shownToday == DateValue{d, month, year} ? todayColour : 0,
                    kTextCentre | kTextVCentre | kTextSingleLine);
    }
}

MessageParam MarlinCalMonth::OnMouseMove(WndMessage& record)
{
    cursor = DayAt(MousePoint(record)) ? CursorId::Hand : CursorId::Arrow;
    SetCursorNow(cursor);
    return 0;
}

MessageParam MarlinCalMonth::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

MessageParam MarlinCalMonth::OnLButtonDown(WndMessage& record)
{
    FocusWindow(window);
    if (const int pressed = DayAt(MousePoint(record)))
        Pick({pressed, month, year});
    return 0;
}

void MarlinCalMonth::Pick(const DateValue& date)
{
    year = date.year;
    month = date.month;
    day = date.day;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
    DateValue told = date;
    SendCommand(id, reinterpret_cast<MessageParam>(&told));
}

MessageParam MarlinCalMonth::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    if (command < kDragOver || command > kDragCopyDrop || !IsMainWindowForeground())
        return 0;
    auto& p = *reinterpret_cast<Point*>(record.lParam);
    p = ScreenToClient(window, p);
    const int under = DayAt(p);
    if (!under)
        return 0;
    if (command != kDragOver && under != day) {
        DateValue told{under, month, year};
        SendCommand(id, reinterpret_cast<MessageParam>(&told), command);
    }
    return 1;
}

bool MarlinCalMonth::StepByKey(int key, DateValue& date) const
{
    switch (key) {
        case kKeyLeft:
            return AddDays(date, -1);
        case kKeyRight:
            return AddDays(date, 1);
        case kKeyUp:
            return AddDays(date, -kColumns);
        case kKeyDown:
            return AddDays(date, kColumns);
        case kKeyHome:
            date.day = 1;
            return date.day != day;
        case kKeyEnd:
            date.day = DaysInMonth(year, month);
            return date.day != day;
        case kKeyPageUp:
            return PreviousMonth(date.year, date.month, date.day);
        case kKeyPageDown:
            return NextMonth(date.year, date.month, date.day);
        case kKeySpace:
            return true;
        default:
            return false;
    }
}

MessageParam MarlinCalMonth::OnKeyDown(WndMessage& record)
{
    DateValue date = GetDate();
    if (!StepByKey(static_cast<int>(record.wParam), date))
        return DefaultHandler(record);
    Pick(date);
    return 0;
}

void MarlinCalMonth::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinCalMonth::CollectTabStops(TabStops& stops)
{
    stops.push_back(this);
}

void MarlinCalMonth::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Calendar;
    FormatDate(description.name, day, month, year);
    const bool focused = FocusedWindow() == window;
    Rect cell;
    for (int d = 1; GetDayRect(year, month, d, cell); ++d) {
        std::string name;
        FormatDate(name, d, month, year);
        description.parts.push_back({AccessibleRole::Day, name, cell, d == day, focused && d == day, true});
    }
}

}  // namespace jotlet
