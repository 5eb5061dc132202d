#include "net/e_book_dialog.h"

#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using namespace e_book_ids;
using namespace e_book_record_ids;

constexpr int kNameLimit = 50;
constexpr int kEmailLimit = 260;
// From the list's bottom to the client area's: the row of buttons.
constexpr int kListGap = 4;

void TellNotWritten(WindowHandle owner)
{
    ShowTextMessage(owner, "The contact could not be written to\r\n\"" + GetEBookPath() +
                               "\".\r\nCheck that the disk isn't full and the file can be reached, then try again.");
}

}  // namespace

void TellBookNotOpened(MarlinWnd* parent)
{
    ShowTextMessage(parent ? parent->window : 0, "The contact book\r\n\"" + GetEBookPath() +
                                                     "\"\r\ncannot be opened. Check that it is a contact book and "
                                                     "that you may write to its folder.");
}

int ShowEBook(MarlinWnd* parent)
{
    if (OpenEBook() != 1) {
        TellBookNotOpened(parent);
        return 1;
    }
    {
        EBookDialog dialog;
        dialog.DoModal(parent, e_book_ids::kDialog);
    }
    return CloseEBook();
}

// Locks the selected contact and reads it; tells why not.
bool EBookDialog::TakeSelected(std::optional<RecordHold>& hold, EBookRecord& contact)
{
    if (!MayChange(BookTable()->GetRole())) {
        ShowMessage(window, kStringNoPermission);
        return false;
    }
    const auto chosen = list.GetChosen();
    if (!chosen) {
        Beep();
        return false;
    }
    hold.emplace(*BookTable(), chosen->address);
    if (*hold && hold->Read(BytesOf(contact)) && contact.uniqueId == chosen->id)
        return true;
    hold.reset();
    ShowMessage(window, kStringBeingEdited);
    return false;
}

MessageParam EBookDialog::OnInitDialog(WndMessage&)
{
    const Rect buttons = ItemRect(window, kNewButton);
    list.CreateIn(*this, GetClientArea().bottom - buttons.top + kListGap);
    CentreOverParent();
    FocusWindow(list.Grid().window);
    return 0;
}

MessageParam EBookDialog::OnCommand(WndMessage& record)
{
    const bool onList = LowWord(record.wParam) == ContactList::kId;
    switch (LowWord(record.wParam)) {
        case kNewButton:
            NewContact();
            break;
        case kEditButton:
            EditContact();
            break;
        case kDeleteButton:
            DeleteContact();
            break;
        case ContactList::kId:
            if (HighWord(record.wParam) == kListItemDoubleClicked)
                EditContact();
            break;
        default:
            return MarlinDialog::OnCommand(record);
    }
    if (!onList || HighWord(record.wParam) == kListItemDoubleClicked)
        FocusWindow(list.Grid().window);
    return 1;
}

void EBookDialog::NewContact()
{
    EBookRecord contact{};
    EBookRecordDialog dialog(contact);
    if (dialog.DoModal(this, e_book_record_ids::kDialog) != 1)
        return;
    if (AddContact(contact) != 1) {
        TellNotWritten(window);
        return;
    }
    PlaySoundFile("add.wav");
    list.ShowChange(contact.uniqueId);
}

void EBookDialog::EditContact()
{
    std::optional<RecordHold> hold;
    EBookRecord contact{};
    if (!TakeSelected(hold, contact))
        return;
    EBookRecordDialog dialog(contact);
    if (dialog.DoModal(this, e_book_record_ids::kDialog) == 1) {
        if (hold->Save(BytesOf(contact)))
            PlaySoundFile("add.wav");
        else
            TellNotWritten(window);
    }
    hold.reset();
    list.ShowChange(contact.uniqueId);
}

void EBookDialog::DeleteContact()
{
    std::optional<RecordHold> hold;
    EBookRecord contact{};
    if (!TakeSelected(hold, contact) || !AskYesNo(window, kStringAskDeleteContact))
        return;
    if (hold->Remove())
        PlaySoundFile("delete.wav");
    else
        TellNotWritten(window);
    hold.reset();
    list.RefreshNow();
}

MessageParam EBookRecordDialog::OnInitDialog(WndMessage&)
{
    LimitItemText(window, kNameEdit, kNameLimit);
    LimitItemText(window, kEmailEdit, kEmailLimit);
    SetItemText(kNameEdit, FieldText(contact.bookName));
    SetItemText(kEmailEdit, FieldText(contact.bookEmail));
    CentreOverParent();
    FocusItem(window, kNameEdit);
    return 0;
}

MessageParam EBookRecordDialog::OnCommand(WndMessage& record)
{
    if (LowWord(record.wParam) != kIdOk)
        return MarlinDialog::OnCommand(record);
    // Bytes of another encoding stay as they are unless they were edited.
    const auto store = [](std::span<char> field, const std::string& text) {
        if (text != DecodeForDisplay(FieldText(field)))
            StoreText(field, text);
    };
    store(contact.bookName, GetItemText(kNameEdit));
    store(contact.bookEmail, GetItemText(kEmailEdit));
    EndDialog(1);
    return 1;
}

}  // namespace jotlet
