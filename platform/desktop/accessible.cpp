#include "platform/desktop/accessible.h"

#include "platform/desktop/qt/accessible_native.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/test_input.h"

namespace jotlet {

namespace {

constexpr int kFreshMs = 100;  // a reader asks for every child in turn; the window is not asked again for each

QAccessibleInterface* MakeInterface(const QString&, QObject* object)
{
    if (auto* native = dynamic_cast<NativeWidget*>(object); native && native->Alive())
        return std::make_unique<NativeAccessible>(native).release();  // the accessibility cache owns it
    return nullptr;
}

NativeAccessible* InterfaceOf(WindowHandle window)
{
    NativeWidget* native = NativeOf(window);
    return native ? dynamic_cast<NativeAccessible*>(QAccessible::queryAccessibleInterface(native)) : nullptr;
}

}  // namespace

void InstallAccessibility()
{
    QAccessible::installFactory(MakeInterface);
}

QAccessible::Role RoleOf(AccessibleRole role)
{
    switch (role) {
        case AccessibleRole::Pane:
            return QAccessible::Pane;
        case AccessibleRole::List:
            return QAccessible::List;
        case AccessibleRole::ListItem:
            return QAccessible::ListItem;
        case AccessibleRole::ToolBar:
            return QAccessible::ToolBar;
        case AccessibleRole::Button:
            return QAccessible::PushButton;
        case AccessibleRole::TabList:
            return QAccessible::PageTabList;
        case AccessibleRole::Tab:
            return QAccessible::PageTab;
        case AccessibleRole::Calendar:
            return QAccessible::Table;
        case AccessibleRole::Day:
            return QAccessible::Cell;
        case AccessibleRole::Text:
            return QAccessible::StaticText;
        case AccessibleRole::Slider:
            return QAccessible::Slider;
        case AccessibleRole::Picture:
            return QAccessible::Graphic;
        case AccessibleRole::None:
            break;
    }
    return QAccessible::Client;
}

PartAccessible::PartAccessible(NativeWidget* itsWindow) : window(itsWindow) {}

QRect PartAccessible::rect() const
{
    if (!isValid())
        return {};
    const QRect local = ToQt(part.bounds).translated(window->Margin().left(), window->Margin().top());
    return {window->mapToGlobal(local.topLeft()), local.size()};
}

QString PartAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? ShownText(part.name) : QString();
}

QAccessible::State PartAccessible::state() const
{
    QAccessible::State state;
    state.focusable = true;
    state.selectable =
        part.role == AccessibleRole::ListItem || part.role == AccessibleRole::Tab || part.role == AccessibleRole::Day;
    state.selected = part.selected;
    state.focused = part.focused;
    state.disabled = !part.enabled;
    state.invisible = !isValid() || !window->isVisible();
    return state;
}

QAccessibleInterface* PartAccessible::parent() const
{
    return isValid() ? QAccessible::queryAccessibleInterface(window) : nullptr;
}

void* PartAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList PartAccessible::actionNames() const
{
    return part.enabled ? QStringList{QAccessibleActionInterface::pressAction()} : QStringList();
}

void PartAccessible::doAction(const QString& name)
{
    if (!isValid() || !part.enabled || name != QAccessibleActionInterface::pressAction())
        return;
    const Rect& area = part.bounds;
    TestClick(window->Handle(), {(area.left + area.right) / 2, (area.top + area.bottom) / 2});
}

NativeAccessible::NativeAccessible(NativeWidget* window) : QAccessibleWidget(window) {}

NativeAccessible::~NativeAccessible()
{
    for (const PartAccessible* part : parts)
        QAccessible::deleteAccessibleInterface(part->id);
}

void NativeAccessible::Refresh() const
{
    if (age.isValid() && age.elapsed() < kFreshMs)
        return;
    age.start();
    description = {};
    if (Window()->Alive())
        Window()->Deliver(kWmDescribe, 0, reinterpret_cast<MessageParam>(&description));
    while (parts.size() > description.parts.size()) {
        QAccessible::deleteAccessibleInterface(parts.back()->id);
        parts.pop_back();
    }
    while (parts.size() < description.parts.size()) {
        auto* part = std::make_unique<PartAccessible>(Window()).release();  // the cache owns it
        part->id = QAccessible::registerAccessibleInterface(part);
        parts.push_back(part);
    }
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i]->part = description.parts[i];
}

const std::vector<PartAccessible*>& NativeAccessible::Parts() const
{
    Refresh();
    return parts;
}

QString NativeAccessible::text(QAccessible::Text kind) const
{
    Refresh();
    if (kind == QAccessible::Name && !description.name.empty())
        return ShownText(description.name);
    return QAccessibleWidget::text(kind);
}

QAccessible::Role NativeAccessible::role() const
{
    Refresh();
    if (description.role != AccessibleRole::None)
        return RoleOf(description.role);
    if (Window()->IsDialog())
        return QAccessible::Dialog;
    return Window()->isWindow() ? QAccessible::Window : QAccessible::Client;
}

int NativeAccessible::childCount() const
{
    return static_cast<int>(Parts().size()) + QAccessibleWidget::childCount();
}

QAccessibleInterface* NativeAccessible::child(int index) const
{
    const int count = static_cast<int>(Parts().size());
    if (index < 0)
        return nullptr;
    return index < count ? parts[static_cast<std::size_t>(index)] : QAccessibleWidget::child(index - count);
}

QAccessibleInterface* NativeAccessible::childAt(int x, int y) const
{
    if (QAccessibleInterface* inner = QAccessibleWidget::childAt(x, y))
        return inner;
    for (PartAccessible* part : Parts()) {
        if (part->rect().contains(x, y))
            return part;
    }
    return nullptr;
}

int NativeAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto& all = Parts();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == child)
            return static_cast<int>(i);
    }
    const int inner = QAccessibleWidget::indexOfChild(child);
    return inner < 0 ? -1 : inner + static_cast<int>(all.size());
}

QAccessibleInterface* NativeAccessible::focusChild() const
{
    if (widget()->hasFocus()) {
        for (PartAccessible* part : Parts()) {
            if (part->part.focused)
                return part;
        }
    }
    return QAccessibleWidget::focusChild();
}

void AccessibleChanged(WindowHandle window)
{
    if (!QAccessible::isActive())
        return;
    NativeAccessible* interface = InterfaceOf(window);
    if (!interface)
        return;
    interface->Forget();
    QAccessibleEvent changed(interface->object(), QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&changed);
    if (QAccessibleInterface* focused = interface->focusChild()) {
        QAccessibleEvent moved(focused, QAccessible::Focus);
        QAccessible::updateAccessibility(&moved);
    }
}

AccessibleDescription ReadAsScreenReader(WindowHandle window)
{
    AccessibleDescription heard;
    NativeAccessible* interface = InterfaceOf(window);
    if (!interface)
        return heard;
    interface->Forget();
    heard.name = ToUtf8(interface->text(QAccessible::Name));
    constexpr AccessibleRole kRoles[] = {AccessibleRole::Pane,    AccessibleRole::List,     AccessibleRole::ListItem,
                                         AccessibleRole::ToolBar, AccessibleRole::Button,   AccessibleRole::Tab,
                                         AccessibleRole::TabList, AccessibleRole::Calendar, AccessibleRole::Day,
                                         AccessibleRole::Text,    AccessibleRole::Slider,   AccessibleRole::Picture};
    const auto known = [&](QAccessible::Role role) {
        for (const AccessibleRole one : kRoles) {
            if (RoleOf(one) == role)
                return one;
        }
        return AccessibleRole::None;
    };
    heard.role = known(interface->role());
    const Point origin = ClientToScreen(window, {});
    for (int i = 0; i < interface->childCount(); ++i) {
        const auto* part = dynamic_cast<PartAccessible*>(interface->child(i));
        if (!part)
            continue;
        const QAccessible::State state = part->state();
        heard.parts.push_back({known(part->role()), ToUtf8(part->text(QAccessible::Name)),
                               FromQt(part->rect()).Moved(-origin.x, -origin.y), state.selected != 0,
                               state.focused != 0, state.disabled == 0});
    }
    return heard;
}

bool PressAsScreenReader(WindowHandle window, std::size_t part)
{
    const NativeAccessible* interface = InterfaceOf(window);
    if (!interface || part >= interface->Parts().size())
        return false;
    interface->Parts()[part]->doAction(QAccessibleActionInterface::pressAction());
    return true;
}

}  // namespace jotlet
