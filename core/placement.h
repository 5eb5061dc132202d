// Where the main window stood at its last close, kept in the module's settings.
#pragma once

#include <optional>

#include "platform/desktop/geometry.h"

namespace jotlet {

// Screen coordinates. Nothing when a key is missing, when the window would lie wholly right of or below `desktop`, or
// when another running copy has taken the place. Sizes outside the window's limits are brought back into them.
std::optional<Rect> SavedPlacement(const Rect& desktop);
void StorePlacement(const Rect& window);

// Whether another copy of this user is running. A copy counts from its first call on.
bool AnotherCopyRuns();

}  // namespace jotlet
