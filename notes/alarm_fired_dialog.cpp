#include "notes/alarm_fired_dialog.h"

#include "notes/model/start_target.h"
#include "notes/open_target.h"
#include "platform/base/text.h"
#include "platform/desktop/shell.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

using namespace alarm_fired_ids;

}  // namespace

AlarmFiredDialog::AlarmFiredDialog(const NoteRecord& note) : note(note) {}

MessageParam AlarmFiredDialog::OnInitDialog(WndMessage&)
{
    std::string text;
    FormatDateValue(text, note.alarmDate);
    SetItemText(kDateText, text);
    const TimeValue time = note.alarmTime;
    FormatTime(text, time.hour, time.minute, time.halfDay);
    SetItemText(kTimeText, text);
    SetItemText(kDescriptionEdit, FieldText(note.text));
    ShowTarget();
    if (const std::string_view tone = FieldText(note.toneFile); !tone.empty()) {
        PlayWave(TonePath(tone));
        toneStarted = true;
    }
    CentreOverParent();
    FocusItem(window, kDescriptionEdit);
    BringToForeground(MainWindow());
    return 0;
}

// The whole target is on view before anything starts: in a shared file it may be somebody else's. The dialog grows by
// what a long one needs.
void AlarmFiredDialog::ShowTarget()
{
    const std::string target = WithHiddenCharactersShown(FieldText(note.startTarget));
    SetItemText(kTargetText, target);
    CheckItem(window, kStartBox, !target.empty());
    Enable(kStartBox, !target.empty());
    Enable(kTargetText, !target.empty());
    Rect place = ItemRect(window, kTargetText);
    const int missing = ItemTextHeight(window, kTargetText) - place.Height();
    if (missing <= 0)
        return;
    place.bottom += missing;
    MoveItem(window, kTargetText, place);
    Rect whole = WindowRect(window);
    whole.bottom += missing;
    MoveTo(window, whole, false);
}

MessageParam AlarmFiredDialog::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    answered = answered || command == kIdOk || command == kIdCancel;
    if (command != kIdOk)
        return MarlinDialog::OnCommand(record);
    if (Checked(kStartBox))
        Start();
    EndDialog(1);
    return 1;
}

MessageParam AlarmFiredDialog::OnDestroy(WndMessage&)
{
    if (toneStarted)
        StopWave();
    return 0;
}

void AlarmFiredDialog::Start() const
{
    const std::string target(FieldText(note.startTarget));
    if (note.startKind == kStartEmail)
        OpenMail(target);
    else
        OpenTarget(window, target, note.startKind == kStartUrl ? TargetKind::Url : TargetKind::Document);
}

}  // namespace jotlet
