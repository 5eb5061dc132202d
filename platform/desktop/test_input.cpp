#include "platform/desktop/test_input.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>

#include "platform/desktop/qt/accessible_native.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/keys.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/stock_controls.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

Qt::KeyboardModifiers Modifiers(Keys keys)
{
    Qt::KeyboardModifiers result = Qt::NoModifier;
    result.setFlag(Qt::ControlModifier, keys.control);
    result.setFlag(Qt::ShiftModifier, keys.shift);
    result.setFlag(Qt::AltModifier, keys.alt);
    return result;
}

void SendMouse(WindowHandle window, QEvent::Type type, Point client, Qt::MouseButton button, Qt::MouseButtons buttons,
               Keys keys)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    QPoint local = ToQt(client);
    if (const NativeWidget* native = NativeOf(window))
        local += QPoint(native->Margin().left(), native->Margin().top());
    const QPoint screen = widget->mapToGlobal(local);
    PretendCursor(screen);
    QMouseEvent event(type, local, widget->window()->mapFromGlobal(screen), screen, button, buttons, Modifiers(keys),
                      Qt::MouseEventSynthesizedByApplication);
    QApplication::sendEvent(widget, &event);
}

// A control's inner edit takes its keys.
QWidget* KeyReceiver(WindowHandle window)
{
    QWidget* widget = WidgetOf(window);
    if (auto* combo = qobject_cast<QComboBox*>(widget); combo && combo->lineEdit())
        return combo->lineEdit();
    return widget;
}

void SendKey(WindowHandle window, int key, const QString& text, Keys keys)
{
    static quint64 time = 1;
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QWidget* widget = KeyReceiver(window);
        if (!widget)
            return;
        QKeyEvent event(type, key, Modifiers(keys), text);
        event.setTimestamp(++time);
        QApplication::sendEvent(widget, &event);
    }
}

QString TextOfKey(int virtualKey, Keys keys)
{
    if (keys.control || keys.alt)
        return {};
    switch (virtualKey) {
        case kKeyReturn:
        case kKeyEscape:
        case kKeyBack:
        case kKeyTab:
        case kKeySpace:
            return QString(QChar(virtualKey));
        default:
            break;
    }
    if (virtualKey >= 'A' && virtualKey <= 'Z')
        return QString(QChar(keys.shift ? virtualKey : virtualKey - 'A' + 'a'));
    if (virtualKey >= '0' && virtualKey <= '9')
        return QString(QChar(virtualKey));
    return {};
}

}  // namespace

void TestPress(WindowHandle window, Point client, bool right, Keys keys)
{
    const Qt::MouseButton button = right ? Qt::RightButton : Qt::LeftButton;
    SendMouse(window, QEvent::MouseButtonPress, client, button, button, keys);
}

void TestRelease(WindowHandle window, Point client, bool right, Keys keys)
{
    const Qt::MouseButton button = right ? Qt::RightButton : Qt::LeftButton;
    SendMouse(window, QEvent::MouseButtonRelease, client, button, Qt::NoButton, keys);
}

void TestMove(WindowHandle window, Point client, bool leftDown, Keys keys)
{
    SendMouse(window, QEvent::MouseMove, client, Qt::NoButton, leftDown ? Qt::LeftButton : Qt::NoButton, keys);
}

void TestClick(WindowHandle window, Point client, bool right, Keys keys)
{
    TestPress(window, client, right, keys);
    TestRelease(window, client, right, keys);
}

void TestDoubleClick(WindowHandle window, Point client)
{
    TestClick(window, client);
    SendMouse(window, QEvent::MouseButtonDblClick, client, Qt::LeftButton, Qt::LeftButton, {});
    TestRelease(window, client);
}

void TestWheel(WindowHandle window, Point client, int delta)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    QPoint local = ToQt(client);
    if (const NativeWidget* native = NativeOf(window))
        local += QPoint(native->Margin().left(), native->Margin().top());
    const QPoint screen = widget->mapToGlobal(local);
    PretendCursor(screen);
    QWheelEvent event(local, screen, QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(widget, &event);
}

void TestKey(WindowHandle window, int virtualKey, Keys keys)
{
    const int key = virtualKey == kKeyTab && keys.shift ? int(Qt::Key_Backtab) : QtKeyOf(virtualKey);
    SendKey(window, key, TextOfKey(virtualKey, keys), keys);
}

void TestType(WindowHandle window, std::string_view utf8)
{
    const QList<uint> characters = ShownLines(utf8).toUcs4();
    for (const uint character : characters) {
        if (character == '\n') {
            TestKey(window, kKeyReturn);
            continue;
        }
        const char32_t one = character;
        const QString text = QString::fromUcs4(&one, 1);
        const int key = character < 128 ? QChar(character).toUpper().unicode() : 0;
        SendKey(window, key, text, {});
    }
}

void TestPaste(WindowHandle window, std::optional<std::string_view> utf8)
{
    auto data = std::make_unique<QMimeData>();
    if (utf8)
        data->setText(QString::fromUtf8(utf8->data(), static_cast<qsizetype>(utf8->size())));
    QGuiApplication::clipboard()->setMimeData(data.release());  // which owns it
    TestKey(window, 'V', {.control = true});
}

int TestWidgetCount()
{
    return static_cast<int>(QApplication::allWidgets().size());
}

void TestPushItem(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    auto* button = entry ? qobject_cast<QAbstractButton*>(entry->widget) : nullptr;
    if (button && button->isEnabled() && button->isVisibleTo(button->window()) && !IsBlockedByModal(*button))
        button->click();
}

void TestPickRow(WindowHandle dialog, int id, int index)
{
    const WindowEntry* entry = FindItem(dialog, id);
    if (!entry || !entry->widget->isEnabled() || IsBlockedByModal(*entry->widget) || index >= RowCount(dialog, id))
        return;
    if (auto* list = qobject_cast<QListWidget*>(entry->widget)) {
        list->setCurrentRow(index);
    } else if (auto* combo = qobject_cast<QComboBox*>(entry->widget)) {
        combo->setCurrentIndex(index);
        emit combo->activated(index);
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
                               state.focused != 0, state.disabled == 0, ToUtf8(part->text(QAccessible::Description))});
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
