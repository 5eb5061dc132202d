// What happens to all participants of an event at one time: a purge, a change, a withdrawal.
#include <vector>

#include "net/core/outbox.h"
#include "net/core/outbox_file.h"
#include "store/record_hold.h"

namespace jotlet {

namespace {

// A record of the event, locked for this object's lifetime and read under that lock.
class HeldRecord {
public:
    HeldRecord(TableFile& table, RecordAddress address, std::uint64_t eventId) : hold(table, address)
    {
        failed = !hold && !hold.WhyNot();
        // The slot may have gone to another event's record since it was found.
        ours = hold && hold.Read(BytesOf(record)) && record.eventId == eventId;
    }

    // Locked by this copy, live and of the event.
    bool IsOurs() const { return ours; }
    // The disk kept it from being locked. What somebody else holds is no failure.
    bool Failed() const { return failed; }
    bool SetStatus(std::uint8_t status)
    {
        record.sendStatus = status;
        return hold.Write(BytesOf(record));
    }
    bool Delete() { return hold.Delete(); }
    std::uint8_t Status() const { return record.sendStatus; }

private:
    RecordHold hold;
    SendRecord record{};
    bool failed = false;
    bool ours = false;
};

// True when the slot at `address` no longer holds a record of the event.
bool IsGone(const TableFile& table, RecordAddress address, std::uint64_t eventId)
{
    SendRecord record{};
    return table.ReadRecord(BytesOf(record), address) != 1 || record.eventId != eventId;
}

// These three are false when a record could not be written. What somebody else holds is passed over.
bool AnnounceChange(TableFile& table, std::uint64_t eventId)
{
    bool written = true;
    for (const RecordAddress address : RecordsOfEvent(table, eventId)) {
        HeldRecord held(table, address, eventId);
        written = (held.IsOurs() ? held.SetStatus(kSendWaiting) : !held.Failed()) && written;
    }
    return table.Flush() == 1 && written;
}

// `nobodyLeft`: nobody is left who has to be told.
bool AnnounceWithdrawal(TableFile& table, std::uint64_t eventId, bool announced, bool& nobodyLeft)
{
    bool written = true;
    for (const RecordAddress address : RecordsOfEvent(table, eventId)) {
        HeldRecord held(table, address, eventId);
        if (!held.IsOurs()) {
            written = written && !held.Failed();
            nobodyLeft = nobodyLeft && IsGone(table, address, eventId);
            continue;
        }
        const bool drop = held.Status() == kSendWaiting && !announced;
        const bool done = drop ? held.Delete() : held.SetStatus(kSendCancelled);
        nobodyLeft = nobodyLeft && drop && done;
        written = written && done;
    }
    return table.Flush() == 1 && written;
}

bool Purge(TableFile& table, std::uint64_t eventId)
{
    bool written = true;
    for (const RecordAddress address : RecordsOfEvent(table, eventId)) {
        HeldRecord held(table, address, eventId);
        written = (held.IsOurs() ? held.Delete() : !held.Failed()) && written;
    }
    return table.Flush() == 1 && written;
}

}  // namespace

int IsGroupEvent(const RecordHeader& note)
{
    return note.eventState != kEventNone ? 1 : 0;
}

int PurgeEvent(std::string_view noteFilePath, std::uint64_t eventId, bool* reached)
{
    const RefreshPause pause;
    const std::string path = OutboxPath(noteFilePath);
    const auto table = OpenOutboxFile(path);
    const bool purged = table ? Purge(*table, eventId) : !TableFile::Exists(path);
    if (reached)
        *reached = purged;
    return 1;
}

int NotifyEvent(std::string_view noteFilePath, NoteRecord& note, int mode, bool* reached)
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
    // Of a file that is there and cannot be opened nobody knows whom it holds.
    bool told = table || !TableFile::Exists(path);
    bool nobodyLeft = told;
    if (table)
        told = change ? AnnounceChange(*table, note.uniqueId)
                      : AnnounceWithdrawal(*table, note.uniqueId, note.eventStatus != kStatusNotAnnounced, nobodyLeft);
    if (reached)
        *reached = told;
    note.eventState = change ? kEventHasRecipients : kEventWithdrawn;
    note.eventStatus = change ? kStatusChange : kStatusWithdrawal;
    if (withdrawal && nobodyLeft)
        note.active = 0;
    return 1;
}

}  // namespace jotlet
