// A table's turn to read, change and write: while one holds it nobody else changes counters, slots or locks. For the
// store's own use.
#pragma once

#include "platform/base/file_lock.h"
#include "store/table_file.h"

namespace jotlet {

// Given back at the end of its life, after what was written has reached the server.
class TableTurn {
public:
    TableTurn() = default;
    ~TableTurn()
    {
        if (table)
            table->EndTurn();
    }
    TableTurn(const TableTurn&) = delete;
    TableTurn& operator=(const TableTurn&) = delete;

private:
    friend class TableFile;
    FileLock lock;
    TableFile* table = nullptr;
};

}  // namespace jotlet
