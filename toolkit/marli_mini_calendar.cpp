#include "toolkit/marli_mini_calendar.h"

#include <string>

#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr int kMenuHeight = 15;
constexpr int kHeadHeight = 29;
constexpr int kFootHeight = 20;
constexpr int kGridLoss = 45;  // head and foot, as the grid sees them
constexpr int kButtonSize = 10;
constexpr int kButtonRise = 14;
constexpr int kWeekdays = 7;
constexpr Colour kSundayColour = 0x0000FF;

// What a posted notification points to. One for the process: each pick overwrites it, and its reader copies it at once.
DateValue lastPickedDate;

}  // namespace

MarliMiniCalendar::MarliMiniCalendar(int id, int day, int month, int year, Colour backColour, Colour selectColour,
                                     Colour todayColour, Colour menuBackground, Colour menuTextColour)
    : id(id),
      year(year),
      month(month),
      day(day),
      backColour(backColour),
      monthMenu(std::make_unique<TFlyMenu>(menuBackground, menuTextColour, backColour)),
      yearMenu(std::make_unique<TFlyMenu>(menuBackground, menuTextColour, backColour)),
      grid(std::make_unique<MarlinCalMonth>(kGridId, year, month, day, backColour, selectColour, todayColour)),
      prevButton(std::make_unique<MarlinSpinButton>(kGlyphLeft, backColour, kPreviousId)),
      nextButton(std::make_unique<MarlinSpinButton>(kGlyphRight, backColour, kNextId)),
      todayButton(std::make_unique<MarlinSpinButton>(kGlyphDot, backColour, kTodayId))
{
    for (int y = kCalendarFirstYear; y <= CalendarLastYear(); ++y)
        yearMenu->AddTextEntry(std::to_string(y), y);
    for (int m = 0; m < 12; ++m)
        monthMenu->AddStringEntry(kStringFirstMonth + m, m);
    yearMenu->ShowEntry(year);
    monthMenu->ShowEntry(month - 1);
    prevButton->SetName("Previous month");
    nextButton->SetName("Next month");
    todayButton->SetName("Today");
    for (MarlinSpinButton* button : {prevButton.get(), nextButton.get(), todayButton.get()})
        button->EnableKeyboard();
}

MarliMiniCalendar::~MarliMiniCalendar() = default;

void MarliMiniCalendar::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarliMiniCalendar";
    windowClass.background = Background::White;
}

MessageParam MarliMiniCalendar::OnCreate(WndMessage&)
{
    yearMenu->Create(this);
    monthMenu->Create(this);
    grid->Create(this);
    prevButton->Create(this);
    nextButton->Create(this);
    todayButton->Create(this);
    return 0;
}

MessageParam MarliMiniCalendar::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const int w = client.Width();
    const int h = client.Height();
    yearMenu->Move(0, 0, w / 3, kMenuHeight, 1);
    monthMenu->Move(w / 3, 0, w - w / 3, kMenuHeight, 1);
    grid->Move(0, kHeadHeight, w, h - kGridLoss, 1);
    prevButton->Move(0, h - kButtonRise, kButtonSize, kButtonSize, 1);
    nextButton->Move(w - kButtonSize, h - kButtonRise, kButtonSize, kButtonSize, 1);
    todayButton->Move(w / 2 - kButtonSize / 2, h - kButtonRise, kButtonSize, kButtonSize, 1);
    return 0;
}

void MarliMiniCalendar::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    const int w = client.Width();
    dc.FillRect({0, client.bottom - kFootHeight, w, client.bottom}, backColour);
    dc.FillRect({0, 0, w, kHeadHeight}, backColour);
    for (int i = 0; i < kWeekdays; ++i) {
        const Rect place{w * i / kWeekdays, kMenuHeight, w * (i + 1) / kWeekdays, kHeadHeight};
        dc.DrawText(place, LoadStringResource(kStringFirstDayLetter + i), SmallFont(400), i == 0 ? kSundayColour : 0,
                    kTextCentre | kTextVCentre | kTextSingleLine);
    }
    dc.DrawLine(0, kHeadHeight - 1, w - 2, kHeadHeight - 1, 0);
}

MessageParam MarliMiniCalendar::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    switch (command) {
        case kGridId:
            OnGridDate(HighWord(record.wParam), *reinterpret_cast<const DateValue*>(record.lParam));
            break;
        case kPreviousId:
            StepMonth(PreviousMonth);
            break;
        case kNextId:
            StepMonth(NextMonth);
            break;
        case kTodayId:
            GoToToday();
            break;
        default:
            if (command >= 0 && command < 12)
                ChooseMonth(command + 1);
            else if (command >= kCalendarFirstYear && command <= CalendarLastYear())
                ChooseYear(command);
            break;
    }
    return 0;
}

void MarliMiniCalendar::SetDate(int newYear, int newMonth, int newDay, int /*flag*/)
{
    if (newYear < kCalendarFirstYear || newYear > CalendarLastYear() || !IsValidMonth(newMonth))
        return;
    year = newYear;
    month = newMonth;
    day = newDay;
    KeepDayInMonth();
    ShowDate();
}

void MarliMiniCalendar::OnGridDate(int code, const DateValue& date)
{
    if (code != 0) {  // a drop chooses no day
        Tell(code, date);
        return;
    }
    const bool otherMonth = date.year != year || date.month != month;
    day = date.day;
    month = date.month;
    year = date.year;
    if (otherMonth)
        ShowMenus();
    Tell(0, date);
}

void MarliMiniCalendar::StepMonth(bool (*step)(int& year, int& month, int& day))
{
    DateValue date = GetDate();
    if (!step(date.year, date.month, date.day))
        return;
    SetDate(date.year, date.month, date.day);
    Tell(0, GetDate());
}

void MarliMiniCalendar::GoToToday()
{
    DateValue today;
    Today(today);
    const int number = DayNumberOf(today);
    // A clock outside the calendar leaves it on the date it has.
    if (number == -1 || number == DayNumberOf(GetDate()))
        return;
    SetDate(today.year, today.month, today.day);
    Tell(0, GetDate());
}

void MarliMiniCalendar::ChooseYear(int newYear)
{
    year = newYear;
    KeepDayInMonth();
    grid->SetDate(year, month, day);
    Tell(0, GetDate());
}

void MarliMiniCalendar::ChooseMonth(int newMonth)
{
    month = newMonth;
    KeepDayInMonth();
    grid->SetDate(year, month, day);
    Tell(0, GetDate());
}

void MarliMiniCalendar::KeepDayInMonth()
{
    if (!IsValidDate(day, month, year))
        day = DaysInMonth(year, month);
}

void MarliMiniCalendar::ShowDate()
{
    grid->SetDate(year, month, day);
    ShowMenus();
}

void MarliMiniCalendar::ShowMenus()
{
    monthMenu->ShowEntry(month - 1);
    yearMenu->ShowEntry(year);
    monthMenu->Invalidate(nullptr, 0);
    yearMenu->Invalidate(nullptr, 0);
}

void MarliMiniCalendar::Tell(int code, const DateValue& date)
{
    lastPickedDate = date;
    PostCommand(id, reinterpret_cast<MessageParam>(&lastPickedDate), code);
}

void MarliMiniCalendar::CollectTabStops(TabStops& stops)
{
    grid->CollectTabStops(stops);
    for (MarlinWnd* one : {static_cast<MarlinWnd*>(yearMenu.get()), static_cast<MarlinWnd*>(monthMenu.get()),
                           static_cast<MarlinWnd*>(prevButton.get()), static_cast<MarlinWnd*>(todayButton.get()),
                           static_cast<MarlinWnd*>(nextButton.get())})
        one->CollectTabStops(stops);
}

}  // namespace jotlet
