#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/base/calendar.h"
#include "platform/base/stored_value.h"
#include "store/table_schema.h"

// The first 549 bytes of every record kind that belongs to an event or a note.

namespace jotlet {

class TableFile;

// eventState
inline constexpr std::uint8_t kEventNone = 0;
inline constexpr std::uint8_t kEventHasRecipients = 1;
inline constexpr std::uint8_t kEventWithdrawn = 9;  // the note can no longer be changed

// Stored in files: never reorder, never resize. Little-endian, no padding.
// Texts end at the first zero byte or with their field: read them with FieldText, write them with StoreText.
struct RecordHeader {
    StoredValue<std::uint32_t> recordSize;
    std::uint8_t active;  // 1 live, 0 deleted
    std::uint8_t locked;  // 1 while a running copy holds the record for editing
    StoredValue<std::uint64_t> uniqueId;
    std::uint8_t confidential;  // other than 0: only the Owner sees and changes it
    std::uint8_t reserved15;
    std::array<char, 30> category;  // empty: none
    std::array<std::byte, 4> reserved46;
    StoredValue<DateValue> date;  // the day on which the note stands
    StoredValue<TimeValue> time;  // when the record was made
    IdentityBlock owner;          // of the file's owner when the record was made
    IdentityBlock creator;
    StoredValue<DateValue> createdDate;
    StoredValue<TimeValue> createdTime;
    std::array<char, 30> subject;  // of an Internet event; empty on an ordinary note
    std::uint8_t eventState;
    std::uint8_t reserved547;
    std::uint8_t eventStatus;
};

static_assert(sizeof(RecordHeader) == 549 && alignof(RecordHeader) == 1);
static_assert(offsetof(RecordHeader, recordSize) == 0);
static_assert(offsetof(RecordHeader, active) == 4);
static_assert(offsetof(RecordHeader, locked) == 5);
static_assert(offsetof(RecordHeader, uniqueId) == 6);
static_assert(offsetof(RecordHeader, confidential) == 14);
static_assert(offsetof(RecordHeader, reserved15) == 15);
static_assert(offsetof(RecordHeader, category) == 16);
static_assert(offsetof(RecordHeader, reserved46) == 46);
static_assert(offsetof(RecordHeader, date) == 50);
static_assert(offsetof(RecordHeader, time) == 62);
static_assert(offsetof(RecordHeader, owner) == 78);
static_assert(offsetof(RecordHeader, creator) == 283);
static_assert(offsetof(RecordHeader, createdDate) == 488);
static_assert(offsetof(RecordHeader, createdTime) == 500);
static_assert(offsetof(RecordHeader, subject) == 516);
static_assert(offsetof(RecordHeader, eventState) == 546);
static_assert(offsetof(RecordHeader, reserved547) == 547);
static_assert(offsetof(RecordHeader, eventStatus) == 548);

// A 64-bit random number for `uniqueId`. Nothing tests for collisions.
std::uint64_t RandomId();

// Fills the header of a zeroed record for `file`: size, live and unlocked, a new id, stamped with the clock's date and
// time, owned by the file's owner. Sets no byte behind the header. The owner stays empty when the file cannot be read.
void InitRecordHeader(const TableFile& file, RecordHeader& record, std::uint32_t recordSize,
                      const Clock& clock = SystemClock());

}  // namespace jotlet
