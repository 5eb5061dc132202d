// Sets or cancels a note's alarm: its moment, its tone, and what it starts. Works on the record that the note editor is
// editing; nothing is stored until the editor ends with OK.
#pragma once

#include "notes/model/note_record.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class AlarmDialog : public MarlinDialog {
public:
    // `mode` as in the note editor: the alarm of a new note starts on the note's own date and time.
    AlarmDialog(NoteRecord& record, int mode);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnDestroy(WndMessage& record) override;

private:
    void ShowMoment();
    void EnableControls(bool enabled);
    void PickDate();
    void PickTime();
    void BrowseTone();
    void PlayTone();
    void BrowseTarget();
    void OnOk();

    NoteRecord& record;
    int mode;
    bool toneStarted = false;
};

}  // namespace jotlet
