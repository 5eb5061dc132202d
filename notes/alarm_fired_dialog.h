// Tells the user that an alarm has come: plays its tone, shows the note, and starts what goes with it when asked to.
#pragma once

#include "notes/model/note_record.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

inline constexpr int kAlarmFiredDialogId = 2005;

class AlarmFiredDialog : public MarlinDialog {
public:
    explicit AlarmFiredDialog(const NoteRecord& note);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void Start() const;

    const NoteRecord note;
};

}  // namespace jotlet
