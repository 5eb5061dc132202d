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

// The due alarm with the earliest date that this copy may see and can lock; the caller now holds its lock. Notes that
// somebody else holds locked are passed over. With a result the caller shows it and then calls MarkAlarmFired, whatever
// the user answered. Whether a check may run at all (refresh switch, an alarm on the screen) is the caller's to know.
std::optional<DueAlarm> FindDueAlarm(TableFile& file, const Clock& clock = SystemClock());

// Marks the alarm as spent, flushes and gives the lock back. 1, or 0 when it could not be written: the alarm then comes
// again.
int MarkAlarmFired(TableFile& file, DueAlarm& alarm);

}  // namespace jotlet
