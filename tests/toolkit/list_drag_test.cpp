#include "list_view_fixture.h"
#include "toolkit/drag_commands.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

// A second window right of the list that answers drags and keeps what it is told and where.
class DragTest : public ListViewTest {
protected:
    DragTest()
    {
        Show({.items = 4, .columns = 2});
        list->EnableDrag();
        host.Hold(target, Rect::At(200, 0, 150, 150));
        target.onCommand = [this](WndMessage& record) { places.push_back(*reinterpret_cast<Point*>(record.lParam)); };
        target.answer = 1;
    }
    // A point of the target, as the grid sees it.
    Point Over(Point inTarget) { return ScreenToClient(Grid(), ClientToScreen(target.window, inTarget)); }
    void DragTo(Point p, Keys keys = {})
    {
        TestPress(Grid(), Cell(1));
        TestMove(Grid(), Cell(2), true);
        TestMove(Grid(), p, true, keys);
        TestRelease(Grid(), p, false, keys);
    }
    std::vector<int> Asked()
    {
        std::vector<int> ids;
        for (const Command& command : target.commands)
            ids.push_back(command.id);
        return ids;
    }

    class Target : public MarlinWnd {
    public:
        void PrepareClass(WindowClass& windowClass) override { windowClass.name = "TestTarget"; }
        MessageParam OnCommand(WndMessage& record) override
        {
            onCommand(record);
            commands.push_back({LowWord(record.wParam), 0, 0});
            return answer;
        }
        std::function<void(WndMessage&)> onCommand;
        Commands commands;
        MessageParam answer = 0;
    } target;
    std::vector<Point> places;
};

TEST_F(DragTest, ADropIsAskedForAndThenMovedOrCopiedButNotOverTheSourceOrWithoutDragging)
{
    const struct {
        Point to;
        bool enabled;
        Keys keys;
        std::vector<int> asked;
    } rows[] = {{Over({30, 40}), false, {}, {}},
                {Over({30, 40}), true, {}, {kDragOver, kDragMoveDrop}},
                {Over({30, 40}), true, {.control = true}, {kDragOver, kDragCopyDrop}},
                {Cell(3), true, {}, {}}};
    for (const auto& row : rows) {
        target.commands.clear();
        places.clear();
        list->Grid().dragEnabled = row.enabled;
        DragTo(row.to, row.keys);
        EXPECT_EQ(Asked(), row.asked);
        if (!places.empty()) {
            EXPECT_EQ(places.back(), ClientToScreen(target.window, {30, 40}));
        }
        EXPECT_EQ(CapturedWindow(), 0u);
        EXPECT_FALSE(list->Grid().dragging);
        EXPECT_EQ(list->GetSelected(), 1);
    }
}

TEST_F(DragTest, TheMouseIsCapturedFromTheFirstMoveToTheDrop)
{
    TestPress(Grid(), Cell(1));
    EXPECT_EQ(CapturedWindow(), 0u);
    TestMove(Grid(), Cell(1), true);
    EXPECT_EQ(CapturedWindow(), Grid());
    WindowHandle capturedAtDrop = Grid();
    target.onCommand = [&](WndMessage& record) {
        if (LowWord(record.wParam) == kDragMoveDrop)
            capturedAtDrop = CapturedWindow();
    };
    TestRelease(Grid(), Over({5, 5}));
    EXPECT_EQ(capturedAtDrop, 0u) << "who takes the drop may open a box that needs the mouse";
    TestClick(Grid(), Cell(2));
    EXPECT_EQ(list->GetSelected(), 2) << "without a move the release is a click";
}

TEST_F(DragTest, EscapeOrAModalWindowGivesTheDragUp)
{
    const std::function<void()> ends[] = {[&] { TestKey(Grid(), kKeyEscape); },
                                          [&] {
                                              const Host modal;
                                              WhenModal([](WindowHandle window) { EndModal(window, 0); });
                                              RunModal(modal.window, host.window);
                                          }};
    for (const auto& end : ends) {
        target.commands.clear();
        TestPress(Grid(), Cell(1));
        TestMove(Grid(), Over({5, 5}), true);
        TestMove(Grid(), Over({5, 6}), true);
        end();
        EXPECT_EQ(CapturedWindow(), 0u);
        EXPECT_EQ(list->GetSelected(), 1) << "the item stays selected";
        TestMove(Grid(), Over({5, 6}), true);
        TestRelease(Grid(), Over({5, 6}));
        EXPECT_THAT(Asked(), ElementsAre(kDragOver));
    }
}

}  // namespace
}  // namespace jotlet
