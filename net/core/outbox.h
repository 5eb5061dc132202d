#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "net/core/send_record.h"
#include "notes/model/note_record.h"
#include "store/record_address.h"

// The participants of group events: one outbox file beside each note file, one record a participant and event. Nothing
// is sent from here: the file is the hand-over to the sending agent.

namespace jotlet {

class Clock;
class RecordQuery;
class TableFile;

inline constexpr int kMaxParticipants = 30;

// Results of Outbox::Commit.
inline constexpr int kCommitted = 1;
inline constexpr int kCommittedWithWork = 100;  // tell the user: "Item put on Events panel."

// Which field of a participant Remove compares, exactly.
enum class RemoveKey { Name = 1, Email = 2 };
enum class RemoveAction {
    Drop = 0,    // nobody has to be told
    Cancel = 1,  // stays, marked as cancelled
};

// The participants of one event in memory, for one command on its note, whose lock the caller holds all the while.
//
// Owns:    its slots. The file is open only during an operation and is made at the first one.
// Threads: one.
// Errors:  nothing throws. A record that somebody else holds locked is passed over and stays in the file as it is; a
// file
//          that cannot be opened leaves the operation without participants. FailedWrites and CanOpenFile tell.
// Refresh: the refresh switch is off during an operation, and afterwards as it was before.
class Outbox {
public:
    // Loads the participants.
    Outbox(std::string_view noteFilePath, std::uint64_t eventId, const Clock& clock = SystemClock());
    ~Outbox();
    Outbox(const Outbox&) = delete;
    Outbox& operator=(const Outbox&) = delete;

    // The note file's path with ".tsi" behind it.
    const std::string& Path() const { return path; }
    // All slots in use; a removed participant's has `active` 0.
    std::span<const SendRecord> Slots() const { return slots; }

    // Makes the file when it is missing, repairs it when need be, opens it and finds the event's first 30 records, in
    // name order. Nothing when open.
    void Open();
    void Close();

    // Reads the event's participants into the slots. Always 1.
    int Load();
    // Makes the file hold the participants that are alive, each with a new id, in the place of those that were loaded;
    // then only these are left as slots. Always 1.
    // Safe against a kill at any moment: records are rewritten in place and new ones added first, and what was removed
    // goes last, so whoever stays invited is in the file all the time. A record that Load had to pass over is left
    // alone.
    int Save();
    // 1; 0 when 30 slots are in use, dead ones included. The first dead slot is taken again.
    int Add(const SendRecord& participant);
    // Drops or marks the first one alive whose key equals `participant`'s. 1, or 0 when there is none.
    int Remove(const SendRecord& participant, RemoveKey key, RemoveAction action);
    // Ends a run of the participants dialog: saves what has to be, and sets the note's eventState. The caller writes
    // the note in every case. kCommitted or kCommittedWithWork.
    int Commit(NoteRecord& note);

    // Participants alive that the last Save could not get into the file.
    int FailedWrites() const { return failedWrites; }
    // False when the last Open found a file that cannot be opened (damaged, of another kind, no permission), or could
    // not make it.
    bool CanOpenFile() const { return canOpen; }

private:
    std::vector<RecordAddress> EventAddresses() const;

    std::string path;
    std::uint64_t eventId;
    const Clock& clock;
    std::vector<SendRecord> slots;
    std::vector<std::uint64_t> loadedIds;  // uniqueIds of the records that the slots came from
    std::unique_ptr<TableFile> table;
    std::unique_ptr<RecordQuery> query;
    int failedWrites = 0;
    bool canOpen = false;
};

// 1 when the note is a group event, withdrawn ones included, else 0.
int IsGroupEvent(const RecordHeader& note);

// Deletes all records of the event, also past 30. Always 1. Here and in NotifyEvent `reached` becomes false when the
// outbox file is there and cannot be opened, or a record could not be written: tell the user.
int PurgeEvent(std::string_view noteFilePath, std::uint64_t eventId, bool* reached = nullptr);

// Modes of NotifyEvent; others change nothing.
inline constexpr int kNotifyWithdrawal = 1;
inline constexpr int kNotifyChange = 3;

// Queues a change or a withdrawal for all participants of the event, also past 30, and sets the note's eventState and
// eventStatus. The caller writes the note afterwards, or removes it through DeleteRecord when a withdrawal cleared its
// `active`: then there was nobody to tell. That is never so while a record could not be reached (locked by somebody, or
// an outbox file that is there and cannot be opened). A withdrawn event stays withdrawn. 0 when the note is no group
// event, else 1.
int NotifyEvent(std::string_view noteFilePath, NoteRecord& note, int mode, bool* reached = nullptr);

}  // namespace jotlet
