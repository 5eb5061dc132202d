#include "notes/category_editor_dialog.h"

#include <algorithm>
#include <vector>

#include "notes/category_menu.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using namespace category_editor_ids;
using namespace new_category_ids;

constexpr int kNameLimit = 30;

using Names = std::vector<std::string>;

bool Holds(const Names& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

Names NamesOf(const CategoryBlock& block)
{
    Names names;
    for (int i = 0; i < block.Count(); ++i)
        names.push_back(DecodeForDisplay(FieldText(block.entries[i].name)));
    return names;
}

// As the file has it, if it does: bytes of another encoding stay as they are, and so do the notes that hold them.
std::string StoredName(const CategoryBlock& block, const std::string& name)
{
    for (int i = 0; i < block.Count(); ++i) {
        const std::string_view stored = FieldText(block.entries[i].name);
        if (DecodeForDisplay(stored) == name)
            return std::string(stored);
    }
    return name;
}

// What was chosen here, with what somebody else did since `read`: a name that he took out or put in stays so.
Names Merged(Names chosen, const Names& read, const Names& now)
{
    std::erase_if(chosen, [&](const std::string& name) { return Holds(read, name) && !Holds(now, name); });
    for (std::size_t i = 0; i < std::min<std::size_t>(now.size(), kShownCategories); ++i) {
        if (!Holds(read, now[i]) && !Holds(chosen, now[i]))
            chosen.push_back(now[i]);
    }
    return chosen;
}

// Of the names that don't fit; those behind the shown ones of the file go as well.
std::string LeftOut(const Names& names, const Names& now)
{
    std::string text;
    for (std::size_t i = kShownCategories; i < names.size(); ++i)
        text += "\r\n" + names[i];
    for (std::size_t i = kShownCategories; i < now.size(); ++i)
        text += "\r\n" + now[i];
    return text;
}

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
    namesRead = Rows();
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
    if (dialog.DoModal(this, new_category_ids::kDialog) != 1)
        return;
    AddRow(window, kNameList, name);
    SelectRow(window, kNameList, -1);
    Enable(kDeleteButton, false);
    FocusItem(window, kNameList);
}

void CategoryEditorDialog::OnDelete()
{
    const int row = SelectedRow(window, kNameList);
    if (row < 0 || !AskYesNo(window, kStringAskDeleteCategory))
        return;
    RemoveRow(window, kNameList, row);
    SelectRow(window, kNameList, -1);
    Enable(kDeleteButton, false);
    FocusItem(window, kNameList);
}

Names CategoryEditorDialog::Rows() const
{
    Names names;
    for (int i = 0; i < RowCount(window, kNameList); ++i)
        names.push_back(RowText(window, kNameList, i));
    return names;
}

bool CategoryEditorDialog::MayLeaveOut()
{
    CategoryBlock block{};
    if (file->ReadCategories(block) != 1)
        return true;
    const Names now = NamesOf(block);
    const std::string names = LeftOut(Merged(Rows(), namesRead, now), now);
    return names.empty() || ShowBox(window,
                                    "There is room for " + std::to_string(kShownCategories) +
                                        " categories. These would be left out:" + names + "\r\nSave the others?",
                                    "Pinwell", BoxIcon::Warning, BoxButtons::CancelOk) == Answer::Ok;
}

void CategoryEditorDialog::OnOk()
{
    if (!MayLeaveOut())
        return;
    if (Save()) {
        EndDialog(1);
        return;
    }
    ShowTextMessage(window, "The categories could not be written to\r\n\"" + file->Path() +
                                "\".\r\nCheck that the disk isn't full and the file can be reached, then try again.");
}

bool CategoryEditorDialog::Save()
{
    const Names rows = Rows();
    const auto change = [&](CategoryBlock& block) {
        const Names names = Merged(rows, namesRead, NamesOf(block));
        const CategoryBlock before = block;
        block = {};
        block.blockSize = sizeof block;
        for (CategoryEntry& entry : block.entries)
            entry.tag = -1;
        const std::size_t count = std::min<std::size_t>(names.size(), kShownCategories);
        for (std::size_t i = 0; i < count; ++i)
            StoreText(block.entries[i].name, StoredName(before, names[i]));
        block.categoryCount = static_cast<std::uint32_t>(count);
        return true;
    };
    return file->UpdateCategories(change) == 1 && file->Flush() == 1;
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
