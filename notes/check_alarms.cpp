#include "notes/check_alarms.h"

#include "notes/alarm_fired_dialog.h"
#include "notes/model/alarms.h"
#include "notes/note_editor_dialog.h"
#include "platform/base/file_error_text.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"
#include "store/refresh_switch.h"

namespace jotlet {
namespace {

// Of the process: the timer that asks again belongs to the frame, not to the window that is up.
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
    dialog.DoModal(&parent, alarm_fired_ids::kDialog);
    alarmShowing = false;
    if (!dialog.Answered())
        return 1;
    if (const SaveResult marked = MarkAlarmFired(*check.due); marked.state == SaveState::Failed)
        ShowTextMessage(parent.window, "The alarm could not be marked as seen in\r\n\"" + file.Path() +
                                           "\".\r\nIt will come again. " + FileErrorText(marked.error));
    return 1;
}

}  // namespace jotlet
