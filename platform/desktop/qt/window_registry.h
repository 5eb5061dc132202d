// Which object stands behind a handle: a toolkit window or dialog, or a stock control of a dialog.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "platform/desktop/native_window.h"

namespace jotlet {

class NativeWidget;
struct ControlState;

struct WindowEntry {
    QPointer<QWidget> widget;
    NativeWidget* native = nullptr;  // null for a stock control
    std::string className;
    int controlId = 0;
    std::shared_ptr<ControlState> control = {};  // of a stock control
};

// Handles count up and are never given out twice.
WindowHandle NewHandle();
void RegisterHandle(WindowHandle handle, WindowEntry entry);
void ForgetHandle(WindowHandle handle);
// Null for a dead handle.
const WindowEntry* FindEntry(WindowHandle handle);
NativeWidget* NativeOf(WindowHandle handle);
QWidget* WidgetOf(WindowHandle handle);

// The handle of the widget itself or of the nearest ancestor that has one; inner parts of a stock control (an edit in a
// combo, a list's viewport) so count as the control.
WindowHandle HandleOf(const QWidget* widget);
void SetHandleOf(QWidget* widget, WindowHandle handle);

std::vector<WindowHandle> AllHandles();

// A class registered under a name; null when there is none.
const WindowClass* FindClass(std::string_view name);

// Handlers now running, of all windows. A window destroyed meanwhile is deleted when none of its own can be among them:
// when the last one returns, of those that began since the loop was entered in which the window was made.
class HandlerScope {
public:
    HandlerScope();
    ~HandlerScope();
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;
};
int HandlerDepth();
void DeleteWhenIdle(NativeWidget* widget);

// A nested loop of our own. What is born and destroyed in it need not wait for the handlers round it.
class LoopScope {
public:
    LoopScope();
    ~LoopScope();
    LoopScope(const LoopScope&) = delete;
    LoopScope& operator=(const LoopScope&) = delete;
};
int LoopDepth();

}  // namespace jotlet
