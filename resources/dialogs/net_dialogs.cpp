#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate InternetEvents()
{
    return {internet_events_ids::kDialog,
            "Internet Events",
            20,
            20,
            193,
            176,
            0,
            {
                {ControlKind::Text, -1, "&Subject:", 6, 9, 34, 8},
                {ControlKind::Edit, internet_events_ids::kSubjectEdit, "", 42, 7, 145, 12},
                {ControlKind::Push, internet_events_ids::kInviteButton, "&Invite", 6, 25, 45, 14},
                {ControlKind::Push, internet_events_ids::kRemoveButton, "&Remove", 55, 25, 45, 14},
                {ControlKind::Push, internet_events_ids::kEBookButton, "&E-Book", 104, 25, 45, 14},
                // The list is as wide as its heading, a picture of 272 pixels.
                {ControlKind::Picture, internet_events_ids::kListHeading, "4005", 6, 44, 181, 11},
                {ControlKind::ListBox, internet_events_ids::kParticipantList, "", 6, 56, 181, 90,
                 kControlOwnerDrawn | kControlScroll},
                {ControlKind::Text, internet_events_ids::kOwnerBlock, "", 6, 56, 181, 90, kControlHidden},
                {ControlKind::RightText, internet_events_ids::kOwnerLine, "", 6, 148, 181, 8},
                {ControlKind::DefaultPush, kIdOk, "OK", 93, 158, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 142, 158, 45, 14},
            }};
}

DialogTemplate EBook()
{
    return {e_book_ids::kDialog,
            "E-Book",
            20,
            20,
            170,
            150,
            0,
            {
                {ControlKind::Picture, -1, "2021", 4, 2, 120, 8},
                {ControlKind::Push, e_book_ids::kNewButton, "&new", 4, 132, 30, 14},
                {ControlKind::Push, e_book_ids::kEditButton, "&edit", 36, 132, 30, 14},
                {ControlKind::Push, e_book_ids::kDeleteButton, "&del", 68, 132, 30, 14},
                {ControlKind::DefaultPush, kIdOk, "ok", 104, 132, 30, 14},
                {ControlKind::Push, kIdCancel, "cancel", 136, 132, 30, 14},
            }};
}

DialogTemplate EBookRecord()
{
    return {e_book_record_ids::kDialog,
            "E-Book record",
            20,
            20,
            180,
            62,
            0,
            {
                {ControlKind::Text, -1, "&Name", 6, 8, 30, 8},
                {ControlKind::Edit, e_book_record_ids::kNameEdit, "", 38, 6, 136, 12},
                {ControlKind::Text, -1, "&E-mail", 6, 25, 30, 8},
                {ControlKind::Edit, e_book_record_ids::kEmailEdit, "", 38, 23, 136, 12},
                {ControlKind::DefaultPush, kIdOk, "OK", 80, 43, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 129, 43, 45, 14},
            }};
}

DialogTemplate EBookPicker()
{
    return {e_book_picker_ids::kDialog,
            "E-Record",
            20,
            20,
            130,
            110,
            0,
            {
                {ControlKind::Picture, -1, "2021", 4, 2, 120, 8},
            }};
}

DialogTemplate ServerPassword()
{
    return {server_password_ids::kDialog,
            "Server Password",
            20,
            20,
            160,
            42,
            0,
            {
                {ControlKind::Text, -1, "&Password:", 6, 6, 80, 8},
                {ControlKind::Edit, server_password_ids::kPromptEdit, "", 6, 17, 96, 12, kControlPassword},
                {ControlKind::DefaultPush, kIdOk, "OK", 109, 6, 45, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 109, 23, 45, 14},
            }};
}

DialogTemplate ServerSetup()
{
    return {server_setup_ids::kDialog,
            "Internet Marlin Server Setup",
            20,
            20,
            240,
            146,
            0,
            {
                {ControlKind::Text, -1, "&Name", 8, 10, 104, 8},
                {ControlKind::Edit, server_setup_ids::kNameEdit, "", 116, 8, 116, 12},
                {ControlKind::Text, -1, "&E-mail", 8, 27, 104, 8},
                {ControlKind::Edit, server_setup_ids::kEmailEdit, "", 116, 25, 116, 12},
                {ControlKind::Text, -1, "Server &Password", 8, 44, 104, 8},
                {ControlKind::Edit, server_setup_ids::kPasswordEdit, "", 116, 42, 116, 12, kControlPassword},
                {ControlKind::Text, -1, "Server Password &confirmation", 8, 61, 106, 8},
                {ControlKind::Edit, server_setup_ids::kConfirmEdit, "", 116, 59, 116, 12, kControlPassword},
                {ControlKind::Text, -1, "&Server Name or IP", 8, 84, 104, 8},
                {ControlKind::Edit, server_setup_ids::kServerEdit, "", 116, 82, 116, 12},
                {ControlKind::Text, -1, "P&ort", 8, 101, 104, 8},
                {ControlKind::Edit, server_setup_ids::kPortEdit, "", 116, 99, 60, 12},
                {ControlKind::Push, server_setup_ids::kRegisterButton, "&Registration on server ", 8, 124, 100, 14},
                {ControlKind::DefaultPush, kIdOk, "OK", 187, 124, 45, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> NetDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {InternetEvents(), EBook(),          EBookRecord(),
                                                        EBookPicker(),    ServerPassword(), ServerSetup()};
    return dialogs;
}

}  // namespace jotlet
