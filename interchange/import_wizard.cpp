#include "interchange/import_wizard.h"

#include <sys/stat.h>

#include <utility>

#include "interchange/engine/import_text.h"
#include "platform/base/file_error_text.h"
#include "platform/base/paths.h"
#include "platform/base/profile.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/choose_file.h"

namespace jotlet {
namespace {

using namespace import_wizard_ids;

constexpr char kSection[] = "Preference";
constexpr char kImportKey[] = "ImportFile";

constexpr int kPathLimit = 259;
constexpr char kNoQualifier[] = "None";
// What the preview shows of a file, so that one of any size shows at once.
constexpr std::size_t kPreviewBytes = 64 * 1024;
// Longer names and values of a first row are cut: they are a column's label, not its content. No field's name is as
// long.
constexpr std::size_t kColumnLabel = 254;

constexpr std::pair<int, int> kPageControls[] = {
    {1, 1000},
    {1, kPathEdit},
    {1, kBrowseButton},
    {2, kPreviewEdit},
    {2, 1001},
    {2, kNamesYes},
    {2, kNamesNo},
    {2, 1002},
    {2, kCommaRadio},
    {2, kTabRadio},
    {2, 1003},
    {2, kQualifierCombo},
    {3, 2000},
    {3, kSourceList},
    {3, 2002},
    {3, kTargetList},
    {3, 2001},
    {3, kFieldCombo},
    {3, kDefaultMapButton},
    {3, kClearMapButton},
};

bool Exists(const std::string& path)
{
    struct stat found;
    return stat(path.c_str(), &found) == 0;
}

std::string Reason(const ImportFileResult& read)
{
    switch (read.error) {
        case ImportFileError::TooLarge:
            return "A file to import has at most 2 GB; please split it.";
        case ImportFileError::OutOfMemory:
            return "There is not enough memory; please close other programs or split the file.";
        default:
            return FileErrorText(read.detail);
    }
}

}  // namespace

ImportWizard::ImportWizard(std::vector<ImportField> fields, std::vector<ImportAlias> aliases)
    : fields(std::move(fields)), aliases(std::move(aliases))
{
}

MessageParam ImportWizard::OnInitDialog(WndMessage&)
{
    AddRow(window, kQualifierCombo, "\"");
    AddRow(window, kQualifierCombo, kNoQualifier);
    SelectRow(window, kQualifierCombo, 0);
    LimitItemText(window, kPathEdit, kPathLimit);
    SetItemText(kPathEdit, PathFromSettings(GetModuleIniPath().IniReadText(kSection, kImportKey).value_or("")));
    ShowPage(kFilePage);
    CentreOverParent();
    FocusItem(window, kPathEdit);
    return 0;
}

MessageParam ImportWizard::OnCommand(WndMessage& record)
{
    const bool chosen = HighWord(record.wParam) == kListSelectionChanged;
    switch (const int id = LowWord(record.wParam)) {
        case kNextButton:
        case kIdOk:
            OnNext();
            return 1;
        case kBackButton:
            OnBack();
            return 1;
        case kBrowseButton:
            OnBrowse();
            return 1;
        case kSourceList:
        case kTargetList:
            if (chosen)
                SelectColumn(SelectedRow(window, id));
            return 1;
        case kFieldCombo:
            if (chosen)
                OnFieldChosen();
            return 1;
        case kDefaultMapButton:
            map = AliasMap(map, columnNames, fields, aliases);
            ShowMap(0);
            return 1;
        case kClearMapButton:
            map = PositionalMap(fields, columnNames.size());
            ShowMap(0);
            return 1;
        case kIdCancel:
            EndDialog(0);
            return 1;
        default:
            return 0;
    }
}

void ImportWizard::ShowPage(Page newPage)
{
    page = newPage;
    for (const auto& [controlPage, id] : kPageControls)
        ShowItem(window, id, controlPage == page);
    if (page == kMapPage) {
        const bool mapByName = firstLineNames && !aliases.empty();
        ShowItem(window, kDefaultMapButton, mapByName);
        ShowItem(window, kClearMapButton, mapByName);
    }
    Enable(kBackButton, page != kFilePage);
    SetItemText(kNextButton, page == kMapPage ? "&Finish" : "&Next");
}

void ImportWizard::OnNext()
{
    switch (page) {
        case kFilePage:
            LeaveFilePage();
            break;
        case kFormatPage:
            LeaveFormatPage();
            break;
        case kMapPage:
            Finish();
            break;
    }
}

void ImportWizard::OnBack()
{
    if (page == kFilePage)
        return;
    ShowPage(page == kMapPage ? kFormatPage : kFilePage);
    FocusItem(window, page == kFilePage ? kPathEdit : kNextButton);
}

void ImportWizard::OnBrowse()
{
    ChooseFileInto(window, kPathEdit,
                   {.title = "Import",
                    .filter = "Comma file (*.csv)|*.csv|Text file (*.txt)|*.txt|(*.*)|*.*||",
                    .extension = "csv"});
}

void ImportWizard::LeaveFilePage()
{
    path = CutText(GetItemText(kPathEdit), kPathLimit);
    if (!Exists(path)) {
        ShowTextMessage(window, "Import file could not be found.");
        FocusItem(window, kPathEdit);
        return;
    }
    if (!FillFormatPage())
        return;
    ShowPage(kFormatPage);
    FocusItem(window, kNextButton);
}

bool ImportWizard::FillFormatPage()
{
    std::string head;
    const ImportFileResult read = ReadImportHead(path, kPreviewBytes, head);
    if (!read) {
        ShowTextMessage(window, "\"" + path + "\"\r\ncannot be read. " + Reason(read));
        return false;
    }
    const std::string text = PrepareImportText(std::move(head));
    SetItemText(kPreviewEdit, text);
    CheckItem(window, kNamesYes, true);
    CheckItem(window, DelimitedReader::DetectSeparator(text) == '\t' ? kTabRadio : kCommaRadio, true);
    SelectRow(window, kQualifierCombo, DelimitedReader::DetectQualifier(text) ? 0 : 1);
    return true;
}

void ImportWizard::LeaveFormatPage()
{
    firstLineNames = Checked(kNamesYes);
    reader.separator = Checked(kCommaRadio) ? ',' : '\t';
    const std::string qualifier = RowText(window, kQualifierCombo, SelectedRow(window, kQualifierCombo));
    reader.qualifier = qualifier.empty() || qualifier == kNoQualifier ? '\0' : qualifier.front();
    FillMapPage();
    ShowPage(kMapPage);
    FocusItem(window, columnNames.empty() ? kBackButton : kSourceList);
}

void ImportWizard::FillMapPage()
{
    ShowWaitCursor();
    const ImportFileResult read = LoadImportText(reader, path);
    ReadColumnNames();

    ClearRows(window, kFieldCombo);
    for (const ImportField& field : fields)
        AddRow(window, kFieldCombo, field.name);
    AddRow(window, kFieldCombo, kIgnoredField);
    SelectRow(window, kFieldCombo, 0);

    ClearRows(window, kSourceList);
    for (const std::string& name : columnNames)
        AddRow(window, kSourceList, name);
    map = PositionalMap(fields, columnNames.size());
    ClearRows(window, kTargetList);
    for (const std::string& name : map)
        AddRow(window, kTargetList, name);
    ShowMap(0);
    RestoreCursor();

    if (!read)
        ShowTextMessage(window, "\"" + path + "\"\r\ncannot be read. " + Reason(read));
    else if (columnNames.empty())
        ShowTextMessage(window, "No whole row was found in\r\n\"" + path +
                                    "\".\r\nEach row must end in a line end, and each quote must be closed.");
}

void ImportWizard::ReadColumnNames()
{
    columnNames.clear();
    reader.Reset();
    if (reader.NextRecord() != 1)
        return;
    reader.Rewind();
    for (int code = DelimitedReader::kField; code == DelimitedReader::kField;) {
        code = reader.NextField();
        if (code != DelimitedReader::kNoMore)
            columnNames.emplace_back(CutText(reader.Field(), kColumnLabel));
    }
}

// Brings list 201 in line with the map.
void ImportWizard::ShowMap(int selectedRow)
{
    for (std::size_t i = 0; i < map.size(); ++i) {
        if (RowText(window, kTargetList, static_cast<int>(i)) != map[i])
            SetRowText(window, kTargetList, static_cast<int>(i), map[i]);
    }
    SelectColumn(map.empty() ? -1 : selectedRow);
}

void ImportWizard::SelectColumn(int row)
{
    SelectRow(window, kSourceList, row);
    SelectRow(window, kTargetList, row);
    if (row < 0 || row >= static_cast<int>(map.size()))
        return;
    for (int i = 0; i < RowCount(window, kFieldCombo); ++i) {
        if (RowText(window, kFieldCombo, i) == map[static_cast<std::size_t>(row)])
            SelectRow(window, kFieldCombo, i);
    }
}

void ImportWizard::OnFieldChosen()
{
    const int column = SelectedRow(window, kTargetList);
    if (column < 0)
        return;
    ChooseField(map, static_cast<std::size_t>(column), RowText(window, kFieldCombo, SelectedRow(window, kFieldCombo)));
    ShowMap(column);
}

void ImportWizard::Finish()
{
    if (!ApplyMap(map, fields)) {
        Beep();
        return;
    }
    GetModuleIniPath().IniWriteText(kSection, kImportKey, PathForSettings(path));
    EndDialog(1);
}

}  // namespace jotlet
