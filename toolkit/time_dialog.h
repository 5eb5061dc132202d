// TimeDialog: asks for a time, or for the end of a span, between 7:00 before noon and 11:00 after noon.
// DoModal(parent, time_picker_ids::kDialog) gives 1 for ok, with both results filled, and 0 for cancel.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "resources/dialog_ids.h"
#include "toolkit/marlin_time_track.h"
#include "toolkit/picker_dialog.h"

namespace jotlet {

class TimeDialog : public PickerDialog {
public:
    TimeDialog(const TimeValue& from, const TimeValue& to, TimeValue* fromResult, TimeValue* toResult);
    ~TimeDialog() override;

    // The list alone instead of the scale; before DoModal.
    void SetSingleTime() { track->SetSingleTime(); }

    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;

protected:
    void CreatePicker() override;
    void Accept() override;

private:
    TimeValue* fromResult;
    TimeValue* toResult;
    std::unique_ptr<MarlinTimeTrack> track;
};

}  // namespace jotlet
