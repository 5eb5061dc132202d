#include "notes/alarm_dialog.h"

#include <array>

#include "notes/note_editor_dialog.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "toolkit/choose_file.h"
#include "toolkit/date_dialog.h"
#include "toolkit/time_dialog.h"

namespace jotlet {
namespace {

using namespace alarm_dialog_ids;

constexpr int kPathLimit = 260;

constexpr std::array kAlarmControls = {kDateButton, kTimeButton,         kToneEdit,   kPlayButton, kBrowseToneButton,
                                       kTargetEdit, kBrowseTargetButton, kEmailRadio, kUrlRadio,   kDocumentRadio};

}  // namespace

AlarmDialog::AlarmDialog(NoteRecord& record, int mode) : record(record), mode(mode) {}

MessageParam AlarmDialog::OnInitDialog(WndMessage&)
{
    if (mode == kEditNew) {
        record.alarmDate = record.date;
        record.alarmTime = record.time;
    }
    LimitItemText(window, kToneEdit, kPathLimit);
    LimitItemText(window, kTargetEdit, kPathLimit);
    ShowMoment();
    SetItemText(kToneEdit, FieldText(record.toneFile));
    SetItemText(kTargetEdit, FieldText(record.startTarget));
    if (record.startKind >= kStartEmail && record.startKind <= kStartDocument)
        CheckItem(window, kEmailRadio + record.startKind - kStartEmail, true);
    const bool set = record.alarmState == kAlarmSet;
    CheckItem(window, set ? kSetRadio : kCancelRadio, true);
    EnableControls(set);
    CentreOverParent();
    FocusItem(window, set ? kToneEdit : kCancelRadio);
    return 0;
}

void AlarmDialog::ShowMoment()
{
    std::string text;
    FormatDateValue(text, record.alarmDate);
    SetItemText(kDateButton, text);
    const TimeValue time = record.alarmTime;
    FormatTime(text, time.hour, time.minute, time.halfDay);
    SetItemText(kTimeButton, text);
}

void AlarmDialog::EnableControls(bool enabled)
{
    for (const int id : kAlarmControls)
        Enable(id, enabled);
}

MessageParam AlarmDialog::OnCommand(WndMessage& message)
{
    switch (LowWord(message.wParam)) {
        case kSetRadio:
        case kCancelRadio:
            EnableControls(Checked(kSetRadio));
            return 1;
        case kDateButton:
            PickDate();
            return 1;
        case kTimeButton:
            PickTime();
            return 1;
        case kBrowseToneButton:
            BrowseTone();
            return 1;
        case kPlayButton:
            PlayTone();
            return 1;
        case kBrowseTargetButton:
            BrowseTarget();
            return 1;
        case kIdOk:
            OnOk();
            return 1;
        default:
            return MarlinDialog::OnCommand(message);
    }
}

void AlarmDialog::PickDate()
{
    DateValue date = record.alarmDate;
    const Rect button = ItemRect(window, kDateButton);
    const Point corner = ClientToScreen(window, {button.left, button.bottom});
    DateDialog dialog(date.day, date.month, date.year, &date);
    dialog.SetPosition(corner.x, corner.y);
    dialog.SetZoom(1);
    if (dialog.DoModal(this, date_picker_ids::kDialog) == 1) {
        record.alarmDate = date;
        ShowMoment();
    }
    FocusItem(window, kToneEdit);
}

void AlarmDialog::PickTime()
{
    const TimeValue present = record.alarmTime;
    TimeValue from = present;
    TimeValue to = present;
    const Rect button = ItemRect(window, kTimeButton);
    const Point corner = ClientToScreen(window, {button.left, button.bottom});
    TimeDialog dialog(present, present, &from, &to);
    dialog.SetSingleTime();
    dialog.SetPosition(corner.x, corner.y);
    dialog.SetZoom(1);
    if (dialog.DoModal(this, time_picker_ids::kDialog) == 1) {
        record.alarmTime = to;
        ShowMoment();
    }
    FocusItem(window, kToneEdit);
}

void AlarmDialog::BrowseTone()
{
    ChooseFileInto(window, kToneEdit,
                   {.title = "Tone file",
                    .filter = "Alarm file(*.wav)|*.wav||",
                    .extension = "wav",
                    .folder = GetProgramFolder()});
}

void AlarmDialog::PlayTone()
{
    const std::string tone = GetItemText(kToneEdit);
    if (tone.empty()) {
        Beep();
        return;
    }
    toneStarted = true;
    PlayWave(TonePath(tone));
}

MessageParam AlarmDialog::OnDestroy(WndMessage&)
{
    if (toneStarted)
        StopWave();
    return 0;
}

void AlarmDialog::BrowseTarget()
{
    ChooseFileInto(window, kTargetEdit, {.title = "Start", .filter = "(*.*)|*.*||", .extension = "*.*"});
}

void AlarmDialog::OnOk()
{
    StoreText(record.toneFile, GetItemText(kToneEdit));
    StoreText(record.startTarget, GetItemText(kTargetEdit));
    for (int kind = kStartEmail; kind <= kStartDocument; ++kind) {
        if (Checked(kEmailRadio + kind - kStartEmail)) {
            record.startKind = static_cast<std::uint8_t>(kind);
            break;
        }
    }
    record.alarmState = Checked(kSetRadio) ? kAlarmSet : kAlarmNone;
    EndDialog(1);
}

}  // namespace jotlet
