// Names of categories: added and removed in a list, written to the file's category block by OK.
#pragma once

#include <string>
#include <vector>

#include "toolkit/marlin_dialog.h"

namespace jotlet {

class TableFile;

class CategoryEditorDialog : public MarlinDialog {
public:
    explicit CategoryEditorDialog(TableFile* file);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void OnNew();
    void OnDelete();
    void OnOk();
    std::vector<std::string> Rows() const;
    // Asks when not all names fit.
    bool MayLeaveOut();
    bool Save();

    TableFile* file;
    std::vector<std::string> namesRead;  // as the file had them when the dialog opened
};

// Asks for one name, at most 29 bytes; in `name` when DoModal gave 1.
class NewCategoryDialog : public MarlinDialog {
public:
    explicit NewCategoryDialog(std::string& name);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    std::string& name;
};

}  // namespace jotlet
