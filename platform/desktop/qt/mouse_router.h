// Where mouse messages go: to the window under the cursor, or to the one that captured the mouse; and the plain moving
// and sizing of a frame where no window manager does it.
#pragma once

#include <QMouseEvent>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

enum class MouseKind { Press, Release, DoubleClick, Move };

void RouteMouse(NativeWidget& receiver, const QMouseEvent& event, MouseKind kind);
// Flags of a mouse message.
MessageParam MouseFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers keys);
MessageParam PointParam(const QPoint& p);
// A window is gone: no capture, no tracking for it.
void ForgetMouse(WindowHandle window);

// Moves (edges none) or sizes the frame with the mouse until the left button is released; by the window manager, from
// the first real movement on, where there is one.
void BeginFrameTracking(NativeWidget& frame, Qt::Edges edges);
// True from now until the next left release, which no window sees; `false` ends the wait.
void WaitForRelease(bool waiting);
bool ReleaseSeen();
bool LeftButtonDown();

// What test events say about the mouse and the keys, in the place of the display's answers.
void PretendCursor(const QPoint& screen);
void PretendKeys(Qt::KeyboardModifiers keys, bool active);

}  // namespace jotlet
