// Where a note becomes a group event: its subject, its owner, its participants with their status. Works on the note and
// the outbox in memory; the caller commits both when it ended with OK.
#pragma once

#include <string>

#include "net/core/outbox.h"
#include "net/core/send_record.h"
#include "notes/model/note_record.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class TableFile;

// A row of the participants list as one text: "e-mail\nname\nstatus".
std::string ParticipantItem(std::string_view email, std::string_view name, int status);
std::string ItemEmail(std::string_view item);
std::string ItemName(std::string_view item);
int ItemStatus(std::string_view item);
void SetItemStatus(std::string& item, int status);

class InternetEventsDialog : public MarlinDialog {
public:
    InternetEventsDialog(TableFile& file, NoteRecord& note, Outbox& outbox);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnMeasureItem(WndMessage& record) override;
    MessageParam OnDrawItem(WndMessage& record) override;

private:
    void ShowOwner();
    void FillList();
    void Invite();
    void RemoveSelected();
    void OnSubjectChanged();
    bool HasSubject() const;
    bool IsListed(const std::string& item) const;
    int AddItemUnique(const std::string& item);
    // 0 when no row is selected. `item` is what was removed; it may be back with the status "cancelled".
    int RemoveSelectedItem(std::string& item);

    TableFile& file;
    NoteRecord& note;
    Outbox& outbox;
    bool owner = false;
};

}  // namespace jotlet
