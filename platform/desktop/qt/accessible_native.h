// What the accessibility bus sees of a window that paints itself: the window, its parts, the windows in it.
#pragma once

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QElapsedTimer>
#include <QPointer>
#include <vector>

#include "platform/desktop/accessible.h"
#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

// Makes our windows known to the platform's accessibility; asked by a reader only.
void InstallAccessibility();
QAccessible::Role RoleOf(AccessibleRole role);
// The window got the keyboard: says which of its parts has it. Called once the window's own focus was told.
void TellFocus(NativeWidget& window);

class PartAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    explicit PartAccessible(NativeWidget* window);

    AccessiblePart part;
    QAccessible::Id id = 0;

    bool isValid() const override { return window != nullptr && window->Alive(); }
    QObject* object() const override { return nullptr; }
    QRect rect() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return RoleOf(part.role); }
    QAccessible::State state() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<NativeWidget> window;
};

class NativeAccessible;
// What the bus sees of a window; null for other windows.
NativeAccessible* InterfaceOf(WindowHandle window);

class NativeAccessible final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit NativeAccessible(NativeWidget* window);
    using QAccessibleWidget::widget;
    ~NativeAccessible() override;

    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override { return 1.0; }

    // Asks the window again at the next question.
    void Forget() { age.invalidate(); }
    const std::vector<PartAccessible*>& Parts() const;

private:
    // Asks the window, and tells the reader of new names and a new value.
    void Refresh() const;
    void TakeParts(const std::vector<AccessiblePart>& told) const;
    bool HasFocusedPart() const;

    NativeWidget* Window() const { return static_cast<NativeWidget*>(widget()); }

    mutable AccessibleDescription description;
    mutable std::vector<PartAccessible*> parts;  // owned by the accessibility cache, by their ids
    mutable QElapsedTimer age;
};

}  // namespace jotlet
