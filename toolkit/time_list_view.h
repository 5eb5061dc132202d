// TimeListView: the list of 5-minute times of the time picker, from `earliest` up to but not including `latest`.
#pragma once

#include "platform/base/calendar.h"
#include "toolkit/marlin_wnd_list_view.h"

namespace jotlet {

// Code to the parent, besides those of a list view: a key moved the selection to the item in lParam.
inline constexpr int kTimeKeySelected = 25;

class TimeListView : public MarlinWndListView {
public:
    TimeListView(const TimeValue& earliest, const TimeValue& latest);

    void DrawItem(DeviceContext& dc, Colour background, int index, int state, const Rect& rect) override;
    void OnKeySelected(int index) override;
    std::string ItemName(int index) override;
    std::string ListName() override { return "Times"; }

    // The time of an item.
    TimeValue TimeOf(int index) const;

    static constexpr int kId = 100;
    static constexpr int kItemHeight = 12;

private:
    TimeValue earliest;
};

}  // namespace jotlet
