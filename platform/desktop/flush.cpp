// Bringing what is drawn to the display in the middle of a long operation, with nothing else served.
#include <QApplication>
#include <QThread>
#include <QWidget>
#include <QWindow>
#include <utility>
#include <vector>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/held_messages.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

constexpr int kExposeTries = 30;
constexpr unsigned long kExposePauseMs = 2;

bool held = false;
struct HeldMessage {
    WndMessage message;
    NativeWidget::Posted kind;
};
std::vector<HeldMessage> kept;

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

void HoldMessage(const WndMessage& message, NativeWidget::Posted kind)
{
    kept.push_back({message, kind});
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
    const std::vector<HeldMessage> back = std::exchange(kept, {});
    for (const HeldMessage& one : back) {
        if (NativeWidget* native = NativeOf(one.message.window))
            native->PostMessage(one.message, one.kind);
    }
}

}  // namespace jotlet
