// The dialog in which a note is written. It works on a record buffer that the caller owns and touches no file but for
// the list of categories; saving is the caller's, through the function given to SetSave.
#pragma once

#include <functional>
#include <string>

#include "notes/model/note_record.h"
#include "store/table_file.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

inline constexpr int kEditExisting = 1;
inline constexpr int kEditNew = 2;

class NoteEditorDialog : public MarlinDialog {
public:
    // `record` stays the caller's and must outlive the dialog; in new mode it is filled with what a new note has.
    // The date given replaces the record's own.
    NoteEditorDialog(TableFile* file, NoteRecord& record, const DateValue& date, int mode);
    ~NoteEditorDialog() override;

    // Whether a note is being written in this copy: no alarm interrupts that, also not a new note that holds no lock.
    static bool AnyOpen();

    // Called by OK with the record filled in. An empty result ends the dialog with 1; any other text is shown, and the
    // dialog stays open with all that was typed.
    using Save = std::function<std::string()>;
    void SetSave(Save save);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnMeasureItem(WndMessage& record) override;
    MessageParam OnDrawItem(WndMessage& record) override;

private:
    void FillNewRecord();
    void FillCategories();
    void FillColours();
    void UpdateOkButton();
    MessageParam OnOk();
    bool FitsOrTell(int id, std::size_t fieldSize, const char* name);
    MessageParam OnAttach();
    void ReadControls();

    NoteRecord& record;
    int mode;
    Role role;
    TableFile* file;
    DateValue date;
    Save save;
};

}  // namespace jotlet
