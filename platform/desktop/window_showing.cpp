// Showing, enabling, focus, and what lies under a point of the screen.
#include <QApplication>
#include <QWindow>
#include <algorithm>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

// Top-level windows in the order they lie over each other, as far as we put them there: the last one is on top.
std::vector<WindowHandle>& RaisedWindows()
{
    // One stack of windows on the screen.
    static std::vector<WindowHandle> order;
    return order;
}

void NoteRaised(WindowHandle window)
{
    auto& order = RaisedWindows();
    std::erase_if(order, [&](WindowHandle one) { return one == window || !IsWindow(one); });
    order.push_back(window);
}

bool Covers(const QWidget& top, const QPoint& screen)
{
    if (!top.isVisible() || !top.geometry().contains(screen))
        return false;
    return top.mask().isEmpty() || top.mask().contains(top.mapFromGlobal(screen));
}

}  // namespace

void ShowNative(WindowHandle window, bool visible)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    if (NativeWidget* native = NativeOf(window); native && visible) {
        const HandlerScope scope;
        native->ApplyLimits();
    }
    widget->setVisible(visible);
    if (visible && widget->isWindow())
        BringToForeground(window);
}

void Minimise(WindowHandle window)
{
    if (QWidget* widget = WidgetOf(window))
        widget->window()->showMinimized();
}

bool IsVisible(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    return widget && widget->isVisible();
}

void EnableNative(WindowHandle window, bool enabled)
{
    if (QWidget* widget = WidgetOf(window))
        widget->setEnabled(enabled);
}

bool IsEnabled(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    return widget && widget->isEnabled();
}

void BringToForeground(WindowHandle window)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    QWidget* top = widget->window();
    if (top->isMinimized())
        top->showNormal();
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        top->raise();
    top->activateWindow();
    if (const WindowHandle handle = HandleOf(top))
        NoteRaised(handle);
}

void BringProgramToForeground(WindowHandle window, const std::string& permission)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    QWidget* top = widget->window();
    QWidget* modal = QApplication::activeModalWidget();
    const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (wayland && !permission.empty())
        qputenv("XDG_ACTIVATION_TOKEN", permission.c_str());
    // There a window cannot bring itself back; one that is shown anew stands in front.
    else if (wayland && !top->isActiveWindow() && !modal)
        top->hide();
    if (top->isMinimized())
        top->showNormal();
    else if (!top->isVisible())
        top->show();
    BringToForeground(window);
    if (modal) {
        modal->raise();
        modal->activateWindow();
    }
}

bool IsForeground(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    return widget && widget->isActiveWindow();
}

void FocusWindow(WindowHandle window)
{
    if (QWidget* widget = WidgetOf(window)) {
        const HandlerScope scope;
        widget->setFocus(Qt::OtherFocusReason);
    }
}

WindowHandle FocusedWindow()
{
    return HandleOf(QApplication::focusWidget());
}

WindowHandle WindowFromScreenPoint(Point p)
{
    const QPoint screen = ToQt(p);
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        return HandleOf(QApplication::widgetAt(screen));
    // Elsewhere nobody tells how the windows lie: the one raised last covers the others.
    const QWidgetList tops = QApplication::topLevelWidgets();
    const QWidget* best = nullptr;
    std::ptrdiff_t bestRank = -2;
    for (const QWidget* top : tops) {
        const WindowHandle handle = HandleOf(top);
        if (!handle || !Covers(*top, screen))
            continue;
        const auto& order = RaisedWindows();
        const auto found = std::find(order.begin(), order.end(), handle);
        const std::ptrdiff_t rank = found == order.end() ? -1 : found - order.begin();
        if (rank > bestRank) {
            best = top;
            bestRank = rank;
        }
    }
    if (!best)
        return 0;
    const QWidget* child = best->childAt(best->mapFromGlobal(screen));
    return HandleOf(child ? child : best);
}

}  // namespace jotlet
