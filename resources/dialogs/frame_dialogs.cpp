#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate Splash()
{
    return {1010, "", 0, 0, 118, 59, kDialogNoCaption, {}};
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
    static const std::vector<DialogTemplate> dialogs = {Splash(), Skins()};
    return dialogs;
}

}  // namespace jotlet
