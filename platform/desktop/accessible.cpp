#include "platform/desktop/accessible.h"

#include <QAccessible>

#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

void AccessibleChanged(std::uintptr_t window)
{
    QWidget* widget = WidgetOf(window);
    if (!widget || !QAccessible::isActive())
        return;
    QAccessibleEvent event(widget, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

}  // namespace jotlet
