// Messages and timers held back while the display alone is served.
#pragma once

#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

bool MessagesHeld();
// Kept, and posted again in its order once messages are no longer held.
void HoldMessage(const WndMessage& message, NativeWidget::Posted kind);

}  // namespace jotlet
