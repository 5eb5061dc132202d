#include "toolkit/time_list_view.h"

#include "platform/desktop/system_metrics.h"
#include "skin/drawing.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kFullHourColour = 255;
constexpr int kBarDarkness = 20;
constexpr int kTimeLeft = 2;

Colour BarColour()
{
    return Darken(SystemColour(kSysColourButtonFace), kBarDarkness);
}

}  // namespace

TimeListView::TimeListView(const TimeValue& earliest, const TimeValue& latest)
    : MarlinWndListView(kId, TimeSlot(latest) - TimeSlot(earliest), kItemHeight, 1, kWhite, kWhite, kScrollBarLeft,
                        BarColour(), BarColour()),
      earliest(earliest)
{
}

TimeValue TimeListView::TimeOf(int index) const
{
    TimeValue time;
    TimeFromSlot(TimeSlot(earliest) + index, time);
    return time;
}

void TimeListView::DrawItem(DeviceContext& dc, Colour background, int index, int state, const Rect& rect)
{
    if (state == kListEmpty)
        return;
    if (state == kItemSelected)
        DrawSelectionFrame(dc, rect, background);
    const TimeValue time = TimeOf(index);
    std::string text;
    FormatTimeShort(text, time.hour, time.minute, time.halfDay);
    dc.DrawText(rect.Inset(kTimeLeft, 0, 0, 0), text, SmallFont(400), time.minute == 0 ? kFullHourColour : 0,
                kTextVCentre | kTextSingleLine);
}

std::string TimeListView::ItemName(int index)
{
    const TimeValue time = TimeOf(index);
    std::string text;
    FormatTime(text, time.hour, time.minute, time.halfDay);
    return text;
}

void TimeListView::OnKeySelected(int index)
{
    PostCommand(id, index, kTimeKeySelected);
}

}  // namespace jotlet
