#include "toolkit/main_window.h"

namespace jotlet {
namespace {

// What boxes without an owner stand over.
WindowHandle mainWindow = 0;

}  // namespace

WindowHandle MainWindow()
{
    return IsWindow(mainWindow) ? mainWindow : 0;
}

void SetMainWindow(WindowHandle window)
{
    mainWindow = window;
}

bool IsMainWindowForeground()
{
    return MainWindow() && IsForeground(mainWindow);
}

}  // namespace jotlet
