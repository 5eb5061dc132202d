// MarliMiniCalendar: a year menu, a month menu, the grid of days, and buttons for the month before, the month after and
// today. Posts its id to the parent with a DateValue* in lParam: code 0 for a picked date, 1021 and 1022 for a note
// dropped on a day. The DateValue is one for the whole process and is overwritten by the next pick: copy it at once.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "toolkit/fly_menu.h"
#include "toolkit/marlin_cal_month.h"
#include "toolkit/marlin_spin_button.h"

namespace jotlet {

class MarliMiniCalendar : public MarlinWnd {
public:
    MarliMiniCalendar(int id, int day, int month, int year, Colour backColour, Colour selectColour, Colour todayColour,
                      Colour menuBackground, Colour menuTextColour);
    ~MarliMiniCalendar() override;

    // Shows that date and tells nobody. The flag is not used.
    void SetDate(int newYear, int newMonth, int newDay, int flag = 0);
    DateValue GetDate() const { return {day, month, year}; }
    MarlinCalMonth& Grid() { return *grid; }

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSize(WndMessage& record) override;
    void CollectTabStops(TabStops& stops) override;

    static constexpr int kGridId = 100;
    static constexpr int kPreviousId = 101;
    static constexpr int kNextId = 102;
    static constexpr int kTodayId = 103;

private:
    void OnGridDate(int code, const DateValue& date);
    void StepMonth(bool (*step)(int& year, int& month, int& day));
    void GoToToday();
    void ChooseYear(int newYear);
    void ChooseMonth(int newMonth);
    void KeepDayInMonth();
    void ShowDate();
    void ShowMenus();
    void Tell(int code, const DateValue& date);

    int id;
    int year;
    int month;
    int day;
    Colour backColour;
    std::unique_ptr<TFlyMenu> monthMenu;
    std::unique_ptr<TFlyMenu> yearMenu;
    std::unique_ptr<MarlinCalMonth> grid;
    std::unique_ptr<MarlinSpinButton> prevButton;
    std::unique_ptr<MarlinSpinButton> nextButton;
    std::unique_ptr<MarlinSpinButton> todayButton;
};

}  // namespace jotlet
