#include "toolkit/marlin_wnd.h"

#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

// Keeps the names of the operations in the order in which they are called.
class Diary : public MarlinWnd {
public:
    void PrepareClass(WindowClass& windowClass) override
    {
        Note("PrepareClass");
        windowClass.name = "TestDiary";
        windowClass.background = Background::White;
    }
    void PrepareCreate(CreateParameters& parameters) override
    {
        Note("PrepareCreate");
        parameters.width = 30;
        parameters.height = 20;
    }
    MessageParam OnCreate(WndMessage& record) override
    {
        Note("OnCreate");
        EXPECT_EQ(record.window, window);
        EXPECT_TRUE(!child || child->Create(this) == 1);
        return createResult;
    }
    MessageParam OnSize(WndMessage&) override { return Note("OnSize"); }
    MessageParam OnCreated(WndMessage&) override { return Note("OnCreated"); }
    MessageParam OnClose(WndMessage&) override
    {
        if (destroyInClose)
            DestroyNativeWindow(window);
        return Note("OnClose");
    }
    MessageParam OnDestroy(WndMessage&) override { return Note("OnDestroy"); }
    MessageParam OnTimer(WndMessage& record) override { return Note("OnTimer " + std::to_string(record.wParam)); }
    void OnPaint(DeviceContext&, const PaintInfo&) override { Note("OnPaint"); }

    MessageParam Note(std::string what)
    {
        calls.push_back(std::move(what));
        return 0;
    }

    MarlinWnd* child = nullptr;
    MessageParam createResult = 0;
    bool destroyInClose = false;
    std::vector<std::string> calls;
};

class MarlinWndTest : public WindowTest {
protected:
    Host host;
};

TEST_F(MarlinWndTest, CreationGoesInOrderAndOnCreatedComesFromTheQueue)
{
    Diary inner;
    Diary outer;
    outer.child = &inner;  // created inside OnCreate
    EXPECT_EQ(outer.Create(&host), 1);
    EXPECT_THAT(outer.calls, ElementsAre("PrepareClass", "PrepareCreate", "OnCreate", "OnSize"));
    ServeEvents();
    EXPECT_THAT(outer.calls, testing::Contains("OnCreated"));
    EXPECT_EQ(MarlinWnd::FromHandle(outer.window), &outer);
    EXPECT_EQ(MarlinWnd::FromHandle(inner.window), &inner);
    EXPECT_EQ(inner.GetParentWnd(), &outer);
    EXPECT_EQ(outer.GetParentWnd(), &host);
}

TEST_F(MarlinWndTest, ARefusedWindowIsToldAndNeverComesToLife)
{
    Diary wnd;
    wnd.createResult = -1;
    EXPECT_EQ(wnd.Create(&host), 0);
    ServeEvents();
    EXPECT_THAT(wnd.calls, testing::Not(testing::Contains("OnCreated")));
    EXPECT_EQ(Diary().Create(nullptr), 0) << "a child needs a parent";
    Diary next;
    EXPECT_EQ(next.Create(&host), 1) << "the failure leaves nothing behind";
    EXPECT_EQ(MarlinWnd::FromHandle(next.window), &next);
}

TEST_F(MarlinWndTest, MoveWithThreeMinusOnesKeepsTheSizeAndRepaints)
{
    Diary wnd;
    wnd.Create(&host);
    const std::pair<Rect, Rect> moves[] = {{{50, 60, 49, 59}, Rect::At(50, 60, 30, 20)},
                                           {{1, 2, 41, 52}, Rect::At(1, 2, 40, 50)}};
    for (const auto& [wanted, place] : moves) {
        ServeEvents();
        wnd.calls.clear();
        wnd.Move(wanted.left, wanted.top, wanted.Width(), wanted.Height(), -1);
        wnd.Update();
        const Point corner = ScreenToClient(host.window, ClientToScreen(wnd.window, {0, 0}));
        EXPECT_EQ(Rect::At(corner.x, corner.y, wnd.GetClientArea().right, wnd.GetClientArea().bottom), place);
        EXPECT_EQ(std::ranges::count(wnd.calls, "OnPaint"), 1);
    }
    wnd.calls.clear();
    wnd.Send(kWmTimer, 7, 0);
    WndMessage foreign{host.window, kWmTimer, 8, 0};
    EXPECT_EQ(wnd.Dispatch(foreign), 0);
    EXPECT_THAT(wnd.calls, ElementsAre("OnTimer 7")) << "a timer of another window is not served";
}

TEST_F(MarlinWndTest, CloseAsksAndThenDestroys)
{
    for (const bool hasty : {false, true}) {
        Diary wnd;
        wnd.Create(&host);
        ServeEvents();
        wnd.calls.clear();
        wnd.Send(kWmClose, 0, 0);
        EXPECT_TRUE(IsWindow(wnd.window)) << "a request alone closes nothing";
        wnd.destroyInClose = hasty;
        wnd.Close();
        EXPECT_FALSE(IsWindow(wnd.window));
        EXPECT_EQ(std::ranges::count(wnd.calls, "OnClose"), 2);
        EXPECT_EQ(std::ranges::count(wnd.calls, "OnDestroy"), 1);
        wnd.Close();
        wnd.RepaintNow();
        EXPECT_EQ(wnd.GetClientArea(), Rect{}) << "a stale window is harmless";
        EXPECT_EQ(MarlinWnd::FromHandle(wnd.window), nullptr);
    }
}

TEST_F(MarlinWndTest, AnObjectMayDieInsideItsOwnHandlerAndTakesItsWindowAlong)
{
    class Mortal : public Diary {
    public:
        MessageParam OnCommand(WndMessage&) override
        {
            delete this;
            return 0;
        }
    };
    for (const bool inHandler : {false, true}) {
        auto* mortal = new Mortal;
        mortal->Create(&host);
        const WindowHandle handle = mortal->window;
        mortal->Post(kWmCommand, 1, 0);
        if (!inHandler)
            delete mortal;
        ServeEvents();
        EXPECT_FALSE(IsWindow(handle));
    }
}

}  // namespace
}  // namespace jotlet
