#include "skin/skin_bitmaps.h"

#include <string>

#include "skin/table/skin_file.h"
#include "skin/table/skin_list.h"

namespace jotlet {
namespace {

SkinTable& TheTable()
{
    static SkinTable table;
    return table;
}

// Everything unset but the title text's colour, which the next skin may leave as it is.
void Unset(SkinTable& table)
{
    const Colour titleText = table.colorTextTitle;
    table = SkinTable{};
    table.colorTextTitle = titleText;
}

Bitmap Load(const std::string& path)
{
    return path.empty() ? Bitmap{} : Bitmap::FromFile(path);
}

ButtonBitmaps Load(const ButtonPaths& paths)
{
    return {Load(paths[0]), Load(paths[1]), Load(paths[2])};
}

void Take(Colour& colour, const SkinColour& value)
{
    if (value)
        colour = *value;
}

}  // namespace

const SkinTable& LoadSkin()
{
    SkinTable& table = TheTable();
    if (table.loaded)
        return table;
    Unset(table);
    const SkinFile file = ReadSkinFile(GetCurrentSkinFile());
    table.bmpTitle = Load(file.bmpTitle);
    table.bmpTitleLeft = Load(file.bmpTitleLeft);
    table.bmpTitleRight = Load(file.bmpTitleRight);
    table.bmpSubTitle = Load(file.bmpSubTitle);
    table.bmpClose = Load(file.bmpClose);
    table.bmpRestore = Load(file.bmpRestore);
    table.bmpMinimize = Load(file.bmpMinimize);
    table.bmpResize = Load(file.bmpResize);
    Take(table.colorBack, file.colorBack);
    Take(table.colorBackUp, file.colorBackUp);
    Take(table.colorBackDown, file.colorBackDown);
    Take(table.colorTitle, file.colorTitle);
    Take(table.colorTitleUp, file.colorTitleUp);
    Take(table.colorTitleDown, file.colorTitleDown);
    Take(table.colorFrame, file.colorFrame);
    Take(table.colorFrameUp, file.colorFrameUp);
    Take(table.colorFrameDown, file.colorFrameDown);
    Take(table.colorTextTitle, file.colorTextTitle);
    Take(table.colorPanelFrame, file.colorPanelFrame);
    table.loaded = true;
    return table;
}

void FreeSkin()
{
    if (TheTable().loaded)
        Unset(TheTable());
}

const SkinTable& ReloadSkin()
{
    FreeSkin();
    return LoadSkin();
}

}  // namespace jotlet
