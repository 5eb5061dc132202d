#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate NoteEditor()
{
    return {2000,
            "Jotlet",
            20,
            30,
            219,
            178,
            0,
            {
                {ControlKind::Text, -1, "&Title", 3, 3, 60, 8},
                {ControlKind::Edit, 200, "", 3, 12, 160, 12},
                {ControlKind::Text, -1, "&Notes Text", 3, 28, 60, 8},
                {ControlKind::Edit, 103, "", 3, 37, 161, 113, kControlMultiLine | kControlScroll},
                {ControlKind::Text, -1, "&Categories", 3, 154, 60, 8},
                {ControlKind::Combo, 104, "", 3, 163, 92, 86, kControlSorted | kControlScroll},
                {ControlKind::Check, 105, "Con&fidential", 100, 166, 62, 10},
                {ControlKind::Text, -1, "C&olor", 168, 154, 48, 8},
                {ControlKind::DropList, 110, "", 168, 163, 48, 108, kControlOwnerDrawn},
                {ControlKind::RightText, 100, "", 117, 3, 45, 8},
                {ControlKind::DefaultPush, 1, "OK", 171, 3, 45, 14},
                {ControlKind::Push, 2, "Cancel", 171, 19, 45, 14},
                {ControlKind::Push, 106, "&Alarm...", 171, 41, 45, 14},
                {ControlKind::Push, 107, "Attac&h...", 171, 57, 45, 14},
            }};
}

DialogTemplate Attachment()
{
    return {2010,
            "Attach",
            20,
            20,
            214,
            66,
            0,
            {
                {ControlKind::Radio, 100, "&Document", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, 101, "&URL", 72, 7, 50, 10},
                {ControlKind::Edit, 102, "", 7, 23, 200, 12, kControlGroup},
                {ControlKind::Push, 103, "&Browse", 7, 45, 45, 14},
                {ControlKind::Push, 104, "&Open", 56, 45, 45, 14},
                {ControlKind::DefaultPush, 1, "OK", 113, 45, 45, 14},
                {ControlKind::Push, 2, "Cancel", 162, 45, 45, 14},
            }};
}

DialogTemplate CategoryEditor()
{
    return {1018,
            "Categories",
            20,
            20,
            164,
            134,
            0,
            {
                {ControlKind::Text, -1, "C&ategories", 7, 6, 80, 8},
                {ControlKind::ListBox, 100, "", 7, 16, 98, 111, kControlSorted | kControlScroll},
                {ControlKind::Push, 101, "&New", 112, 16, 45, 14},
                {ControlKind::Push, 102, "&Delete", 112, 34, 45, 14},
                {ControlKind::DefaultPush, 1, "OK", 112, 95, 45, 14},
                {ControlKind::Push, 2, "Cancel", 112, 113, 45, 14},
            }};
}

DialogTemplate NewCategory()
{
    return {1019,
            "New Category",
            20,
            20,
            164,
            44,
            0,
            {
                {ControlKind::Text, -1, "&Name", 7, 6, 80, 8},
                {ControlKind::Edit, 100, "", 7, 17, 98, 12},
                {ControlKind::DefaultPush, 1, "OK", 112, 7, 45, 14},
                {ControlKind::Push, 2, "Cancel", 112, 24, 45, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> NoteDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {NoteEditor(), Attachment(), CategoryEditor(), NewCategory()};
    return dialogs;
}

}  // namespace jotlet
