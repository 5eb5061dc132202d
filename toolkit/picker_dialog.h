// PickerDialog: the shell of the date and the time picker. It opens where it is told, with sound and animation if
// wanted, keeps its two buttons in a row at the bottom, and ends with "close.wav".
#pragma once

#include "toolkit/marlin_dialog.h"

namespace jotlet {

class PickerDialog : public MarlinDialog {
public:
    // Left top corner on the screen, moved back where the dialog would pass the desktop's right or bottom edge. Without
    // it (or with a 0) the dialog opens over its parent.
    void SetPosition(int left, int top);
    // 1: with sound and opening animation.
    void SetZoom(int flag) { zoom = flag; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

protected:
    // Makes, places and focuses what picks.
    virtual void CreatePicker() = 0;
    // Hands the choice to whoever asked: "ok" was pressed.
    virtual void Accept() = 0;

private:
    void Place();
    void PlaceButtons();

    int x = 0;
    int y = 0;
    int zoom = 0;
};

}  // namespace jotlet
