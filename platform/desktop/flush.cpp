// Bringing what is drawn to the display in the middle of a long operation, with nothing else served.
#include <QApplication>
#include <QThread>
#include <QWidget>
#include <QWindow>
#include <utility>
#include <vector>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/held_messages.h"

namespace jotlet {

namespace {

constexpr int kExposeTries = 30;
constexpr unsigned long kExposePauseMs = 2;

bool held = false;
std::vector<WndMessage> kept;

// A window shown just now waits for the display to say that it stands.
bool SomethingWaitsForTheDisplay()
{
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (const QWidget* top : tops) {
        const QWindow* window = top->windowHandle();
        if (top->isVisible() && !top->isMinimized() && window && !window->isExposed())
            return true;
    }
    return false;
}

void ServeDisplay()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

}  // namespace

bool MessagesHeld()
{
    return held;
}

void HoldMessage(const WndMessage& message)
{
    kept.push_back(message);
}

void FlushToScreen()
{
    if (!qApp || held)
        return;
    held = true;
    ServeDisplay();
    for (int i = 0; i < kExposeTries && SomethingWaitsForTheDisplay(); ++i) {
        QThread::msleep(kExposePauseMs);
        ServeDisplay();
    }
    held = false;
    const std::vector<WndMessage> back = std::exchange(kept, {});
    for (const WndMessage& one : back)
        PostTo(one.window, one.message, one.wParam, one.lParam);
}

}  // namespace jotlet
