// The blocks of a table file, byte for byte as they lie in it: little-endian, packed, texts zero-terminated within
// their width. FORMAT.md shows a real file. Offsets are pinned below; never renumber.
//
// A text field read from a file may lack its terminator: read it with FieldText (platform/base/text.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/base/profile.h"

namespace jotlet {

inline constexpr std::uint32_t kHeaderBlockSize = 1581;
inline constexpr std::uint32_t kCategoryBlockSize = 1032;
// The three kinds of table file. No other record size is a table file of this system.
inline constexpr std::uint32_t kNoteRecordSize = 3557;
inline constexpr std::uint32_t kContactRecordSize = 859;
inline constexpr std::uint32_t kSendRecordSize = 908;

inline constexpr int kCategoryCapacity = 30;  // entries in the block; menu and editor stop at 29
inline constexpr std::uint64_t kFirstChangeStamp = 10;

#pragma pack(push, 1)

// At offset 0 of the file.
struct SizeBlock {
    std::uint32_t headerSize;
    std::uint32_t categorySize;
    std::uint32_t recordSize;
};
static_assert(sizeof(SizeBlock) == 12);

// Who somebody is: in the header twice, in every record twice.
struct IdentityBlock {
    char reserved;
    char name[30];
    char email[114];
    char serverKey[60];
};
static_assert(sizeof(IdentityBlock) == 205 && offsetof(IdentityBlock, email) == 31 &&
              offsetof(IdentityBlock, serverKey) == 145);

// The owner's identity in the header. The 60 bytes of its third text hold the three passwords, each of at most 19
// characters, as plain text; empty means not set.
struct FileOwnerBlock {
    char reserved;
    char name[30];
    char email[114];
    char ownerPassword[20];
    char assistantPassword[20];
    char readerPassword[20];
};
static_assert(sizeof(FileOwnerBlock) == sizeof(IdentityBlock));

inline constexpr int kRingRoom = 60;

// The slots that were changed last, for who knows the file as it was some changes ago; change_ring.h reads and writes
// it. Only on drives. In a file that never lay on one, and in every older file, all of it is 0.
struct ChangeRing {
    std::uint32_t check;            // of the bytes behind it; what doesn't match is no ring
    std::uint64_t newest;           // the change stamp that the newest change left
    std::int32_t pending;           // the slot that is being changed; 0: none
    std::uint32_t count;            // changes that are told, without a gap up to the newest
    std::int32_t slots[kRingRoom];  // the change that left the stamp s is at s % kRingRoom
};
static_assert(sizeof(ChangeRing) == 260);

// At offset 12 of the file.
struct TableHeader {
    std::uint32_t blockSize;  // 1581
    char fileType[30];
    char family[30];
    std::uint32_t version;
    std::uint32_t formatFlag;  // 1
    FileOwnerBlock fileOwner;
    IdentityBlock fileUser;
    std::uint32_t serverFlag;  // 1
    char server[260];
    char port[260];             // a text
    std::int32_t freeSlots;     // minus the number of free slots, never positive
    std::uint64_t changeStamp;  // starts at 10; raised by 1 by every add, delete and write of a record
    std::uint32_t openCount;    // openings in all running copies; left too high by a crash
    ChangeRing lastChanges;
    char reserved2[39];
    char reserved3[260];

    // The owner's identity in the form that records hold; its serverKey carries the password bytes.
    IdentityBlock OwnerIdentity() const;
};
static_assert(sizeof(TableHeader) == kHeaderBlockSize);
static_assert(offsetof(TableHeader, fileOwner) == 72);
static_assert(offsetof(TableHeader, fileOwner.ownerPassword) == 217);
static_assert(offsetof(TableHeader, fileUser) == 277);
static_assert(offsetof(TableHeader, server) == 486);
static_assert(offsetof(TableHeader, freeSlots) == 1006);
static_assert(offsetof(TableHeader, changeStamp) == 1010);
static_assert(offsetof(TableHeader, openCount) == 1018);
static_assert(offsetof(TableHeader, lastChanges) == 1022);

struct CategoryEntry {
    char name[30];
    std::int32_t tag;  // -1; read by nothing
};
static_assert(sizeof(CategoryEntry) == 34);

// Behind the header block.
struct CategoryBlock {
    std::uint32_t blockSize;  // 1032
    std::uint32_t reserved;
    std::uint32_t categoryCount;  // may lie in a damaged file: use Count()
    CategoryEntry entries[kCategoryCapacity];

    // categoryCount, never above the room that there is.
    int Count() const
    {
        return categoryCount < std::uint32_t{kCategoryCapacity} ? static_cast<int>(categoryCount) : kCategoryCapacity;
    }
};
static_assert(sizeof(CategoryBlock) == kCategoryBlockSize);

// How every record of every kind begins.
struct RecordPrefix {
    std::uint32_t recordSize;  // the record's own size; the store doesn't read it
    std::uint8_t active;       // 1 live, 0 free slot
    std::uint8_t locked;       // 1 while some copy edits the record
    std::uint64_t uniqueId;
    std::uint8_t confidential;  // other than 0: only the Owner sees the record
};
static_assert(sizeof(RecordPrefix) == 15);
static_assert(offsetof(RecordPrefix, active) == 4 && offsetof(RecordPrefix, locked) == 5);
static_assert(offsetof(RecordPrefix, uniqueId) == 6 && offsetof(RecordPrefix, confidential) == 14);

#pragma pack(pop)

// Offset of the first record in all three kinds of file.
inline constexpr std::uint32_t kFirstRecordOffset = sizeof(SizeBlock) + kHeaderBlockSize + kCategoryBlockSize;
static_assert(kFirstRecordOffset == 2625);
// Offset of the change stamp in the file.
inline constexpr std::int64_t kStampAt = sizeof(SizeBlock) + offsetof(TableHeader, changeStamp);

// Fills the header of a new file. `fileType` and `family` are cut at 30 bytes, and then have no terminator. Server and
// port come from `suiteSettings`. Always 0.
int InitTableHeader(TableHeader& header, std::string_view fileType, std::string_view family, std::uint32_t version,
                    const IniFile& suiteSettings);
// The 15 categories that a new file starts with.
void InitCategories(CategoryBlock& categories);
// The fixed local identity "Pinwell", "PinwellMail", without a key. Always 1.
int FillLocalIdentity(IdentityBlock& identity);
// The keys "server" and "port" of the section "Gateway": at most 259 bytes each, zero-filled; empty when not set.
void ReadServerSettings(std::span<char> server, std::span<char> port, const IniFile& suiteSettings);

// The bytes of a block, for the operations that move blocks.
template <typename Block>
std::span<std::byte> BytesOf(Block& block)
{
    return std::as_writable_bytes(std::span<Block, 1>(&block, 1));
}
template <typename Block>
std::span<const std::byte> BytesOf(const Block& block)
{
    return std::as_bytes(std::span<const Block, 1>(&block, 1));
}

}  // namespace jotlet
