#include "platform/desktop/accessible.h"

#include "recorder.h"

namespace jotlet {
namespace {

class AccessibleTest : public WindowTest {
protected:
    AccessibleTest()
    {
        list.answer = [this](const WndMessage& m) -> std::optional<MessageParam> {
            if (m.message != kWmDescribe)
                return std::nullopt;
            *reinterpret_cast<AccessibleDescription*>(m.lParam) = told;
            return 1;
        };
    }

    AccessibleDescription told{AccessibleRole::List,
                               "Notes",
                               {{AccessibleRole::ListItem, "Milk", {0, 0, 50, 20}, true, true, true, "red"},
                                {AccessibleRole::ListItem, "caf\xE9", {50, 0, 100, 20}, false, false, false}}};
    Recorder top{{.bounds = Rect::At(20, 30, 200, 100)}};
    Recorder list{{.style = kStyleDefault, .bounds = Rect::At(10, 10, 100, 40), .parent = top.window}};
};

TEST_F(AccessibleTest, ReaderFindsThePartsWithNamesPlacesAndStates)
{
    const AccessibleDescription heard = ReadAsScreenReader(list.window);
    EXPECT_EQ(heard.role, AccessibleRole::List);
    EXPECT_EQ(heard.name, "Notes");
    ASSERT_EQ(heard.parts.size(), 2U);
    EXPECT_EQ(heard.parts[0].name + ", " + heard.parts[0].detail, "Milk, red");
    EXPECT_EQ(heard.parts[0].role, AccessibleRole::ListItem);
    EXPECT_EQ(heard.parts[0].bounds, (Rect{0, 0, 50, 20}));
    EXPECT_TRUE(heard.parts[0].selected);
    EXPECT_TRUE(heard.parts[0].focused);
    EXPECT_EQ(heard.parts[1].name, "caf\xC3\xA9");
    EXPECT_FALSE(heard.parts[1].selected);
    EXPECT_FALSE(heard.parts[1].enabled);
    EXPECT_TRUE(ReadAsScreenReader(top.window).parts.empty()) << "a window that tells nothing";
    EXPECT_TRUE(ReadAsScreenReader(0).parts.empty());
}

TEST_F(AccessibleTest, PartsFollowTheWindow)
{
    ReadAsScreenReader(list.window);
    told.parts.pop_back();
    told.parts[0].name = "Bread";
    AccessibleChanged(list.window);
    const AccessibleDescription heard = ReadAsScreenReader(list.window);
    ASSERT_EQ(heard.parts.size(), 1U);
    EXPECT_EQ(heard.parts[0].name, "Bread");
    DestroyNativeWindow(list.window);
    EXPECT_TRUE(ReadAsScreenReader(list.window).parts.empty());
}

// The press is answered at once: a menu that it opens would keep the reader waiting.
TEST_F(AccessibleTest, ReaderPressesAPartLikeAMouseButLater)
{
    told.parts[0].sysCommand = kSysMinimize;
    told.parts[1].enabled = true;
    list.Clear();
    EXPECT_TRUE(PressAsScreenReader(list.window, 0));
    EXPECT_TRUE(PressAsScreenReader(list.window, 1));
    EXPECT_FALSE(PressAsScreenReader(list.window, 9));
    EXPECT_TRUE(list.Of(kWmLButtonDown).empty());
    ServeEvents();
    ASSERT_EQ(list.Of(kWmLButtonDown).size(), 1U);
    EXPECT_EQ(MousePoint(list.Of(kWmLButtonDown)[0]), (Point{75, 10}));
    EXPECT_EQ(list.Of(kWmLButtonUp).size(), 1U);
    ASSERT_EQ(list.Of(kWmSysCommand).size(), 1U);
    EXPECT_EQ(list.Of(kWmSysCommand)[0].wParam, kSysMinimize);
}

}  // namespace
}  // namespace jotlet
