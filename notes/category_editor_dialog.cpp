#include "notes/category_editor_dialog.h"

#include <algorithm>

#include "notes/category_menu.h"
#include "platform/base/text.h"
#include "skin/window_helpers.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr int kNameList = 100;
constexpr int kNewButton = 101;
constexpr int kDeleteButton = 102;
constexpr int kNameEdit = 100;
constexpr int kNameLimit = 30;
constexpr int kAskDeleteString = 104;

}  // namespace

CategoryEditorDialog::CategoryEditorDialog(TableFile* file) : file(file) {}

MessageParam CategoryEditorDialog::OnInitDialog(WndMessage&)
{
    CategoryBlock block{};
    if (file->ReadCategories(block) == 1) {
        const int count = std::min(block.Count(), kShownCategories);
        for (int i = 0; i < count; ++i)
            AddRow(window, kNameList, FieldText(block.entries[i].name));
    }
    Enable(kDeleteButton, false);
    CentreOverParent();
    return 1;
}

MessageParam CategoryEditorDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kNameList:
            if (HighWord(record.wParam) == kListSelectionChanged)
                Enable(kDeleteButton, SelectedRow(window, kNameList) >= 0);
            return 1;
        case kNewButton:
            OnNew();
            return 1;
        case kDeleteButton:
            OnDelete();
            return 1;
        case kIdOk:
            OnOk();
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

void CategoryEditorDialog::OnNew()
{
    std::string name;
    NewCategoryDialog dialog(name);
    if (dialog.DoModal(this, kNewCategoryDialogId) != 1)
        return;
    AddRow(window, kNameList, name);
    SelectRow(window, kNameList, -1);
    Enable(kDeleteButton, false);
    FocusItem(window, kNameList);
}

void CategoryEditorDialog::OnDelete()
{
    const int row = SelectedRow(window, kNameList);
    if (row < 0 || !AskYesNo(window, kAskDeleteString))
        return;
    RemoveRow(window, kNameList, row);
    SelectRow(window, kNameList, -1);
    Enable(kDeleteButton, false);
    FocusItem(window, kNameList);
}

void CategoryEditorDialog::OnOk()
{
    if (Save()) {
        EndDialog(1);
        return;
    }
    ShowTextMessage(window, "The categories could not be written to\r\n\"" + file->Path() +
                                "\".\r\nCheck that the disk isn't full and the file can be reached, then try again.");
}

bool CategoryEditorDialog::Save()
{
    CategoryBlock block{};
    block.blockSize = sizeof block;
    for (CategoryEntry& entry : block.entries)
        entry.tag = -1;
    const int count = std::min(RowCount(window, kNameList), kShownCategories);
    for (int i = 0; i < count; ++i)
        StoreText(block.entries[i].name, RowText(window, kNameList, i));
    block.categoryCount = static_cast<std::uint32_t>(count);
    return file->WriteCategories(block) == 1 && file->Flush() == 1;
}

NewCategoryDialog::NewCategoryDialog(std::string& name) : name(name)
{
    name.clear();
}

MessageParam NewCategoryDialog::OnInitDialog(WndMessage&)
{
    LimitItemText(window, kNameEdit, kNameLimit);
    Enable(kIdOk, false);
    CentreOverParent();
    FocusItem(window, kNameEdit);
    return 0;
}

MessageParam NewCategoryDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kNameEdit:
            Enable(kIdOk, !GetItemText(kNameEdit).empty());
            return 1;
        case kIdOk:
            name = CutText(GetItemText(kNameEdit), kNameLimit - 1);
            EndDialog(1);
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

}  // namespace jotlet
