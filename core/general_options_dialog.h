// GeneralOptionsDialog: the settings that all programs of the suite share. OK writes them and applies what it can here.
#pragma once

#include "toolkit/marlin_dialog.h"

namespace jotlet {

class GeneralOptionsDialog : public MarlinDialog {
public:
    static constexpr int kTemplate = 1003;
    static constexpr int kSoundId = 100;
    static constexpr int kAnimationId = 101;
    static constexpr int kSplashId = 102;
    static constexpr int kRefreshId = 103;
    static constexpr int kTrayId = 104;

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void Accept();
};

// Runs the dialog and then tells all running copies, whether the user pressed OK or Cancel. Always 1.
int RunGeneralOptions(MarlinWnd* frame);

}  // namespace jotlet
