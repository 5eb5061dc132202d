// Modal runs: nested loops during which the rest of the program takes no input.
#include "platform/desktop/qt/modal.h"

#include <QApplication>
#include <QEventLoop>
#include <deque>
#include <vector>

#include "platform/desktop/application.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/test_input.h"

namespace jotlet {

namespace {

struct ModalRun {
    WindowHandle window = 0;
    QEventLoop* events = nullptr;
    bool ended = false;
    int result = 0;
};

std::vector<ModalRun*> runs;
std::deque<std::function<void(WindowHandle)>> waiting;

bool LiesIn(const QWidget* widget, const QWidget* ancestor)
{
    for (; widget; widget = widget->parentWidget()) {
        if (widget == ancestor)
            return true;
    }
    return false;
}

void ServeWaiting(WindowHandle window)
{
    if (waiting.empty())
        return;
    const auto act = std::move(waiting.front());
    waiting.pop_front();
    if (IsWindow(window))
        act(window);
}

}  // namespace

bool IsBlockedByModal(const QWidget& widget)
{
    const QWidget* modal = runs.empty() ? nullptr : WidgetOf(runs.back()->window);
    if (modal)
        return !LiesIn(&widget, modal);
    return false;
}

void LeaveAllModals()
{
    for (ModalRun* run : runs) {
        run->ended = true;
        run->events->quit();
    }
}

int RunModal(WindowHandle window, WindowHandle owner)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return 0;
    QEventLoop events;
    ModalRun run{window, &events};
    runs.push_back(&run);
    // A destroyed window ends its run.
    QObject watcher;
    QObject::connect(widget, &QObject::destroyed, &watcher, [&] { events.quit(); });
    const WindowHandle focusBefore = FocusedWindow();
    widget->setWindowModality(Qt::ApplicationModal);
    ShowNative(window, true);
    QMetaObject::invokeMethod(
        &watcher, [window] { ServeWaiting(window); }, Qt::QueuedConnection);
    while (!run.ended && IsWindow(window))
        events.processEvents(QEventLoop::WaitForMoreEvents);
    std::erase(runs, &run);
    bool wasActive = false;
    if (QWidget* left = WidgetOf(window)) {
        wasActive = left->isActiveWindow();
        left->hide();
        left->setWindowModality(Qt::NonModal);
    }
    // A window manager gives the owner the keyboard back; where there is none, it is asked for.
    if (QWidget* back = WidgetOf(IsWindow(focusBefore) ? focusBefore : owner)) {
        if (wasActive && back->window()->isVisible() && !back->window()->isMinimized())
            back->window()->activateWindow();
        if (IsWindow(focusBefore) && FocusedWindow() == 0)
            FocusWindow(focusBefore);
    }
    return run.result;
}

void EndModal(WindowHandle window, int result)
{
    for (ModalRun* run : runs) {
        if (run->window != window || run->ended)
            continue;
        run->ended = true;
        run->result = result;
        run->events->quit();
        run->events->wakeUp();
        return;
    }
}

int ModalDepth()
{
    return static_cast<int>(runs.size());
}

WindowHandle TopModal()
{
    return runs.empty() ? 0 : runs.back()->window;
}

void WhenModal(std::function<void(WindowHandle)> act)
{
    waiting.push_back(std::move(act));
}

}  // namespace jotlet
