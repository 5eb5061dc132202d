#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate Find()
{
    return {find_dialog_ids::kDialog,
            "Find",
            20,
            20,
            191,
            199,
            0,
            {
                {ControlKind::Text, -1, "F&ind", 4, 30, 60, 8},
                {ControlKind::Edit, find_dialog_ids::kTermEdit, "", 4, 39, 130, 12, kControlLowerCase},
                {ControlKind::DefaultPush, kIdOk, "&Find", 141, 4, 46, 14},
                {ControlKind::Push, find_dialog_ids::kGoToButton, "&Go to", 141, 20, 46, 14},
                {ControlKind::Push, kIdCancel, "&Done", 141, 36, 46, 14},
                {ControlKind::Group, -1, "Category", 4, 1, 130, 27},
                {ControlKind::Text, find_dialog_ids::kCategoryText, "All Categories", 10, 14, 118, 8},
                {ControlKind::Picture, -1, "2022", 4, 53, 183, 8},
            }};
}

}  // namespace

std::span<const DialogTemplate> FindDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {Find()};
    return dialogs;
}

}  // namespace jotlet
