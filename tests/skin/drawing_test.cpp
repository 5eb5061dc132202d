#include "skin/drawing.h"

#include "platform/base/paths.h"
#include "skin/skin_bitmaps.h"
#include "support/temp_folder.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

TEST(ColourTest, ChannelsStopAtTheirEnds)
{
    EXPECT_EQ(Lighten(0xFEFEFE, 40), 0xFFFFFFu);
    EXPECT_EQ(Darken(0x100000, 40), 0u);
    EXPECT_EQ(Lighten(0x102030, 1), 0x112131u);
    EXPECT_EQ(Darken(0x80FF02, 3), 0x7DFC00u);
    for (const int steps : {0, -5}) {
        EXPECT_EQ(Lighten(0xFF102030, steps), 0xFF102030u);
        EXPECT_EQ(Darken(0x102030, steps), 0x102030u);
    }
    EXPECT_EQ(Darken(0xFF102030, 1), 0x0F1F2Fu) << "the byte above blue is cleared";
}

class DrawingTest : public WindowTest {
protected:
    static constexpr Colour kA = 0x0000FF;
    static constexpr Colour kB = 0x00FF00;
    static constexpr Colour kGround = 0x202020;

    // What is drawn on an empty canvas, 'a' and 'b' in those colours.
    static std::vector<std::string> Art(const std::function<void(DeviceContext&)>& draw)
    {
        Bitmap canvas({8, 6});
        {
            const auto dc = MakeBitmapContext(canvas);
            dc->FillRect({0, 0, 8, 6}, kGround);
            draw(*dc);
        }
        std::vector<std::string> rows(6);
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 8; ++x) {
                const Colour c = canvas.Pixel({x, y});
                rows[static_cast<std::size_t>(y)] += c == kA ? 'a' : c == kB ? 'b' : c == kGround ? '.' : '?';
            }
        }
        return rows;
    }
};

TEST_F(DrawingTest, ABevelIsLitFromOneCornerAndAFrameHasFourSides)
{
    EXPECT_THAT(Art([](DeviceContext& dc) {
                    DrawRect(dc, {1, 1, 6, 4}, kA);
                }),
                ElementsAre("........", ".aaaaaa.", ".a....a.", ".a....a.", ".aaaaaa.", "........"));
    EXPECT_THAT(Art([](DeviceContext& dc) {
                    DrawBevel(dc, {1, 1, 7, 4}, kA, kB);
                }),
                ElementsAre("........", ".bbbbbb.", ".b....a.", ".b....a.", ".baaaaa.", "........"));
    EXPECT_THAT(Art([](DeviceContext& dc) {
                    DrawSunkenBevel(dc, {1, 1, 6, 4}, kA, kB);
                }),
                ElementsAre("........", ".aaaaaa.", ".a....b.", ".a....b.", ".abbbbb.", "........"));
}

TEST_F(DrawingTest, ADrawnBitmapKeepsItsReplacedColours)
{
    Bitmap square({2, 2});
    EXPECT_THAT(Art([&](DeviceContext& dc) { DrawBitmap(dc, square, 3, 1, 0, kA); }),
                ElementsAre("........", "...aa...", "...aa...", "........", "........", "........"));
    EXPECT_EQ(ReplaceColour(square, 0x123456, kB), 1);
    EXPECT_EQ(square.Pixel({1, 1}), kA);
    Bitmap none;
    EXPECT_EQ(ReplaceColour(none, 1, 2), 0);
    EXPECT_EQ(ReplaceColour(none, 7, 7), 1) << "nothing to replace";
    DrawBitmap(*MakeBitmapContext(square), none, 0, 0, 1, 2);
    EXPECT_EQ(square.Pixel({0, 0}), kA);
    EXPECT_THROW(LoadResourceBitmap("no such picture.bmp"), std::runtime_error) << "a broken build";
    EXPECT_TRUE(LoadResourceBitmap("tbar1.bmp"));
}

TEST_F(DrawingTest, EachColourOfASkinGoesToItsPlaceUntilTheSkinIsFreed)
{
    const test::TempFolder folder;
    test::UsePortableProgram(folder.Path());
    std::filesystem::create_directory(folder.File("Styles"));
    using Colours = std::pair<const char*, Colour SkinTable::*>;
    const Colours colours[] = {{"colorBack", &SkinTable::colorBack},
                               {"colorBackUp", &SkinTable::colorBackUp},
                               {"colorBackDown", &SkinTable::colorBackDown},
                               {"colorTitle", &SkinTable::colorTitle},
                               {"colorTitleUp", &SkinTable::colorTitleUp},
                               {"colorTitleDown", &SkinTable::colorTitleDown},
                               {"colorFrame", &SkinTable::colorFrame},
                               {"colorFrameUp", &SkinTable::colorFrameUp},
                               {"colorFrameDown", &SkinTable::colorFrameDown},
                               {"colorTextTitle", &SkinTable::colorTextTitle},
                               {"colorPanelFrame", &SkinTable::colorPanelFrame}};
    std::string text = "[Preference]\nname=Metal\n";
    Colour next = 0;
    for (const auto& [key, place] : colours)
        text += std::string(key) + "=" + std::to_string(++next) + ",0,0\n";
    test::WriteAll(folder.File("Styles/1_Metallic.ini"), text);
    const SkinTable& table = ReloadSkin();
    next = 0;
    for (const auto& [key, place] : colours)
        EXPECT_EQ(table.*place, ++next) << key;
    FreeSkin();
    EXPECT_EQ(table.colorBack, kUnsetColour);
    SetProgramPath({});
}

}  // namespace
}  // namespace jotlet
