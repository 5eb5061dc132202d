// The numbers of the main window; the painted result is looked at in main_frame_test.cpp.
#include "core/frame_geometry.h"

#include <gmock/gmock.h>

namespace jotlet {
namespace {

TEST(FrameGeometryTest, EveryPartStandsByTheSizeOfTheWindow)
{
    constexpr Size kWindow{420, 430};
    constexpr Size kClient{410, 402};
    EXPECT_EQ(FrameTitleRect(kWindow), (Rect{4, 4, 416, 22}));
    EXPECT_EQ(FrameTitleArea(kWindow), (Rect{0, 0, 420, 23}));
    EXPECT_EQ(CaptionButtonRect(kWindow, CaptionButton::Close), Rect::At(398, 5, 15, 15));
    EXPECT_EQ(CaptionButtonRect(kWindow, CaptionButton::Minimise), Rect::At(362, 5, 15, 15));
    EXPECT_EQ(FrameCaptionHit(kWindow), (Rect{4, 4, 418, 24}));
    EXPECT_EQ(PaneBarRect(kClient), Rect::At(1, 0, 408, 25));
    EXPECT_EQ(ToolBarRect(kClient), Rect::At(5, 26, 400, 25));
    EXPECT_EQ(PaneRect(kClient), Rect::At(17, 66, 371, 307));
    const FrameRings rings = LayOutRings(kClient);
    EXPECT_THAT(rings.outer, testing::ElementsAre(Rect{5, 48, 405, 58}, Rect{5, 379, 405, 389}, Rect{5, 48, 15, 389},
                                                  Rect{395, 48, 405, 389}));
    EXPECT_THAT(rings.inner, testing::ElementsAre(Rect{10, 57, 400, 67}, Rect{10, 372, 400, 382}, Rect{10, 57, 22, 382},
                                                  Rect{388, 57, 400, 382}));
    EXPECT_THAT(rings.shadow, testing::ElementsAre(Rect{22, 361, 393, 377}, Rect{387, 69, 393, 377}));
    EXPECT_EQ(rings.header, (Rect{17, 66, 388, 94}));
    EXPECT_EQ(FrameGripHit(kClient), (Rect{395, 387, 415, 407}));
    EXPECT_THAT(FrameShape(kWindow), testing::ElementsAre(Point{3, 0}, Point{0, 3}, Point{0, 430}, Point{420, 430},
                                                          Point{420, 3}, Point{417, 0}));
}

TEST(FrameGeometryTest, MaximiseTogglesBetweenTwoSizesAndStaysOnTheDesktop)
{
    for (const auto& [now, then] : {std::pair(Rect::At(100, 100, 420, 430), Rect::At(100, 100, 560, 580)),
                                    {Rect::At(700, 200, 560, 580), Rect::At(700, 200, 420, 430)},
                                    {Rect::At(0, 0, 560, 430), Rect::At(0, 0, 560, 580)},          // wide alone
                                    {Rect::At(800, 300, 420, 430), Rect::At(720, 220, 560, 580)},  // as far as needed
                                    {Rect::At(-50, -60, 420, 430), Rect::At(0, 0, 560, 580)},
                                    // nearly large, at a fractional scale
                                    {Rect::At(9, 9, 559, 581), Rect::At(9, 9, 420, 430)}})
        EXPECT_EQ(ToggledFrame(now, {0, 0, 1280, 800}), then);
    EXPECT_EQ(ToggledFrame(Rect::At(20, 40, 420, 430), {0, 30, 500, 500}), Rect::At(0, 30, 560, 580))
        << "a desktop that is smaller";
}

}  // namespace
}  // namespace jotlet
