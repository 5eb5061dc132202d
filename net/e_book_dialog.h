// The contact book's editor. Edits and deletes are in force at once; neither "ok" nor "cancel" undoes them.
#pragma once

#include <optional>

#include "net/contact_list.h"
#include "net/core/e_book.h"
#include "store/record_hold.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// The whole command: opens the book, runs the dialog, closes the book. Always 1.
int ShowEBook(MarlinWnd* parent);
void TellBookNotOpened(MarlinWnd* parent);

// On the open book (net/core/e_book.h).
class EBookDialog : public MarlinDialog {
public:
    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    ContactList& GetList() { return list; }

private:
    void NewContact();
    void EditContact();
    void DeleteContact();
    bool TakeSelected(std::optional<RecordHold>& hold, EBookRecord& contact);

    ContactList list;
};

// Name and e-mail of one contact; the caller's record changes on OK alone.
class EBookRecordDialog : public MarlinDialog {
public:
    explicit EBookRecordDialog(EBookRecord& contact) : contact(contact) {}

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    EBookRecord& contact;
};

}  // namespace jotlet
