#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate PrintReport()
{
    return {2011,
            "Print Report",
            20,
            20,
            222,
            104,
            0,
            {
                {ControlKind::Radio, 100, "&All", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, 101, "&Date range", 7, 20, 70, 10},
                {ControlKind::Radio, 102, "C&urrent record", 7, 33, 70, 10},
                {ControlKind::Text, -1, "From date", 84, 10, 40, 8, kControlGroup},
                {ControlKind::Push, 300, "", 84, 20, 54, 14},
                {ControlKind::Text, -1, "To date", 84, 38, 40, 8},
                {ControlKind::Push, 301, "", 84, 48, 54, 14},
                {ControlKind::Check, 200, "&Text to find", 7, 70, 90, 10},
                {ControlKind::Edit, 201, "", 7, 83, 208, 12},
                {ControlKind::DefaultPush, 1, "&Make report", 160, 7, 55, 14},
                {ControlKind::Push, 401, "&Print", 160, 25, 55, 14},
                {ControlKind::Push, 2, "Cancel", 160, 43, 55, 14},
                {ControlKind::Edit, 1000, "", 7, 104, 208, 10,
                 kControlMultiLine | kControlReadOnly | kControlScroll | kControlHidden},
            }};
}

DialogTemplate Export()
{
    return {2012,
            "Export",
            20,
            20,
            222,
            130,
            0,
            {
                {ControlKind::Radio, 100, "&All", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, 101, "&Date range:", 7, 20, 70, 10},
                {ControlKind::Text, -1, "From date", 84, 10, 40, 8, kControlGroup},
                {ControlKind::Push, 300, "", 84, 20, 54, 14},
                {ControlKind::Text, -1, "To date", 84, 38, 40, 8},
                {ControlKind::Push, 301, "", 84, 48, 54, 14},
                {ControlKind::Check, 200, "&Text to find:", 7, 66, 90, 10},
                {ControlKind::Edit, 201, "", 7, 78, 208, 12},
                {ControlKind::Text, -1, "Export &file", 7, 97, 80, 8},
                {ControlKind::Edit, 700, "", 7, 107, 150, 12},
                {ControlKind::Push, 701, "&Browse...", 162, 106, 53, 14},
                {ControlKind::DefaultPush, 500, "&Export", 160, 7, 55, 14},
                {ControlKind::Push, 2, "Cancel", 160, 25, 55, 14},
            }};
}

DialogTemplate Import()
{
    return {2013,
            "Import",
            20,
            20,
            262,
            180,
            0,
            {
                {ControlKind::Text, 1000, "&Select the file to import from:", 7, 9, 200, 8},
                {ControlKind::Edit, 98, "", 7, 20, 195, 12},
                {ControlKind::Push, 99, "B&rowse", 207, 19, 48, 14},

                {ControlKind::Edit, 100, "", 7, 7, 248, 82,
                 kControlMultiLine | kControlReadOnly | kControlScroll | kControlHidden},
                {ControlKind::Text, 1001, "Does the first line hold the names of the fields?", 7, 97, 162, 8,
                 kControlHidden},
                {ControlKind::Radio, 101, "&Yes", 172, 96, 42, 10, kControlGroup | kControlHidden},
                {ControlKind::Radio, 102, "N&o", 218, 96, 37, 10, kControlHidden},
                {ControlKind::Text, 1002, "What stands between two fields?", 7, 114, 162, 8,
                 kControlGroup | kControlHidden},
                {ControlKind::Radio, 103, "Co&mma", 172, 113, 42, 10, kControlGroup | kControlHidden},
                {ControlKind::Radio, 104, "&Tab", 218, 113, 37, 10, kControlHidden},
                {ControlKind::Text, 1003, "What stands about a text?", 7, 131, 162, 8, kControlGroup | kControlHidden},
                {ControlKind::DropList, 105, "", 172, 129, 83, 60, kControlHidden},

                {ControlKind::Text, 2000, "Source fields", 7, 7, 90, 8, kControlHidden},
                {ControlKind::ListBox, 200, "", 7, 17, 118, 96, kControlScroll | kControlHidden},
                {ControlKind::Text, 2002, "Pinwell fields", 137, 7, 90, 8, kControlHidden},
                {ControlKind::ListBox, 201, "", 137, 17, 118, 96, kControlScroll | kControlHidden},
                {ControlKind::RightText, 2001, "<< map to >>", 75, 121, 56, 8, kControlHidden},
                {ControlKind::DropList, 202, "", 137, 119, 118, 90, kControlHidden},
                {ControlKind::Push, 203, "&Default Map", 137, 137, 57, 14, kControlHidden},
                {ControlKind::Push, 204, "&Clear Map", 198, 137, 57, 14, kControlHidden},

                {ControlKind::Push, 3000, "&Back", 97, 159, 48, 14},
                {ControlKind::DefaultPush, 3001, "&Next", 149, 159, 48, 14},
                {ControlKind::Push, 2, "Cancel", 207, 159, 48, 14},
            }};
}

}  // namespace

std::span<const DialogTemplate> InterchangeDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {PrintReport(), Export(), Import()};
    return dialogs;
}

}  // namespace jotlet
