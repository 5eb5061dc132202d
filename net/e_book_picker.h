// A small list of the contacts: a press on one picks it and closes the window.
#pragma once

#include "net/contact_list.h"
#include "net/core/e_book.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// Opens the book for its own lifetime. DoModal gives 1 with the contact in `picked`, or 0.
// Keys: Enter picks the selected contact, Escape closes.
class EBookPicker : public MarlinDialog {
public:
    explicit EBookPicker(EBookRecord& picked);
    ~EBookPicker() override;

    // Screen position of the window; 0, 0 leaves it where the desktop puts it.
    void SetPosition(int x, int y) { position = {x, y}; }
    // 1: the opening animation and its sound.
    void SetAnimated(int flag) { animated = flag != 0; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    ContactList& GetList() { return list; }

private:
    void Pick(int index);

    EBookRecord& picked;
    ContactList list;
    Point position;
    bool animated = false;
};

}  // namespace jotlet
