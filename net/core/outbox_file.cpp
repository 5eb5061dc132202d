#include "net/core/outbox_file.h"

#include <cstring>
#include <span>

#include "net/core/send_record.h"
#include "store/create_table.h"
#include "store/open_table.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

void CreateOutboxFile(const std::string& path)
{
    TableFile file(path, "");
    // A copy that was faster has made the same file.
    if (file.GetOpenFailure() == OpenFailure::Missing)
        CreateTable(file, kSendTable);
}

}  // namespace

std::string OutboxPath(std::string_view noteFilePath)
{
    return std::string(noteFilePath) + ".tsi";
}

std::unique_ptr<TableFile> OpenOutboxFile(const std::string& path)
{
    if (!TableFile::Exists(path))
        CreateOutboxFile(path);
    return OpenTable(path, "", kSendRecordSize).table;
}

std::vector<RecordAddress> RecordsOfEvent(const TableFile& table, std::uint64_t eventId)
{
    std::vector<RecordAddress> addresses;
    const FieldRange field{kEventIdOffset, sizeof eventId};
    table.ForEachRecord(
        std::span(&field, 1),
        [&](RecordAddress address, std::span<const std::byte> bytes) {
            std::uint64_t id = 0;
            std::memcpy(&id, bytes.data(), sizeof id);
            if (id == eventId)
                addresses.push_back(address);
            return true;
        },
        ScanScope::All);
    return addresses;
}

}  // namespace jotlet
