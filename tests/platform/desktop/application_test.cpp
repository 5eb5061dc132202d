// The loop, accelerators, modal runs, watches, menus and boxes.
#include <unistd.h>

#include <array>

#include "platform/desktop/dialog.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/menu.h"
#include "platform/desktop/message_box.h"
#include "recorder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using ApplicationTest = WindowTest;

constexpr std::uint32_t kStep = 7000;

constexpr std::array<Accelerator, 3> kKeys = {{
    {.key = kKeyDelete, .command = 116},
    {.key = 'F', .control = true, .command = 101},
    {.key = '1', .alt = true, .command = 108},
}};

std::vector<MessageParam> Commands(const Recorder& recorder)
{
    std::vector<MessageParam> commands;
    for (const WndMessage& one : recorder.Of(kWmCommand))
        commands.push_back(one.wParam);
    return commands;
}

// Runs the loop round `act`, with the accelerators in force.
void RunWith(Recorder& target, const std::function<void()>& act)
{
    target.answer = [&, act](const WndMessage& m) -> Recorder::Answer {
        if (m.message == kStep) {
            act();
            QuitLoop(5);
        }
        return std::nullopt;
    };
    PostTo(target.window, kStep, 0, 0);
    EXPECT_EQ(TheApplication()->Run(target.window, kKeys), 5);
}

TEST_F(ApplicationTest, KeysBecomeCommandsOnlyWithTheirExactModifiers)
{
    Recorder top({});
    RunWith(top, [&] {
        TestKey(top.window, kKeyDelete);
        TestKey(top.window, 'F', {.control = true});
        TestKey(top.window, 'F');
        TestKey(top.window, '1', {.alt = true});
        TestKey(top.window, kKeyDelete, {.control = true});
    });
    EXPECT_THAT(Commands(top), ElementsAre(116, 101, 108));
    EXPECT_EQ(top.Of(kWmKeyDown).size(), 2U);
}

TEST_F(ApplicationTest, KeysOfATextEditAreItsOwn)
{
    DialogTemplate form{.id = 1, .width = 100, .height = 40};
    form.controls = {{.kind = ControlKind::Edit, .id = 10, .x = 5, .y = 5, .width = 80, .height = 12}};
    Recorder top({});
    const WindowHandle dialog = CreateDialogWindow(
        form, top.window, [](WindowHandle, std::uint32_t, MessageParam, MessageParam) -> MessageParam { return 0; },
        nullptr);
    ShowNative(dialog, true);
    SetItemTextOf(dialog, 10, "abc");
    RunWith(top, [&] { TestKey(DialogItem(dialog, 10), kKeyDelete); });
    EXPECT_TRUE(Commands(top).empty());
    EXPECT_EQ(ItemText(dialog, 10), "bc");
    EXPECT_EQ(ClassNameOf(DialogItem(dialog, 10)), "Edit");
    DestroyNativeWindow(dialog);
}

TEST_F(ApplicationTest, ModalRunsNestAndGiveTheirResults)
{
    Recorder top({});
    Recorder outer({.parent = top.window, .show = false});
    Recorder inner({.parent = outer.window, .show = false});
    int innerResult = 0;
    WhenModal([&](WindowHandle window) {
        EXPECT_EQ(window, outer.window);
        EXPECT_EQ(TopModal(), outer.window);
        WhenModal([&](WindowHandle second) {
            EXPECT_EQ(ModalDepth(), 2);
            EndModal(second, 22);
        });
        innerResult = RunModal(inner.window, outer.window);
        EndModal(outer.window, 11);
    });
    EXPECT_EQ(RunModal(outer.window, top.window), 11);
    EXPECT_EQ(innerResult, 22);
    EXPECT_EQ(ModalDepth(), 0);
    EXPECT_EQ(TopModal(), 0U);
}

TEST_F(ApplicationTest, OwnerTakesNoInputDuringAModalRunButItsTimersGoOn)
{
    Recorder top({});
    Recorder modal({.parent = top.window, .show = false});
    StartTimer(top.window, 3, Milliseconds(2));
    TestPress(top.window, {5, 5});
    CaptureMouse(top.window);
    top.Clear();
    WhenModal([&](WindowHandle window) {
        EXPECT_EQ(CapturedWindow(), 0U);
        EXPECT_EQ(top.Of(kWmCaptureLost).size(), 1U);
        TestRelease(top.window, {5, 5});
        PostRequest(top.window, kWmCommand, 1, 0);
        PostTo(top.window, kWmCommand, 2, 0);
        PostRequest(window, kWmCommand, 3, 0);
        ServeEvents();
        EXPECT_THAT(Commands(top), ElementsAre(2)) << "what the user asked for of a window that is blocked now";
        EXPECT_THAT(Commands(modal), ElementsAre(3));
        TestClick(top.window, {5, 5});
        TestKey(top.window, kKeyDown);
        TestWheel(top.window, {5, 5}, 120);
        EXPECT_TRUE(ServeUntil([&] { return !top.Of(kWmTimer).empty(); }, Milliseconds(2000)));
        TestClick(window, {5, 5});
        EndModal(window, 1);
    });
    EXPECT_EQ(RunModal(modal.window, top.window), 1);
    EXPECT_TRUE(top.Input().empty());
    EXPECT_THAT(modal.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp));
    TestClick(top.window, {5, 5});
    EXPECT_THAT(top.Input(), ElementsAre(kWmLButtonDown, kWmLButtonUp));
}

TEST_F(ApplicationTest, FocusIsBackWhereItWasAfterAModalRun)
{
    Recorder top({});
    Recorder child(top, Rect::At(0, 0, 10, 10));
    ServeUntil([&] { return IsForeground(top.window); }, Milliseconds(1000));
    FocusWindow(child.window);
    Recorder modal({.parent = top.window, .show = false});
    WhenModal([](WindowHandle window) { EndModal(window, 1); });
    RunModal(modal.window, top.window);
    EXPECT_TRUE(ServeUntil([&] { return FocusedWindow() == child.window; }, Milliseconds(1000)));
    WhenModal([](WindowHandle window) { DestroyNativeWindow(window); });
    EXPECT_EQ(RunModal(modal.window, top.window), 0) << "it ends with its window";
    EXPECT_EQ(RunModal(modal.window, top.window), 0);
}

TEST_F(ApplicationTest, QuitEndsWhateverIsOpenWithoutConsent)
{
    Recorder top({});
    Recorder modal({.parent = top.window, .show = false});
    const auto ask = [&] { return ShowBox(top.window, "Delete?", "", BoxIcon::Question, BoxButtons::YesNo); };
    const std::function<bool()> openers[] = {
        [&] { return RunModal(modal.window, top.window) != 0; },
        [&] { return ask() == Answer::Yes; },
        [&] { return RunFileDialog(top.window, {}).has_value(); },
        [&] {
            return TrackPopupMenu(top.window, {{"Open", 1}}, {5, 5}), !Commands(top).empty();
        },
    };
    for (const auto& open : openers) {
        int consents = 0;
        top.answer = [&](const WndMessage& m) -> Recorder::Answer {
            if (m.message == kStep) {
                PostTo(top.window, kStep + 1, 0, 0);
                consents += open();
                consents += ask() == Answer::Yes;  // no box after the end has come
            } else if (m.message == kStep + 1) {
                EXPECT_EQ(ModalDepth(), 1);
                QuitLoop(9);
            }
            return std::nullopt;
        };
        PostTo(top.window, kStep, 0, 0);
        EXPECT_EQ(TheApplication()->Run(top.window, {}), 9);
        EXPECT_EQ(consents, 0);
    }
}

TEST_F(ApplicationTest, DescriptorIsServedFromTheLoopUntilTheWatchEnds)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    int calls = 0;
    WatchDescriptor(ends[0], [&] {
        char byte = 0;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
        if (++calls == 2)
            UnwatchDescriptor(ends[0]);
    });
    ASSERT_EQ(write(ends[1], "abc", 3), 3);
    EXPECT_TRUE(ServeUntil([&] { return calls == 2; }, Milliseconds(2000)));
    ServeEvents();
    EXPECT_EQ(calls, 2);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(ApplicationTest, MenuAnswerPostsItsCommandButNotThatOfAGreyedEntry)
{
    Recorder top({});
    const std::vector<MenuEntry> entries = {{"&New...\tCtrl+N", 1}, {}, {"Save", 2, true}, {"Exit", 3}};
    for (const std::size_t index : {0, 1, 2, 3}) {
        static std::size_t pick;
        pick = index;
        const ScopedMenuAnswer answer([](const std::vector<MenuEntry>&) -> std::optional<std::size_t> { return pick; });
        TrackPopupMenu(top.window, entries, {0, 0});
    }
    EXPECT_TRUE(Commands(top).empty());
    ServeEvents();
    EXPECT_THAT(Commands(top), ElementsAre(1, 3));
}

}  // namespace
}  // namespace jotlet
