// The board: notes as coloured cells.
#pragma once

#include "toolkit/records/record_list_view.h"

namespace jotlet {

class NotesList : public RecordListView {
public:
    using RecordListView::RecordListView;

    void DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell) override;
    std::string ItemName(int index) override;
    std::string ItemDetail(int index) override;
    std::string ListName() override { return "Notes"; }
    std::string EmptyHint() override { return "There is no note here. Press Insert to write one."; }
    // Ctrl+D moves the selected note to another day, Ctrl+Shift+D copies it there.
    void OnOtherKey(int virtualKey) override;
    void OnCharacter(char32_t character) override;
};

}  // namespace jotlet
