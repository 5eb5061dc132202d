#include "notes/model/alarms.h"

#include <utility>

#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

bool IsAlarmDue(const NoteRecord& note, const DateValue& today, const TimeValue& now)
{
    const int alarmDay = DayNumberOf(note.alarmDate);
    const int currentDay = DayNumberOf(today);
    if (alarmDay != currentDay)
        return alarmDay < currentDay;
    return TimeSlot(note.alarmTime) <= TimeSlot(now);
}

AlarmCheck FindDueAlarm(TableFile& file, const Clock& clock)
{
    AlarmCheck check;
    if (file.RecordSize() != kNoteRecordSize)
        return check;
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    query.AddByteTerm(kAlarmStateOffset, TermKind::Equal, kAlarmSet, Connective::And);
    file.RunQuery(query);
    check.anyWaiting = query.resultCount > 0;
    if (!check.anyWaiting)
        return check;
    query.Sort(file, kAlarmDateOffset, sizeof(DateValue), CompareDates);

    DateValue today;
    Today(today, clock);
    TimeValue now;
    Now(now, 5, clock);
    const auto fires = [&](const NoteRecord& note) {
        return IsAlarmDue(note, today, now) && (note.confidential == 0 || SeesConfidential(file.GetRole()));
    };
    for (const RecordAddress address : query.Results()) {
        DueAlarm due{.hold = nullptr, .note = {}};
        if (file.ReadRecord(BytesOf(due.note), address) != 1 || !fires(due.note))
            continue;
        due.hold = std::make_unique<RecordHold>(file, address);
        // Another copy may have fired it, or its user changed it, between the read and the lock.
        if (*due.hold && due.hold->Read(BytesOf(due.note)) && due.note.alarmState == kAlarmSet && fires(due.note)) {
            check.due = std::move(due);
            return check;
        }
    }
    return check;
}

SaveResult MarkAlarmFired(DueAlarm& alarm)
{
    alarm.note.alarmState = kAlarmFired;
    SaveResult saved = alarm.hold->Save(BytesOf(alarm.note));
    alarm.hold.reset();
    return saved;
}

}  // namespace jotlet
