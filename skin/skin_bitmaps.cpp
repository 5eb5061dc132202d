#include "skin/skin_bitmaps.h"

#include <string>

#include "skin/table/skin_file.h"
#include "skin/table/skin_list.h"

namespace jotlet {
namespace {

SkinTable& TheTable()
{
    // All windows wear the one skin.
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

// All pictures of one skin together: 16 MB once they are loaded. A title as wide as any screen needs a tenth of it.
constexpr int kMostPixels = 4 << 20;

class PictureLoader {
public:
    Bitmap Load(const std::string& path) { return path.empty() ? Bitmap{} : Bitmap::FromFile(path, pixelsLeft); }
    ButtonBitmaps Load(const ButtonPaths& paths) { return {Load(paths[0]), Load(paths[1]), Load(paths[2])}; }

private:
    int pixelsLeft = kMostPixels;
};

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
    PictureLoader pictures;
    table.bmpTitle = pictures.Load(file.bmpTitle);
    table.bmpTitleLeft = pictures.Load(file.bmpTitleLeft);
    table.bmpTitleRight = pictures.Load(file.bmpTitleRight);
    table.bmpSubTitle = pictures.Load(file.bmpSubTitle);
    table.bmpClose = pictures.Load(file.bmpClose);
    table.bmpRestore = pictures.Load(file.bmpRestore);
    table.bmpMinimize = pictures.Load(file.bmpMinimize);
    table.bmpResize = pictures.Load(file.bmpResize);
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
