// The list of contacts that the E-Book and its picker show.
#pragma once

#include "toolkit/records/record_list_view.h"

namespace jotlet {

class ContactList : public RecordListView {
public:
    static constexpr int kId = 1000;

    ContactList();

    // Creates the window inside a dialog and shows the open book in it; `bottomMargin` pixels stay free below.
    void CreateIn(MarlinWnd& dialog, int bottomMargin);
    // Runs the book's query again after a change made here, and keeps the record selected if it is still there.
    void ShowChange(std::uint64_t uniqueId);

    void DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell) override;
    std::string ItemName(int index) override;
    std::string ListName() override { return "Contacts"; }
    std::string EmptyHint() override { return "There is nobody in the E-Book. Click \"New\" to add somebody."; }
};

}  // namespace jotlet
