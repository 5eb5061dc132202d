// Small helpers on windows, shells and messages that every part of the program uses.
#pragma once

#include <string_view>

#include "platform/desktop/native_window.h"

namespace jotlet {

// Convert both corners in place.
void RectToScreen(WindowHandle window, Rect& rect);
// Middle of `owner` (of the desktop when 0), moved back onto the desktop where it would pass its right or bottom edge.
void CentreOver(WindowHandle owner, WindowHandle window);
// Its place as a pure function: a window larger than `desktop` gets the desktop's left top corner.
Point CentredPlace(const Rect& owner, Size window, const Rect& desktop);

// Boxes with the caption "Pinwell". The text by number comes from the string table, at most 255 characters.
void ShowTextMessage(WindowHandle owner, std::string_view text);
void ShowMessage(WindowHandle owner, int stringId);
bool AskYesNo(WindowHandle owner, int stringId);

// The desktop's own programs.
void OpenDocument(std::string_view pathOrUrl);
void OpenMail(std::string_view address);  // empty: a new mail to nobody
// A page under Help beside the program, in the desktop's viewer whatever `useShell` says; a box tells when it is
// missing.
void OpenHelpPage(std::string_view page, bool useShell);

}  // namespace jotlet
