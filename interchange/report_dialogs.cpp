#include "interchange/report_dialogs.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "platform/base/file_error_text.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "store/record_query.h"
#include "toolkit/choose_file.h"
#include "toolkit/date_dialog.h"

namespace jotlet {
namespace {

using namespace report_dialog_ids;
using namespace export_dialog_ids;

constexpr int kFindLimit = 1023;
constexpr int kPathLimit = 260;

constexpr int kViewHeight = 290;
constexpr int kUnfoldBy = 300;

// What the user is to know of a file that was made; each sentence begins on a line of its own.
std::string NotesOn(const ReportOutcome& outcome, bool isExport)
{
    std::string text;
    if (outcome.limitReached)
        text += "\r\nOnly the first " + std::to_string(kMaxResults) +
                " notes of the file that match are in it. Choose a shorter date range for the others, or use jotctl, "
                "which reaches all.";
    if (isExport && outcome.withQuotes > 0)
        text += "\r\nWhat holds a quotation mark may not come back as it is from an import. Such notes: " +
                std::to_string(outcome.withQuotes) + ".";
    return text;
}

}  // namespace

MessageParam SelectionDialog::OnInitDialog(WndMessage&)
{
    CheckItem(window, kAllRadio, true);
    LimitItemText(window, kFindEdit, kFindLimit);
    Enable(kFindEdit, false);
    ShowDates();
    EnableDates(false);
    CentreOverParent();
    FocusItem(window, kAllRadio);
    return 0;
}

MessageParam SelectionDialog::OnCommand(WndMessage& record)
{
    switch (const int id = LowWord(record.wParam)) {
        case kAllRadio:
        case kCurrentRadio:
            EnableDates(false);
            return 1;
        case kRangeRadio:
            EnableDates(true);
            return 1;
        case kFindBox:
            OnFindBox();
            return 1;
        case kFromButton:
        case kToButton:
            PickDate(id);
            return 1;
        case kIdCancel:
            EndDialog(0);
            return 1;
        default:
            return 0;
    }
}

void SelectionDialog::ShowDates()
{
    std::string text;
    FormatDateValue(text, request.fromDate);
    SetItemText(kFromButton, text);
    FormatDateValue(text, request.toDate);
    SetItemText(kToButton, text);
}

void SelectionDialog::EnableDates(bool enabled)
{
    Enable(kFromButton, enabled);
    Enable(kToButton, enabled);
}

void SelectionDialog::OnFindBox()
{
    const bool checked = Checked(kFindBox);
    Enable(kFindEdit, checked);
    if (checked)
        FocusItem(window, kFindEdit);
}

void SelectionDialog::PickDate(int button)
{
    DateValue& kept = button == kFromButton ? request.fromDate : request.toDate;
    DateValue picked = kept;
    const Rect place = ItemRect(window, button);
    const Point corner = ClientToScreen(window, {place.left, place.bottom});
    DateDialog dialog(picked.day, picked.month, picked.year, &picked);
    dialog.SetPosition(corner.x, corner.y);
    if (dialog.DoModal(this, date_picker_ids::kDialog) != 1)
        return;
    const DateValue& from = button == kFromButton ? picked : request.fromDate;
    const DateValue& to = button == kFromButton ? request.toDate : picked;
    if (DayNumberOf(from) > DayNumberOf(to)) {
        ShowMessage(window, kStringDateOrder);
        return;
    }
    kept = picked;
    ShowDates();
}

void SelectionDialog::ReadSelection()
{
    request.selection = SelectionFromRadios();
    request.findEnabled = Checked(kFindBox);
    if (request.findEnabled)
        request.findText = CutText(GetItemText(kFindEdit), kFindLimit);
}

MessageParam PrintReportDialog::OnInitDialog(WndMessage& record)
{
    Enable(kCurrentRadio, request.hasCurrent);
    Enable(kPrintButton, false);
    ShowItem(window, kReportView, false);
    SetItemFont(window, kReportView, "Verdana", -11, 400);
    return SelectionDialog::OnInitDialog(record);
}

MessageParam PrintReportDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kIdOk:
            MakeReport();
            return 1;
        case kPrintButton: {
            std::string path;
            GetReportPath(path);
            PrintReportFile(path);
            return 1;
        }
        default:
            return SelectionDialog::OnCommand(record);
    }
}

ReportSelection PrintReportDialog::SelectionFromRadios() const
{
    if (Checked(kAllRadio))
        return ReportSelection::All;
    return Checked(kRangeRadio) ? ReportSelection::DateRange : ReportSelection::CurrentRecord;
}

void PrintReportDialog::MakeReport()
{
    ReadSelection();
    std::string path;
    GetReportPath(path);
    ReportOutcome outcome;
    ShowWaitCursor();
    const int made = GenerateReportFile(request, path, &outcome);
    RestoreCursor();
    if (made != 1)
        ShowTextMessage(window,
                        "The report could not be written to\r\n\"" + path + "\".\r\n" + FileErrorText(outcome.error));
    Enable(kPrintButton, true);
    Unfold();
    ShowReportText(path);
    if (const std::string notes = NotesOn(outcome, false); !notes.empty())
        ShowTextMessage(window, "The report is made." + notes);
}

// Once: the view stands below the old bottom edge. The dialog moves up as far as it takes to stay whole on the desktop.
void PrintReportDialog::Unfold()
{
    if (std::exchange(unfolded, true))
        return;
    const Rect now = WindowRect(window);
    const Rect view = ItemRect(window, kReportView);
    const int top = GetClientArea().bottom;
    const int height = now.Height() + kUnfoldBy;
    const Rect desktop = DesktopRect({now.left, now.top});
    const int highest = std::min(now.top, desktop.top);
    MoveTo(window, Rect::At(now.left, std::clamp(desktop.bottom - height, highest, now.top), now.Width(), height));
    MoveItem(window, kReportView, {view.left, top, view.right, top + kViewHeight});
    ShowItem(window, kReportView, true);
}

int PrintReportDialog::ShowReportText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return 0;
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    SetItemText(kReportView, text);
    return 1;
}

void PrintReportDialog::PrintReportFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return;
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::string problem;
    if (PrintText(window, "Jotlet Report", text, problem))
        EndDialog(1);
    else if (!problem.empty())
        ShowTextMessage(window, "The report could not be printed.\r\n" + problem);
}

MessageParam ExportDialog::OnInitDialog(WndMessage& record)
{
    LimitItemText(window, kExportEdit, kPathLimit);
    SetItemText(kExportEdit, request.exportPath);
    return SelectionDialog::OnInitDialog(record);
}

MessageParam ExportDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kExportButton:
        case kIdOk:
            Export();
            return 1;
        case kBrowseButton:
            Browse();
            return 1;
        default:
            return SelectionDialog::OnCommand(record);
    }
}

ReportSelection ExportDialog::SelectionFromRadios() const
{
    return Checked(kAllRadio) ? ReportSelection::All : ReportSelection::DateRange;
}

void ExportDialog::Export()
{
    request.exportPath = CutText(GetItemText(kExportEdit), kPathLimit - 1);
    if (request.exportPath.empty()) {
        ShowTextMessage(window, "Please give the file to export to.");
        FocusItem(window, kExportEdit);
        return;
    }
    ReadSelection();
    ReportOutcome outcome;
    ShowWaitCursor();
    exported = GenerateReportFile(request, request.exportPath, &outcome) == 1;
    RestoreCursor();
    if (exported) {
        remarks = NotesOn(outcome, true);
        EndDialog(1);
        return;
    }
    ShowTextMessage(window, "The notes could not be exported to\r\n\"" + request.exportPath + "\".\r\n" +
                                FileErrorText(outcome.error));
    FocusItem(window, kExportEdit);
}

void ExportDialog::Browse()
{
    ChooseFileInto(window, kExportEdit,
                   {.mode = FileDialogMode::Save,
                    .title = "Export",
                    .filter = "Comma file (*.csv)|*.csv|Text file (*.txt)|*.txt||",
                    .extension = "csv"});
}

}  // namespace jotlet
