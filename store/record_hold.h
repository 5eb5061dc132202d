// A record that this copy may change: locked in the file, given back at the end whatever happens.
//
// The one road of a change is: hold the record, Read it anew under the lock, work, Save or Remove it, give it back.
// Save and Remove give success only for what is on the disk, and put the record back as it was when it doesn't get
// there; so the lock is given back last, and an editor that could not save still holds its note.
//
// Owns:    the edit lock, and the pause of the refresh (refresh_switch.h): off while a record is held, then as it was
//          before. Holds may stand within one another.
// Threads: one. The file outlives the hold.
#pragma once

#include <optional>
#include <span>

#include "platform/base/file_error.h"
#include "store/record_address.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {

enum class SaveState {
    Saved,        // in the file and on the disk
    Refused,      // the role may not change records; nothing was changed
    Failed,       // the file is as it was, as far as the drive lets it be put back
    Replaced,     // the path leads to another file by now, or to none; nothing was written
    Unconfirmed,  // a removed record could neither be confirmed on the disk nor be put back
};

struct SaveResult {
    SaveState state = SaveState::Saved;
    FileError error;  // why it failed

    explicit operator bool() const { return state == SaveState::Saved; }
};

class RecordHold {
public:
    // Tries to take the lock.
    RecordHold(TableFile& file, RecordAddress address);
    ~RecordHold() { GiveBack(); }
    RecordHold(const RecordHold&) = delete;
    RecordHold& operator=(const RecordHold&) = delete;

    explicit operator bool() const { return pause.has_value(); }
    // Right after a lock that was not taken: what went wrong, or Saved when somebody has it or the record is gone.
    SaveResult WhyNot() const;
    TableFile& File() const { return file; }
    RecordAddress Address() const { return address; }

    // As ReadRecord: false, and the bytes all the same, when the record is gone.
    bool Read(std::span<std::byte> record) const { return file.ReadRecord(record, address) == 1; }

    SaveResult Save(std::span<const std::byte> record);
    SaveResult Remove();
    // For many records with one Flush of the caller's behind them; nothing is put back.
    bool Write(std::span<const std::byte> record) { return file.WriteRecord(record, address) == 1; }
    bool Delete() { return file.DeleteRecord(address) == 1; }

    // False when the `locked` byte could not be cleared; it then holds nobody up, and a repair clears it.
    bool GiveBack();

private:
    TableFile& file;
    const RecordAddress address;
    std::optional<RefreshPause> pause;  // as long as the lock is ours
};

// A new record: added, and on the disk. One that doesn't get there is taken out again.
SaveResult AddSaved(TableFile& file, std::span<const std::byte> record);

}  // namespace jotlet
