// NotesPane: the pane in which the user works with notes.
//
// Owns:    its list. Not the file, which the program opens and closes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "store/record_query.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/marlin_wnd_list_view.h"

namespace jotlet {

class NotesPane : public MarlinPane {
public:
    NotesPane(const PaneColours& colours, std::string name);
    ~NotesPane() override;

    MarlinWndListView& GetList() { return *list; }
    // The selected note's `uniqueId`, 0 when none is selected.
    std::uint64_t SelectedId() const;

    int OnFileOpened(TableFile* file) override;
    int OnEntered() override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    std::unique_ptr<MarlinWndListView> list;
    TableFile* file = nullptr;
};

}  // namespace jotlet
