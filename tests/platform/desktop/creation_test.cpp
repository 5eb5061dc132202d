#include <vector>

#include "platform/desktop/device_context.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

std::vector<std::uint32_t> seen;

MessageParam Record(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    seen.push_back(message);
    return DefaultProcedure(window, message, wParam, lParam);
}

class CreationTest : public WindowTest {
protected:
    CreationTest()
    {
        RegisterWindowClass({.procedure = Record, .background = Background::White, .name = "CreationRecorder"});
        seen.clear();
    }
    ~CreationTest() override { DestroyNativeWindow(window); }

    WindowHandle window = 0;
};

TEST_F(CreationTest, CreateComesBeforeTheFirstSizeAndPostedMessagesComeLater)
{
    window = CreateNativeWindow("CreationRecorder", "A", 0, Rect::At(10, 20, 100, 50), 0);
    ASSERT_NE(window, 0U);
    PostTo(window, kWmCreated, 0, 0);
    EXPECT_THAT(seen, testing::ElementsAre(kWmCreate, kWmMove, kWmSize));
    ServeEvents();
    EXPECT_EQ(seen.back(), kWmCreated);
    EXPECT_EQ(WindowRect(window), Rect::At(10, 20, 100, 50));
}

TEST_F(CreationTest, ShownWindowIsErasedWithItsClassBackground)
{
    window = CreateNativeWindow("CreationRecorder", "A", 0, Rect::At(0, 0, 30, 30), 0);
    ShowNative(window, true);
    UpdateNow(window);
    EXPECT_EQ(PixelAt(window, {5, 5}), Rgb(255, 255, 255));
    DrawOutsidePaint(window, [](DeviceContext& dc) { dc.FillRect({0, 0, 10, 10}, Rgb(1, 2, 3)); });
    EXPECT_EQ(PixelAt(window, {5, 5}), Rgb(1, 2, 3));
    EXPECT_EQ(PixelAt(window, {15, 15}), Rgb(255, 255, 255));
}

}  // namespace
}  // namespace jotlet
