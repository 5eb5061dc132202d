#include "interchange/report_command.h"

#include "interchange/report_dialogs.h"
#include "platform/base/paths.h"
#include "platform/base/profile.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

constexpr char kSection[] = "Preference";
constexpr char kExportKey[] = "ExportFile";

void RunReport(MarlinWnd* parent, ReportRequest& request)
{
    PrintReportDialog dialog(request);
    dialog.DoModal(parent, report_dialog_ids::kDialog);
}

void RunExport(MarlinWnd* parent, ReportRequest& request)
{
    const IniFile settings = GetModuleIniPath();
    request.exportPath = PathFromSettings(settings.IniReadText(kSection, kExportKey).value_or(""));
    ExportDialog dialog(request);
    if (dialog.DoModal(parent, export_dialog_ids::kDialog) != 1 || !dialog.Exported())
        return;
    settings.IniWriteText(kSection, kExportKey, PathForSettings(request.exportPath));
    ShowTextMessage(parent ? parent->window : 0, "Operation successful." + dialog.Remarks());
}

}  // namespace

int ReportCommand(MarlinWnd* parent, ReportKind kind, TableFile& table, std::uint64_t currentId)
{
    ReportRequest request;
    request.kind = kind;
    request.table = &table;
    request.currentId = currentId;
    request.hasCurrent = currentId != 0;
    Today(request.fromDate);
    Today(request.toDate);
    if (kind == ReportKind::Report)
        RunReport(parent, request);
    else
        RunExport(parent, request);
    return 1;
}

}  // namespace jotlet
