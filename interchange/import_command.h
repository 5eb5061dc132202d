// The command "Import": the wizard, then the run, then one line that tells what came of it.
#pragma once

#include <cstddef>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class TableFile;

// The number of notes added. The caller refreshes its list when there are any.
std::size_t RunImport(MarlinWnd* parent, TableFile& table);

}  // namespace jotlet
