#include "core/new_file_dialog.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "core/start_file.h"
#include "platform/base/file_system.h"
#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "skin/window_helpers.h"
#include "toolkit/browse_for_folder.h"

namespace jotlet {
namespace {

constexpr int kMaxPath = 260;
constexpr int kFileExists = 113;
constexpr int kCannotMake = 114;

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
    LimitItemText(window, kNameId, kMaxPath);
    LimitItemText(window, kFolderId, kMaxPath);
    CheckItem(window, kExamplesId, WantsExamples());
    std::string works;
    GetWorksFolder(works);
    SetItemText(kFolderId, works);
    Enable(kIdOk, false);
    FocusItem(window, kNameId);
    return 0;
}

MessageParam NewFileDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kNameId:
        case kFolderId:
            Enable(kIdOk, !GetItemText(kNameId).empty() && !GetItemText(kFolderId).empty());
            return 1;
        case kBrowseId:
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
    std::string folder = GetItemText(kFolderId);
    if (!BrowseForFolder(window, folder))
        return;
    SetItemText(kFolderId, folder);
    Enable(kIdOk, !GetItemText(kNameId).empty() && !folder.empty());
}

void NewFileDialog::Accept()
{
    if (GetItemText(kNameId).empty() || GetItemText(kFolderId).empty())
        return;
    path = NewFilePath(AbsoluteFolder(GetItemText(kFolderId)), GetItemText(kNameId), extension);
    if (FileExists(path) == 1) {
        ShowMessage(window, kFileExists);
        return;
    }
    if (!CanMakeFile(path)) {
        ShowMessage(window, kCannotMake);
        return;
    }
    StoreWantsExamples(Checked(kExamplesId));
    EndDialog(1);
}

}  // namespace jotlet
