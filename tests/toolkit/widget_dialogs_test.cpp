#include "platform/desktop/dialog.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "skin/sound.h"
#include "toolkit/about_dialog.h"
#include "toolkit/browse_for_folder.h"
#include "toolkit/compact_progress_dialog.h"
#include "toolkit/date_dialog.h"
#include "toolkit/time_dialog.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WidgetDialogTest : public WindowTest {
protected:
    WidgetDialogTest()
    {
        SetAnimationEnabled(0);
        host.onCommand = nullptr;
    }
    ~WidgetDialogTest() override { SetAnimationEnabled(1); }
    // The child window of a dialog at a client point.
    static WindowHandle ChildAt(WindowHandle dialog, Point p)
    {
        return WindowFromScreenPoint(ClientToScreen(dialog, p));
    }

    Host host;
    std::vector<std::string> played;
    ScopedShellHook shell{[this](std::string_view verb, std::string_view target) {
        played.push_back(std::string(verb) + ' ' + std::string(target.substr(target.rfind('/') + 1)));
    }};
};

TEST_F(WidgetDialogTest, TheDatePickerGivesThePickedDateUnlessItIsCancelled)
{
    for (const bool taken : {true, false}) {
        DateValue date{5, 3, 2000};
        DateDialog dialog(date.day, date.month, date.year, &date);
        if (taken)
            dialog.SetZoom(1);
        WhenModalHasFocus([&](WindowHandle window) {
            TestKey(FocusedWindow(), kKeyRight);
            taken ? TestPushItem(window, kIdOk) : TestKey(FocusedWindow(), kKeyEscape);
        });
        EXPECT_EQ(dialog.DoModal(&host, date_picker_ids::kDialog), taken ? 1 : 0);
        EXPECT_EQ(date, (DateValue{taken ? 6 : 5, 3, 2000}));
    }
    EXPECT_THAT(played, ElementsAre("play open.wav", "play close.wav", "play close.wav")) << "silent without zoom";
}

TEST_F(WidgetDialogTest, APickerOpensWhereItIsToldButOnTheDesktopItsButtonsBelowWhatPicks)
{
    const Rect desktop = DesktopRect();
    constexpr int kFrame = 8;  // the desktop's own frame is known only once the window is up
    Point opened;
    for (const Point wanted : {Point{desktop.right - 10, desktop.bottom - 10}, Point{50, 60}}) {
        DateValue date{5, 3, 2000};
        DateDialog dialog(5, 3, 2000, &date);
        dialog.SetPosition(wanted.x, wanted.y);
        WhenModal([&](WindowHandle window) {
            const Rect place = WindowRect(window);
            opened = {place.left, place.top};
            EXPECT_LE(place.right, desktop.right + kFrame);
            EXPECT_LE(place.bottom, desktop.bottom + kFrame);
            const Rect client = ClientRect(window);
            const Rect ok = ItemRect(window, kIdOk);
            const Rect cancel = ItemRect(window, kIdCancel);
            EXPECT_GE(ok.top, client.bottom - 25);
            EXPECT_LE(ok.bottom, client.bottom);
            EXPECT_LT(ok.right, cancel.left);
            EXPECT_LE(cancel.right, client.right);
            EndModal(window, 0);
        });
        dialog.DoModal(&host, date_picker_ids::kDialog);
    }
    EXPECT_EQ(opened, (Point{50, 60}));
}

TEST_F(WidgetDialogTest, TheTimePickerGivesBothTimesOrASingleOneByADoubleClick)
{
    const TimeValue from{8, 0, 0, kBeforeNoon};
    for (const bool single : {false, true}) {
        TimeValue start, end;
        TimeDialog dialog(from, from, &start, &end);
        if (single)
            dialog.SetSingleTime();
        WhenModalHasFocus([&](WindowHandle window) {
            if (single) {
                TestDoubleClick(FocusedWindow(), {20, 5});
                return;
            }
            TestKey(FocusedWindow(), kKeyPageDown);
            TestPushItem(window, kIdOk);
        });
        EXPECT_EQ(dialog.DoModal(&host, time_picker_ids::kDialog), 1);
        EXPECT_EQ(start, from);
        EXPECT_TRUE(single ? end != from && end.minute % 5 == 0 : end == (TimeValue{9, 0, 0, kBeforeNoon}));
    }
}

TEST_F(WidgetDialogTest, AboutWritesMailAndOpensTheHomePage)
{
    AboutDialog dialog;
    WhenModal([&](WindowHandle window) {
        ServeEvents();
        for (const int id : {about_dialog_ids::kMail, about_dialog_ids::kHomePage}) {
            const WindowHandle link = ChildAt(window, MiddleOf(ItemRect(window, id)));
            EXPECT_EQ(ClassNameOf(link), "MarlinClassLinkButton");
            TestClick(link, {5, 5});
            ServeEvents();
        }
        TestPushItem(window, kIdOk);
    });
    EXPECT_EQ(dialog.DoModal(&host, about_dialog_ids::kDialog), 1);
    ASSERT_EQ(played.size(), 2u);
    EXPECT_THAT(played[0], testing::StartsWith("open mailto:"));
    EXPECT_THAT(played[1], testing::StartsWith("open "));
}

TEST_F(WidgetDialogTest, TheProgressBarGrowsToItsFullWidth)
{
    for (const int steps : {5, 1}) {
        CompactProgressDialog progress(&host);
        progress.Open("Compact", steps);
        ASSERT_TRUE(IsWindow(progress.window));
        EXPECT_EQ(ItemText(progress.window, progress_dialog_ids::kText), "Compact");
        const Rect bar = ItemRect(progress.window, 100);
        const auto blackEnd = [&] {
            int x = bar.left;
            while (x < bar.right && PixelAt(progress.window, {x, MiddleOf(bar).y}) == 0)
                ++x;
            return x - bar.left;
        };
        EXPECT_EQ(blackEnd(), 0);
        progress.Step();
        EXPECT_EQ(blackEnd(), steps == 5 ? bar.Width() / 4 : bar.Width());
        for (int i = 0; i < 3; ++i)
            progress.Step();
        EXPECT_EQ(blackEnd(), bar.Width());
        progress.Step();
        EXPECT_EQ(blackEnd(), bar.Width());
        progress.Close();
        EXPECT_FALSE(IsWindow(progress.window));
        progress.Close();
        progress.Step();
    }
}

TEST_F(WidgetDialogTest, ACancelledFolderChooserLeavesThePath)
{
    static std::optional<std::string> answer;
    const ScopedFileAnswer scoped([](const FileDialogRequest&) { return answer; });
    std::string path = "/tmp/here";
    EXPECT_EQ(BrowseForFolder(host.window, path), 0);
    EXPECT_EQ(path, "/tmp/here");
    answer = "/tmp/there";
    EXPECT_EQ(BrowseForFolder(host.window, path), 1);
    EXPECT_EQ(path, "/tmp/there");
}

}  // namespace
}  // namespace jotlet
