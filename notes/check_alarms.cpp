#include "notes/check_alarms.h"

#include "notes/alarm_fired_dialog.h"
#include "notes/model/alarms.h"
#include "store/refresh_switch.h"

namespace jotlet {
namespace {

bool alarmShowing = false;

}  // namespace

int CheckAlarms(TableFile& file, MarlinWnd& parent, const Clock& clock)
{
    if (!IsRefreshEnabled() || alarmShowing)
        return 0;
    auto due = FindDueAlarm(file, clock);
    if (!due)
        return 0;
    alarmShowing = true;
    AlarmFiredDialog dialog(due->note);
    dialog.DoModal(&parent, kAlarmFiredDialogId);
    alarmShowing = false;
    MarkAlarmFired(file, *due);
    return 1;
}

}  // namespace jotlet
