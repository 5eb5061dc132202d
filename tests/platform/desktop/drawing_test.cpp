// Shapes, pictures and text, drawn into bitmaps and read back.
#include "platform/desktop/device_context.h"
#include "support/temp_folder.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

constexpr Colour kInk = Rgb(200, 10, 20);
constexpr Colour kPaper = Rgb(255, 255, 255);

class DrawingTest : public WindowTest {
protected:
    DrawingTest() { dc->FillRect({0, 0, 200, 100}, kPaper); }

    // The smallest rectangle round everything that is not paper; empty when there is nothing.
    Rect Ink() const
    {
        Rect ink{1000, 1000, -1, -1};
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 200; ++x) {
                if (bitmap.Pixel({x, y}) == kPaper)
                    continue;
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
            }
        }
        return ink.right < 0 ? Rect{} : ink;
    }
    Rect InkOf(std::string_view text, const Rect& area, std::uint32_t flags)
    {
        dc->FillRect({0, 0, 200, 100}, kPaper);
        dc->DrawText(area, text, sans, kInk, flags);
        return Ink();
    }

    Bitmap bitmap{Size{200, 100}};
    std::unique_ptr<DeviceContext> dc = MakeBitmapContext(bitmap);
    Font sans{{"MS Sans Serif", -11}};
};

TEST_F(DrawingTest, ShapesCoverExactlyTheirPixels)
{
    Bitmap two(Size{2, 1});
    MakeBitmapContext(two)->FillRect({0, 0, 1, 1}, kInk);
    const struct {
        std::function<void()> draw;
        Rect ink;
        Point on, off;
    } rows[] = {
        {[&] { dc->DrawLine(10, 5, 20, 5, kInk); }, {10, 5, 21, 6}, {20, 5}, {21, 5}},
        {[&] { dc->DrawLine(7, 30, 7, 20, kInk); }, {7, 20, 8, 31}, {7, 30}, {7, 31}},
        {[&] { dc->DrawLine(10, 10, 20, 15, kInk); }, {10, 10, 21, 16}, {20, 15}, {20, 10}},
        {[&] {
             dc->FrameRect({10, 10, 14, 13}, kInk);
         },
         {10, 10, 14, 13},
         {13, 12},
         {11, 11}},
        {[&] {
             dc->StretchBitmap(two, {10, 10, 50, 20});
         },
         {10, 10, 50, 20},
         {29, 15},
         {9, 15}},
        {[&] {
             dc->SetClip({0, 0, 50, 50}), dc->FillRect({40, 40, 60, 60}, kInk);
         },
         {40, 40, 50, 50},
         {49, 49},
         {}},
        {[&] {
             dc->FillRect({40, 40, 60, 60}, kInk);
         },
         {40, 40, 60, 60},
         {59, 59},
         {}},
    };
    for (const auto& row : rows) {
        dc->ClearClip();
        dc->FillRect({0, 0, 200, 100}, kPaper);
        row.draw();
        EXPECT_EQ(Ink(), row.ink);
        EXPECT_EQ(bitmap.Pixel(row.on), kInk) << row.ink;
        EXPECT_EQ(bitmap.Pixel(row.off), kPaper) << row.ink;
    }
}

TEST_F(DrawingTest, PatternFrameBeginsAtTheAreasCorner)
{
    Bitmap pattern(Size{2, 2});
    auto onPattern = MakeBitmapContext(pattern);
    onPattern->FillRect({0, 0, 2, 2}, kPaper);
    onPattern->FillRect({0, 0, 1, 1}, kInk);
    dc->FrameRectPattern({11, 7, 21, 17}, pattern);
    EXPECT_EQ(bitmap.Pixel({11, 7}), kInk);
    EXPECT_EQ(bitmap.Pixel({12, 7}), kPaper);
    EXPECT_EQ(bitmap.Pixel({13, 7}), kInk);
    EXPECT_EQ(bitmap.Pixel({11, 9}), kInk);
}

TEST_F(DrawingTest, SingleLineStandsWhereItsFlagsSay)
{
    const Rect area{20, 20, 180, 80};
    const Rect left = InkOf("HxH", area, kTextSingleLine);
    EXPECT_NEAR(left.left, 20, 2);
    EXPECT_NEAR(left.top, 22, 3);
    const Rect right = InkOf("HxH", area, kTextSingleLine | kTextRight | kTextBottom);
    EXPECT_NEAR(right.right, 180, 2);
    EXPECT_NEAR(right.bottom, 78, 3);
    const Rect middle = InkOf("HxH", area, kTextSingleLine | kTextCentre | kTextVCentre);
    EXPECT_NEAR(middle.left + middle.right, 200, 2);
    EXPECT_NEAR(middle.top + middle.bottom, 100, 4);
}

TEST_F(DrawingTest, LongTextIsClippedToItsAreaOrEndsInAnEllipsisThere)
{
    const std::string text = "a rather long line of text";
    const Rect area{10, 10, 60, 40};
    EXPECT_LE(InkOf(text, area, kTextSingleLine).right, 60);
    EXPECT_GT(InkOf(text, area, kTextSingleLine | kTextNoClip).right, 60);
    const Rect cut = InkOf(text, area, kTextSingleLine | kTextEndEllipsis);
    EXPECT_LE(cut.right, 60);
    EXPECT_GT(cut.right, 40);
    EXPECT_EQ(InkOf("short", area, kTextSingleLine | kTextEndEllipsis), InkOf("short", area, kTextSingleLine));
}

TEST_F(DrawingTest, WrappedTextBreaksAtWordsAndCutsWithAnEllipsisAtTheLastWholeLine)
{
    const int line = dc->FontHeight(sans);
    const std::string text = "one two three four five six seven eight nine ten";
    const int all = dc->DrawText({0, 0, 60, 100}, text, sans, kInk, kTextWordBreak);
    EXPECT_GT(all, 2 * line);
    EXPECT_EQ(dc->MeasureWrapped(text, sans, 60).height, all);
    const Rect cut = InkOf(text, {0, 0, 60, 2 * line}, kTextWordBreak | kTextEndEllipsis);
    EXPECT_LE(cut.bottom, 2 * line);
    EXPECT_GT(cut.bottom, line);
    EXPECT_EQ(dc->MeasureWrapped("one\r\ntwo\rthree\nfour", sans, 1000).height, 4 * dc->MeasureText("x", sans).height);
}

TEST_F(DrawingTest, LineThatEndsAtABreakShowsAnEllipsisWhenMoreFollows)
{
    const int line = dc->MeasureText("x", sans).height;
    const Rect alone = InkOf("ab", {0, 0, 100, line}, kTextWordBreak | kTextEndEllipsis);
    const Rect cut = InkOf("ab\r\nmore", {0, 0, 100, line}, kTextWordBreak | kTextEndEllipsis);
    EXPECT_GT(cut.right, alone.right);
    EXPECT_LE(cut.bottom, line);
}

// The mark stands behind the places, and a text whose first place would be out of sight begins near it.
TEST_F(DrawingTest, WhatIsFoundIsMarkedAndBroughtIntoSight)
{
    constexpr Colour kMark = Rgb(250, 240, 10);
    const int line = dc->MeasureText("x", sans).height;
    const auto marked = [&](const Rect& area, const std::string& text, std::uint32_t flags) {
        dc->FillRect({0, 0, 200, 100}, kPaper);
        dc->DrawMarkedText(area, text, "NEEDLE", sans, kInk, kMark, flags);
        Rect found{1000, 1000, -1, -1};
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 200; ++x) {
                if (bitmap.Pixel({x, y}) == kMark)
                    found = {std::min(found.left, x), std::min(found.top, y), std::max(found.right, x + 1),
                             std::max(found.bottom, y + 1)};
            }
        }
        return found.right < 0 ? Rect{} : found;
    };
    const int before = dc->MeasureText("a needle", sans).width - dc->MeasureText("needle", sans).width;
    const Rect one = marked({10, 10, 190, 90}, "a needle b", kTextSingleLine);
    EXPECT_NEAR(one.left, 10 + before, 1);
    EXPECT_NEAR(one.Width(), dc->MeasureText("needle", sans).width, 1);
    const Rect wrapped = marked({0, 0, 60, 3 * line}, "one two a needle in it", kTextWordBreak);
    EXPECT_GE(wrapped.top, line - 1);
    EXPECT_EQ(marked({0, 0, 190, 90}, "nothing here", kTextWordBreak), Rect{});
    const std::string hay = "hay hay hay hay hay hay hay hay hay hay hay hay ";
    for (const std::uint32_t flags : {kTextSingleLine | kTextEndEllipsis, kTextWordBreak | kTextEndEllipsis})
        EXPECT_FALSE(marked({0, 0, 90, line}, hay + "needle", flags).Empty()) << flags;
}

TEST_F(DrawingTest, FontsHaveTheirHeights)
{
    for (const int cell : {20, 35}) {
        const Font arial({"Arial", cell});
        const int height = dc->MeasureText("Hg", arial).height;
        EXPECT_LE(height, cell);
        EXPECT_GE(height, cell - 2);
    }
    EXPECT_GT(dc->MeasureText("R&D", sans).width, dc->MeasureText("RD", sans).width);
    EXPECT_EQ(dc->MeasureText("caf\xE9", sans), dc->MeasureText("caf\xC3\xA9", sans));
    const Font bold({"MS Sans Serif", -11, 700});
    EXPECT_GT(dc->MeasureText("weight", bold).width, dc->MeasureText("weight", sans).width);
    const Font small({"Small Fonts", -9});
    EXPECT_LT(dc->FontHeight(small), dc->FontHeight(sans));
    const Font link({"Small Fonts", -9, 400, true});
    EXPECT_EQ(dc->MeasureText("weight", link).width, dc->MeasureText("weight", small).width);
    const Font unknown({"No Such Face", 0});
    EXPECT_GT(dc->FontHeight(unknown), 5);
}

TEST_F(DrawingTest, AnyTextIsDrawnWithoutHarm)
{
    const std::string texts[] = {
        "",
        "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D abc \xD8\xB3\xD9\x84\xD8\xA7\xD9\x85",
        "\xE6\xBC\xA2\xE5\xAD\x97\xE4\xBB\xAE\xE5\x90\x8D",
        "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7 \xF0\x9F\x87\xA9\xF0\x9F\x87\xAA",
        "e\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81",
        "\xE2\x80\xAE reversed \xE2\x80\xA9 paragraph \xE2\x80\xA8 line",
        "\x01\x02\x7F\xFF\xFE",
        std::string(200000, 'w'),
        std::string(3000, '\n'),
    };
    for (const std::string& text : texts) {
        for (const std::uint32_t flags : {0U, kTextSingleLine | kTextEndEllipsis, kTextWordBreak | kTextEndEllipsis,
                                          kTextWordBreak | kTextCentre, kTextSingleLine | kTextVCentre | kTextRight})
            dc->DrawText({10, 10, 90, 50}, text, sans, kInk, flags);
        const Rect ink = Ink();
        EXPECT_TRUE(ink == Rect{} || (ink.left >= 10 && ink.right <= 90 && ink.top >= 10 && ink.bottom <= 50)) << ink;
    }
}

TEST_F(DrawingTest, ReplaceTouchesExactlyOneColourAndCopiesStayApart)
{
    Bitmap glyph(Size{4, 1});
    MakeBitmapContext(glyph)->FillRect({0, 0, 2, 1}, kMagenta);
    const Bitmap copy = glyph;
    EXPECT_EQ(glyph.Replace(kMagenta, kInk), 1);
    EXPECT_EQ(glyph.Pixel({0, 0}), kInk);
    EXPECT_EQ(glyph.Pixel({2, 0}), 0U);
    EXPECT_EQ(copy.Pixel({0, 0}), kMagenta);
    EXPECT_EQ(glyph.MakeTransparent(kInk), 1);
    EXPECT_EQ(glyph.Pixel({1, 0}), kNoColour);
    dc->DrawBitmap(glyph, 10, 10);
    EXPECT_EQ(bitmap.Pixel({10, 10}), kPaper);
    EXPECT_EQ(bitmap.Pixel({12, 10}), 0U);
    for (const Point outside : {Point{-1, 0}, {0, -1}, {4, 0}, {0, 1}})
        EXPECT_EQ(glyph.Pixel(outside), kNoColour) << outside;
    Bitmap none;
    EXPECT_EQ(none.Replace(1, 2), 0);
    EXPECT_EQ(none.Replace(1, 1), 1);
    EXPECT_EQ(none.GetSize(), Size{});
    dc->DrawBitmap(none, 0, 0);
}

TEST_F(DrawingTest, ProgramsPicturesHaveTheirSizes)
{
    EXPECT_TRUE(Bitmap::FromResource("no such picture").IsNone());
    EXPECT_TRUE(Bitmap::FromResource(-1).IsNone());
    dc->DrawIcon(987654, 50, 50);
    EXPECT_EQ(Ink(), Rect{});
    // The pixels that icons of 12 and of 16 take at the scales between 1 and 3, and beyond.
    for (const int side : {12, 15, 16, 18, 20, 21, 24, 28, 30, 32, 36, 40, 48, 60}) {
        for (const int icon : {2000, 3000}) {
            dc->FillRect({0, 0, 200, 100}, kPaper);
            dc->DrawIcon(icon, 10, 10, side);
            EXPECT_GT(Ink().Width(), side / 3) << icon << " at " << side;
        }
    }
}

std::string BmpHeader(std::uint32_t width, std::uint32_t height)
{
    std::string bytes = "BM";
    const auto add = [&](std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(value >> (8 * i) & 255);
    };
    add(0x7FFFFFFF, 4);
    add(0, 4);
    add(54, 4);
    add(40, 4);
    add(width, 4);
    add(height, 4);
    add(1, 2);
    add(24, 2);
    for (int i = 0; i < 6; ++i)
        add(0, 4);
    return bytes;
}

TEST_F(DrawingTest, PictureFilesAreReadAndBadOnesRefused)
{
    const test::TempFolder folder;
    const auto read = [&](const std::string& bytes, int& left) {
        test::WriteAll(folder.File("a.bmp"), bytes);
        return Bitmap::FromFile(folder.File("a.bmp"), left);
    };
    int left = 1;
    const std::string pixel = BmpHeader(1, 1) + std::string("\x14\x0A\xC8\0", 4);
    EXPECT_EQ(read(pixel, left).Pixel({0, 0}), kInk);
    EXPECT_EQ(left, 0);
    EXPECT_TRUE(read(pixel, left).IsNone()) << "nothing is left for another one";
    left = 1 << 30;
    EXPECT_TRUE(Bitmap::FromFile("/no/such/file.bmp", left).IsNone());
    EXPECT_TRUE(Bitmap::FromFile("/", left).IsNone());
    for (const std::string& bad :
         {std::string(), std::string("BM"), BmpHeader(20000, 20000), BmpHeader(4097, 1), BmpHeader(0x7FFFFFFF, 2),
          BmpHeader(0, 0), std::string("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>")})
        EXPECT_TRUE(read(bad, left).IsNone()) << bad.size();
}

}  // namespace
}  // namespace jotlet
