// MarlinTimeTrack: picks a time. In range mode a vertical scale with a thumb that is dragged from the start of the span
// to its end, and a list of times that folds out of it; in single-time mode the list alone.
//
// Posts OK (command 1) to the parent for a double click on a time in single-time mode.
// Keys, in range mode: Up and Down by one step, Page Up and Page Down by an hour, Home and End to the ends of the
// scale, Space folds the list in and out.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "toolkit/marlin_spin_button.h"
#include "toolkit/time_list_view.h"

namespace jotlet {

class MarlinTimeTrack : public MarlinWnd {
public:
    // `step`: minutes of a drag step. If `from` lies before `earliest`, or `to` after `latest`, both become `earliest`.
    MarlinTimeTrack(int id, const TimeValue& earliest, const TimeValue& latest, const TimeValue& from,
                    const TimeValue& to, int step, Colour backColour, Colour accentColour);
    ~MarlinTimeTrack() override;

    // Before the window is created.
    void SetSingleTime() { singleTime = true; }
    bool IsSingleTime() const { return singleTime; }
    void GetTimes(TimeValue& from, TimeValue& to) const;
    TimeListView& List() { return *timeList; }
    bool IsListOut() const { return mode == Mode::ListOut; }
    bool IsDragging() const { return mode == Mode::Dragging; }
    // Top of the thumb in client pixels.
    double ThumbY() const;

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSize(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;
    void OnSetValue(double value) override;

private:
    enum class Mode { Idle = 0, Dragging = 1, ListOut = 10 };

    Rect TrackRect() const;
    double PixelsPerSlot() const;
    TimeValue TimeAt(int trackY) const;
    void ChooseTime(const TimeValue& time);
    void ShowChoiceInList();
    void PutCursorOnThumb();
    void EndDrag();
    void FoldIn();
    void FoldOut();
    void ChooseFromList(int item, int code);
    void PaintHead(DeviceContext& dc, const Rect& client);
    void PaintThumb(DeviceContext& dc, const Rect& client);
    void PaintSpan(DeviceContext& dc, const Rect& client);

    int id;
    TimeValue earliest;
    TimeValue latest;
    TimeValue fromTime;
    TimeValue toTime;
    int step;
    Colour backColour;
    Colour accentColour;
    Mode mode = Mode::Idle;
    bool singleTime = false;
    std::unique_ptr<TimeListView> timeList;
    std::unique_ptr<MarlinSpinButton> listButton;
};

}  // namespace jotlet
