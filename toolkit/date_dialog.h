// DateDialog: asks for a date. DoModal(parent, DateDialog::kTemplate) gives 1 for ok, with `result` filled, and 0 for
// cancel.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "toolkit/marli_mini_calendar.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class DateDialog : public MarlinDialog {
public:
    static constexpr int kTemplate = 1008;

    DateDialog(int day, int month, int year, DateValue* result);
    ~DateDialog() override;

    // Left top corner on the screen; without it (or with a 0) the dialog stands where the platform puts it.
    void SetPosition(int left, int top);
    // 1: with sound and opening animation.
    void SetZoom(int flag) { zoom = flag; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;

private:
    std::unique_ptr<MarliMiniCalendar> calendar;
    DateValue* result;
    int x = 0;
    int y = 0;
    int zoom = 0;
};

}  // namespace jotlet
