// The strip at the top of the notes pane: shows the category that the board is filtered by, and offers all of them.
#pragma once

#include "toolkit/fly_menu.h"

namespace jotlet {

class TableFile;

inline constexpr std::string_view kAllCategories = "All Categories";
// Names that menu and editor offer, though the block has room for one more.
inline constexpr int kShownCategories = 29;

class CategoryMenu : public TFlyMenu {
public:
    // Names get the commands from `firstId` on, "All Categories" firstId + 29, "Edit Categories" firstId + 30.
    CategoryMenu(int firstId, Colour background, Colour textColour, Colour thirdColour);

    // Fills the entries from the file and shows "All Categories"; the second leaves what is shown.
    void LoadCategories(TableFile* newFile);
    void ReloadCategories(TableFile* newFile);

    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    Rect GetHotArea() override;

private:
    void FillEntries();

    TableFile* file = nullptr;
    int firstId;
};

}  // namespace jotlet
