#include "toolkit/time_dialog.h"

#include "platform/desktop/system_metrics.h"

namespace jotlet {
namespace {

constexpr int kTrackId = 102;
constexpr int kStepMinutes = 5;
constexpr TimeValue kEarliest{7, 0, 0, kBeforeNoon};
constexpr TimeValue kLatest{11, 0, 0, kAfterNoon};
constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kAccent = 255;

}  // namespace

TimeDialog::TimeDialog(const TimeValue& from, const TimeValue& to, TimeValue* fromResult, TimeValue* toResult)
    : fromResult(fromResult),
      toResult(toResult),
      track(std::make_unique<MarlinTimeTrack>(kTrackId, kEarliest, kLatest, from, to, kStepMinutes, kWhite, kAccent))
{
}

TimeDialog::~TimeDialog() = default;

void TimeDialog::CreatePicker()
{
    track->Create(this);
    const Rect client = GetClientArea();
    track->Move(3, 2, client.Width() - 5, client.Height() - 38, 1);
    FocusWindow(track->IsSingleTime() ? track->List().Grid().window : track->window);
}

void TimeDialog::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.FillRect(GetClientArea(), SystemColour(kSysColourButtonFace));
}

void TimeDialog::Accept()
{
    track->GetTimes(*fromResult, *toResult);
}

}  // namespace jotlet
