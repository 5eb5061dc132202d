// The due check that the program's two-minute timer runs on the open file.
#pragma once

#include "platform/base/clock.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

class TableFile;

// Fires at most one due alarm: shows it over `parent` and marks it as spent, whatever the user answers. An alarm whose
// window went away without an answer, as at the end of the session, comes again. Does nothing while a note is being
// edited here or an alarm is on the screen. 1 when it ran to an end, 0 when it did nothing or no alarm is waiting.
int CheckAlarms(TableFile& file, MarlinWnd& parent, const Clock& clock = SystemClock());

}  // namespace jotlet
