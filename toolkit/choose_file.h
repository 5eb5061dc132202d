// The road from a "Browse" button to the edit beside it.
#pragma once

#include "platform/desktop/file_dialog.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// Runs the desktop's file chooser over the dialog and puts the chosen path into the edit `id`. True when one was
// chosen.
bool ChooseFileInto(WindowHandle dialog, int id, const FileDialogRequest& request);

}  // namespace jotlet
