#pragma once

#include <optional>

#include "notes/model/note_record.h"
#include "store/record_address.h"

// Which alarm is due. A file is asked anew at each check; nothing of it is kept in between.

namespace jotlet {

class TableFile;

// True when the alarm's moment has come. Days are compared by day number, and a date outside the calendar has the
// number -1; on the day itself the 5-minute slots of the times decide. `alarmState` is not looked at.
bool IsAlarmDue(const NoteRecord& note, const DateValue& today, const TimeValue& now);

struct DueAlarm {
    RecordAddress address = 0;
    NoteRecord note;
};

// What one look at the file found.
struct AlarmCheck {
    bool anyWaiting = false;  // a note that this copy may see has an alarm set, due or not
    std::optional<DueAlarm> due;
};

// Finds the due alarm with the earliest date that this copy may see and can lock; the caller now holds its lock. Notes
// that somebody else holds locked are passed over. With a due alarm the caller shows it and then calls MarkAlarmFired,
// or LeaveAlarm when nobody saw it to its end. Whether a check may run at all (refresh switch, an alarm on the screen)
// is the caller's to know.
AlarmCheck FindDueAlarm(TableFile& file, const Clock& clock = SystemClock());

// Marks the alarm as spent, flushes and gives the lock back. 1, or 0 when it could not be written: the alarm then comes
// again.
int MarkAlarmFired(TableFile& file, DueAlarm& alarm);

// Gives the lock back and leaves the alarm waiting.
void LeaveAlarm(TableFile& file, const DueAlarm& alarm);

}  // namespace jotlet
