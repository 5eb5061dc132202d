#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate CreateNewFile()
{
    return {new_file_dialog_ids::kDialog,
            "Create New File",
            20,
            20,
            222,
            86,
            0,
            {
                {ControlKind::Text, -1, "File &name:", 7, 9, 44, 8},
                {ControlKind::Edit, new_file_dialog_ids::kName, "", 53, 7, 162, 12},
                {ControlKind::Text, -1, "F&older:", 7, 27, 44, 8},
                {ControlKind::Edit, new_file_dialog_ids::kFolder, "", 53, 25, 110, 12},
                {ControlKind::Push, new_file_dialog_ids::kBrowse, "&Browse...", 167, 24, 48, 14},
                {ControlKind::Check, new_file_dialog_ids::kExamples, "With &example records", 53, 44, 110, 10},
                {ControlKind::DefaultPush, kIdOk, "OK", 113, 65, 48, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 167, 65, 48, 14},
            }};
}

DialogTemplate Password()
{
    return {password_dialog_ids::kDialog,
            "Password",
            20,
            20,
            180,
            54,
            0,
            {
                {ControlKind::Text, -1, "&Password:", 7, 11, 40, 8},
                {ControlKind::Edit, password_dialog_ids::kPassword, "", 49, 9, 124, 12, kControlPassword},
                {ControlKind::DefaultPush, kIdOk, "OK", 71, 33, 48, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 125, 33, 48, 14},
            }};
}

DialogTemplate GeneralOptions()
{
    return {
        general_options_ids::kDialog,
        "General Options",
        20,
        20,
        190,
        104,
        0,
        {
            {ControlKind::Check, general_options_ids::kSound, "&Sound", 7, 7, 176, 10},
            {ControlKind::Check, general_options_ids::kAnimation, "&Animation", 7, 20, 176, 10},
            {ControlKind::Check, general_options_ids::kSplash, "Show s&plash screen on startup", 7, 33, 176, 10},
            {ControlKind::Check, general_options_ids::kTray, "Start Pinwell system &tray application", 7, 46, 176, 10},
            {ControlKind::Text, -1, "&Network refresh time:", 7, 64, 90, 8},
            {ControlKind::DropList, general_options_ids::kRefresh, "", 113, 62, 70, 120, kControlScroll},
            {ControlKind::DefaultPush, kIdOk, "OK", 81, 83, 48, 14},
            {ControlKind::Push, kIdCancel, "Cancel", 135, 83, 48, 14},
        }};
}

DialogTemplate NetworkPasswords()
{
    return {
        network_passwords_ids::kDialog,
        "Network Passwords",
        20,
        20,
        230,
        184,
        0,
        {
            {ControlKind::Text, -1, "&Owner:", 7, 9, 44, 8},
            {ControlKind::Edit, network_passwords_ids::kOwner, "", 53, 7, 170, 12, kControlPassword},
            {ControlKind::Text, -1,
             "Lets you see and change all entries (including entries marked confidential). Users with Owner access "
             "can also set the type of access and passwords for other users.",
             53, 21, 170, 34},
            {ControlKind::Text, -1, "&Assistant:", 7, 67, 44, 8},
            {ControlKind::Edit, network_passwords_ids::kAssistant, "", 53, 65, 170, 12, kControlPassword},
            {ControlKind::Text, -1,
             "Lets you see and change entries (except entries marked confidential). Users with Assistant access can "
             "change or add entries but can't view or change entries that are confidential. ",
             53, 79, 170, 34},
            {ControlKind::Text, -1, "&Reader:", 7, 125, 44, 8},
            {ControlKind::Edit, network_passwords_ids::kReader, "", 53, 123, 170, 12, kControlPassword},
            {ControlKind::Text, -1, "Lets you see (but not change) entries in a file that aren't confidential.", 53,
             137, 170, 18},
            {ControlKind::DefaultPush, kIdOk, "OK", 121, 163, 48, 14, kControlDisabled},
            {ControlKind::Push, kIdCancel, "Cancel", 175, 163, 48, 14},
        }};
}

DialogTemplate VerifyPasswords()
{
    return {
        verify_passwords_ids::kDialog,
        "Verify Network Passwords",
        20,
        20,
        200,
        108,
        0,
        {
            {ControlKind::Text, -1, "&Owner:", 7, 9, 44, 8},
            {ControlKind::Edit, verify_passwords_ids::kOwner, "", 53, 7, 140, 12, kControlPassword},
            {ControlKind::Text, -1, "&Assistant:", 7, 27, 44, 8},
            {ControlKind::Edit, verify_passwords_ids::kAssistant, "", 53, 25, 140, 12, kControlPassword},
            {ControlKind::Text, -1, "&Reader:", 7, 45, 44, 8},
            {ControlKind::Edit, verify_passwords_ids::kReader, "", 53, 43, 140, 12, kControlPassword},
            {ControlKind::Text, -1,
             "CAUTION: If you lose these passwords, you can not recover the information in your file.", 7, 61, 186, 18},
            {ControlKind::DefaultPush, kIdOk, "OK", 91, 87, 48, 14},
            {ControlKind::Push, kIdCancel, "Cancel", 145, 87, 48, 14},
        }};
}

}  // namespace

std::span<const DialogTemplate> DocumentDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {CreateNewFile(), Password(), GeneralOptions(),
                                                        NetworkPasswords(), VerifyPasswords()};
    return dialogs;
}

}  // namespace jotlet
