#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate InternetEvents()
{
    return {1011,
            "Internet Events",
            20,
            20,
            193,
            176,
            0,
            {
                {ControlKind::Text, -1, "&Subject:", 6, 9, 34, 8},
                {ControlKind::Edit, 103, "", 42, 7, 145, 12},
                {ControlKind::Push, 101, "&Invite", 6, 25, 45, 14},
                {ControlKind::Push, 105, "&Remove", 55, 25, 45, 14},
                {ControlKind::Push, 106, "&E-Book", 104, 25, 45, 14},
                // The list is as wide as its heading, a picture of 272 pixels.
                {ControlKind::Picture, 104, "4005", 6, 44, 181, 11},
                {ControlKind::ListBox, 102, "", 6, 56, 181, 90, kControlOwnerDrawn | kControlScroll},
                {ControlKind::Text, 1011, "", 6, 56, 181, 90, kControlHidden},
                {ControlKind::RightText, 1010, "", 6, 148, 181, 8},
                {ControlKind::DefaultPush, 1, "OK", 93, 158, 45, 14},
                {ControlKind::Push, 2, "Cancel", 142, 158, 45, 14},
            }};
}

DialogTemplate EBook()
{
    return {1012,
            "E-Book",
            20,
            20,
            170,
            150,
            0,
            {
                {ControlKind::Picture, -1, "2021", 4, 2, 120, 8},
                {ControlKind::Push, 101, "&new", 4, 132, 30, 14},
                {ControlKind::Push, 102, "&edit", 36, 132, 30, 14},
                {ControlKind::Push, 103, "&del", 68, 132, 30, 14},
                {ControlKind::DefaultPush, 1, "ok", 104, 132, 30, 14},
                {ControlKind::Push, 2, "cancel", 136, 132, 30, 14},
            }};
}

DialogTemplate EBookRecord()
{
    return {1013,
            "E-Book record",
            20,
            20,
            180,
            62,
            0,
            {
                {ControlKind::Text, -1, "&Name", 6, 8, 30, 8},
                {ControlKind::Edit, 100, "", 38, 6, 136, 12},
                {ControlKind::Text, -1, "&E-mail", 6, 25, 30, 8},
                {ControlKind::Edit, 101, "", 38, 23, 136, 12},
                {ControlKind::DefaultPush, 1, "OK", 80, 43, 45, 14},
                {ControlKind::Push, 2, "Cancel", 129, 43, 45, 14},
            }};
}

DialogTemplate EBookPicker()
{
    return {1015,
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
    return {1016,
            "Server Password",
            20,
            20,
            160,
            42,
            0,
            {
                {ControlKind::Text, -1, "&Password:", 6, 6, 80, 8},
                {ControlKind::Edit, 100, "", 6, 17, 96, 12, kControlPassword},
                {ControlKind::DefaultPush, 1, "OK", 109, 6, 45, 14},
                {ControlKind::Push, 2, "Cancel", 109, 23, 45, 14},
            }};
}

DialogTemplate ServerSetup()
{
    return {1017,
            "Internet Marlin Server Setup",
            20,
            20,
            240,
            146,
            0,
            {
                {ControlKind::Text, -1, "&Name", 8, 10, 104, 8},
                {ControlKind::Edit, 100, "", 116, 8, 116, 12},
                {ControlKind::Text, -1, "&E-mail", 8, 27, 104, 8},
                {ControlKind::Edit, 104, "", 116, 25, 116, 12},
                {ControlKind::Text, -1, "Server &Password", 8, 44, 104, 8},
                {ControlKind::Edit, 101, "", 116, 42, 116, 12, kControlPassword},
                {ControlKind::Text, -1, "Server Password &confirmation", 8, 61, 106, 8},
                {ControlKind::Edit, 102, "", 116, 59, 116, 12, kControlPassword},
                {ControlKind::Text, -1, "&Server Name or IP", 8, 84, 104, 8},
                {ControlKind::Edit, 103, "", 116, 82, 116, 12},
                {ControlKind::Text, -1, "P&ort", 8, 101, 104, 8},
                {ControlKind::Edit, 105, "", 116, 99, 60, 12},
                {ControlKind::Push, 1000, "&Registration on server ", 8, 124, 100, 14},
                {ControlKind::DefaultPush, 1, "OK", 187, 124, 45, 14},
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
