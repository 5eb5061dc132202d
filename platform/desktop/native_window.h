// Windows, one level under MarlinWnd: creation, geometry, focus, capture, timers, delivery, painting.
//
// A window is an object with a class (name, style bits, background, cursor), a parent, a rectangle, one user word and
// one procedure. Everything here works on handles; an operation on a dead handle (or 0) does nothing and gives 0, false
// or an empty rectangle.
//
// Units:   logical pixels. "Client" coordinates start behind the margin of a frame; other windows have no margin.
// Owns:    the layer owns the windows; DestroyWindow deletes one with its children. A window destroyed inside one of
// its
//          own handlers stays valid until the handler has returned.
// Threads: one, the one that made the Application (platform/desktop/application.h).
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/desktop/cursor.h"
#include "platform/desktop/messages.h"

namespace jotlet {

class DeviceContext;

using WindowProcedure = MessageParam (*)(WindowHandle, std::uint32_t message, MessageParam wParam, MessageParam lParam);

// What a class paints before kWmPaint when an area is invalidated with erasing.
enum class Background { None, ButtonFace, White, Grey };

// Registered by name on first use; a class registered earlier stays as it is.
struct WindowClass {
    std::uint32_t style = kClassSaveBits;
    WindowProcedure procedure = nullptr;
    CursorId cursor = CursorId::Arrow;  // CursorId::None: no class cursor, the window sets it in kWmSetCursor
    Background background = Background::ButtonFace;
    int iconId = 0;
    std::string name = "MarlinWnd";
};

// CreateWindow's position for "wherever the platform likes".
inline constexpr int kUseDefault = static_cast<int>(0x80000000);

// True when the class is now registered, by this call or an earlier one.
bool IsClassRegistered(std::string_view name);
void RegisterWindowClass(const WindowClass& windowClass);

// Makes a window; sends kWmCreate (and kWmSize when it has a size) before it returns. `bounds` is in client coordinates
// of the parent, or screen coordinates of a top-level window (margin included). 0 when it cannot be made.
WindowHandle CreateNativeWindow(std::string_view className, std::string_view title, std::uint32_t style,
                                const Rect& bounds, WindowHandle parent);
void DestroyNativeWindow(WindowHandle window);
bool IsWindow(WindowHandle window);
WindowHandle ParentOf(WindowHandle window);
std::string ClassNameOf(WindowHandle window);  // "Edit", "Button", ... for stock controls

// One word for whoever made the window.
void SetUserWord(WindowHandle window, void* word);
void* UserWord(WindowHandle window);

// Send calls the procedure on the caller's stack. Post goes through the event queue, in order with input and timers,
// and is dropped when the window dies first.
MessageParam SendTo(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam);
void PostTo(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam);
// As PostTo, for a command that the user asked for: it is dropped when its turn comes during a modal run that keeps
// input from the window. So a second click that a busy program serves late does not run its command inside the first
// one's dialog.
void PostRequest(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam);
// What the platform does with a message nobody handled: erases the background, sets the class cursor, closes on
// kWmClose, moves and sizes on kWmSysCommand, ...
MessageParam DefaultProcedure(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam);

// Geometry.
Rect ClientRect(WindowHandle window);  // 0, 0 to the client size
Rect WindowRect(WindowHandle window);  // screen coordinates, margin included
void MoveTo(WindowHandle window, const Rect& bounds, bool repaint = true);
Point ClientToScreen(WindowHandle window, Point p);
Point ScreenToClient(WindowHandle window, Point p);
void SetWindowShape(WindowHandle window, const Point* corners, int count);  // polygon in window coordinates; 0: none
WindowHandle WindowFromScreenPoint(Point p);                                // of this process; 0 when none
void SetWindowTitle(WindowHandle window, std::string_view title);           // sends kWmSetText
std::string WindowTitle(WindowHandle window);

// Showing.
void ShowNative(WindowHandle window, bool visible);
void Minimise(WindowHandle window);
bool IsVisible(WindowHandle window);
void EnableNative(WindowHandle window, bool enabled);
bool IsEnabled(WindowHandle window);
void BringToForeground(WindowHandle window);
// The same for a program that was minimised or lies behind others, with the dialogs open over the window. `permission`:
// what the desktop gave the one who asks for it, empty where there is none.
void BringProgramToForeground(WindowHandle window, const std::string& permission);
bool IsForeground(WindowHandle window);  // the active top-level window of the desktop, as far as the display tells

// Focus, capture, mouse.
void FocusWindow(WindowHandle window);
// In a dialog Enter goes to this window while it has the focus, instead of to the default button.
void TakeReturnKey(WindowHandle window);
WindowHandle FocusedWindow();
void CaptureMouse(WindowHandle window);
void ReleaseMouse();
WindowHandle CapturedWindow();
// On the screen; far away while a desktop that tells no place outside our windows has the mouse elsewhere.
Point CursorPosition();
void SetCursorPosition(Point screen);   // skipped where the display forbids it
void ClipCursorTo(const Rect* screen);  // nullptr: free again; skipped where the display forbids it
void ShowCursorNow(bool visible);
void SetCursorNow(CursorId cursor);  // until the mouse moves onto another window
bool IsKeyDown(VirtualKey key);      // kKeyControl, kKeyShift, kKeyAlt: at the key or mouse event served last

// Timers, by id per window; setting one again restarts it. Delivered as kWmTimer with the id in wParam.
using Milliseconds = std::chrono::milliseconds;
void StartTimer(WindowHandle window, int id, Milliseconds period);
void StopTimer(WindowHandle window, int id);

// Painting. Every window owns its surface; a paint cycle draws the invalid part of it (kWmEraseBkgnd when erasing was
// asked for, then kWmPaint with a PaintInfo* in lParam). Children always lie over their parent.
struct PaintInfo {
    DeviceContext* dc = nullptr;
    Rect invalid;
    bool erased = false;
};
void InvalidateArea(WindowHandle window, const Rect* area, bool erase);
void UpdateNow(WindowHandle window);  // paints now what is invalid, children too
// Everything drawn so far is on the display when it returns, a window shown just now included. Messages, timers and
// input wait meanwhile.
void FlushToScreen();

// Calls `draw` with a device context of the client area (or of the whole window, margin included) at any time, outside
// a paint cycle: draws into the surface at once and schedules the copy to the screen.
void DrawOutsidePaint(WindowHandle window, const std::function<void(DeviceContext&)>& draw);
void DrawOnWholeWindow(WindowHandle window, const std::function<void(DeviceContext&)>& draw);

// The colour of a pixel of the window's surface, for tests; kNoColour outside.
Colour PixelAt(WindowHandle window, Point client);

}  // namespace jotlet
