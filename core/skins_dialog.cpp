#include "core/skins_dialog.h"

#include "platform/base/session.h"
#include "resources/dialog_ids.h"

namespace jotlet {

void ChooseSkin(std::string_view skinFile)
{
    SetCurrentSkinFile(skinFile);
    BroadcastToCopies(kBroadcastSkinChanged, 0);
}

void ShowSkinDialog(MarlinWnd* owner)
{
    SkinsDialog dialog;
    dialog.DoModal(owner, skins_dialog_ids::kDialog);
}

MessageParam SkinsDialog::OnInitDialog(WndMessage&)
{
    CentreOverParent();
    skins = ListSkins();
    for (const SkinEntry& skin : skins)
        AddRow(window, skins_dialog_ids::kSkinList, skin.skinName);
    const int current = FindSkin(skins, GetCurrentSkinFile());
    Enable(kIdOk, current >= 0);
    if (current >= 0)
        SelectRow(window, skins_dialog_ids::kSkinList, current);
    FocusItem(window, skins_dialog_ids::kSkinList);
    return 0;
}

MessageParam SkinsDialog::OnCommand(WndMessage& record)
{
    const int code = HighWord(record.wParam);
    switch (LowWord(record.wParam)) {
        case skins_dialog_ids::kSkinList:
            Enable(kIdOk, SelectedRow(window, skins_dialog_ids::kSkinList) >= 0);
            if (code == kListDoubleClick)
                Accept();
            return 1;
        case kIdOk:
            Accept();
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

void SkinsDialog::Accept()
{
    const int row = SelectedRow(window, skins_dialog_ids::kSkinList);
    if (row < 0 || row >= static_cast<int>(skins.size()))
        return;
    ChooseSkin(skins[static_cast<std::size_t>(row)].skinFile);
    EndDialog(1);
}

}  // namespace jotlet
