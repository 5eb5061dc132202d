// Where the main window stood at its last close, kept in the module's settings.
#pragma once

#include <optional>

#include "platform/desktop/geometry.h"

namespace jotlet {

// Gives the available part of the screen that a point lies on, or of the first screen.
using DesktopAt = Rect (*)(Point);

// Screen coordinates. Nothing when a key is missing, when the window would lie wholly right of or below the desktop, or
// when another running copy has taken the place. A place left of or above the desktop is moved onto it; sizes outside
// the window's limits are brought back into them.
std::optional<Rect> SavedPlacement(DesktopAt desktopAt);
void StorePlacement(const Rect& window);

// Whether another copy of this user is running. A copy counts from its first call on.
bool AnotherCopyRuns();

}  // namespace jotlet
