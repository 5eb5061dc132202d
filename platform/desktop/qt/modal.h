#pragma once

#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

// A modal window is open and the widget lies in none of those that it lets through.
bool IsBlockedByModal(const QWidget& widget);
// Ends every nested loop; the modal runs give 0.
void LeaveAllModals();

}  // namespace jotlet
