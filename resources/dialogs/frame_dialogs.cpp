#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate Splash()
{
    return {1010, "", 0, 0, 118, 59, kDialogNoCaption, {}};
}

DialogTemplate About()
{
    return {1006,
            "About",
            20,
            20,
            206,
            112,
            0,
            {
                {ControlKind::DefaultPush, 1, "OK", 149, 91, 50, 14},
                {ControlKind::Text, -1, "Copyright the makers of Pinwell. All rights reserved.", 7, 36, 192, 9},
                {ControlKind::Text, -1, "Your notes are yours: they stay in your own files.", 7, 46, 192, 9},
                {ControlKind::Icon, -1, "1000", 7, 7, 20, 20},
                {ControlKind::Push, 100, "", 7, 61, 100, 11, kControlHidden},
                {ControlKind::Push, 101, "", 7, 74, 100, 11, kControlHidden},
                {ControlKind::Text, -1, "Pinwell : sticky organizer v2.0 : Jotlet", 36, 13, 163, 9},
            }};
}

DialogTemplate Progress()
{
    return {1009,
            "",
            20,
            20,
            164,
            30,
            kDialogNoCaption,
            {
                {ControlKind::Text, 99, "", 5, 4, 154, 9},
                {ControlKind::Text, 100, "", 5, 17, 154, 8, kControlHidden},
            }};
}

DialogTemplate Skins()
{
    return {2020,
            "Skins",
            20,
            20,
            150,
            128,
            0,
            {
                {ControlKind::Text, -1, "&Select skin", 7, 7, 136, 8},
                {ControlKind::ListBox, 100, "", 7, 17, 136, 84, kControlScroll},
                {ControlKind::DefaultPush, 1, "Ok", 41, 107, 48, 14},
                {ControlKind::Push, 2, "Cancel", 95, 107, 48, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> FrameDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {About(), Progress(), Splash(), Skins()};
    return dialogs;
}

}  // namespace jotlet
