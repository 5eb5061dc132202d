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
// The mouse left a top-level window, or came into one.
void NoteMouseCrossing(bool outside);
// A window is gone: no capture, no tracking for it.
void ForgetMouse(WindowHandle window);
// Something else takes the mouse: whoever has it, by capture or by a press, is told with kWmCaptureLost; a frame that
// moves stays where it is, a held caption button acts no more.
void CancelMouse();
// The keys that an event says are held, for IsKeyDown until the next one.
void NoteKeys(Qt::KeyboardModifiers keys);

// Moves (edges none) or sizes the frame with the mouse until the left button is released; by the window manager, from
// the first real movement on, where there is one.
void BeginFrameTracking(NativeWidget& frame, Qt::Edges edges);
// True from now until the next left release, which no window sees; `false` ends the wait.
void WaitForRelease(bool waiting);
bool WaitingForRelease();
bool ReleaseSeen();
bool LeftButtonDown();

// What test events say about the mouse, in the place of the display's answer.
void PretendCursor(const QPoint& screen);

}  // namespace jotlet
