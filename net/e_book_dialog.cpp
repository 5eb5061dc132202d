#include "net/e_book_dialog.h"

#include <memory>
#include <utility>

#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr int kNewButton = 101;
constexpr int kEditButton = 102;
constexpr int kDeleteButton = 103;
constexpr int kNameEdit = 100;
constexpr int kEmailEdit = 101;
constexpr int kNameLimit = 50;
constexpr int kEmailLimit = 260;
// From the list's bottom to the client area's: the row of buttons.
constexpr int kListGap = 4;

constexpr int kNoPermissionString = 102;
constexpr int kBeingEditedString = 106;
constexpr int kAskDeleteString = 108;

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
        dialog.DoModal(parent, kEBookDialogId);
    }
    return CloseEBook();
}

// The selected contact, locked and read; unlocked at the end. The refresh switch, which the lock turns off and on, is
// then again as it was: a note may be held around the book.
class EBookDialog::Hold {
public:
    explicit Hold(EBookDialog& dialog)
    {
        const int index = dialog.list.GetSelected();
        if (index < 0 || index >= BookQuery()->resultCount) {
            Beep();
            return;
        }
        address = BookQuery()->Results()[static_cast<std::size_t>(index)];
        pause = std::make_unique<RefreshPause>();
        held = BookTable()->LockRecord(address) == 1;
        if (held && BookTable()->ReadRecord(BytesOf(contact), address) != 1)
            GiveBack();
        if (!held)
            ShowMessage(dialog.window, kBeingEditedString);
    }
    ~Hold() { GiveBack(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    explicit operator bool() const { return held; }
    void GiveBack()
    {
        if (std::exchange(held, false))
            BookTable()->UnlockRecord(address);
        pause.reset();
    }

    RecordAddress address = 0;
    EBookRecord contact{};

private:
    std::unique_ptr<RefreshPause> pause;
    bool held = false;
};

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
    if (dialog.DoModal(this, kEBookRecordDialogId) != 1)
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
    if (!MayChange(BookTable()->GetRole())) {
        ShowMessage(window, kNoPermissionString);
        return;
    }
    Hold hold(*this);
    if (!hold)
        return;
    EBookRecordDialog dialog(hold.contact);
    if (dialog.DoModal(this, kEBookRecordDialogId) == 1) {
        if (BookTable()->WriteRecord(BytesOf(hold.contact), hold.address) == 1 && BookTable()->Flush() == 1)
            PlaySoundFile("add.wav");
        else
            TellNotWritten(window);
    }
    hold.GiveBack();
    list.ShowChange(hold.contact.uniqueId);
}

void EBookDialog::DeleteContact()
{
    if (!MayChange(BookTable()->GetRole())) {
        ShowMessage(window, kNoPermissionString);
        return;
    }
    Hold hold(*this);
    if (!hold || !AskYesNo(window, kAskDeleteString))
        return;
    if (BookTable()->DeleteRecord(hold.address) == 1 && BookTable()->Flush() == 1)
        PlaySoundFile("delete.wav");
    else
        TellNotWritten(window);
    hold.GiveBack();
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
    StoreText(contact.bookName, GetItemText(kNameEdit));
    StoreText(contact.bookEmail, GetItemText(kEmailEdit));
    EndDialog(1);
    return 1;
}

}  // namespace jotlet
