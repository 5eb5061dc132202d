#pragma once

#include <memory>
#include <optional>

#include "notes/model/note_record.h"
#include "store/record_hold.h"

// Which alarm is due. A file is asked anew at each check; nothing of it is kept in between.

namespace jotlet {

class TableFile;

// True when the alarm's moment has come. Days are compared by day number, and a date outside the calendar has the
// number -1; on the day itself the 5-minute slots of the times decide. `alarmState` is not looked at.
bool IsAlarmDue(const NoteRecord& note, const DateValue& today, const TimeValue& now);

struct DueAlarm {
    std::unique_ptr<RecordHold> hold;
    NoteRecord note;
};

// What one look at the file found.
struct AlarmCheck {
    bool anyWaiting = false;  // a note that this copy may see has an alarm set, due or not
    std::optional<DueAlarm> due;
};

// Finds the due alarm with the earliest date that this copy may see and can lock, and holds it. Notes that somebody
// else holds are passed over. With a due alarm the caller shows it and then calls MarkAlarmFired, or just lets it go
// when nobody saw it to its end: the alarm stays waiting. Whether a check may run at all (refresh switch, an alarm on
// the screen) is the caller's to know.
AlarmCheck FindDueAlarm(TableFile& file, const Clock& clock = SystemClock());

// Marks the alarm as spent, on the disk, and gives the lock back. When that fails the alarm comes again.
SaveResult MarkAlarmFired(DueAlarm& alarm);

}  // namespace jotlet
