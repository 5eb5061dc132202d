#include "toolkit/marlin_wnd.h"

#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Keeps the names of the operations in the order in which they are called.
class Diary : public MarlinWnd {
public:
    explicit Diary(std::string className = "TestDiary") : className(std::move(className)) {}
    void PrepareClass(WindowClass& windowClass) override
    {
        Note("PrepareClass");
        windowClass.name = className;
        windowClass.background = background;
    }
    void PrepareCreate(CreateParameters& parameters) override
    {
        Note("PrepareCreate");
        windowInPrepare = window;
        styleInPrepare = parameters.style;
        parameters.width = 30;
        parameters.height = 20;
    }
    MessageParam OnCreate(WndMessage& record) override
    {
        Note("OnCreate");
        EXPECT_EQ(record.window, window);
        EXPECT_NE(window, 0u);
        if (child) {
            EXPECT_EQ(child->Create(this), 1);
        }
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
    MessageParam OnCommand(WndMessage& record) override { return Note("OnCommand") + record.lParam; }
    void OnPaint(DeviceContext& dc, const PaintInfo&) override
    {
        ++paints;
        if (paintColour != kNoColour)
            dc.FillRect(GetClientArea(), paintColour);
    }

    MessageParam Note(std::string what)
    {
        calls.push_back(std::move(what));
        return 0;
    }

    std::string className;
    Background background = Background::White;
    MarlinWnd* child = nullptr;
    MessageParam createResult = 0;
    bool destroyInClose = false;
    WindowHandle windowInPrepare = 99;
    std::uint32_t styleInPrepare = 0;
    Colour paintColour = 0x123456;
    int paints = 0;
    std::vector<std::string> calls;
};

class MarlinWndTest : public WindowTest {
protected:
    Host host;
};

TEST_F(MarlinWndTest, CreationGoesInOrderAndOnCreatedComesFromTheQueue)
{
    Diary wnd;
    EXPECT_EQ(wnd.Create(&host), 1);
    EXPECT_THAT(wnd.calls, ElementsAre("PrepareClass", "PrepareCreate", "OnCreate", "OnSize"));
    EXPECT_EQ(wnd.windowInPrepare, 0u);
    EXPECT_EQ(wnd.styleInPrepare, kStyleDefault);
    ServeEvents();
    EXPECT_EQ(wnd.calls.back(), "OnCreated");
    EXPECT_EQ(wnd.GetParentWnd(), &host);
    EXPECT_EQ(MarlinWnd::FromHandle(wnd.window), &wnd);

    Diary inner("TestInner");
    Diary outer("TestOuter");
    outer.child = &inner;  // created inside OnCreate
    EXPECT_EQ(outer.Create(&host), 1);
    EXPECT_EQ(MarlinWnd::FromHandle(outer.window), &outer);
    EXPECT_EQ(MarlinWnd::FromHandle(inner.window), &inner);
    EXPECT_EQ(inner.GetParentWnd(), &outer);
}

TEST_F(MarlinWndTest, ARefusedWindowIsToldAndNeverComesToLife)
{
    Diary wnd;
    wnd.createResult = -1;
    EXPECT_EQ(wnd.Create(&host), 0);
    ServeEvents();
    EXPECT_THAT(wnd.calls, testing::Not(testing::Contains("OnCreated")));
    Diary orphan;
    EXPECT_EQ(orphan.Create(nullptr), 0) << "a child needs a parent";
    Diary next;
    EXPECT_EQ(next.Create(&host), 1) << "the failure leaves nothing behind";
    EXPECT_EQ(MarlinWnd::FromHandle(next.window), &next);
}

TEST_F(MarlinWndTest, AClassKeepsWhatItWasRegisteredWith)
{
    Diary first("TestOnceRegistered");
    first.Create(&host);
    Diary second("TestOnceRegistered");
    second.background = Background::Grey;
    second.paintColour = kNoColour;
    EXPECT_EQ(second.Create(&host), 1);
    EXPECT_THAT(second.calls, testing::Contains("PrepareClass"));
    second.Invalidate(nullptr, 1);
    second.Update();
    EXPECT_EQ(PixelAt(second.window, {5, 5}), 0xFFFFFFu);
}

TEST_F(MarlinWndTest, MoveWithThreeMinusOnesKeepsTheSizeAndRepaints)
{
    Diary wnd;
    wnd.Create(&host);
    ServeEvents();
    wnd.paints = 0;
    wnd.Move(50, 60, -1, -1, -1);
    wnd.Update();
    EXPECT_EQ(wnd.GetClientArea(), (Rect{0, 0, 30, 20}));
    EXPECT_EQ(ScreenToClient(host.window, ClientToScreen(wnd.window, {0, 0})), (Point{50, 60}));
    EXPECT_EQ(wnd.paints, 1);
    wnd.Move(1, 2, 40, 50, -1);
    wnd.Update();
    EXPECT_EQ(wnd.GetClientArea(), (Rect{0, 0, 40, 50}));
    EXPECT_EQ(wnd.paints, 2);
}

TEST_F(MarlinWndTest, ATimerOfAnotherWindowIsNotServed)
{
    Diary wnd;
    wnd.Create(&host);
    ServeEvents();
    wnd.calls.clear();
    wnd.Send(kWmTimer, 7, 0);
    WndMessage foreign{host.window, kWmTimer, 8, 0};
    EXPECT_EQ(wnd.Dispatch(foreign), 0);
    EXPECT_THAT(wnd.calls, ElementsAre("OnTimer 7"));
}

TEST_F(MarlinWndTest, CloseAsksAndThenDestroys)
{
    Diary wnd;
    wnd.Create(&host);
    ServeEvents();
    wnd.calls.clear();
    wnd.Send(kWmClose, 0, 0);
    EXPECT_TRUE(IsWindow(wnd.window)) << "a request alone closes nothing";
    wnd.Close();
    EXPECT_THAT(wnd.calls, ElementsAre("OnClose", "OnClose", "OnDestroy"));
    EXPECT_FALSE(IsWindow(wnd.window));
    wnd.Close();
    wnd.RepaintNow();
    EXPECT_EQ(wnd.GetClientArea(), Rect{}) << "a stale window is harmless";
    EXPECT_EQ(MarlinWnd::FromHandle(wnd.window), nullptr);

    Diary hasty;
    hasty.Create(&host);
    hasty.destroyInClose = true;
    hasty.Close();
    EXPECT_FALSE(IsWindow(hasty.window));
    EXPECT_EQ(std::ranges::count(hasty.calls, "OnDestroy"), 1);
}

TEST_F(MarlinWndTest, AnObjectMayDieInsideItsOwnHandler)
{
    class Mortal : public Diary {
    public:
        MessageParam OnCommand(WndMessage& record) override
        {
            const WindowHandle own = record.window;
            delete this;
            return IsWindow(own) ? 1 : 2;
        }
    };
    WindowHandle silent = 0;
    {
        Diary wnd;
        wnd.Create(&host);
        silent = wnd.window;
        wnd.Post(kWmCommand, 1, 0);
    }
    EXPECT_FALSE(IsWindow(silent)) << "a destroyed object takes its window along";
    auto* mortal = new Mortal;
    mortal->Create(&host);
    const WindowHandle handle = mortal->window;
    SendTo(handle, kWmCommand, 1, 0);
    ServeEvents();
    EXPECT_FALSE(IsWindow(handle));
}

}  // namespace
}  // namespace jotlet
