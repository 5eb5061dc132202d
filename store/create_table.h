// Making the three kinds of table file, each with its header and the categories that every file starts with.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/base/paths.h"
#include "store/table_file.h"

namespace jotlet {

struct TableKind {
    std::string_view fileType;
    std::string_view family;
    std::uint32_t version;
    std::uint32_t recordSize;
};

inline constexpr TableKind kNoteTable{"Notes", "Organizer", 3, kNoteRecordSize};
inline constexpr TableKind kContactTable{"E-Book", "E-Book", 1, kContactRecordSize};
inline constexpr TableKind kSendTable{"SendRecord", "SendRecord", 1, kSendRecordSize};

// Makes the file of a table whose opening failed because it is missing, and leaves it open. The result of
// TableFile::Create; 0 also when another copy was faster.
int CreateTable(TableFile& table, const TableKind& kind, const IniFile& suiteSettings = GetSuiteIniPath());

}  // namespace jotlet
