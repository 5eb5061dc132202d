// One table on disk: size block, header, categories, then record slots of one fixed size. Note files (.jot), the
// contact book (.tb1) and the outbox (.tsi) are all table files. FORMAT.md shows the bytes.
//
// Several copies may have the same file open, on several computers. Their changes are kept apart by byte-range locks:
// each read-change-write of a counter or a lock byte runs under the file's mutation lock, so no count is lost, no slot
// is given twice and no record is locked twice. An edit lock is the `locked` byte of the record and a lock that ends
// with its copy: a byte that nobody's lock backs up was left by a crash, and is taken over by the next who wants the
// record. The header is not cached: each operation that needs a header value reads it from the file. On a drive that
// keeps caches reads go round them (shared_file.h); where locks stay on each machine turns are taken by a file beside
// the table (turn_file.h), and held records are named in the list of copies (copies.h).
//
// To change a record, hold it (record_hold.h). What Flush has confirmed survives a kill and a power failure. Changes of
// the header go through UpdateHeader.
//
// A file that another program replaces or removes under an open table gets nothing more written to it: every change
// first makes sure that the path still names it (PathStillNamesThisFile).
//
// Units:   a record's address is the byte offset of its slot (record_address.h).
// Owns:    the file handle. Close(), or the destructor, gives back this opening's share of openCount.
// Threads: one.
// Errors:  nothing throws. Each operation tells its results; on an object that isn't open every one gives 0 (GetRole:
//          None). A failed change leaves the file as it was, but for the stamp of a file on a drive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/file_mapping.h"
#include "platform/base/file_system.h"
#include "platform/base/shared_file.h"
#include "platform/base/silent_drive.h"
#include "platform/base/turn_file.h"
#include "store/copies.h"
#include "store/field_range.h"
#include "store/record_address.h"
#include "store/role.h"
#include "store/table_memory.h"
#include "store/table_schema.h"

namespace jotlet {

class RecordQuery;
class TableTurn;

// Why a table file could not be opened or made.
enum class OpenFailure {
    None,
    Missing,
    Busy,          // somebody holds it alone (a compaction that takes long)
    NotTableFile,  // a folder or device, or sizes that no table file has
    Truncated,     // sizes of a table file, but cut before its first record
    TooLarge,      // records beyond the 2 GiB that addresses reach
    Permission,    // may not be read and written
    NoAnswer,      // the drive doesn't answer
    Io,
};

// Which records a scan delivers.
enum class ScanScope {
    Visible,  // as in a query: confidential records for the Owner alone
    All,      // every live record, for upkeep that shows nobody anything
};

// What reading a slot came to.
enum class RecordState {
    Live,
    Free,        // also a slot that another copy freed meanwhile
    Unreadable,  // no whole slot there, or the drive refuses it
};

// What DescribeSlots counts.
struct SlotCounts {
    std::int64_t slots = 0;  // whole slots
    std::int64_t live = 0;
    std::int64_t locked = 0;        // live and being edited
    std::int64_t cutTailBytes = 0;  // bytes of an incomplete last slot; 0 in a sound file
};

class TableFile {
public:
    // Tries to Open; IsOpen and GetOpenFailure tell how it went. `password` decides the role.
    TableFile(std::string path, std::string_view password);
    ~TableFile();
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    // Makes the missing file, durably and in one step (a kill leaves either no file or the whole new one), and opens
    // it. 1; 0 when it exists already, the sizes are none of a table file, or it can't be made.
    int Create(const TableHeader& header, std::uint32_t headerSize, const CategoryBlock& categories,
               std::uint32_t categorySize, std::uint32_t recordSize);
    // 1 when open (also when it was already), else 0. Refuses what is no table file before writing anything to it.
    int Open();
    // Lowers openCount, flushes, closes. Nothing on a closed object.
    void Close();
    // 1 when the file exists, else 0.
    static int Exists(const std::string& path);

    // Whether the path still leads to the file that this object has open: another program may have put a new one there,
    // or taken it away. Every change, and on this machine every Flush, asks this itself, and then writes nothing and
    // gives 0.
    bool PathStillNamesThisFile() const;
    // What the last such question found. The way on is Close, which leaves the lost file as it is, and Open; addresses
    // of before then mean nothing.
    bool WasReplaced() const { return replaced; }

    // Whether the path leads to a file on another mount than the open one: the drive went away and came back, and only
    // opening anew leads to it.
    bool IsMountedAnew() const;

    bool IsOpen() const { return static_cast<bool>(file); }
    // False on a drive, where any call may take long.
    bool IsOnThisMachine() const { return file.GetDrive().isCoherent; }
    // Of a file on a drive, for who watches it (stamp_watch.h): while the drive doesn't answer every call on it fails
    // at once, from any table, Close among them (platform/base/silent_drive.h).
    void SetDriveAnswers(bool answers);
    OpenFailure GetOpenFailure() const { return openFailure; }
    const FileError& GetOpenError() const { return openError; }  // more about it, where the system refused
    // Why the last operation that gave 0 could not be done; None when the system had no part in that.
    const FileError& GetLastError() const { return lastError; }
    // Set when the open file may only be read, whatever the password says: its mount or its server forbids more
    // (operation "open"), or turns can't be taken because nothing may be made in its folder, on a drive where that is
    // needed. GetRole gives at most Reader then.
    const FileError& GetReadOnlyReason() const { return readOnlyReason; }
    // Enters this copy in the list of copies (copies.h), for others to see. False when that can't be done.
    bool EnterListOfCopies();
    const std::string& Path() const { return path; }
    const std::string& Password() const { return password; }
    void SetPassword(std::string_view text) { password = text; }
    // ~0 until known from the file or from Create.
    std::uint32_t HeaderSize() const { return headerSize; }
    std::uint32_t CategorySize() const { return categorySize; }
    std::uint32_t RecordSize() const { return recordSize; }
    RecordAddress FirstRecordOffset() const { return static_cast<RecordAddress>(12 + headerSize + categorySize); }

    // Blocks. 1 if all bytes moved, else 0. Reads see what other copies have written; a plain write puts back every
    // byte of the block, counters included, so use the Update... operations below for changes.
    int ReadSizes(SizeBlock& out) const;
    int WriteSizes(const SizeBlock& sizes);
    int ReadHeader(TableHeader& out) const;
    int WriteHeader(const TableHeader& header);
    int ReadCategories(CategoryBlock& out) const;
    int WriteCategories(const CategoryBlock& categories);

    // Read, change by `change`, write, under the mutation lock. The three counters are kept as the file has them,
    // whatever `change` does to them. `change` gives false to leave all as it is. 1 when written, else 0. `change` must
    // not call operations of a table.
    int UpdateHeader(const std::function<bool(TableHeader&)>& change);
    int UpdateCategories(const std::function<bool(CategoryBlock&)>& change);

    // Stores `record` (RecordSize() bytes, `active` 1) in the first free slot, or behind the last one.
    // 1, and the address in `address` if given; kRefusedByRole; 0 when the write failed, no slot could be got, or the
    // file has reached 2 GiB. A header that counts free slots which aren't there gives 0 until the next repair. Where
    // records are added one by one with a Flush each, a file of 1,000 slots and more grows by 64 slots at once, the
    // others free and counted.
    int AddRecord(std::span<const std::byte> record, RecordAddress* address = nullptr);
    // AddRecord for each of the records that stand one behind the other in `records`, in one turn and, where they go
    // behind the last slot, with one write. `addresses` gets one address for each that was stored: all of them with 1,
    // the first few or none otherwise. For imports; others wait meanwhile, so not more than a few hundred at once.
    int AddRecords(std::span<const std::byte> records, std::vector<RecordAddress>& addresses);
    // For an added record that was told as failed and could not be taken out again, since the drive was gone: the next
    // turn on the drive takes it out, unless somebody has changed it since.
    void TakeOutLater(std::span<const std::byte> record, RecordAddress address);
    // Frees the slot; its other bytes stay. 1; kRefusedByRole; 0 on a failure, or when the slot is free already.
    int DeleteRecord(RecordAddress address);
    // 1; kRefusedByRole; 0 on a failure, or when the address is no slot. Looks at neither `active` nor `locked` in the
    // file: write only what you hold locked.
    int WriteRecord(std::span<const std::byte> record, RecordAddress address);
    // Copies the slot into `record` (at least RecordSize() bytes). 1: a live record. 0: the slot is free (its bytes are
    // delivered all the same), cut short, no slot, or unreadable.
    int ReadRecord(std::span<std::byte> record, RecordAddress address) const;
    // The same, telling a free slot from one whose bytes can't be had.
    RecordState ReadState(std::span<std::byte> record, RecordAddress address) const;
    // Only those bytes of the record that lie in `field`. Result as ReadRecord.
    int ReadField(std::span<std::byte> bytes, FieldRange field, RecordAddress address) const;
    // The same two for what a list shows. On a drive they give what the last query saw, but for records that this copy
    // has changed since, and ask the server only for what isn't kept. Not for work on a record.
    int ReadListedRecord(std::span<std::byte> record, RecordAddress address) const;
    int ReadListedField(std::span<std::byte> bytes, FieldRange field, RecordAddress address) const;

    // 1 if this call took the lock, and then the refresh switch is off. 0 if the record is held (by whomever, this
    // object included) or free, or on a failure. A `locked` byte whose copy is gone doesn't count.
    int LockRecord(RecordAddress address);
    // Turns the refresh switch on in every case. 1 if this call cleared the lock, else 0.
    int UnlockRecord(RecordAddress address);

    // One read of 8 bytes; cheap enough for a timer. 0 when it can't be read.
    std::uint64_t GetChangeStamp() const;
    // From the password and the header as it is now. None when nothing matches or the header can't be read.
    Role GetRole() const;
    // 1 when everything that this object wrote so far is on the disk, but for the counters, which a repair would set.
    int Flush();

    // Fills the query's results (record_query.h). 1, or 0 when the file can't be read or there is no room for results;
    // the query then holds what had been found.
    int RunQuery(RecordQuery& query) const;

    // Fields that later queries will ask for: on a drive the first that reads the whole file keeps them, too. Later
    // ones then ask the server for what has changed only (change_ring.h).
    void ExpectQueriesFor(std::span<const FieldRange> fields);

    // Calls `visit` for every live record in file order, with the bytes of `fields` one behind the other, copied. No
    // limit of count. `visit` gives false to stop. 1 when it ran to an end or was stopped; 0 when a field doesn't lie
    // in the record or the file can't be read. The file may be changed by `visit`; records added meanwhile may be
    // missed.
    int ForEachRecord(std::span<const FieldRange> fields,
                      const std::function<bool(RecordAddress, std::span<const std::byte>)>& visit,
                      ScanScope scope = ScanScope::Visible) const;
    // Bytes of an incomplete last slot, which no operation shows; 0 in a sound file.
    std::int64_t CutTailBytes() const;
    // Gives back the memory that scans have touched, without closing anything. For after a query whose results stay on
    // the screen for a while; the next scan costs a little more.
    void LetGoOfPages() const { mapping.LetGoOfPages(); }
    // 1 and the counts, or 0.
    int DescribeSlots(SlotCounts& out) const;

    // A zeroed block of RecordSize() bytes; empty while the size isn't known.
    std::vector<std::byte> AllocRecordBuffer() const;

private:
    friend class RecordQuery;
    friend class StampWatch;
    friend class TableScan;
    friend class TableTurn;

    OpenFailure CheckSizes();
    OpenFailure OpenOnce();
    // Raises openCount, and enters the list of copies where that is needed.
    bool CountIn();
    // Waits for this file's turn to read, change and write. False also when the path names another file by now.
    bool TakeTurn(TableTurn& turn);
    bool TakeFileTurn();
    // Takes the result of asking for who has the path.
    bool CompareWithPath(int result, const FileIdentity& named) const;
    void EndTurn();
    // Where locks stay on each machine: nobody can have taken this turn for abandoned.
    bool IsTurnSure() const { return file.GetDrive().locksTravel || turnFile->IsSure(); }
    void TakeOutUnfinished();
    // Opens the file anew after the drive has forgotten this opening. False when the path leads to another file by now.
    bool Revive() const;
    // Remembers why the system refused; gives false.
    bool NoteFailure(const char* operation) const;

    // The lock behind a `locked` byte.
    bool TakeHold(RecordAddress address, bool isMarked);
    void DropHold(RecordAddress address);
    // False when the record was held and, for a silence of this copy or of the drive, no longer is.
    bool MayStillWrite(RecordAddress address);
    void LoseHold(RecordAddress address) const;

    bool Load(std::span<std::byte> bytes, std::int64_t offset) const;
    // Only in a turn. What was stored is at the server after Settle.
    bool Store(std::span<const std::byte> bytes, std::int64_t offset);
    bool Settle();
    bool LoadHeader(TableHeader& header) const;
    bool StoreHeader(const TableHeader& header);
    // A change of records in its turn: Begin before the bytes of a slot that is there, Count with each slot for the
    // header that is then stored. On a drive both tell it (change_ring.h). PutBack is for a change that failed.
    void MakeRingSure(TableHeader& header);
    bool BeginChange(TableHeader& header, RecordAddress slot);
    void CountChange(TableHeader& header, RecordAddress slot);
    void PutBackHeader(TableHeader& header, const TableHeader& before, RecordAddress slot);
    // False when no whole slot lies at the address.
    bool LoadSlot(RecordAddress address, std::span<std::byte> slot) const;
    bool LoadPrefix(RecordAddress address, RecordPrefix& prefix) const;

    bool IsInRecord(const FieldRange& field) const
    {
        return field.offset <= recordSize && field.size <= recordSize - field.offset;
    }
    // Makes the memory stand for the file as it is now, with these fields; `header` is the file's. False on this
    // machine, and when that can't be done: the file is to be read then.
    enum class WhenUnknown { ReadAll, GiveUp };
    bool Recall(std::span<const AskedField> fields, WhenUnknown then, TableHeader& header) const;
    bool ReadSlotsIntoMemory(std::int64_t from, std::int64_t to) const;
    bool RememberChanges(const TableHeader& header, std::int64_t slotCount) const;
    Role RoleIn(const TableHeader& header) const;

    // Where an added record goes. 0: nowhere.
    RecordAddress EndSlot() const;
    RecordAddress FindFreeSlot(const TableHeader& header) const;
    RecordAddress FindRememberedFreeSlot() const;
    // All of them or none, behind the last slot.
    int AppendRecords(std::span<const std::byte> records, TableHeader& header, RecordAddress& first);
    // Takes appended bytes back while nothing can stand behind them.
    bool CutBack(RecordAddress first, std::int64_t size);
    int ClearLock(RecordAddress address);
    int ReuseSlot(std::span<const std::byte> record, TableHeader& header, RecordAddress& address);
    bool SetByte(RecordAddress address, std::size_t offset, std::uint8_t value);
    bool AppendWithReserve(std::span<const std::byte> record, TableHeader& header, RecordAddress& address);
    void NoteFreeSlots(const TableHeader& header, RecordAddress allLiveBefore);

    std::string path;
    std::string password;
    std::uint32_t headerSize = ~std::uint32_t{0};
    std::uint32_t categorySize = ~std::uint32_t{0};
    std::uint32_t recordSize = ~std::uint32_t{0};
    mutable SharedFile file;
    mutable FileIdentity identity;  // of the open file
    mutable bool replaced = false;
    const std::shared_ptr<TurnFile> turnFile = std::make_shared<TurnFile>();
    mutable std::unique_ptr<CopyEntry> copies;
    std::vector<std::string> driveFolders;  // empty for a file on this machine
    std::optional<SilentDrive> silence;
    bool wantsEntry = false;
    bool isInTurn = false;
    OpenFailure openFailure = OpenFailure::None;
    FileError openError;
    mutable FileError lastError;
    FileError readOnlyReason;
    // Records whose lock this object has, and those whose lock it had until others took it for gone.
    mutable std::vector<RecordAddress> held;
    mutable std::vector<RecordAddress> lost;
    // A `locked` byte could not be cleared: the next opening that is alone repairs.
    bool leftLocked = false;
    std::vector<std::pair<RecordAddress, std::vector<std::byte>>> unfinished;  // see TakeOutLater
    mutable FileMapping mapping;
    mutable TableMemory memory;
    // A change could not be put back, and others may have seen it.
    bool ringIsUnsure = false;
    // All slots before `freeSlotHint` are live as long as the stamp in the file is `freeSlotStamp`.
    std::uint64_t freeSlotStamp = 0;
    RecordAddress freeSlotHint = 0;
    // What Flush has to put on the disk. Counters in the header don't count: after a power failure the repair sets
    // them.
    struct Unsynced {
        std::int64_t begin = 0;
        std::int64_t end = 0;
        bool everything = true;
    };
    void NoteWritten(RecordAddress address);
    // Whether the mapping, if there is one, reaches to `end`; lets it follow a file that has grown.
    bool IsMapped(std::int64_t end);
    Unsynced unsynced;
    int addsSinceFlush = 0;
    bool flushesEachAdd = false;
    // Slots that this object deleted under its lock and hasn't unlocked yet; see UnlockRecord.
    std::vector<RecordAddress> deletedUnderLock;
};

// What TableFile would say to opening the file, without writing anything. NotTableFile also when its records aren't of
// `recordSize` bytes. Waits for nobody; Busy is no obstacle to asking and isn't told. `header` gets the file's header.
OpenFailure ProbeTable(const std::string& path, std::uint32_t recordSize, FileError& error,
                       TableHeader* header = nullptr);

}  // namespace jotlet
