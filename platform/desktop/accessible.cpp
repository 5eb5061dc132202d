#include "platform/desktop/accessible.h"

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "platform/desktop/qt/accessible_native.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/held_messages.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

constexpr int kFreshMs = 100;  // a reader asks for every child in turn; the window is not asked again for each

QAccessibleInterface* MakeInterface(const QString&, QObject* object)
{
    if (auto* native = dynamic_cast<NativeWidget*>(object); native && native->Alive())
        return std::make_unique<NativeAccessible>(native).release();  // the accessibility cache owns it
    return nullptr;
}

// The press comes over the bus and is answered at once; what it starts, maybe a menu, runs from the queue.
void PressLater(NativeWidget* window, const Rect& area, int sysCommand)
{
    const QPointer<NativeWidget> target(window);
    const Point middle{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
    const auto press = [target, middle, sysCommand] {
        if (!target || !target->Alive() || !target->isEnabled() || IsBlockedByModal(*target) || MessagesHeld())
            return;
        const HandlerScope scope;
        if (sysCommand != 0) {
            target->Deliver(kWmSysCommand, sysCommand, 0);
            return;
        }
        const MessageParam where = MakeParam(middle.x, middle.y);
        target->Deliver(kWmLButtonDown, kMouseLeft, where);
        if (target)
            target->Deliver(kWmLButtonUp, 0, where);
    };
    QMetaObject::invokeMethod(window, press, Qt::QueuedConnection);
}

void Tell(QAccessibleInterface& about, QAccessible::Event what)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&about, what);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

NativeAccessible* InterfaceOf(WindowHandle window)
{
    NativeWidget* native = NativeOf(window);
    return native ? dynamic_cast<NativeAccessible*>(QAccessible::queryAccessibleInterface(native)) : nullptr;
}

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
    if (kind == QAccessible::Description)
        return ShownText(part.detail);
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
    PressLater(window, part.bounds, part.sysCommand);
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
    AccessibleDescription told;
    if (Window()->Alive())
        Window()->Deliver(kWmDescribe, 0, reinterpret_cast<MessageParam>(&told));
    std::swap(description, told);
    TakeParts(description.parts);
    auto& self = const_cast<NativeAccessible&>(*this);
    if (!told.name.empty() && told.name != description.name)
        Tell(self, QAccessible::NameChanged);
    if (told.value && description.value && told.value->now != description.value->now && QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(&self, description.value->now);
        QAccessible::updateAccessibility(&changed);
    }
}

void NativeAccessible::TakeParts(const std::vector<AccessiblePart>& told) const
{
    while (parts.size() > told.size()) {
        QAccessible::deleteAccessibleInterface(parts.back()->id);
        parts.pop_back();
    }
    for (std::size_t i = 0; i < told.size(); ++i) {
        if (i == parts.size()) {
            auto* part = std::make_unique<PartAccessible>(Window()).release();  // the cache owns it
            part->id = QAccessible::registerAccessibleInterface(part);
            part->part = told[i];
            parts.push_back(part);
            continue;
        }
        const AccessiblePart old = std::exchange(parts[i]->part, told[i]);
        if (old.name != told[i].name)
            Tell(*parts[i], QAccessible::NameChanged);
        if (old.detail != told[i].detail)
            Tell(*parts[i], QAccessible::DescriptionChanged);
    }
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
    if (kind == QAccessible::Description && !description.hint.empty())
        return ShownText(description.hint);
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

bool NativeAccessible::HasFocusedPart() const
{
    const auto& all = Parts();
    return std::any_of(all.begin(), all.end(), [](const PartAccessible* part) { return part->part.focused; });
}

QAccessible::State NativeAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    if (widget()->hasFocus()) {
        state.focusable = true;
        state.focused = !HasFocusedPart();
    }
    return state;
}

void* NativeAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface) {
        Refresh();
        return description.value ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }
    return QAccessibleWidget::interface_cast(type);
}

QStringList NativeAccessible::actionNames() const
{
    Refresh();
    QStringList names = QAccessibleWidget::actionNames();
    if ((description.role == AccessibleRole::Button || description.press) && widget()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void NativeAccessible::doAction(const QString& name)
{
    if (name != pressAction() || !actionNames().contains(name)) {
        QAccessibleWidget::doAction(name);
        return;
    }
    const Rect whole = FromQt(Window()->ClientArea());
    PressLater(Window(), description.press.value_or(Rect{0, 0, whole.Width(), whole.Height()}), 0);
}

QVariant NativeAccessible::currentValue() const
{
    Refresh();
    return description.value.value_or(AccessibleValue{}).now;
}

QVariant NativeAccessible::maximumValue() const
{
    return description.value.value_or(AccessibleValue{}).most;
}

QVariant NativeAccessible::minimumValue() const
{
    return description.value.value_or(AccessibleValue{}).least;
}

QAccessibleInterface* NativeAccessible::focusChild() const
{
    if (widget()->hasFocus()) {
        for (PartAccessible* part : Parts()) {
            if (part->part.focused)
                return part;
        }
        return const_cast<NativeAccessible*>(this);
    }
    QWidget* focused = QApplication::focusWidget();
    if (!focused || !widget()->isAncestorOf(focused))
        return nullptr;
    QAccessibleInterface* inner = QAccessible::queryAccessibleInterface(focused);
    QAccessibleInterface* part = inner ? inner->focusChild() : nullptr;
    return part ? part : inner;
}

void NativeAccessible::setCurrentValue(const QVariant& value)
{
    double wanted = value.toDouble();
    if (std::isfinite(wanted) && widget()->isEnabled() && !IsBlockedByModal(*widget()))
        Window()->Deliver(kWmSetValue, 0, reinterpret_cast<MessageParam>(&wanted));
}

void AccessibleChanged(WindowHandle window)
{
    if (!QAccessible::isActive())
        return;
    NativeAccessible* interface = InterfaceOf(window);
    if (!interface)
        return;
    const int before = interface->childCount();
    interface->Forget();
    if (interface->childCount() != before)
        Tell(*interface, QAccessible::ObjectReorder);
    if (interface->widget()->hasFocus())
        Tell(*interface->focusChild(), QAccessible::Focus);
}

void TellFocus(NativeWidget& window)
{
    if (!QAccessible::isActive())
        return;
    const QPointer<NativeWidget> target(&window);
    const auto tell = [target] {
        if (target && target->Alive() && target->hasFocus())
            AccessibleChanged(target->Handle());
    };
    QMetaObject::invokeMethod(&window, tell, Qt::QueuedConnection);
}

}  // namespace jotlet
