// What happens to all participants of an event at one time: a purge, a change, a withdrawal.
#include <vector>

#include "net/core/outbox.h"
#include "net/core/outbox_file.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

// The record at `address`, locked for this object's lifetime and read under that lock.
class HeldRecord {
public:
    HeldRecord(TableFile& table, RecordAddress address, std::uint64_t eventId) : table(table), address(address)
    {
        locked = table.LockRecord(address) == 1;
        // The slot may have gone to another event's record since it was found.
        ours = locked && table.ReadRecord(BytesOf(record), address) == 1 && record.eventId == eventId;
    }
    ~HeldRecord()
    {
        if (locked)
            table.UnlockRecord(address);
    }
    HeldRecord(const HeldRecord&) = delete;
    HeldRecord& operator=(const HeldRecord&) = delete;

    // Locked by this copy, live and of the event.
    bool IsOurs() const { return ours; }
    bool SetStatus(std::uint8_t status)
    {
        record.sendStatus = status;
        return table.WriteRecord(BytesOf(record), address) == 1;
    }
    bool Delete() { return table.DeleteRecord(address) == 1; }
    std::uint8_t Status() const { return record.sendStatus; }

private:
    TableFile& table;
    RecordAddress address;
    SendRecord record{};
    bool locked = false;
    bool ours = false;
};

// True when the slot at `address` no longer holds a record of the event.
bool IsGone(const TableFile& table, RecordAddress address, std::uint64_t eventId)
{
    SendRecord record{};
    return table.ReadRecord(BytesOf(record), address) != 1 || record.eventId != eventId;
}

void AnnounceChange(TableFile& table, std::uint64_t eventId)
{
    for (const RecordAddress address : RecordsOfEvent(table, eventId))
        if (HeldRecord held(table, address, eventId); held.IsOurs())
            held.SetStatus(kSendWaiting);
    table.Flush();
}

// True when nobody is left who has to be told.
bool AnnounceWithdrawal(TableFile& table, std::uint64_t eventId, bool announced)
{
    bool nobodyLeft = true;
    for (const RecordAddress address : RecordsOfEvent(table, eventId)) {
        HeldRecord held(table, address, eventId);
        if (!held.IsOurs()) {
            nobodyLeft = nobodyLeft && IsGone(table, address, eventId);
        } else if (held.Status() == kSendWaiting && !announced) {
            nobodyLeft = held.Delete() && nobodyLeft;
        } else {
            held.SetStatus(kSendCancelled);
            nobodyLeft = false;
        }
    }
    table.Flush();
    return nobodyLeft;
}

}  // namespace

int IsGroupEvent(const RecordHeader& note)
{
    return note.eventState != kEventNone ? 1 : 0;
}

int PurgeEvent(std::string_view noteFilePath, std::uint64_t eventId)
{
    const RefreshPause pause;
    if (const auto table = OpenOutboxFile(OutboxPath(noteFilePath))) {
        for (const RecordAddress address : RecordsOfEvent(*table, eventId))
            if (HeldRecord held(*table, address, eventId); held.IsOurs())
                held.Delete();
        table->Flush();
    }
    return 1;
}

int NotifyEvent(std::string_view noteFilePath, NoteRecord& note, int mode)
{
    if (!IsGroupEvent(note))
        return 0;
    const bool change = mode == kNotifyChange && note.eventState != kEventWithdrawn;
    const bool withdrawal = mode == kNotifyWithdrawal;
    if (!change && !withdrawal)
        return 1;

    const RefreshPause pause;
    const std::string path = OutboxPath(noteFilePath);
    const auto table = OpenOutboxFile(path);
    if (change) {
        if (table)
            AnnounceChange(*table, note.uniqueId);
        note.eventState = kEventHasRecipients;
        note.eventStatus = kStatusChange;
        return 1;
    }
    // Of a file that is there and cannot be opened nobody knows whom it holds.
    const bool nobodyLeft = table ? AnnounceWithdrawal(*table, note.uniqueId, note.eventStatus != kStatusNotAnnounced)
                                  : !TableFile::Exists(path);
    note.eventState = kEventWithdrawn;
    note.eventStatus = kStatusWithdrawal;
    if (nobodyLeft)
        note.active = 0;
    return 1;
}

}  // namespace jotlet
