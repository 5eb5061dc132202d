// TimeListView: the list of 5-minute times of the time picker, from `earliest` up to but not including `latest`.
#pragma once

#include "platform/base/calendar.h"
#include "toolkit/marlin_wnd_list_view.h"

namespace jotlet {

class TimeListView : public MarlinWndListView {
public:
    TimeListView(const TimeValue& earliest, const TimeValue& latest);

    void DrawItem(DeviceContext& dc, Colour background, int index, int state, const Rect& rect) override;
    std::string ItemName(int index) override;

    static constexpr int kId = 100;
    static constexpr int kItemHeight = 12;

private:
    TimeValue TimeOf(int index) const;

    TimeValue earliest;
    TimeValue latest;
};

}  // namespace jotlet
