// Keys and the wheel.
#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QPushButton>
#include <QWheelEvent>
#include <array>
#include <utility>

#include "platform/desktop/dialog.h"
#include "platform/desktop/qt/keys.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

constexpr std::pair<int, int> kKeys[] = {
    {Qt::Key_Backspace, kKeyBack},  {Qt::Key_Tab, kKeyTab},       {Qt::Key_Backtab, kKeyTab},
    {Qt::Key_Return, kKeyReturn},   {Qt::Key_Enter, kKeyReturn},  {Qt::Key_Shift, kKeyShift},
    {Qt::Key_Control, kKeyControl}, {Qt::Key_Alt, kKeyAlt},       {Qt::Key_Escape, kKeyEscape},
    {Qt::Key_Space, kKeySpace},     {Qt::Key_PageUp, kKeyPageUp}, {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_End, kKeyEnd},         {Qt::Key_Home, kKeyHome},     {Qt::Key_Left, kKeyLeft},
    {Qt::Key_Up, kKeyUp},           {Qt::Key_Right, kKeyRight},   {Qt::Key_Down, kKeyDown},
    {Qt::Key_Insert, kKeyInsert},   {Qt::Key_Delete, kKeyDelete}, {Qt::Key_Menu, kKeyMenu},
};

constexpr int kWheelStep = 120;

}  // namespace

int VirtualKeyOf(const QKeyEvent& event)
{
    const int key = event.key();
    if (key == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier)
        return kKeyMenu;
    for (const auto& [qt, ours] : kKeys) {
        if (qt == key)
            return ours;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return kKeyF1 + key - Qt::Key_F1;
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
        return key;
    return 0;
}

int QtKeyOf(int virtualKey)
{
    for (const auto& [qt, ours] : kKeys) {
        if (ours == virtualKey)
            return qt;
    }
    if (virtualKey >= kKeyF1 && virtualKey < kKeyF1 + 24)
        return Qt::Key_F1 + virtualKey - kKeyF1;
    return virtualKey;
}

bool NativeWidget::HandleDialogKey(const QKeyEvent& event)
{
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    const auto held = event.modifiers() & ~Qt::KeypadModifier;
    // In an edit of many lines Return is a letter; with Ctrl it confirms from everywhere.
    if (held == Qt::ControlModifier && isReturn) {
        if (auto* ok = qobject_cast<QAbstractButton*>(WidgetOf(DialogItem(handle, kIdOk))); ok && ok->isVisible())
            ok->click();
        return true;
    }
    if (held != Qt::NoModifier)
        return false;
    if (event.key() == Qt::Key_Escape) {
        Deliver(kWmCommand, kIdCancel, static_cast<MessageParam>(DialogItem(handle, kIdCancel)));
        return true;
    }
    if (!isReturn)
        return false;
    const QList<QPushButton*> buttons = findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (QPushButton* button : buttons) {
        if (!button->isDefault())
            continue;
        if (button->isEnabled() && button->isVisible())
            button->click();
        return true;
    }
    Deliver(kWmCommand, kIdOk, 0);
    return true;
}

void TakeReturnKey(WindowHandle window)
{
    if (auto* native = dynamic_cast<NativeWidget*>(WidgetOf(window)))
        native->takesReturn = true;
}

void NativeWidget::keyPressEvent(QKeyEvent* event)
{
    const HandlerScope scope;
    event->accept();
    NoteKeys(event->modifiers());
    if (!alive || IsBlockedByModal(*this))
        return;
    const bool isOurs = takesReturn && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
                        !(event->modifiers() & ~Qt::KeypadModifier);
    if (NativeWidget* dialog = OwnDialog(); dialog && !isOurs && dialog->HandleDialogKey(*event))
        return;
    const int key = VirtualKeyOf(*event);
    const bool alt = event->modifiers() & Qt::AltModifier;
    if (key)
        Deliver(alt ? kWmSysKeyDown : kWmKeyDown, key, event->isAutoRepeat() ? 1 : 0);
    if (alt)
        return;
    const QList<uint> characters = event->text().toUcs4();
    for (const uint character : characters)
        Deliver(kWmChar, static_cast<MessageParam>(character), 0);
}

void NativeWidget::keyReleaseEvent(QKeyEvent* event)
{
    event->accept();
    NoteKeys(event->modifiers());
    if (event->isAutoRepeat() || IsBlockedByModal(*this))
        return;
    if (const int key = VirtualKeyOf(*event))
        Deliver(event->modifiers() & Qt::AltModifier ? kWmSysKeyUp : kWmKeyUp, key, 0);
}

void NativeWidget::wheelEvent(QWheelEvent* event)
{
    event->accept();
    if (!alive || !isEnabled() || IsBlockedByModal(*this))
        return;
    // Fine wheels send parts of a step; a list moves by whole ones.
    const int delta = event->angleDelta().y();
    if ((delta > 0) != (wheelRest > 0))
        wheelRest = 0;
    wheelRest += delta;
    const int steps = wheelRest / kWheelStep;
    wheelRest -= steps * kWheelStep;
    const QPoint client = ToClient(event->position().toPoint());
    const int flags = static_cast<int>(MouseFlags(event->buttons(), event->modifiers()));
    for (int i = 0; i < qAbs(steps) && alive; ++i)
        Deliver(kWmMouseWheel, MakeParam(flags, steps > 0 ? kWheelStep : -kWheelStep), PointParam(client));
}

void NativeWidget::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();  // comes with the right button or the menu key, both of which are delivered as such
}

void NativeWidget::mousePressEvent(QMouseEvent* event)
{
    RouteMouse(*this, *event, MouseKind::Press);
}

void NativeWidget::mouseReleaseEvent(QMouseEvent* event)
{
    RouteMouse(*this, *event, MouseKind::Release);
}

void NativeWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    RouteMouse(*this, *event, MouseKind::DoubleClick);
}

void NativeWidget::mouseMoveEvent(QMouseEvent* event)
{
    RouteMouse(*this, *event, MouseKind::Move);
}

}  // namespace jotlet
