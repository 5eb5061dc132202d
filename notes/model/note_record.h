#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "notes/model/record_header.h"

// A note: one flat block of 3557 bytes, the same in memory and in the file. BytesOf(note) is what the store takes.

namespace jotlet {

// alarmState
inline constexpr std::uint8_t kAlarmNone = 0;
inline constexpr std::uint8_t kAlarmSet = 1;    // waiting
inline constexpr std::uint8_t kAlarmFired = 3;  // spent

// startKind; other values are treated like a document
inline constexpr std::uint8_t kStartEmail = 1;
inline constexpr std::uint8_t kStartUrl = 2;
inline constexpr std::uint8_t kStartDocument = 3;

// attachmentKind
inline constexpr std::uint8_t kAttachmentNone = 0;
inline constexpr std::uint8_t kAttachmentDocument = 1;
inline constexpr std::uint8_t kAttachmentUrl = 2;

// Stored in files: never reorder, never resize.
struct NoteRecord : RecordHeader {
    std::uint8_t alarmState;
    std::array<char, 260> toneFile;  // empty: silent
    StoredValue<TimeValue> alarmTime;
    StoredValue<DateValue> alarmDate;
    std::uint8_t startKind;             // what a fired alarm can start
    std::array<char, 260> startTarget;  // empty: nothing
    std::uint8_t attachmentKind;
    std::array<char, 260> attachmentPath;  // a path or a URL
    std::array<std::byte, 19> reserved1360;
    StoredValue<std::uint32_t> colour;  // 0x00BBGGRR, see palette.h
    std::array<char, 150> title;
    std::array<char, 2024> text;  // line breaks are CR LF
};

static_assert(sizeof(NoteRecord) == kNoteRecordSize && alignof(NoteRecord) == 1);

// Where the fields lie, for filter terms, sort keys and import fields.
inline constexpr std::uint32_t kUniqueIdOffset = 6;
inline constexpr std::uint32_t kConfidentialOffset = 14;
inline constexpr std::uint32_t kCategoryOffset = 16;
inline constexpr std::uint32_t kCategorySize = 30;
inline constexpr std::uint32_t kDateOffset = 50;
inline constexpr std::uint32_t kDateSize = 12;
inline constexpr std::uint32_t kSubjectOffset = 516;
inline constexpr std::uint32_t kAlarmStateOffset = 549;
inline constexpr std::uint32_t kAlarmDateOffset = 826;
inline constexpr std::uint32_t kColourOffset = 1379;
inline constexpr std::uint32_t kTitleOffset = 1383;
inline constexpr std::uint32_t kTitleSize = 150;
inline constexpr std::uint32_t kTextOffset = 1533;
inline constexpr std::uint32_t kTextSize = 2024;

// offsetof on a derived struct is up to the compiler; ours define it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(NoteRecord, uniqueId) == kUniqueIdOffset);
static_assert(offsetof(NoteRecord, confidential) == kConfidentialOffset);
static_assert(offsetof(NoteRecord, category) == kCategoryOffset);
static_assert(offsetof(NoteRecord, date) == kDateOffset);
static_assert(offsetof(NoteRecord, subject) == kSubjectOffset);
static_assert(offsetof(NoteRecord, eventStatus) == 548);
static_assert(offsetof(NoteRecord, alarmState) == kAlarmStateOffset);
static_assert(offsetof(NoteRecord, toneFile) == 550);
static_assert(offsetof(NoteRecord, alarmTime) == 810);
static_assert(offsetof(NoteRecord, alarmDate) == kAlarmDateOffset);
static_assert(offsetof(NoteRecord, startKind) == 838);
static_assert(offsetof(NoteRecord, startTarget) == 839);
static_assert(offsetof(NoteRecord, attachmentKind) == 1099);
static_assert(offsetof(NoteRecord, attachmentPath) == 1100);
static_assert(offsetof(NoteRecord, reserved1360) == 1360);
static_assert(offsetof(NoteRecord, colour) == kColourOffset);
static_assert(offsetof(NoteRecord, title) == kTitleOffset);
static_assert(offsetof(NoteRecord, text) == kTextOffset);
#pragma GCC diagnostic pop

// Zeroes the whole record, then InitRecordHeader.
void InitNoteRecord(const TableFile& file, NoteRecord& note, const Clock& clock = SystemClock());

// True when there is something to open: a kind other than none and a path.
bool HasAttachment(const NoteRecord& note);

// 0 when colour, title and text are equal, else -1. Category, date and all else do not count.
int IsSameNote(const NoteRecord& first, const NoteRecord& second);

}  // namespace jotlet
