// The process's connection with the desktop: event loop, accelerators, top-level broadcast hook.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <span>

#include "platform/desktop/messages.h"
#include "resources/accelerators.h"

namespace jotlet {

// One a process, made before the first window and alive to its end. Without a display it says so on standard error and
// ends the process with code 1; without a font it says there what to install.
class Application {
public:
    Application(int argc, char** argv);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Runs until QuitLoop; returns its code. Keys are offered to the accelerators of `target` first, unless a text edit
    // control has the focus or a modal window is open.
    int Run(WindowHandle target, std::span<const Accelerator> accelerators);

    struct Data;

private:
    std::unique_ptr<Data> data;
};

// Ends the running loop once it is served.
void QuitLoop(int code);

// Takes what waits and returns: input, posted messages, timers. True when something was served.
bool ServeEvents();
// Serves events until `done` holds or the time is over; sleeps while nothing waits. The result is done()'s.
bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

// Nested loop for a held caption button: takes events until the left mouse button is released. False when the loop was
// told to quit meanwhile or something else took the mouse: the button is not pressed then.
bool ServeUntilButtonReleased();

// A modal run: `owner`'s top-level window takes no input until EndModal(window) was called with a result, which it
// returns. 0 when the window dies first or the loop is told to quit. Whoever held the mouse loses it (kWmCaptureLost).
int RunModal(WindowHandle window, WindowHandle owner);
void EndModal(WindowHandle window, int result);
int ModalDepth();

// Calls `readable` from the loop whenever the file descriptor has something to read. One watch a descriptor.
void WatchDescriptor(int descriptor, std::function<void()> readable);
void UnwatchDescriptor(int descriptor);

}  // namespace jotlet
