#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/record_address.h"

// The outbox file itself, for the operations that work on it.

namespace jotlet {

class TableFile;

std::string OutboxPath(std::string_view noteFilePath);

// Makes the file when it is missing, repairs it when need be, opens it. None when it cannot be opened or made.
std::unique_ptr<TableFile> OpenOutboxFile(const std::string& path);

// Where the event's records lie, all of them, in file order.
std::vector<RecordAddress> RecordsOfEvent(const TableFile& table, std::uint64_t eventId);

}  // namespace jotlet
