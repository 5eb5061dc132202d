// The operations of TableFile on single records.
//
// Order of writes, so that a copy killed between any two of them harms no other record:
//   append  record, stamp. Before the stamp: the record is there but nobody was told.
//   reuse   freeSlots, record with active 0, active, stamp. On the way: a free slot that nobody counts.
//   delete  active, stamp and freeSlots. On the way: the same.
// A slot that nobody counts is lost until the next repair; a count without a slot would make every add fail.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/base/file_system.h"
#include "store/change_ring.h"
#include "store/passwords.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "store/table_scan.h"
#include "store/table_turn.h"

namespace jotlet {
namespace {

constexpr std::size_t kActiveAt = offsetof(RecordPrefix, active);
constexpr std::size_t kLockedAt = offsetof(RecordPrefix, locked);
// A table of this many slots grows by kReserveSlots at once when each added record is flushed.
constexpr std::int64_t kReserveFrom = 1000;
constexpr std::int64_t kReserveSlots = 64;
constexpr int kUnlockAttempts = 3;
constexpr std::int64_t kLastAddress = std::numeric_limits<RecordAddress>::max();

RecordPrefix PrefixOf(std::span<const std::byte> record)
{
    RecordPrefix prefix;
    std::memcpy(&prefix, record.data(), sizeof prefix);
    return prefix;
}

}  // namespace

bool TableFile::LoadSlot(RecordAddress address, std::span<std::byte> slot) const
{
    const std::int64_t inside = std::int64_t{address} - FirstRecordOffset();
    return inside >= 0 && inside % recordSize == 0 && Load(slot.first(recordSize), address);
}

bool TableFile::LoadPrefix(RecordAddress address, RecordPrefix& prefix) const
{
    // The whole slot, since half a one is none.
    std::array<std::byte, kNoteRecordSize> slot;
    static_assert(kNoteRecordSize >= kSendRecordSize && kNoteRecordSize >= kContactRecordSize);
    if (!LoadSlot(address, slot))
        return false;
    prefix = PrefixOf(slot);
    return true;
}

void TableFile::MakeRingSure(TableHeader& header)
{
    if (!std::exchange(ringIsUnsure, false))
        return;
    ++header.changeStamp;
    BeginRingAnew(header);
}

bool TableFile::BeginChange(TableHeader& header, RecordAddress slot)
{
    if (IsOnThisMachine())
        return true;
    MakeRingSure(header);
    BeginRingChange(header, slot);
    return Store(BytesOf(header), sizeof(SizeBlock));
}

void TableFile::CountChange(TableHeader& header, RecordAddress slot)
{
    if (IsOnThisMachine()) {
        ++header.changeStamp;
        return;
    }
    MakeRingSure(header);
    TellRingChange(header, slot);
    memory.Touch(slot);
}

// Others on a drive may have seen the change, and its stamp must not come again for another one. Until the next change
// they look at the slot (0: none) again and again, since it may be put back after the header.
void TableFile::PutBackHeader(TableHeader& header, const TableHeader& before, RecordAddress slot)
{
    const std::uint64_t tried = header.changeStamp;
    header = before;
    if (!IsOnThisMachine()) {
        header.changeStamp = tried + 1;
        BeginRingAnew(header);
        BeginRingChange(header, slot);
    }
    ringIsUnsure = !StoreHeader(header) && !IsOnThisMachine();
}

bool TableFile::SetByte(RecordAddress address, std::size_t offset, std::uint8_t value)
{
    return Store(BytesOf(value), address + static_cast<std::int64_t>(offset));
}

// --- adding

RecordAddress TableFile::EndSlot() const
{
    const std::int64_t size = file.Size(SizeAsked::AfterRead);
    if (size < FirstRecordOffset())
        return 0;
    // A slot that a killed copy left half-written at the end is written over.
    const std::int64_t address = size - (size - FirstRecordOffset()) % recordSize;
    return address + recordSize <= kLastAddress ? static_cast<RecordAddress>(address) : 0;
}

RecordAddress TableFile::FindRememberedFreeSlot() const
{
    TableHeader now;
    if (!memory.IsFilled() || !Recall({}, WhenUnknown::GiveUp, now))
        return 0;
    RecordAddress found = 0;
    TableScan scan = TableScan::OfMemory(*this);
    scan.Run(
        0, scan.SlotCount(), [] {},
        [&](const SlotRun& run) {
            if (run.first[kActiveAt] == std::byte{0})
                found = run.address;
            return found == 0;
        });
    RecordPrefix prefix;
    return found != 0 && LoadPrefix(found, prefix) && prefix.active == 0 ? found : 0;
}

RecordAddress TableFile::FindFreeSlot(const TableHeader& header) const
{
    const bool hinted = freeSlotHint != 0 && freeSlotStamp == header.changeStamp;
    RecordAddress found = 0;
    // On a drive one slot costs less to look at than a hundred.
    if (RecordPrefix prefix; hinted && !IsOnThisMachine() && LoadPrefix(freeSlotHint, prefix) && prefix.active == 0)
        return freeSlotHint;
    if (const RecordAddress known = hinted ? 0 : FindRememberedFreeSlot(); known != 0)
        return known;
    TableScan scan(*this);
    const auto look = [&](const SlotRun& run) {
        for (std::int64_t i = 0; i < run.count; ++i) {
            run.FetchAhead(i, kActiveAt);
            if (run.Slot(i)[kActiveAt] == std::byte{0}) {
                found = run.Address(i);
                return false;
            }
        }
        return true;
    };
    scan.Run(
        hinted ? scan.IndexOf(freeSlotHint) : 0, scan.SlotCount(), [] {}, look);
    return found;
}

void TableFile::NoteFreeSlots(const TableHeader& header, RecordAddress allLiveBefore)
{
    freeSlotStamp = header.changeStamp;
    freeSlotHint = allLiveBefore;
}

int TableFile::AppendRecords(std::span<const std::byte> records, TableHeader& header, RecordAddress& first)
{
    first = EndSlot();
    if (first == 0 || kLastAddress - first < static_cast<std::int64_t>(records.size()))
        return 0;
    const TableHeader before = header;
    for (std::size_t done = 0; done < records.size(); done += recordSize)
        CountChange(header, first + static_cast<RecordAddress>(done));
    if (Store(records, first) && StoreHeader(header))
        return 1;
    PutBackHeader(header, before, 0);
    if (!CutBack(first, static_cast<std::int64_t>(records.size())))
        for (std::size_t done = 0; done < records.size(); done += recordSize)
            TakeOutLater(records.subspan(done, recordSize), first + static_cast<RecordAddress>(done));
    return 0;
}

bool TableFile::CutBack(RecordAddress first, std::int64_t size)
{
    return IsTurnSure() && file.Size() <= first + size && Files().Truncate(file.Get(), first) == 0;
}

void TableFile::TakeOutLater(std::span<const std::byte> record, RecordAddress address)
{
    if (!IsOnThisMachine())
        unfinished.emplace_back(address, std::vector<std::byte>(record.begin(), record.begin() + recordSize));
}

void TableFile::TakeOutUnfinished()
{
    for (auto& [address, record] : std::exchange(unfinished, {})) {
        std::vector<std::byte> found(recordSize);
        TableHeader header;
        errno = 0;
        const bool isRead = LoadSlot(address, found) && LoadHeader(header);
        if (isRead && found != record)
            continue;
        if (isRead) {
            const bool isBegun = BeginChange(header, address);
            CountChange(header, address);
            --header.freeSlots;
            if (isBegun && SetByte(address, kActiveAt, 0) && StoreHeader(header))
                continue;
        }
        if (isRead || errno != 0)
            unfinished.emplace_back(address, std::move(record));
    }
}

// A flush of a file that has grown waits for the file system's journal. So where records come one by one, each with a
// flush, a large file grows by many free slots at once, which the next records then use.
bool TableFile::AppendWithReserve(std::span<const std::byte> record, TableHeader& header, RecordAddress& address)
{
    const std::int64_t size = kReserveSlots * recordSize;
    if (!IsOnThisMachine() || !flushesEachAdd || addsSinceFlush > 0)
        return false;
    address = EndSlot();
    if (address < FirstRecordOffset() + kReserveFrom * recordSize || kLastAddress - address < size)
        return false;
    std::vector<std::byte> slots(static_cast<std::size_t>(size));
    std::copy(record.begin(), record.end(), slots.begin());
    const TableHeader before = header;
    ++header.changeStamp;
    header.freeSlots = static_cast<std::int32_t>(1 - kReserveSlots);
    // Slots first: one that nobody counts harms less than a count without a slot.
    if (Store(slots, address) && StoreHeader(header)) {
        NoteFreeSlots(header, static_cast<RecordAddress>(address + recordSize));
        unsynced.everything = true;
        return true;
    }
    header = before;
    StoreHeader(header);
    CutBack(address, size);
    return false;
}

int TableFile::ReuseSlot(std::span<const std::byte> record, TableHeader& header, RecordAddress& address)
{
    address = FindFreeSlot(header);
    if (address == 0)
        return 0;
    TableHeader headerBefore = header;
    std::vector<std::byte> inactive(record.begin(), record.end());
    // Where the record reaches the server in one piece, nobody can find half of it.
    const bool inOnePiece = !IsOnThisMachine() && file.GetDrive().writesDirect;
    if (!inOnePiece)
        inactive[kActiveAt] = std::byte{0};
    ++header.freeSlots;
    const bool isCounted = IsOnThisMachine() ? Store(BytesOf(header), sizeof(SizeBlock)) : BeginChange(header, address);
    if (isCounted && Store(inactive, address) &&
        (inOnePiece || SetByte(address, kActiveAt, static_cast<std::uint8_t>(record[kActiveAt])))) {
        CountChange(header, address);
        if (StoreHeader(header)) {
            NoteFreeSlots(header, address + static_cast<RecordAddress>(recordSize));
            return 1;
        }
    }
    // Free first: a slot must never be live and counted as free. What else it holds doesn't matter.
    if (!SetByte(address, kActiveAt, 0)) {
        TakeOutLater(record, address);
        if (isCounted)
            headerBefore.freeSlots = header.freeSlots;
    }
    PutBackHeader(header, headerBefore, address);
    return 0;
}

int TableFile::AddRecord(std::span<const std::byte> record, RecordAddress* address)
{
    TableTurn turn;
    TableHeader header;
    if (!IsOpen() || record.size() < recordSize || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    if (!MayChange(RoleOfPassword(header, password)))
        return kRefusedByRole;
    record = record.first(recordSize);
    RecordAddress got = 0;
    const int added = header.freeSlots < 0                     ? ReuseSlot(record, header, got)
                      : AppendWithReserve(record, header, got) ? 1
                                                               : AppendRecords(record, header, got);
    if (added != 1)
        return added;
    NoteWritten(got);
    ++addsSinceFlush;
    if (address)
        *address = got;
    return 1;
}

int TableFile::AddRecords(std::span<const std::byte> records, std::vector<RecordAddress>& addresses)
{
    addresses.clear();
    unsynced.everything = true;
    TableTurn turn;
    TableHeader header;
    if (!IsOpen() || records.size() % recordSize != 0 || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    if (!MayChange(RoleOfPassword(header, password)))
        return kRefusedByRole;
    RecordAddress address = 0;
    for (; !records.empty() && header.freeSlots < 0; records = records.subspan(recordSize)) {
        if (ReuseSlot(records.first(recordSize), header, address) != 1)
            return 0;
        addresses.push_back(address);
    }
    if (records.empty())
        return 1;
    if (AppendRecords(records, header, address) != 1)
        return 0;
    for (std::size_t done = 0; done < records.size();
         done += recordSize, address += static_cast<std::int32_t>(recordSize))
        addresses.push_back(address);
    return 1;
}

// --- changing

int TableFile::DeleteRecord(RecordAddress address)
{
    TableTurn turn;
    TableHeader header;
    if (!IsOpen() || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    if (!MayChange(RoleOfPassword(header, password)))
        return kRefusedByRole;
    RecordPrefix prefix;
    if (!MayStillWrite(address) || !LoadPrefix(address, prefix) || prefix.active == 0)
        return 0;
    const TableHeader before = header;
    const bool hinted = freeSlotHint != 0 && freeSlotStamp == header.changeStamp;
    const bool isBegun = BeginChange(header, address);
    CountChange(header, address);
    if (header.freeSlots > std::numeric_limits<std::int32_t>::min())
        --header.freeSlots;
    if (!isBegun || !SetByte(address, kActiveAt, 0) || !StoreHeader(header)) {
        PutBackHeader(header, before, address);
        SetByte(address, kActiveAt, prefix.active);
        return 0;
    }
    if (hinted)
        NoteFreeSlots(header, std::min(freeSlotHint, address));
    NoteWritten(address);
    if (prefix.locked != 0)
        deletedUnderLock.push_back(address);
    DropHold(address);  // the next record in this slot is somebody else's to hold
    return 1;
}

int TableFile::WriteRecord(std::span<const std::byte> record, RecordAddress address)
{
    TableTurn turn;
    TableHeader header;
    if (!IsOpen() || record.size() < recordSize || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    if (!MayChange(RoleOfPassword(header, password)))
        return kRefusedByRole;
    std::vector<std::byte> before(recordSize);
    if (!MayStillWrite(address) || !LoadSlot(address, before))
        return 0;
    const TableHeader headerBefore = header;
    const bool hinted = freeSlotHint != 0 && freeSlotStamp == header.changeStamp && record[kActiveAt] != std::byte{0};
    const bool isBegun = BeginChange(header, address);
    CountChange(header, address);
    if (!isBegun || !Store(record.first(recordSize), address) || !StoreHeader(header)) {
        Store(before, address);
        PutBackHeader(header, headerBefore, address);
        return 0;
    }
    if (hinted)
        freeSlotStamp = header.changeStamp;
    NoteWritten(address);
    return 1;
}

// --- reading

RecordState TableFile::ReadState(std::span<std::byte> record, RecordAddress address) const
{
    if (!IsOpen() || record.size() < recordSize || !LoadSlot(address, record))
        return RecordState::Unreadable;
    return PrefixOf(record).active != 0 ? RecordState::Live : RecordState::Free;
}

int TableFile::ReadRecord(std::span<std::byte> record, RecordAddress address) const
{
    return ReadState(record, address) == RecordState::Live ? 1 : 0;
}

int TableFile::ReadField(std::span<std::byte> bytes, FieldRange field, RecordAddress address) const
{
    std::array<std::byte, kNoteRecordSize> slot;
    if (!IsOpen() || bytes.size() < field.size || !IsInRecord(field) || !LoadSlot(address, slot))
        return 0;
    std::memcpy(bytes.data(), slot.data() + field.offset, field.size);
    return PrefixOf(slot).active != 0 ? 1 : 0;
}

int TableFile::ReadListedRecord(std::span<std::byte> record, RecordAddress address) const
{
    if (const std::vector<std::byte>* known = memory.Whole(address); known && record.size() >= known->size()) {
        std::ranges::copy(*known, record.begin());
        return PrefixOf(record).active != 0 ? 1 : 0;
    }
    const RecordState state = ReadState(record, address);
    if (state != RecordState::Unreadable)
        memory.KeepWhole(address, record.first(recordSize));
    return state == RecordState::Live ? 1 : 0;
}

int TableFile::ReadListedField(std::span<std::byte> bytes, FieldRange field, RecordAddress address) const
{
    const AskedField asked{field};
    const std::int64_t inside = std::int64_t{address} - FirstRecordOffset();
    if (!memory.Keeps({&asked, 1}) || memory.IsTouched(address) || bytes.size() < field.size || inside < 0 ||
        inside % recordSize != 0 || inside / recordSize >= memory.SlotCount())
        return ReadField(bytes, field, address);
    std::array<std::byte, kNoteRecordSize> slot;
    memory.CopyTo(inside / recordSize, slot);
    std::memcpy(bytes.data(), slot.data() + field.offset, field.size);
    return PrefixOf(slot).active != 0 ? 1 : 0;
}

// --- edit locks

int TableFile::LockRecord(RecordAddress address)
{
    TableTurn turn;
    RecordPrefix prefix;
    if (!IsOpen() || !TakeTurn(turn) || !LoadPrefix(address, prefix) || prefix.active == 0)
        return 0;
    const bool isMarked = prefix.locked == 1;
    if (!TakeHold(address, isMarked))
        return 0;
    if (!isMarked && !(SetByte(address, kLockedAt, 1) && Settle())) {
        DropHold(address);
        return 0;
    }
    std::erase(deletedUnderLock, address);
    SuspendRefresh();
    return 1;
}

int TableFile::UnlockRecord(RecordAddress address)
{
    ResumeRefresh();
    TableTurn turn;
    if (!IsOpen())
        return 0;
    const bool wasHeld = std::find(held.begin(), held.end(), address) != held.end();
    const int cleared = TakeTurn(turn) ? ClearLock(address) : -1;
    // Not cleared, it is backed by nobody from here on.
    DropHold(address);
    leftLocked = leftLocked || (wasHeld && cleared < 0);
    return cleared > 0 ? 1 : 0;
}

// 1: cleared. 0: there was nothing to clear. -1: it could not be cleared.
int TableFile::ClearLock(RecordAddress address)
{
    if (std::erase(lost, address) > 0)
        return 0;
    RecordPrefix prefix;
    if (!LoadPrefix(address, prefix))
        return -1;
    // The record that was locked is gone. Another copy may have put a new one into its slot and hold that one's lock.
    if ((std::erase(deletedUnderLock, address) > 0 && prefix.active != 0) || prefix.locked == 0)
        return 0;
    for (int attempt = 0; attempt < kUnlockAttempts; ++attempt)
        if (SetByte(address, kLockedAt, 0) && Settle())
            return 1;
    return -1;
}

}  // namespace jotlet
