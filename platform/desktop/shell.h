// The desktop's own programs: openers, mail, print, sound.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/desktop/messages.h"

namespace jotlet {

// Opens a path or URL with the user's default program, without waiting. False when the desktop refuses at once.
bool OpenWithDesktop(std::string_view pathOrUrl);
// The full path of the file or folder that a path or a "file://" address leads to; empty when it is not there, or when
// the address leads elsewhere.
std::string LocalTarget(std::string_view pathOrUrl);

// Shows the print dialog over `owner` and prints the UTF-8 text (on paper or into a PDF). False when cancelled or
// failed; `problem` then says why, or is empty after Cancel. The printing library is loaded at the first call.
bool PrintText(WindowHandle owner, std::string_view documentName, std::string_view text, std::string& problem);

// The same pages into a PDF file, without asking anything.
bool PrintTextToPdf(std::string_view path, std::string_view documentName, std::string_view text, std::string& problem);

// Plays a WAV file without waiting. A missing file or sound device is no error. Loaded at the first call.
void PlayWave(std::string_view path);

// Ends what PlayWave began last, if it still sounds.
void StopWave();

// While one lives, nothing is opened, printed or played: `verb` ("open", "print", "play", "stop") and the target go to
// the hook.
using ShellHook = std::function<void(std::string_view verb, std::string_view target)>;
class ScopedShellHook {
public:
    explicit ScopedShellHook(ShellHook hook);
    ~ScopedShellHook();
};

}  // namespace jotlet
