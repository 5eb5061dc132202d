// GeneralOptionsDialog: the settings that all programs of the suite share. OK writes them and applies what it can here.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "toolkit/marlin_dialog.h"

namespace jotlet {

class GeneralOptionsDialog : public MarlinDialog {
public:
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

    std::array<Setting, 4> settings = {Setting{"Sound", general_options_ids::kSound},
                                       {"Annimation", general_options_ids::kAnimation},
                                       {"Splash", general_options_ids::kSplash},
                                       {"NetworkRefresh", general_options_ids::kRefresh}};
};

// Runs the dialog and then tells all running copies, whether the user pressed OK or Cancel. Always 1.
int RunGeneralOptions(MarlinWnd* frame);

}  // namespace jotlet
