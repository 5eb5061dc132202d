#include "notes/category_menu.h"

#include <algorithm>

#include "notes/category_editor_dialog.h"
#include "platform/base/text.h"
#include "resources/dialog_ids.h"
#include "skin/drawing.h"
#include "skin/fonts.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr int kAllOffset = 29;
constexpr int kEditOffset = 30;
constexpr int kHotWidth = 120;
constexpr int kIconId = 3000;
constexpr int kIconSize = 12;
constexpr int kIconLeft = 15;
constexpr int kIconTop = 11;
constexpr int kIconWidth = 12;

}  // namespace

CategoryMenu::CategoryMenu(int firstId, Colour background, Colour textColour, Colour thirdColour)
    : TFlyMenu(background, textColour, thirdColour), firstId(firstId)
{
}

void CategoryMenu::LoadCategories(TableFile* newFile)
{
    file = newFile;
    FillEntries();
    ShowEntry(firstId + kAllOffset);
}

void CategoryMenu::ReloadCategories(TableFile* newFile)
{
    if (!newFile)
        return;
    file = newFile;
    FillEntries();
}

void CategoryMenu::FillEntries()
{
    ClearEntries();
    AddTextEntry(kAllCategories, firstId + kAllOffset);
    AddStringEntry(-1, -1);
    CategoryBlock block{};
    if (file && file->ReadCategories(block) == 1) {
        const int count = std::min(block.Count(), kShownCategories);
        for (int i = 0; i < count; ++i)
            AddTextEntry(FieldText(block.entries[i].name), firstId + i);
    }
    AddStringEntry(-1, -1);
    AddTextEntry("Edit Categories", firstId + kEditOffset);
}

MessageParam CategoryMenu::OnCommand(WndMessage& record)
{
    if (LowWord(record.wParam) != firstId + kEditOffset || !file)
        return TFlyMenu::OnCommand(record);
    CategoryEditorDialog dialog(file);
    if (dialog.DoModal(this, category_editor_ids::kDialog) != 1)
        return 0;
    LoadCategories(file);
    Invalidate(nullptr, 0);
    WndMessage all = record;
    all.wParam = firstId + kAllOffset;
    return TFlyMenu::OnCommand(all);
}

void CategoryMenu::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.StretchBitmap(LoadResourceBitmap("tbar2.bmp"), client);
    DrawResourceBitmap(dc, client.left, client.top, "tbar2_corner.bmp");
    const int shift = pressed ? 1 : 0;
    int x = client.left + kIconLeft + shift;
    dc.DrawIcon(kIconId, x, client.top + kIconTop + shift, kIconSize);
    x += kIconWidth;
    dc.DrawText({x, client.top + shift, client.right, client.bottom + shift}, shownText, SmallFont(700), textColour,
                kTextSingleLine | kTextVCentre | kTextEndEllipsis | kTextNoPrefix);
    DrawFocusMark(dc);
}

Rect CategoryMenu::GetHotArea()
{
    Rect area = GetClientArea();
    area.right = std::min(area.right, area.left + kHotWidth);
    return area;
}

}  // namespace jotlet
