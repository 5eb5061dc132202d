// TimeDialog: asks for a time, or for the end of a span. DoModal(parent, TimeDialog::kTemplate) gives 1 for ok, with
// both results filled, and 0 for cancel.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "toolkit/marlin_dialog.h"
#include "toolkit/marlin_time_track.h"

namespace jotlet {

class TimeDialog : public MarlinDialog {
public:
    static constexpr int kTemplate = 1007;

    TimeDialog(const TimeValue& from, const TimeValue& to, TimeValue* fromResult, TimeValue* toResult);
    ~TimeDialog() override;

    // The list alone instead of the scale; before DoModal.
    void SetSingleTime() { track->SetSingleTime(); }
    void SetPosition(int left, int top);
    void SetZoom(int flag) { zoom = flag; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;

private:
    TimeValue* fromResult;
    TimeValue* toResult;
    int x = 0;
    int y = 0;
    int zoom = 0;
    std::unique_ptr<MarlinTimeTrack> track;
};

}  // namespace jotlet
