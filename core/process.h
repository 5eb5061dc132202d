// What the whole process shares: its names, its command line, the switches read once at the start.
#pragma once

#include <string>

#include "platform/desktop/messages.h"

namespace jotlet {

// "Jotlet": left half of the window title, and in the names that identify the running program.
const std::string& GetModuleName();
// The path that the program was asked to open; empty when it was started without one.
const std::string& GetCommandLineText();
void SetProcessNames(std::string moduleName, std::string commandLine);

// The class of the frame's window and the name of the single-instance guard.
std::string FrameClassName();

// Sound, animation and splash: on unless the suite's settings hold exactly "0". The calendar's last year, too.
void LoadSharedResources();
void FreeSharedResources();

// What a broadcast of another copy becomes in this one: a message to the frame, with the code in wParam.
inline constexpr std::uint32_t kUniqueMessage = 0xC270;

}  // namespace jotlet
