// Order and life: sending, posting, timers, the end of a window.
#include "recorder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using DeliveryTest = WindowTest;

constexpr std::uint32_t kProbe = 5000;

std::vector<MessageParam> Probes(const Recorder& recorder)
{
    std::vector<MessageParam> values;
    for (const WndMessage& one : recorder.Of(kProbe))
        values.push_back(one.wParam);
    return values;
}

TEST_F(DeliveryTest, SentMessageOvertakesPostedOnes)
{
    Recorder top({}, [](const WndMessage& m) -> Recorder::Answer {
        return m.message == kProbe ? std::optional<MessageParam>(m.wParam * 2) : std::nullopt;
    });
    PostTo(top.window, kProbe, 1, 0);
    PostTo(top.window, kProbe, 2, 0);
    EXPECT_EQ(SendTo(top.window, kProbe, 21, 0), 42);
    ServeEvents();
    EXPECT_THAT(Probes(top), ElementsAre(21, 1, 2));
}

TEST_F(DeliveryTest, PostToAWindowThatDiesFirstIsDroppedAndDestroyingItAgainDoesNoHarm)
{
    Recorder top({}, [](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmDestroy)
            DestroyNativeWindow(m.window);
        return std::nullopt;
    });
    const WindowHandle handle = top.window;
    PostTo(handle, kProbe, 1, 0);
    DestroyNativeWindow(handle);
    DestroyNativeWindow(handle);
    ServeEvents();
    EXPECT_TRUE(Probes(top).empty());
    EXPECT_EQ(top.Of(kWmDestroy).size(), 1U);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(SendTo(handle, kProbe, 1, 0), 0);
    EXPECT_EQ(ClientRect(handle), Rect{});
    EXPECT_EQ(UserWord(handle), nullptr);
}

TEST_F(DeliveryTest, WindowDestroyedInItsOwnHandlerIsGoneAfterwardsWithItsChildren)
{
    Recorder top({}, [](const WndMessage& m) -> Recorder::Answer {
        if (m.message != kProbe)
            return std::nullopt;
        DestroyNativeWindow(m.window);
        return 7;
    });
    Recorder child(top, Rect::At(0, 0, 10, 10));
    EXPECT_EQ(SendTo(top.window, kProbe, 0, 0), 7);
    EXPECT_FALSE(IsWindow(top.window));
    EXPECT_FALSE(IsWindow(child.window));
    EXPECT_EQ(child.Of(kWmDestroy).size(), 1U);
    ServeEvents();
}

TEST_F(DeliveryTest, RefusedCreationGivesNoWindowAndARefusedCloseKeepsIt)
{
    EXPECT_EQ(CreateNativeWindow("NoSuchClass", "", 0, {}, 0), 0U);
    Recorder any({});
    for (const WindowHandle parent : {WindowHandle{0}, WindowHandle{123456}})
        EXPECT_EQ(CreateNativeWindow(ClassNameOf(any.window), "", kStyleChild, {}, parent), 0U);
    any.answer = [](const WndMessage& m) { return m.message == kWmClose ? Recorder::Answer(0) : std::nullopt; };
    SendTo(any.window, kWmClose, 0, 0);
    EXPECT_TRUE(IsWindow(any.window));
    any.answer = {};
    SendTo(any.window, kWmClose, 0, 0);
    EXPECT_FALSE(IsWindow(any.window));
}

TEST_F(DeliveryTest, TimersAreToldApartAndStop)
{
    Recorder top({});
    StartTimer(top.window, 7, Milliseconds(5));
    StartTimer(top.window, 8, Milliseconds(5));
    const auto ticks = [&](int id) {
        int count = 0;
        for (const WndMessage& one : top.Of(kWmTimer))
            count += one.wParam == id;
        return count;
    };
    ASSERT_TRUE(ServeUntil([&] { return ticks(7) >= 2 && ticks(8) >= 2; }, Milliseconds(2000)));
    StopTimer(top.window, 7);
    const int stopped = ticks(7);
    const int running = ticks(8);
    ASSERT_TRUE(ServeUntil([&] { return ticks(8) >= running + 3; }, Milliseconds(2000)));
    EXPECT_EQ(ticks(7), stopped);
    Recorder brief({}, [](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kWmTimer) {
            StopTimer(m.window, static_cast<int>(m.wParam));
            DestroyNativeWindow(m.window);
        }
        return std::nullopt;
    });
    StartTimer(brief.window, 1, Milliseconds(1));
    ASSERT_TRUE(ServeUntil([&] { return !IsWindow(brief.window); }, Milliseconds(2000)));
    ServeEvents();
    EXPECT_EQ(brief.Of(kWmTimer).size(), 1U);
}

TEST_F(DeliveryTest, FocusGoesWhereItIsPutAndBothWindowsAreTold)
{
    Recorder top({});
    Recorder a(top, Rect::At(0, 0, 10, 10));
    Recorder b(top, Rect::At(20, 0, 10, 10));
    ServeUntil([&] { return IsForeground(top.window); }, Milliseconds(1000));
    FocusWindow(a.window);
    EXPECT_EQ(FocusedWindow(), a.window);
    FocusWindow(b.window);
    EXPECT_EQ(FocusedWindow(), b.window);
    EXPECT_EQ(a.Of(kWmSetFocus).size(), 1U);
    EXPECT_EQ(a.Of(kWmKillFocus).size(), 1U);
    EXPECT_EQ(b.Of(kWmSetFocus).size(), 1U);
    top.Clear();
    TestKey(a.window, kKeyDown);
    EXPECT_EQ(a.Of(kWmKeyDown).size(), 1U);
    EXPECT_TRUE(top.Of(kWmKeyDown).empty()) << "a key that no child wants goes no further";
}

TEST_F(DeliveryTest, KeysArriveAsVirtualKeysAndThenAsText)
{
    Recorder top({});
    top.Clear();
    TestType(top.window, "a\xC3\xA9");
    TestKey(top.window, kKeyTab);
    TestKey(top.window, kKeyDown, {.shift = true});
    TestKey(top.window, kKeyF1 + 4);
    TestKey(top.window, 'Q', {.alt = true});
    std::vector<std::pair<std::uint32_t, MessageParam>> got;
    for (const WndMessage& one : top.messages) {
        if (one.message >= kWmKeyDown && one.message <= kWmSysKeyUp && one.message != kWmKeyUp &&
            one.message != kWmSysKeyUp)
            got.emplace_back(one.message, one.wParam);
    }
    using P = std::pair<std::uint32_t, MessageParam>;
    EXPECT_THAT(
        got, ElementsAre(P{kWmKeyDown, 'A'}, P{kWmChar, 'a'}, P{kWmChar, 0xE9}, P{kWmKeyDown, kKeyTab}, P{kWmChar, 9},
                         P{kWmKeyDown, kKeyDown}, P{kWmKeyDown, kKeyF1 + 4}, P{kWmSysKeyDown, 'Q'}));
}

}  // namespace
}  // namespace jotlet
