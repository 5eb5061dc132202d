#include "core/new_file_dialog.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "core/start_file.h"
#include "platform/base/file_system.h"
#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/browse_for_folder.h"

namespace jotlet {
namespace {

constexpr int kMaxPath = 260;

}  // namespace

std::string NewFilePath(std::string folder, std::string_view name, std::string_view extension)
{
    if (folder.empty() || folder.back() != '/')
        folder += '/';
    return folder.append(name).append(".").append(extension);
}

std::string AbsoluteFolder(const std::string& folder)
{
    const char* home = std::getenv("HOME");
    if (home && (folder == "~" || folder.starts_with("~/")))
        return home + folder.substr(1);
    std::error_code failed;
    const auto whole = std::filesystem::absolute(folder, failed);
    return failed ? folder : whole.string();
}

bool CanMakeFile(const std::string& path)
{
    FileHandleOwner made(FileCreate(path));
    if (!made)
        return false;
    Files().Remove(path);
    return true;
}

NewFileDialog::NewFileDialog(std::string fileExtension) : extension(std::move(fileExtension)) {}

MessageParam NewFileDialog::OnInitDialog(WndMessage&)
{
    CentreOverParent();
    LimitItemText(window, new_file_dialog_ids::kName, kMaxPath);
    LimitItemText(window, new_file_dialog_ids::kFolder, kMaxPath);
    CheckItem(window, new_file_dialog_ids::kExamples, WantsExamples());
    std::string works;
    GetWorksFolder(works);
    SetItemText(new_file_dialog_ids::kFolder, works);
    Enable(kIdOk, false);
    FocusItem(window, new_file_dialog_ids::kName);
    return 0;
}

MessageParam NewFileDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case new_file_dialog_ids::kName:
        case new_file_dialog_ids::kFolder:
            Enable(kIdOk, !GetItemText(new_file_dialog_ids::kName).empty() &&
                              !GetItemText(new_file_dialog_ids::kFolder).empty());
            return 1;
        case new_file_dialog_ids::kBrowse:
            Browse();
            return 1;
        case kIdOk:
            Accept();
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

void NewFileDialog::Browse()
{
    std::string folder = GetItemText(new_file_dialog_ids::kFolder);
    if (!BrowseForFolder(window, folder))
        return;
    SetItemText(new_file_dialog_ids::kFolder, folder);
    Enable(kIdOk, !GetItemText(new_file_dialog_ids::kName).empty() && !folder.empty());
}

void NewFileDialog::Accept()
{
    if (GetItemText(new_file_dialog_ids::kName).empty() || GetItemText(new_file_dialog_ids::kFolder).empty())
        return;
    path = NewFilePath(AbsoluteFolder(GetItemText(new_file_dialog_ids::kFolder)),
                       GetItemText(new_file_dialog_ids::kName), extension);
    if (FileExists(path) == 1) {
        ShowMessage(window, kStringFileExists);
        return;
    }
    if (!CanMakeFile(path)) {
        ShowMessage(window, kStringCannotMakeFile);
        return;
    }
    StoreWantsExamples(Checked(new_file_dialog_ids::kExamples));
    EndDialog(1);
}

}  // namespace jotlet
