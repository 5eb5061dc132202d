// DateDialog: asks for a date. DoModal(parent, date_picker_ids::kDialog) gives 1 for ok, with `result` filled, and 0
// for cancel.
#pragma once

#include <memory>

#include "platform/base/calendar.h"
#include "resources/dialog_ids.h"
#include "toolkit/marli_mini_calendar.h"
#include "toolkit/picker_dialog.h"

namespace jotlet {

class DateDialog : public PickerDialog {
public:
    DateDialog(int day, int month, int year, DateValue* result);
    ~DateDialog() override;

    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;

protected:
    void CreatePicker() override;
    void Accept() override;

private:
    Rect CalendarRect() const;

    std::unique_ptr<MarliMiniCalendar> calendar;
    DateValue start;
    DateValue* result;
};

}  // namespace jotlet
