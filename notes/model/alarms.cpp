#include "notes/model/alarms.h"

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

std::optional<DueAlarm> FindDueAlarm(TableFile& file, const Clock& clock)
{
    if (file.RecordSize() != kNoteRecordSize)
        return std::nullopt;
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    query.AddByteTerm(kAlarmStateOffset, TermKind::Equal, kAlarmSet, Connective::And);
    file.RunQuery(query);
    if (query.resultCount == 0)
        return std::nullopt;
    query.Sort(file, kAlarmDateOffset, sizeof(DateValue), CompareDates);

    DateValue today;
    Today(today, clock);
    TimeValue now;
    Now(now, 5, clock);
    for (const RecordAddress address : query.Results()) {
        DueAlarm due{.address = address, .note = {}};
        if (file.ReadRecord(BytesOf(due.note), address) != 1 || !IsAlarmDue(due.note, today, now))
            continue;
        if (due.note.confidential != 0 && !SeesConfidential(file.GetRole()))
            continue;
        if (file.LockRecord(address) != 1)
            continue;
        // Another copy may have fired it, or its user changed it, between the read and the lock.
        if (file.ReadRecord(BytesOf(due.note), address) == 1 && due.note.alarmState == kAlarmSet &&
            IsAlarmDue(due.note, today, now))
            return due;
        file.UnlockRecord(address);
    }
    return std::nullopt;
}

int MarkAlarmFired(TableFile& file, DueAlarm& alarm)
{
    alarm.note.alarmState = kAlarmFired;
    const int written = file.WriteRecord(BytesOf(alarm.note), alarm.address);
    file.Flush();
    file.UnlockRecord(alarm.address);
    return written == 1 ? 1 : 0;
}

}  // namespace jotlet
