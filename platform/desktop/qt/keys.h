#pragma once

#include <QKeyEvent>

namespace jotlet {

// The virtual key of a press, 0 for one that has none.
int VirtualKeyOf(const QKeyEvent& event);
// The platform's key for a virtual key.
int QtKeyOf(int virtualKey);

}  // namespace jotlet
