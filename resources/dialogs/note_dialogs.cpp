#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate NoteEditor()
{
    return {
        note_editor_ids::kDialog,
        "Jotlet",
        20,
        30,
        219,
        178,
        0,
        {
            {ControlKind::Text, -1, "&Title", 3, 3, 60, 8},
            {ControlKind::Edit, note_editor_ids::kTitleEdit, "", 3, 12, 160, 12},
            {ControlKind::Text, -1, "&Notes Text", 3, 28, 60, 8},
            {ControlKind::Edit, note_editor_ids::kTextEdit, "", 3, 37, 161, 113, kControlMultiLine | kControlScroll},
            {ControlKind::Text, -1, "&Categories", 3, 154, 60, 8},
            {ControlKind::Combo, note_editor_ids::kCategoryCombo, "", 3, 163, 92, 86, kControlSorted | kControlScroll},
            {ControlKind::Check, note_editor_ids::kConfidentialBox, "Con&fidential", 100, 166, 62, 10},
            {ControlKind::Text, -1, "C&olor", 168, 154, 48, 8},
            {ControlKind::DropList, note_editor_ids::kColourBox, "", 168, 163, 48, 108, kControlOwnerDrawn},
            {ControlKind::RightText, note_editor_ids::kDateText, "", 117, 3, 45, 8},
            {ControlKind::DefaultPush, kIdOk, "OK", 171, 3, 45, 14},
            {ControlKind::Push, kIdCancel, "Cancel", 171, 19, 45, 14},
            {ControlKind::Push, note_editor_ids::kAlarmButton, "&Alarm...", 171, 41, 45, 14},
            {ControlKind::Push, note_editor_ids::kAttachButton, "Attac&h...", 171, 57, 45, 14},
        }};
}

DialogTemplate Attachment()
{
    return {attachment_dialog_ids::kDialog,
            "Attach",
            20,
            20,
            214,
            66,
            0,
            {
                {ControlKind::Radio, attachment_dialog_ids::kDocumentRadio, "&Document", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, attachment_dialog_ids::kUrlRadio, "&URL", 72, 7, 50, 10},
                {ControlKind::Edit, attachment_dialog_ids::kPathEdit, "", 7, 23, 200, 12, kControlGroup},
                {ControlKind::Push, attachment_dialog_ids::kBrowseButton, "&Browse", 7, 45, 45, 14},
                {ControlKind::Push, attachment_dialog_ids::kOpenButton, "&Open", 56, 45, 45, 14},
                {ControlKind::DefaultPush, kIdOk, "OK", 113, 45, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 162, 45, 45, 14},
            }};
}

DialogTemplate CategoryEditor()
{
    return {
        category_editor_ids::kDialog,
        "Categories",
        20,
        20,
        164,
        134,
        0,
        {
            {ControlKind::Text, -1, "C&ategories", 7, 6, 80, 8},
            {ControlKind::ListBox, category_editor_ids::kNameList, "", 7, 16, 98, 111, kControlSorted | kControlScroll},
            {ControlKind::Push, category_editor_ids::kNewButton, "&New", 112, 16, 45, 14},
            {ControlKind::Push, category_editor_ids::kDeleteButton, "&Delete", 112, 34, 45, 14},
            {ControlKind::DefaultPush, kIdOk, "OK", 112, 95, 45, 14},
            {ControlKind::Push, kIdCancel, "Cancel", 112, 113, 45, 14},
        }};
}

DialogTemplate NewCategory()
{
    return {new_category_ids::kDialog,
            "New Category",
            20,
            20,
            164,
            44,
            0,
            {
                {ControlKind::Text, -1, "&Name", 7, 6, 80, 8},
                {ControlKind::Edit, new_category_ids::kNameEdit, "", 7, 17, 98, 12},
                {ControlKind::DefaultPush, kIdOk, "OK", 112, 7, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 112, 24, 45, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> NoteDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {NoteEditor(), Attachment(), CategoryEditor(), NewCategory()};
    return dialogs;
}

}  // namespace jotlet
