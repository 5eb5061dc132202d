#include "toolkit/browse_for_folder.h"

#include "platform/desktop/file_dialog.h"

namespace jotlet {
namespace {

constexpr std::string_view kPrompt =
    "Please select a folder where program can save your new file and then click on Ok button.";

}  // namespace

int BrowseForFolder(WindowHandle owner, std::string& path)
{
    const auto chosen = RunFolderDialog(owner, kPrompt, path);
    if (!chosen)
        return 0;
    path = *chosen;
    return 1;
}

}  // namespace jotlet
