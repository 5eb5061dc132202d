#pragma once

#include <string>

#include "platform/desktop/messages.h"

namespace jotlet {

// The desktop's folder chooser, starting at `path` when it is not empty. 1 and the chosen folder in `path`, or 0 with
// `path` unchanged after Cancel.
int BrowseForFolder(WindowHandle owner, std::string& path);

}  // namespace jotlet
