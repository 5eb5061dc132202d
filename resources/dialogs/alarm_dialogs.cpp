#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate Alarm()
{
    return {alarm_dialog_ids::kDialog,
            "Alarm",
            20,
            20,
            222,
            173,
            0,
            {
                {ControlKind::Radio, alarm_dialog_ids::kSetRadio, "&Set Alarm", 7, 7, 70, 10, kControlGroup},
                {ControlKind::Radio, alarm_dialog_ids::kCancelRadio, "&Cancel Alarm", 7, 20, 70, 10},
                {ControlKind::Text, -1, "Alarm Date", 7, 38, 60, 8, kControlGroup},
                {ControlKind::Push, alarm_dialog_ids::kDateButton, "", 7, 48, 66, 14},
                {ControlKind::Text, -1, "Alarm Time", 80, 38, 60, 8},
                {ControlKind::Push, alarm_dialog_ids::kTimeButton, "", 80, 48, 66, 14},
                {ControlKind::Group, -1, "Tone", 7, 66, 208, 47},
                {ControlKind::Text, -1, "&Tone file", 13, 82, 60, 8},
                {ControlKind::Edit, alarm_dialog_ids::kToneEdit, "", 13, 93, 104, 12},
                {ControlKind::Push, alarm_dialog_ids::kPlayButton, "&Play", 122, 92, 42, 14},
                {ControlKind::Push, alarm_dialog_ids::kBrowseToneButton, "&Browse", 167, 92, 42, 14},
                {ControlKind::Group, -1, "Start", 7, 116, 208, 50},
                {ControlKind::Radio, alarm_dialog_ids::kEmailRadio, "&E-mail", 13, 131, 50, 10, kControlGroup},
                {ControlKind::Radio, alarm_dialog_ids::kUrlRadio, "&URL", 68, 131, 40, 10},
                {ControlKind::Radio, alarm_dialog_ids::kDocumentRadio, "&Document/App", 113, 131, 70, 10},
                {ControlKind::Edit, alarm_dialog_ids::kTargetEdit, "", 13, 147, 149, 12, kControlGroup},
                {ControlKind::Push, alarm_dialog_ids::kBrowseTargetButton, "B&rowse", 167, 146, 42, 14},
                {ControlKind::DefaultPush, kIdOk, "OK", 170, 7, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 170, 25, 45, 14},
            }};
}

DialogTemplate AlarmFired()
{
    return {alarm_fired_ids::kDialog,
            "Alarm",
            20,
            20,
            222,
            156,
            0,
            {
                {ControlKind::Icon, -1, "1000", 7, 7, 22, 22},
                {ControlKind::Text, -1, "Alarm Date", 34, 7, 46, 8},
                {ControlKind::Text, alarm_fired_ids::kDateText, "", 82, 7, 76, 8},
                {ControlKind::Text, -1, "Alarm Time", 34, 19, 46, 8},
                {ControlKind::Text, alarm_fired_ids::kTimeText, "", 82, 19, 76, 8},
                {ControlKind::Text, -1, "&Description", 7, 35, 80, 8},
                {ControlKind::Edit, alarm_fired_ids::kDescriptionEdit, "", 7, 45, 208, 72,
                 kControlMultiLine | kControlReadOnly | kControlScroll},
                {ControlKind::Check, alarm_fired_ids::kStartBox, "&Start", 7, 123, 60, 10},
                // Last in the window, which grows downwards for a long target.
                {ControlKind::Edit, alarm_fired_ids::kTargetText, "", 7, 136, 208, 13,
                 kControlMultiLine | kControlReadOnly},
                {ControlKind::DefaultPush, kIdOk, "OK", 170, 7, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 170, 25, 45, 14},
            }};
}

// The pickers place their buttons and what picks themselves, in pixels. The scale of the time picker is high enough for
// a row of pixels to each 5 minutes from 7 in the morning to 11 at night.
DialogTemplate TimePicker()
{
    return {time_picker_ids::kDialog,
            "Time",
            20,
            20,
            92,
            199,
            kDialogPicker,
            {
                {ControlKind::DefaultPush, kIdOk, "ok", 5, 181, 40, 12},
                {ControlKind::Push, kIdCancel, "cancel", 47, 181, 40, 12},
            }};
}

DialogTemplate DatePicker()
{
    return {date_picker_ids::kDialog,
            "Date",
            20,
            20,
            92,
            110,
            kDialogPicker,
            {
                {ControlKind::DefaultPush, kIdOk, "ok", 5, 94, 40, 12},
                {ControlKind::Push, kIdCancel, "cancel", 47, 94, 40, 12},
            }};
}

}  // namespace

std::span<const DialogTemplate> AlarmDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {Alarm(), AlarmFired(), TimePicker(), DatePicker()};
    return dialogs;
}

}  // namespace jotlet
