#include "notes/check_alarms.h"

#include "notes/alarm_fired_dialog.h"
#include "notes/model/alarms.h"
#include "notes/note_editor_dialog.h"
#include "store/refresh_switch.h"

namespace jotlet {
namespace {

bool alarmShowing = false;

}  // namespace

int CheckAlarms(TableFile& file, MarlinWnd& parent, const Clock& clock)
{
    if (!IsRefreshEnabled() || alarmShowing || NoteEditorDialog::AnyOpen())
        return 0;
    AlarmCheck check = FindDueAlarm(file, clock);
    if (!check.due)
        return check.anyWaiting ? 1 : 0;
    alarmShowing = true;
    AlarmFiredDialog dialog(check.due->note);
    dialog.DoModal(&parent, kAlarmFiredDialogId);
    alarmShowing = false;
    if (dialog.Answered())
        MarkAlarmFired(file, *check.due);
    else
        LeaveAlarm(file, *check.due);
    return 1;
}

}  // namespace jotlet
