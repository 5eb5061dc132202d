// GeneralOptionsDialog: the settings that all programs of the suite share. OK writes them and applies what it can here.
#pragma once

#include <array>
#include <optional>
#include <string>

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
    // One of the settings: its key, and what the file and the dialog had when it opened.
    struct Setting {
        std::string_view key;
        int id;
        std::optional<std::string> read = {};
        std::string shown = {};
    };
    std::string Shown(const Setting& setting) const;
    void Accept();

    std::array<Setting, 4> settings = {Setting{"Sound", kSoundId},
                                       {"Annimation", kAnimationId},
                                       {"Splash", kSplashId},
                                       {"NetworkRefresh", kRefreshId}};
};

// Runs the dialog and then tells all running copies, whether the user pressed OK or Cancel. Always 1.
int RunGeneralOptions(MarlinWnd* frame);

}  // namespace jotlet
