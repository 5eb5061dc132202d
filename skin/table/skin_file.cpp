#include "skin/table/skin_file.h"

#include "platform/base/profile.h"
#include "platform/base/text.h"
#include "skin/table/skin_list.h"

namespace jotlet {

namespace {

constexpr std::size_t kMaxValueBytes = 259;

// One skin's text, asked key by key.
class SkinText {
public:
    explicit SkinText(std::string_view skinFile) : path(FindSkinPath(skinFile))
    {
        if (auto read = ReadProfileFile(path))
            text = std::move(*read);
        folder = Value("folder");
    }

    std::string Picture(std::string_view key) const
    {
        std::string file = Value(key);
        if (!file.empty())
            GetSkinBitmapPath(file, folder, path);
        return file;
    }

    ButtonPaths Pictures(const std::string& key) const
    {
        return {Picture(key + "_1"), Picture(key + "_2"), Picture(key + "_3")};
    }

    SkinColour Colour(std::string_view key) const { return ParseSkinColour(Value(key)); }

private:
    std::string Value(std::string_view key) const
    {
        const auto value = FindProfileValue(text, "Preference", key);
        return value ? std::string(CutText(*value, kMaxValueBytes)) : std::string();
    }

    std::string path;
    std::string text;
    std::string folder;
};

// Takes a number's low 8 bits off the front of `text`; false when there is none.
bool TakeNumber(std::string_view& text, std::uint32_t& low)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n\v\f");
    text.remove_prefix(first == std::string_view::npos ? text.size() : first);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    if (text.empty() || text[0] < '0' || text[0] > '9')
        return false;
    // Unsigned arithmetic wraps, so a number of any length leaves the right low bits.
    std::uint32_t number = 0;
    for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1))
        number = number * 10 + static_cast<std::uint32_t>(text[0] - '0');
    low = (negative ? 0u - number : number) & 0xFF;
    return true;
}

bool TakeComma(std::string_view& text)
{
    if (!text.starts_with(','))
        return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

SkinColour ParseSkinColour(std::string_view text)
{
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    if (TakeNumber(text, red) && TakeComma(text) && TakeNumber(text, green) && TakeComma(text) &&
        TakeNumber(text, blue))
        return red | (green << 8) | (blue << 16);
    return std::nullopt;
}

SkinFile ReadSkinFile(std::string_view skinFile)
{
    const SkinText text(skinFile);
    return {.bmpTitle = text.Picture("bmpTitle"),
            .bmpTitleLeft = text.Picture("bmpTitle_left"),
            .bmpTitleRight = text.Picture("bmpTitle_right"),
            .bmpSubTitle = text.Picture("bmpSubTitle"),
            .bmpClose = text.Pictures("bmpButtonClose"),
            .bmpRestore = text.Pictures("bmpButtonRestore"),
            .bmpMinimize = text.Pictures("bmpButtonMinimize"),
            .bmpResize = text.Picture("bmpResize"),
            .colorBack = text.Colour("colorBack"),
            .colorBackUp = text.Colour("colorBackUp"),
            .colorBackDown = text.Colour("colorBackDown"),
            .colorTitle = text.Colour("colorTitle"),
            .colorTitleUp = text.Colour("colorTitleUp"),
            .colorTitleDown = text.Colour("colorTitleDown"),
            .colorFrame = text.Colour("colorFrame"),
            .colorFrameUp = text.Colour("colorFrameUp"),
            .colorFrameDown = text.Colour("colorFrameDown"),
            .colorTextTitle = text.Colour("colorTextTitle"),
            .colorPanelFrame = text.Colour("colorPanelFrame")};
}

}  // namespace jotlet
