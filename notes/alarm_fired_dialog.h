// Tells the user that an alarm has come: plays its tone, shows the note, and starts what goes with it when asked to.
#pragma once

#include "notes/model/note_record.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class AlarmFiredDialog : public MarlinDialog {
public:
    explicit AlarmFiredDialog(const NoteRecord& note);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnDestroy(WndMessage& record) override;

    // False when the dialog ended with neither OK nor Cancel: the program is closing, nobody has seen to the alarm.
    bool Answered() const { return answered; }

private:
    void ShowTarget();
    void Start() const;

    const NoteRecord note;
    bool answered = false;
    bool toneStarted = false;
};

}  // namespace jotlet
