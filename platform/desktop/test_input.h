// Events as a user makes them, for tests: they take the same road as those of a mouse and a keyboard.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "platform/desktop/accessible.h"
#include "platform/desktop/messages.h"

namespace jotlet {

struct Keys {
    bool control = false;
    bool shift = false;
    bool alt = false;
};

// Client coordinates of `window`. The event goes to the window itself, or to whoever holds the capture.
void TestPress(WindowHandle window, Point client, bool right = false, Keys keys = {});
void TestRelease(WindowHandle window, Point client, bool right = false, Keys keys = {});
void TestMove(WindowHandle window, Point client, bool leftDown = false, Keys keys = {});
void TestClick(WindowHandle window, Point client, bool right = false, Keys keys = {});
void TestDoubleClick(WindowHandle window, Point client);
void TestWheel(WindowHandle window, Point client, int delta);
void TestKey(WindowHandle window, int virtualKey, Keys keys = {});  // press and release
// Ctrl+V with this text in the clipboard; nothing: one that offers no format at all.
void TestPaste(WindowHandle window, std::optional<std::string_view> utf8);
void TestType(WindowHandle window, std::string_view utf8);  // text, character by character
// A press of a dialog's button, a pick of a row: what the mouse would do on a stock control.
void TestPushItem(WindowHandle dialog, int id);
void TestPickRow(WindowHandle dialog, int id, int index);

// What a screen reader finds in a window that paints itself, read back through the platform's accessibility; empty for
// other windows. PressAsScreenReader is its press of a part; false when there is no such part.
AccessibleDescription ReadAsScreenReader(WindowHandle window);
bool PressAsScreenReader(WindowHandle window, std::size_t part);

// How many windows and controls the platform's toolkit keeps, dead ones that it has not deleted yet included.
int TestWidgetCount();

// The modal window on top, 0 when none.
WindowHandle TopModal();
// Runs `act` with the next modal window's handle as soon as it is served; how a test drives a dialog that its own call
// opens.
void WhenModal(std::function<void(WindowHandle)> act);

}  // namespace jotlet
