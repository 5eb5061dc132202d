#include "toolkit/date_dialog.h"

#include "platform/desktop/system_metrics.h"
#include "skin/drawing.h"

namespace jotlet {
namespace {

constexpr int kCalendarId = 100;
constexpr int kMargin = 5;
constexpr int kFootHeight = 25;  // below the calendar
constexpr Colour kRed = 0x0000FF;
constexpr Colour kWhite = 0xFFFFFF;

}  // namespace

DateDialog::DateDialog(int day, int month, int year, DateValue* result) : start{day, month, year}, result(result) {}

DateDialog::~DateDialog() = default;

Rect DateDialog::CalendarRect() const
{
    return GetClientArea().Inset(kMargin, kMargin, kMargin, kFootHeight);
}

void DateDialog::CreatePicker()
{
    calendar = std::make_unique<MarliMiniCalendar>(kCalendarId, start.day, start.month, start.year, kWhite,
                                                   SystemColour(kSysColourButtonFace), kRed, kRed, kWhite);
    calendar->Create(this);
    const Rect place = CalendarRect();
    calendar->Move(place.left, place.top, place.Width(), place.Height(), 1);
    FocusWindow(calendar->Grid().window);
}

void DateDialog::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.FillRect(GetClientArea(), SystemColour(kSysColourButtonFace));
    const Rect place = CalendarRect();
    DrawSunkenBevel(dc, {place.left - 1, place.top - 1, place.right, place.bottom},
                    SystemColour(kSysColourButtonShadow), SystemColour(kSysColourButtonHighlight));
}

void DateDialog::Accept()
{
    *result = calendar->GetDate();
}

}  // namespace jotlet
