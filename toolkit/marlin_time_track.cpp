#include "toolkit/marlin_time_track.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "platform/base/clock.h"
#include "platform/desktop/system_metrics.h"
#include "skin/drawing.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr int kListButtonId = 2;
constexpr int kTrackTop = 20;
constexpr int kTrackFoot = 38;
constexpr int kThumbHeight = 25;
constexpr int kHeadPicture = 2012;
constexpr int kHeadTop = 2;
constexpr int kThumbPicture = 2013;
constexpr Colour kFaceKey = 0xC0C0C0;
constexpr Colour kAccentKey = 255;
constexpr int kChoiceShownMs = 200;
constexpr std::uint32_t kCentredLine = kTextCentre | kTextVCentre | kTextSingleLine;

bool IsBefore(const TimeValue& a, const TimeValue& b)
{
    return TimeSlot(a) < TimeSlot(b);
}

std::string TimeText(const TimeValue& time)
{
    std::string text;
    FormatTime(text, time.hour, time.minute, time.halfDay);
    return text;
}

int MinuteOfDay(const TimeValue& time)
{
    return (time.hour + (time.halfDay == kAfterNoon ? 12 : 0)) * 60 + time.minute;
}

// "05:30": hours and minutes from one time to a later one.
std::string SpanText(const TimeValue& from, const TimeValue& to)
{
    const int minutes = MinuteOfDay(to) - MinuteOfDay(from);
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d", minutes / 60, minutes % 60);
    return text;
}

// A picture with its background, face and accent keys replaced; drawn in the middle of the width.
void DrawTrackPicture(DeviceContext& dc, const Rect& client, int pictureId, int y, Colour back, Colour accent)
{
    Bitmap picture = Bitmap::FromResource(pictureId);
    if (!picture)
        return;
    ReplaceColour(picture, kAccentKey, accent);
    ReplaceColour(picture, kFaceKey, SystemColour(kSysColourButtonFace));
    ReplaceColour(picture, kMagenta, back);
    dc.DrawBitmap(picture, client.left + (client.Width() - picture.GetSize().width) / 2, y);
}

}  // namespace

MarlinTimeTrack::MarlinTimeTrack(int id, const TimeValue& earliest, const TimeValue& latest, const TimeValue& from,
                                 const TimeValue& to, int step, Colour backColour, Colour accentColour)
    : id(id),
      earliest(earliest),
      latest(latest),
      fromTime(from),
      toTime(to),
      step(step),
      backColour(backColour),
      accentColour(accentColour),
      timeList(std::make_unique<TimeListView>(earliest, latest)),
      listButton(std::make_unique<MarlinSpinButton>(kGlyphDown, SystemColour(kSysColourButtonFace), kListButtonId))
{
    if (IsBefore(fromTime, earliest) || IsBefore(latest, toTime)) {
        fromTime = earliest;
        toTime = earliest;
    }
    listButton->SetName("List of times");
}

MarlinTimeTrack::~MarlinTimeTrack() = default;

void MarlinTimeTrack::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinTimeTrack";
    windowClass.background = Background::White;
}

MessageParam MarlinTimeTrack::OnCreate(WndMessage&)
{
    const std::uint32_t visible = singleTime ? 0 : kStyleVisible;
    listButton->Create(this, static_cast<long>(kStyleChild | visible));
    timeList->Create(this, static_cast<long>(kStyleChild | kStyleBorder | (kStyleVisible ^ visible)));
    ShowChoiceInList();
    return 0;
}

MessageParam MarlinTimeTrack::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const int left = client.Width() / 2 - 24;
    listButton->Move(left, 8, 10, 10, 1);
    timeList->Move(left - 5, kTrackTop, 60, client.Height() - 30, 1);
    ShowChoiceInList();
    return 0;
}

void MarlinTimeTrack::ShowChoiceInList()
{
    timeList->SelectItem(TimeSlot(toTime) - TimeSlot(earliest));
}

void MarlinTimeTrack::GetTimes(TimeValue& from, TimeValue& to) const
{
    from = fromTime;
    to = toTime;
}

Rect MarlinTimeTrack::TrackRect() const
{
    const Rect client = GetClientArea();
    return {client.left, kTrackTop, client.right, client.bottom - kTrackFoot};
}

double MarlinTimeTrack::PixelsPerSlot() const
{
    const int slots = TimeSlot(latest) - TimeSlot(fromTime);
    return slots > 0 ? static_cast<double>(TrackRect().Height()) / slots : 0;
}

double MarlinTimeTrack::ThumbY() const
{
    return (TimeSlot(toTime) - TimeSlot(fromTime)) * PixelsPerSlot() + kTrackTop;
}

void MarlinTimeTrack::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.FillRect(client.Inset(1, 0, 2, 0), backColour);
    PaintHead(dc, client);
    PaintSpan(dc, client);
    PaintThumb(dc, client);
    DrawBevel(dc, client.Inset(0, 0, 1, 2), SystemColour(kSysColourButtonFace), SystemColour(kSysColourButtonShadow));
    if (FocusedWindow() == window)
        dc.DrawFocusRect(client.Inset(2, 2, 4, 4), SystemColour(kSysColourButtonShadow));
}

void MarlinTimeTrack::PaintHead(DeviceContext& dc, const Rect& client)
{
    DrawTrackPicture(dc, client, kHeadPicture, kHeadTop, backColour, accentColour);
    // The band starts behind the list button where there is one.
    const Rect band{singleTime ? 0 : 7, 6, client.right, 20};
    dc.DrawText(band, TimeText(singleTime ? toTime : fromTime), SmallFont(400), 0, kCentredLine);
}

void MarlinTimeTrack::PaintThumb(DeviceContext& dc, const Rect& client)
{
    const int y = static_cast<int>(ThumbY());
    DrawTrackPicture(dc, client, kThumbPicture, y, backColour, accentColour);
    dc.DrawText({0, y + kThumbHeight, client.right, y + kThumbHeight + 10}, TimeText(toTime), SmallFont(400), 0,
                kCentredLine | kTextNoClip);
}

void MarlinTimeTrack::PaintSpan(DeviceContext& dc, const Rect& client)
{
    constexpr int kBandHeight = 7;
    const int middle = client.Width() / 2;
    const int end = static_cast<int>(ThumbY());
    dc.DrawLine(middle, kTrackTop, middle, end, 0);
    const int bandTop = (kTrackTop + end) / 2 - 3;
    if (bandTop <= kTrackTop || bandTop + kBandHeight >= end)
        return;
    const std::string text = SpanText(fromTime, toTime);
    const int width = dc.MeasureText(text, SmallFont(400)).width;
    // The line gives way to the number that stands on it.
    dc.FillRect(Rect::At(middle - width / 2 - 1, bandTop - 1, width + 2, kBandHeight + 2), backColour);
    dc.DrawText({0, bandTop, client.right, bandTop + kBandHeight}, text, SmallFont(400), 0, kCentredLine | kTextNoClip);
}

TimeValue MarlinTimeTrack::TimeAt(int trackY) const
{
    if (trackY < 1)
        return fromTime;
    if (trackY >= TrackRect().Height() || PixelsPerSlot() <= 0)
        return latest;
    const TimeValue end{11, 60 - step, 0, kAfterNoon};
    TimeValue time = fromTime;
    for (int steps = static_cast<int>(trackY / PixelsPerSlot()) + 1; steps > 0; --steps) {
        time.minute += step;
        if (time.minute >= 60) {
            time.minute -= 60;
            ++time.hour;
        }
        if (time.hour == 12) {
            if (time.halfDay == kAfterNoon)
                return end;
            time.hour = 0;
            time.halfDay = kAfterNoon;
        }
        if (IsBefore(latest, time))
            return end;
    }
    return time;
}

void MarlinTimeTrack::ChooseTime(const TimeValue& time)
{
    toTime = time;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
}

MessageParam MarlinTimeTrack::OnLButtonDown(WndMessage& record)
{
    if (mode == Mode::ListOut) {
        FoldIn();
        return 0;
    }
    const double thumb = ThumbY();
    const int y = MousePoint(record).y;
    if (singleTime || !(y > thumb && y < thumb + kThumbHeight))
        return 0;
    FocusWindow(window);
    mode = Mode::Dragging;
    CaptureMouse(window);
    const Rect track = TrackRect();
    const Point topLeft = ClientToScreen(window, {track.left, track.top});
    // One row below the track belongs to it here: that is where the end of the scale is picked.
    const Rect limits = Rect::At(topLeft.x, topLeft.y, track.Width(), track.Height() + 1);
    ClipCursorTo(&limits);
    ShowCursorNow(false);
    PutCursorOnThumb();
    return 0;
}

void MarlinTimeTrack::PutCursorOnThumb()
{
    SetCursorPosition(ClientToScreen(window, {GetClientArea().Width() / 2, static_cast<int>(ThumbY())}));
}

MessageParam MarlinTimeTrack::OnMouseMove(WndMessage& record)
{
    if (mode != Mode::Dragging)
        return 0;
    toTime = TimeAt(MousePoint(record).y - kTrackTop);
    Rect below = GetClientArea();
    below.top = kTrackTop;
    Invalidate(&below, 0);
    AccessibleChanged(window);
    return 0;
}

MessageParam MarlinTimeTrack::OnLButtonUp(WndMessage&)
{
    if (mode != Mode::Dragging)
        return 0;
    mode = Mode::Idle;  // before the cursor moves, which comes back as a mouse move
    PutCursorOnThumb();
    EndDrag();
    ReleaseMouse();
    return 0;
}

void MarlinTimeTrack::EndDrag()
{
    mode = Mode::Idle;
    ShowCursorNow(true);
    SetCursorNow(CursorId::Arrow);
    ClipCursorTo(nullptr);
}

void MarlinTimeTrack::OnCaptureLost()
{
    if (mode == Mode::Dragging)
        EndDrag();
}

void MarlinTimeTrack::FoldOut()
{
    ShowChoiceInList();
    timeList->Show();
    mode = Mode::ListOut;
    FocusWindow(timeList->Grid().window);
}

void MarlinTimeTrack::FoldIn()
{
    const bool focusInside = FocusedWindow() == timeList->Grid().window;
    timeList->Hide();
    mode = Mode::Idle;
    if (focusInside)
        FocusWindow(window);
    Invalidate(nullptr, 0);
}

MessageParam MarlinTimeTrack::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    if (command == kListButtonId && !singleTime) {
        if (mode == Mode::Idle)
            FoldOut();
        else if (mode == Mode::ListOut)
            FoldIn();
    } else if (command == TimeListView::kId) {
        ChooseFromList(static_cast<int>(record.lParam), HighWord(record.wParam));
    }
    return 0;
}

void MarlinTimeTrack::ChooseFromList(int item, int code)
{
    if (item < 0 || item >= timeList->GetCount())
        return;
    const TimeValue time = timeList->TimeOf(item);
    if (singleTime || code == kTimeKeySelected) {
        ChooseTime(time);
        if (singleTime && code == kListItemDoubleClicked)
            PostCommand(kIdOk, 0);
        return;
    }
    if (mode != Mode::ListOut)
        return;
    ChooseTime(time);
    FlushToScreen();
    WaitMs(kChoiceShownMs);
    FoldIn();
}

MessageParam MarlinTimeTrack::OnKeyDown(WndMessage& record)
{
    constexpr int kHourSlots = 12;
    if (singleTime || mode == Mode::Dragging)
        return DefaultHandler(record);
    const int stepSlots = std::max(step / 5, 1);
    const int first = TimeSlot(fromTime);
    const int last = TimeSlot(latest);
    int slot = TimeSlot(toTime);
    switch (record.wParam) {
        case kKeyUp:
            slot -= stepSlots;
            break;
        case kKeyDown:
            slot += stepSlots;
            break;
        case kKeyPageUp:
            slot -= kHourSlots;
            break;
        case kKeyPageDown:
            slot += kHourSlots;
            break;
        case kKeyHome:
            slot = first;
            break;
        case kKeyEnd:
            slot = last;
            break;
        case kKeySpace:
            mode == Mode::ListOut ? FoldIn() : FoldOut();
            return 0;
        default:
            return DefaultHandler(record);
    }
    TimeValue time = toTime;
    if (first <= last && TimeFromSlot(std::clamp(slot, first, last), time))
        ChooseTime(time);
    return 0;
}

void MarlinTimeTrack::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinTimeTrack::CollectTabStops(TabStops& stops)
{
    if (!singleTime)
        stops.push_back(this);
    timeList->CollectTabStops(stops);
}

void MarlinTimeTrack::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Slider;
    description.name = singleTime ? TimeText(toTime) : TimeText(fromTime) + " - " + TimeText(toTime);
    const auto minutes = [](const TimeValue& time) { return 5.0 * TimeSlot(time); };
    description.value = {minutes(toTime), minutes(fromTime), minutes(latest)};
}

void MarlinTimeTrack::OnSetValue(double value)
{
    const int first = TimeSlot(fromTime);
    const int last = TimeSlot(latest);
    TimeValue time = toTime;
    if (!singleTime && first <= last &&
        TimeFromSlot(static_cast<int>(std::clamp(value / 5, double(first), double(last))), time))
        ChooseTime(time);
}

}  // namespace jotlet
