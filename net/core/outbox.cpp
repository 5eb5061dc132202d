#include "net/core/outbox.h"

#include <algorithm>

#include "net/core/outbox_file.h"
#include "platform/base/text.h"
#include "store/record_hold.h"
#include "store/record_query.h"

namespace jotlet {

namespace {

bool IsSameParticipant(const SendRecord& first, const SendRecord& second)
{
    return FieldText(first.participantEmail) == FieldText(second.participantEmail) &&
           FieldText(first.participantName) == FieldText(second.participantName);
}

// A record of the event in the file, on its way through a save.
struct SavedRecord {
    RecordAddress address = 0;
    SendRecord record;
    bool kept = false;  // holds a participant who is still alive
};

using SavedRecords = std::vector<SavedRecord>;

// The record in the file that holds the participant of `slot`: the one that the slot came from, else one of the same
// name and e-mail that no slot came from. So two copies that save one event after each other list nobody twice.
SavedRecords::iterator FindOwn(SavedRecords& present, const SendRecord& slot, std::span<const SendRecord> slots)
{
    const auto find = [&](auto&& fits) {
        return std::find_if(present.begin(), present.end(), [&](const SavedRecord& candidate) {
            return !candidate.kept && IsSameParticipant(candidate.record, slot) && fits(candidate.record.uniqueId);
        });
    };
    const auto own = find([&](std::uint64_t id) { return id == slot.uniqueId; });
    if (own != present.end())
        return own;
    return find([&](std::uint64_t id) {
        return std::none_of(slots.begin(), slots.end(), [&](const SendRecord& other) { return other.uniqueId == id; });
    });
}

// The record as it goes into the file: a new header, and of the slot only what tells the participant.
SendRecord Renewed(const TableFile& table, const SendRecord& slot, std::uint64_t eventId, const Clock& clock)
{
    SendRecord record{};
    InitRecordHeader(table, record, kSendRecordSize, clock);
    record.eventId = eventId;
    record.participantName = slot.participantName;
    record.participantEmail = slot.participantEmail;
    record.sendStatus = slot.sendStatus;
    return record;
}

// Puts `record` in the place of the one at `address`. False when somebody else holds that one or the write failed.
bool Rewrite(TableFile& table, RecordAddress address, SendRecord record)
{
    RecordHold hold(table, address);
    record.locked = 1;  // the lock is ours until it is given back
    return hold && hold.Write(BytesOf(record));
}

}  // namespace

Outbox::Outbox(std::string_view noteFilePath, std::uint64_t eventId, const Clock& clock)
    : path(OutboxPath(noteFilePath)), eventId(eventId), clock(clock)
{
    slots.reserve(kMaxParticipants);
    Load();
}

Outbox::~Outbox()
{
    Close();
}

void Outbox::Open()
{
    if (table)
        return;
    table = OpenOutboxFile(path);
    canOpen = table != nullptr;
    if (!table)
        return;
    query = std::make_unique<RecordQuery>();
    query->Reset();
    query->PrepareResults();
    query->AddInt64Term(kEventIdOffset, TermKind::Equal, eventId, Connective::And);
    table->RunQuery(*query);
    query->resultCount = std::min(query->resultCount, kMaxParticipants);
    query->Sort(*table, kParticipantNameOffset, kParticipantNameSize, CompareTitles);
}

void Outbox::Close()
{
    query.reset();
    table.reset();
}

std::vector<RecordAddress> Outbox::EventAddresses() const
{
    if (!query)
        return {};
    const auto results = query->Results();
    return {results.begin(), results.end()};
}

int Outbox::Load()
{
    const RefreshPause pause;
    slots.clear();
    loadedIds.clear();
    Open();
    for (const RecordAddress address : EventAddresses()) {
        const RecordHold hold(*table, address);
        SendRecord record{};
        // The slot may have gone to another event's record since the query.
        if (!hold || !hold.Read(BytesOf(record)) || record.eventId != eventId)
            continue;
        slots.push_back(record);
        loadedIds.push_back(record.uniqueId);
    }
    Close();
    return 1;
}

int Outbox::Save()
{
    const RefreshPause pause;
    Open();
    SavedRecords present;
    for (const RecordAddress address : EventAddresses()) {
        SavedRecord found{.address = address, .record = {}};
        if (table->ReadRecord(BytesOf(found.record), address) == 1 && found.record.eventId == eventId)
            present.push_back(found);
    }

    // Whoever stays is put into the file first: in the place of their own record, else as a new one. Only a record that
    // holds the same participant is rewritten, so no kill between two writes can leave anybody out.
    std::vector<SendRecord> written;
    failedWrites = 0;
    for (const SendRecord& slot : slots) {
        if (slot.active != 1)
            continue;
        if (!table) {
            ++failedWrites;
            continue;
        }
        SendRecord record = Renewed(*table, slot, eventId, clock);
        const auto own = FindOwn(present, slot, slots);
        bool done = false;
        if (own != present.end()) {
            done = Rewrite(*table, own->address, record);
            own->kept = done;
        }
        if (!done)
            done = table->AddRecord(BytesOf(record)) == 1;
        if (done) {
            written.push_back(record);
        } else {
            if (own != present.end())
                own->kept = true;  // better the old record than none
            ++failedWrites;
        }
    }

    // What was loaded and is no longer wanted goes last. What Load had to pass over was never shown to anybody: it
    // stays.
    if (table)
        table->Flush();
    for (const SavedRecord& old : present) {
        const bool loaded = std::find(loadedIds.begin(), loadedIds.end(), old.record.uniqueId) != loadedIds.end();
        if (old.kept || !loaded)
            continue;
        if (RecordHold hold(*table, old.address); hold)
            hold.Delete();
    }
    if (table)
        table->Flush();
    Close();

    slots = std::move(written);
    slots.reserve(kMaxParticipants);
    loadedIds.clear();
    for (const SendRecord& slot : slots)
        loadedIds.push_back(slot.uniqueId);
    return 1;
}

int Outbox::Add(const SendRecord& participant)
{
    if (slots.size() >= static_cast<std::size_t>(kMaxParticipants))
        return 0;
    SendRecord added = participant;
    added.active = 1;
    const auto dead = std::find_if(slots.begin(), slots.end(), [](const SendRecord& slot) { return slot.active == 0; });
    if (dead != slots.end())
        *dead = added;
    else
        slots.push_back(added);
    return 1;
}

int Outbox::Remove(const SendRecord& participant, RemoveKey key, RemoveAction action)
{
    const auto isMeant = [&](const SendRecord& slot) {
        if (slot.active != 1)
            return false;
        return key == RemoveKey::Name ? FieldText(slot.participantName) == FieldText(participant.participantName)
                                      : FieldText(slot.participantEmail) == FieldText(participant.participantEmail);
    };
    const auto found = std::find_if(slots.begin(), slots.end(), isMeant);
    if (found == slots.end())
        return 0;
    if (action == RemoveAction::Drop)
        found->active = 0;
    else
        found->sendStatus = kSendCancelled;
    return 1;
}

int Outbox::Commit(NoteRecord& note)
{
    const auto isAlive = [](const SendRecord& slot) { return slot.active == 1; };
    const auto isWork = [](const SendRecord& slot) {
        return slot.active == 1 && (slot.sendStatus == kSendWaiting || slot.sendStatus == kSendCancelled);
    };
    const bool anyAlive = std::any_of(slots.begin(), slots.end(), isAlive);
    if (note.eventState == kEventNone && !anyAlive)
        return kCommitted;
    const bool becomesWork = note.eventState == kEventNone || (note.eventState != kEventHasRecipients &&
                                                               std::any_of(slots.begin(), slots.end(), isWork));
    Save();
    if (becomesWork) {
        note.eventState = kEventHasRecipients;
        return kCommittedWithWork;
    }
    if (!anyAlive)
        note.eventState = kEventNone;
    return kCommitted;
}

}  // namespace jotlet
