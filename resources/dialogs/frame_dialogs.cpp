#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate Splash()
{
    return {splash_dialog_ids::kDialog, "", 0, 0, 118, 59, kDialogNoCaption, {}};
}

DialogTemplate About()
{
    return {about_dialog_ids::kDialog,
            "About",
            20,
            20,
            206,
            112,
            0,
            {
                {ControlKind::DefaultPush, kIdOk, "OK", 149, 91, 50, 14},
                {ControlKind::Text, -1, "Copyright the makers of Pinwell. All rights reserved.", 7, 36, 192, 9},
                {ControlKind::Text, -1, "Your notes are yours: they stay in your own files.", 7, 46, 192, 9},
                {ControlKind::Icon, -1, "1000", 7, 7, 20, 20},
                {ControlKind::Push, about_dialog_ids::kMail, "", 7, 61, 100, 11, kControlHidden},
                {ControlKind::Push, about_dialog_ids::kHomePage, "", 7, 74, 100, 11, kControlHidden},
                {ControlKind::Text, -1, "Pinwell : sticky organizer v2.0 : Jotlet", 36, 13, 163, 9},
            }};
}

DialogTemplate Progress()
{
    return {progress_dialog_ids::kDialog,
            "",
            20,
            20,
            164,
            30,
            kDialogNoCaption,
            {
                {ControlKind::Text, progress_dialog_ids::kText, "", 5, 4, 154, 9},
                {ControlKind::Text, progress_dialog_ids::kBar, "", 5, 17, 154, 8, kControlHidden},
            }};
}

DialogTemplate Skins()
{
    return {skins_dialog_ids::kDialog,
            "Skins",
            20,
            20,
            150,
            128,
            0,
            {
                {ControlKind::Text, -1, "&Select skin", 7, 7, 136, 8},
                {ControlKind::ListBox, skins_dialog_ids::kSkinList, "", 7, 17, 136, 84, kControlScroll},
                {ControlKind::DefaultPush, kIdOk, "Ok", 41, 107, 48, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 95, 107, 48, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> FrameDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {About(), Progress(), Splash(), Skins()};
    return dialogs;
}

}  // namespace jotlet
