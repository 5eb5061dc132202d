// Modal runs: nested loops during which the rest of the program takes no input.
#include "platform/desktop/qt/modal.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QPointer>
#include <algorithm>
#include <deque>
#include <vector>

#include "platform/desktop/application.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/test_input.h"

namespace jotlet {

struct ModalRun {
    enum class Kind { Own, Box, Menu };
    Kind kind = Kind::Own;
    WindowHandle window = 0;  // of our own runs
    QEventLoop* events = nullptr;
    bool ended = false;
    int result = 0;
};

namespace {

std::vector<ModalRun*> runs;
std::deque<std::function<void(WindowHandle)>> waiting;
bool leaving = false;

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

bool LetsThrough(const ModalRun& run, const QWidget& widget)
{
    const QWidget* modal = WidgetOf(run.window);
    return run.kind == ModalRun::Kind::Own && (!modal || LiesIn(&widget, modal));
}

// The platform's own ones, also those that a chooser has opened itself.
void RejectBoxes()
{
    while (QWidget* menu = QApplication::activePopupWidget()) {
        if (!menu->close())
            break;
    }
    std::vector<QPointer<QDialog>> boxes;
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (QWidget* top : tops) {
        if (auto* box = qobject_cast<QDialog*>(top); box && box->isVisible())
            boxes.emplace_back(box);
    }
    for (const QPointer<QDialog>& box : boxes) {
        if (box)
            box->reject();
    }
}

}  // namespace

bool IsBlockedByModal(const QWidget& widget)
{
    // A menu takes what is its own; what it leaves is for the window below it.
    const auto run =
        std::find_if(runs.rbegin(), runs.rend(), [](const ModalRun* one) { return one->kind != ModalRun::Kind::Menu; });
    return run != runs.rend() && !LetsThrough(**run, widget);
}

bool DropsRequests(const QWidget& widget)
{
    return !runs.empty() && !LetsThrough(*runs.back(), widget);
}

ForeignRun::ForeignRun(Kind kind) : run(std::make_unique<ModalRun>())
{
    CancelMouse();
    run->kind = kind == Kind::Menu ? ModalRun::Kind::Menu : ModalRun::Kind::Box;
    runs.push_back(run.get());
}

ForeignRun::~ForeignRun()
{
    std::erase(runs, run.get());
}

void LeaveAllModals()
{
    leaving = true;
    for (ModalRun* run : runs) {
        run->ended = true;
        if (run->events)
            run->events->quit();
    }
    RejectBoxes();
}

void FinishLeaving()
{
    leaving = false;
}

bool LeavingModals()
{
    return leaving;
}

int RunModal(WindowHandle window, WindowHandle owner)
{
    CancelMouse();
    QWidget* widget = WidgetOf(window);
    if (!widget || leaving)
        return 0;
    QEventLoop events;
    ModalRun run{ModalRun::Kind::Own, window, &events};
    runs.push_back(&run);
    const LoopScope loop;
    // A destroyed window ends its run.
    QObject watcher;
    QObject::connect(widget, &QObject::destroyed, &watcher, [&] { events.quit(); });
    const WindowHandle focusBefore = FocusedWindow();
    // A popup has all input anyway, some of it by way of its owner.
    if (widget->windowType() != Qt::Popup)
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
