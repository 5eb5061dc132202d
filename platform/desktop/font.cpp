#include <QStringList>
#include <array>
#include <string_view>

#include "platform/desktop/qt/font_data.h"

namespace jotlet {

namespace {

// What stands for a face, best first. The metrics of the first ones are close to those the layouts were drawn for.
struct Substitute {
    std::string_view face;
    std::array<const char*, 4> families;
};

constexpr Substitute kSubstitutes[] = {
    {"MS Sans Serif", {"Liberation Sans", "Arimo", "DejaVu Sans Condensed", "Sans Serif"}},
    {"Small Fonts", {"Liberation Sans", "Arimo", "DejaVu Sans Condensed", "Sans Serif"}},
    {"Arial", {"Liberation Sans", "Arimo", "Nimbus Sans", "Sans Serif"}},
    {"Verdana", {"DejaVu Sans", "Verdana", "Liberation Sans", "Sans Serif"}},
};

QStringList FamiliesOf(std::string_view face)
{
    QStringList families;
    for (const Substitute& one : kSubstitutes) {
        if (one.face != face)
            continue;
        for (const char* family : one.families)
            families << QString::fromLatin1(family);
    }
    if (families.isEmpty())
        families << QString::fromUtf8(face.data(), static_cast<qsizetype>(face.size()))
                 << QStringLiteral("Liberation Sans") << QStringLiteral("Sans Serif");
    return families;
}

// A cell height holds ascent and descent; the character height that fills it has to be searched for.
void FitCell(QFont& font, int cell)
{
    for (int pixels = cell; pixels > 1; --pixels) {
        font.setPixelSize(pixels);
        if (QFontMetrics(font).height() <= cell)
            return;
    }
}

}  // namespace

QFont MakeQtFont(const FontDescription& description)
{
    QFont font;
    font.setFamilies(FamiliesOf(description.face));
    font.setWeight(description.weight >= 700 ? QFont::Bold : QFont::Normal);
    font.setUnderline(description.underline);
    font.setHintingPreference(QFont::PreferFullHinting);
    font.setKerning(false);
    if (description.height > 0)
        FitCell(font, description.height);
    else
        font.setPixelSize(description.height < 0 ? -description.height : 11);
    return font;
}

Font::Font(const FontDescription& description) : data(std::make_unique<Data>(description)) {}
Font::~Font() = default;

}  // namespace jotlet
