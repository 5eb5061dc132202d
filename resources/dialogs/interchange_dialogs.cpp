#include <vector>

#include "resources/dialog_ids.h"
#include "resources/dialogs/dialogs.h"

namespace jotlet {
namespace {

DialogTemplate PrintReport()
{
    return {report_dialog_ids::kDialog,
            "Print Report",
            20,
            20,
            222,
            104,
            0,
            {
                {ControlKind::Radio, report_dialog_ids::kAllRadio, "&All", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, report_dialog_ids::kRangeRadio, "&Date range", 7, 20, 70, 10},
                {ControlKind::Radio, report_dialog_ids::kCurrentRadio, "C&urrent record", 7, 33, 70, 10},
                {ControlKind::Text, -1, "From date", 84, 10, 40, 8, kControlGroup},
                {ControlKind::Push, report_dialog_ids::kFromButton, "", 84, 20, 54, 14},
                {ControlKind::Text, -1, "To date", 84, 38, 40, 8},
                {ControlKind::Push, report_dialog_ids::kToButton, "", 84, 48, 54, 14},
                {ControlKind::Check, report_dialog_ids::kFindBox, "&Text to find", 7, 70, 90, 10},
                {ControlKind::Edit, report_dialog_ids::kFindEdit, "", 7, 83, 208, 12},
                {ControlKind::DefaultPush, kIdOk, "&Make report", 160, 7, 55, 14},
                {ControlKind::Push, report_dialog_ids::kPrintButton, "&Print", 160, 25, 55, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 160, 43, 55, 14},
                {ControlKind::Edit, report_dialog_ids::kReportView, "", 7, 104, 208, 10,
                 kControlMultiLine | kControlReadOnly | kControlScroll | kControlHidden},
            }};
}

DialogTemplate Export()
{
    return {export_dialog_ids::kDialog,
            "Export",
            20,
            20,
            222,
            130,
            0,
            {
                {ControlKind::Radio, export_dialog_ids::kAllRadio, "&All", 7, 7, 60, 10, kControlGroup},
                {ControlKind::Radio, export_dialog_ids::kRangeRadio, "&Date range:", 7, 20, 70, 10},
                {ControlKind::Text, -1, "From date", 84, 10, 40, 8, kControlGroup},
                {ControlKind::Push, export_dialog_ids::kFromButton, "", 84, 20, 54, 14},
                {ControlKind::Text, -1, "To date", 84, 38, 40, 8},
                {ControlKind::Push, export_dialog_ids::kToButton, "", 84, 48, 54, 14},
                {ControlKind::Check, export_dialog_ids::kFindBox, "&Text to find:", 7, 66, 90, 10},
                {ControlKind::Edit, export_dialog_ids::kFindEdit, "", 7, 78, 208, 12},
                {ControlKind::Text, -1, "Export &file", 7, 97, 80, 8},
                {ControlKind::Edit, export_dialog_ids::kExportEdit, "", 7, 107, 150, 12},
                {ControlKind::Push, export_dialog_ids::kBrowseButton, "&Browse...", 162, 106, 53, 14},
                {ControlKind::DefaultPush, export_dialog_ids::kExportButton, "&Export", 160, 7, 55, 14},
                {ControlKind::Push, kIdCancel, "Cancel", 160, 25, 55, 14},
            }};
}

DialogTemplate Import()
{
    return {
        import_wizard_ids::kDialog,
        "Import",
        20,
        20,
        262,
        180,
        0,
        {
            {ControlKind::Text, import_wizard_ids::kFileHeading, "&Select the file to import from:", 7, 9, 200, 8},
            {ControlKind::Edit, import_wizard_ids::kPathEdit, "", 7, 20, 195, 12},
            {ControlKind::Push, import_wizard_ids::kBrowseButton, "B&rowse", 207, 19, 48, 14},

            {ControlKind::Edit, import_wizard_ids::kPreviewEdit, "", 7, 7, 248, 82,
             kControlMultiLine | kControlReadOnly | kControlScroll | kControlHidden},
            {ControlKind::Text, import_wizard_ids::kNamesHeading, "Does the first line hold the names of the fields?",
             7, 97, 162, 8, kControlHidden},
            {ControlKind::Radio, import_wizard_ids::kNamesYes, "&Yes", 172, 96, 42, 10, kControlGroup | kControlHidden},
            {ControlKind::Radio, import_wizard_ids::kNamesNo, "N&o", 218, 96, 37, 10, kControlHidden},
            {ControlKind::Text, import_wizard_ids::kDelimiterHeading, "What stands between two fields?", 7, 114, 162, 8,
             kControlGroup | kControlHidden},
            {ControlKind::Radio, import_wizard_ids::kCommaRadio, "Co&mma", 172, 113, 42, 10,
             kControlGroup | kControlHidden},
            {ControlKind::Radio, import_wizard_ids::kTabRadio, "&Tab", 218, 113, 37, 10, kControlHidden},
            {ControlKind::Text, import_wizard_ids::kQualifierHeading, "What stands about a text?", 7, 131, 162, 8,
             kControlGroup | kControlHidden},
            {ControlKind::DropList, import_wizard_ids::kQualifierCombo, "", 172, 129, 83, 60, kControlHidden},

            {ControlKind::Text, import_wizard_ids::kSourceHeading, "Source fields", 7, 7, 90, 8, kControlHidden},
            {ControlKind::ListBox, import_wizard_ids::kSourceList, "", 7, 17, 118, 96, kControlScroll | kControlHidden},
            {ControlKind::Text, import_wizard_ids::kTargetHeading, "Pinwell fields", 137, 7, 90, 8, kControlHidden},
            {ControlKind::ListBox, import_wizard_ids::kTargetList, "", 137, 17, 118, 96,
             kControlScroll | kControlHidden},
            {ControlKind::RightText, import_wizard_ids::kFieldHeading, "<< map to >>", 75, 121, 56, 8, kControlHidden},
            {ControlKind::DropList, import_wizard_ids::kFieldCombo, "", 137, 119, 118, 90, kControlHidden},
            {ControlKind::Push, import_wizard_ids::kDefaultMapButton, "&Default Map", 137, 137, 57, 14, kControlHidden},
            {ControlKind::Push, import_wizard_ids::kClearMapButton, "&Clear Map", 198, 137, 57, 14, kControlHidden},

            {ControlKind::Push, import_wizard_ids::kBackButton, "&Back", 97, 159, 48, 14},
            {ControlKind::DefaultPush, import_wizard_ids::kNextButton, "&Next", 149, 159, 48, 14},
            {ControlKind::Push, kIdCancel, "Cancel", 207, 159, 48, 14},
        }};
}

}  // namespace

std::span<const DialogTemplate> InterchangeDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {PrintReport(), Export(), Import()};
    return dialogs;
}

}  // namespace jotlet
