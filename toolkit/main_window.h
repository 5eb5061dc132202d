// The program's one main window, for those below it who need it as an owner of boxes or for the foreground test.
#pragma once

#include "platform/desktop/native_window.h"

namespace jotlet {

// 0 while there is none. Set by the frame when its window comes and goes.
WindowHandle MainWindow();
void SetMainWindow(WindowHandle window);

// Drops are taken only while the main window is in the foreground.
bool IsMainWindowForeground();

}  // namespace jotlet
