// SkinsDialog: lets the user pick one of the installed skins. The choice reaches every running copy.
#pragma once

#include <vector>

#include "skin/table/skin_list.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class SkinsDialog : public MarlinDialog {
public:
    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void Accept();

    std::vector<SkinEntry> skins;
};

// Makes the skin current and tells all running copies, this one included.
void ChooseSkin(std::string_view skinFile);

void ShowSkinDialog(MarlinWnd* owner);

}  // namespace jotlet
