// The commands "Print Report" and "Export", dialog included.
#pragma once

#include <cstdint>

#include "interchange/engine/report.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

// `currentId`: the `uniqueId` of the note selected on the board, 0 when there is none. Always 1.
int ReportCommand(MarlinWnd* parent, ReportKind kind, TableFile& table, std::uint64_t currentId);

}  // namespace jotlet
