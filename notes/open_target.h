// Starts what a note names: its attachment, or the target of its alarm.
#pragma once

#include <string_view>

#include "platform/desktop/messages.h"

namespace jotlet {

// A file may be shared, and the note somebody else's: before a program starts the user is asked, with Cancel as the
// default. What cannot be opened is told. A document that is not there is looked for in no browser, unless it is
// named by an address.
enum class TargetKind { Document, Url };
void OpenTarget(WindowHandle owner, std::string_view pathOrUrl, TargetKind kind);

// Whether opening the file of this path may run it: it is executable, a .desktop or a .jar.
bool MayRun(std::string_view path);

}  // namespace jotlet
