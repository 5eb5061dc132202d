// Finds text in the notes of the open file: hits as cells, opened for editing on the spot, and the way to one on the
// board.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "notes/model/note_record.h"
#include "store/record_query.h"
#include "toolkit/marlin_dialog.h"
#include "toolkit/records/record_list_view.h"

namespace jotlet {

// The hits; the found text is marked in each cell.
class OccurrencesList : public RecordListView {
public:
    OccurrencesList();

    void DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell) override;
    std::string ItemName(int index) override;
    std::string ItemDetail(int index) override;
    std::string ListName() override { return "Occurrences"; }
    void OnKeySelected(int index) override;
    void OnReturnKey(int selected) override;

    std::string term;
};

class FindDialog : public MarlinDialog {
public:
    // Searches notes of the category `categoryFilter`, of all when it is empty.
    FindDialog(TableFile* file, std::string_view categoryFilter);
    ~FindDialog() override;

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    OccurrencesList& GetList() { return *list; }

    // The note to go to, when DoModal gave 1.
    NoteRecord found{};

private:
    void PlaceList();
    void Search();
    void GoTo();
    MessageParam OnListNotification(int code, int index, MessageParam lParam);
    void OpenHit();
    void FocusList();

    std::unique_ptr<OccurrencesList> list;
    std::unique_ptr<RecordQuery> query;
    TableFile* file;
    std::string categoryFilter;
    int selected = -1;
};

}  // namespace jotlet
