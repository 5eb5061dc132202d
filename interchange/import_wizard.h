// The three pages of the import: which file, how it is written, which column goes into which field.
//
// The wizard changes nothing but its own choices; the import itself runs after it ended with 1 (import_command.h).
#pragma once

#include <string>
#include <vector>

#include "interchange/engine/delimited_reader.h"
#include "interchange/engine/import_map.h"
#include "notes/model/import_fields.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class ImportWizard : public MarlinDialog {
public:
    // `aliases` empty: the map buttons are not offered.
    ImportWizard(std::vector<ImportField> fields, std::vector<ImportAlias> aliases);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    // After DoModal gave 1: the text, with separator and qualifier set, and the fields with the map applied.
    DelimitedReader reader;
    std::vector<ImportField> fields;
    bool firstLineNames = true;

private:
    enum Page { kFilePage = 1, kFormatPage = 2, kMapPage = 3 };

    void ShowPage(Page newPage);
    void OnNext();
    void OnBack();
    void OnBrowse();
    void LeaveFilePage();
    bool FillFormatPage();
    void LeaveFormatPage();
    void FillMapPage();
    void Finish();

    void ReadColumnNames();
    void ShowMap(int selectedRow);
    void SelectColumn(int row);
    void OnFieldChosen();

    std::vector<ImportAlias> aliases;
    std::vector<std::string> columnNames;
    ColumnMap map;
    std::string path;
    Page page = kFilePage;
};

}  // namespace jotlet
