#include "toolkit/choose_file.h"

namespace jotlet {

bool ChooseFileInto(WindowHandle dialog, int id, const FileDialogRequest& request)
{
    const auto chosen = RunFileDialog(dialog, request);
    if (chosen)
        SetItemTextOf(dialog, id, *chosen);
    return chosen.has_value();
}

}  // namespace jotlet
