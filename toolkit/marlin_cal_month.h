// MarlinCalMonth: the grid of days of one month, Sunday first. Sends its id to the parent with a DateValue* in lParam
// that is valid during the call: code 0 for a picked day, 1021 and 1022 for a note dropped on a day other than the
// selected one.
//
// Keys: the arrows go by day and week and cross into the next month, Home and End to the ends of the month, Page Up and
// Page Down by month; each step picks the day. Space picks the selected day again.
#pragma once

#include <optional>

#include "platform/base/calendar.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

// Where a day stands in a grid of 7 columns and 6 rows; nothing when the month has no such day. Painting, clicks and
// drops all ask this.
std::optional<Rect> MonthDayRect(Size client, int year, int month, int day);

class MarlinCalMonth : public MarlinWnd {
public:
    MarlinCalMonth(int id, int year, int month, int day, Colour backColour, Colour selectColour, Colour todayColour);

    // Nothing for a year or month outside the calendar; a day that the month does not have becomes its last one. Tells
    // nobody.
    void SetDate(int newYear, int newMonth, int newDay);
    // 1 when the day has a cell, else 0.
    int GetDayRect(int ofYear, int ofMonth, int ofDay, Rect& rect) const;
    DateValue GetDate() const { return {day, month, year}; }

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

private:
    // 0 when no day's cell holds the point.
    int DayAt(Point p) const;
    void Pick(const DateValue& date);
    bool StepByKey(int key, DateValue& date) const;

    int id;
    int year;
    int month;
    int day;
    Colour backColour;
    Colour selectColour;
    Colour todayColour;
    DateValue shownToday;
    CursorId cursor = CursorId::Arrow;
};

}  // namespace jotlet
