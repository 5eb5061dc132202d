// The order in which Tab walks through the windows of a top-level window that paint themselves.
//
// A window that takes the keyboard adds itself in CollectTabStops; one that holds such windows adds theirs, in the
// order in which a reader would visit them. Hidden and disabled windows are passed over here, so nobody needs to test
// that. Inside a dialog the dialog's own Tab order rules, and nothing here is asked.
#pragma once

#include <vector>

#include "platform/desktop/native_window.h"

namespace jotlet {

class MarlinWnd;
using TabStops = std::vector<MarlinWnd*>;

// Gives the focus to the stop before or after `from` among those of its top-level window, going round at the ends.
// False when there is no other stop, or in a dialog: the key is then still to be handled.
bool MoveFocusByTab(MarlinWnd& from, bool backwards);

}  // namespace jotlet
