#include "skin/drawing.h"

#include "support/window_test.h"

namespace jotlet {
namespace {

TEST(ColourTest, ChannelsStopAtTheirEnds)
{
    EXPECT_EQ(Lighten(0xFEFEFE, 40), 0xFFFFFFu);
    EXPECT_EQ(Darken(0x100000, 40), 0u);
    EXPECT_EQ(Lighten(0x102030, 1), 0x112131u);
    EXPECT_EQ(Darken(0x80FF02, 3), 0x7DFC00u);
}

TEST(ColourTest, WithoutStepsTheColourStays)
{
    for (const int steps : {0, -5}) {
        EXPECT_EQ(Lighten(0xFF102030, steps), 0xFF102030u);
        EXPECT_EQ(Darken(0x102030, steps), 0x102030u);
    }
    EXPECT_EQ(Darken(0xFF102030, 1), 0x0F1F2Fu) << "the byte above blue is cleared";
}

class DrawingTest : public WindowTest {
protected:
    DrawingTest() : canvas({20, 20}), dc(MakeBitmapContext(canvas)) { dc->FillRect({0, 0, 20, 20}, kGround); }
    Colour At(int x, int y)
    {
        dc.reset();  // all that was drawn is in the bitmap
        return canvas.Pixel({x, y});
    }
    static constexpr Colour kGround = 0x202020;
    static constexpr Colour kA = 0x0000FF;
    static constexpr Colour kB = 0x00FF00;
    Bitmap canvas;
    std::unique_ptr<DeviceContext> dc;
};

TEST_F(DrawingTest, ReplacingChangesExactlyOneColour)
{
    dc->FillRect({0, 0, 10, 20}, kA);
    dc.reset();
    EXPECT_EQ(ReplaceColour(canvas, kA, kB), 1);
    EXPECT_EQ(canvas.Pixel({5, 5}), kB);
    EXPECT_EQ(canvas.Pixel({15, 5}), kGround);
    EXPECT_EQ(ReplaceColour(canvas, 0x123456, 0), 1);
    EXPECT_EQ(canvas.Pixel({15, 5}), kGround);
}

TEST_F(DrawingTest, NoBitmapFailsUnlessThereIsNothingToReplace)
{
    Bitmap none;
    EXPECT_EQ(ReplaceColour(none, 1, 2), 0);
    EXPECT_EQ(ReplaceColour(none, 7, 7), 1);
    DrawBitmap(*dc, none, 0, 0, 1, 2);
    EXPECT_EQ(At(0, 0), kGround);
}

TEST_F(DrawingTest, ADrawnBitmapKeepsItsReplacedColours)
{
    Bitmap square({4, 4});
    DrawBitmap(*dc, square, 3, 3, 0, kA);
    EXPECT_EQ(square.Pixel({0, 0}), kA);
    EXPECT_EQ(At(3, 3), kA);
    EXPECT_EQ(canvas.Pixel({7, 3}), kGround);
}

TEST_F(DrawingTest, WithoutColoursABitmapIsLeftAlone)
{
    Bitmap square({4, 4});
    DrawBitmap(*dc, square, 0, 0);
    EXPECT_EQ(square.Pixel({0, 0}), 0u);
}

TEST_F(DrawingTest, ABevelIsLitFromTheLeftTop)
{
    DrawBevel(*dc, {2, 2, 15, 12}, kA, kB);
    EXPECT_EQ(At(2, 2), kB);
    EXPECT_EQ(canvas.Pixel({8, 2}), kB);
    EXPECT_EQ(canvas.Pixel({2, 8}), kB);
    EXPECT_EQ(canvas.Pixel({8, 12}), kA);
    EXPECT_EQ(canvas.Pixel({14, 8}), kA) << "one pixel inside the right edge";
    EXPECT_EQ(canvas.Pixel({15, 8}), kGround);
}

TEST_F(DrawingTest, ASunkenBevelIsLitFromTheRightBottom)
{
    DrawSunkenBevel(*dc, {2, 2, 15, 12}, kA, kB);
    EXPECT_EQ(At(8, 2), kA);
    EXPECT_EQ(canvas.Pixel({2, 8}), kA);
    EXPECT_EQ(canvas.Pixel({2, 12}), kA) << "the bottom edge starts one pixel later";
    EXPECT_EQ(canvas.Pixel({3, 12}), kB);
    EXPECT_EQ(canvas.Pixel({15, 8}), kB);
}

TEST(PictureTest, ANameThatIsNoPictureIsABrokenBuild)
{
    EXPECT_THROW(LoadResourceBitmap("no such picture.bmp"), std::runtime_error);
    EXPECT_TRUE(LoadResourceBitmap("tbar1.bmp"));
}

}  // namespace
}  // namespace jotlet
