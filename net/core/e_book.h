#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "notes/model/record_header.h"

// The contact book: one table file of names and e-mail addresses, common to all note files of an installation.

namespace jotlet {

class RecordQuery;
class TableFile;

// Stored in files: never reorder, never resize.
struct EBookRecord : RecordHeader {
    std::array<char, 50> bookName;
    std::array<char, 260> bookEmail;
};
static_assert(sizeof(EBookRecord) == kContactRecordSize && alignof(EBookRecord) == 1);

inline constexpr std::uint32_t kBookNameOffset = 549;
inline constexpr std::uint32_t kBookNameSize = 50;
inline constexpr std::uint32_t kBookEmailOffset = 599;

// offsetof on a derived struct is up to the compiler; ours define it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(EBookRecord, bookName) == kBookNameOffset);
static_assert(offsetof(EBookRecord, bookEmail) == kBookEmailOffset);
#pragma GCC diagnostic pop

// "E-Book.tb1" where the program writes its files.
std::string GetEBookPath();

// The open book of this process, and all its records sorted by name; one pair, shared by whatever dialog is open on it.
// Both are none while the book is closed.
TableFile* BookTable();
RecordQuery* BookQuery();

// Makes the file when it is missing, repairs it when need be, opens it, runs and sorts the query. 1 when the book is
// open then; 0 when it cannot be opened. When it was open already, only the query runs again.
int OpenEBook();
// Always 1; nothing when the book isn't open.
int CloseEBook();

// Runs the query again and sorts it. 1, or 0 when the book isn't open or cannot be read.
int RefreshEBook();

// A zeroed record with a name and an e-mail, cut at their fields.
EBookRecord MakeContact(std::string_view name, std::string_view email);

// Fills the record's header, stores it and brings it to the disk. 1, kRefusedByRole, or 0 on a failure.
int AddContact(EBookRecord& contact);

}  // namespace jotlet
