#include "toolkit/marlin_dialog.h"

#include "platform/desktop/dialog.h"
#include "widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

constexpr int kSkins = skins_dialog_ids::kDialog;  // a plain dialog: a list box, Ok, Cancel

class DiaryDialog : public MarlinDialog {
public:
    MessageParam OnInitDialog(WndMessage&) override { return Note("OnInitDialog"), 1; }
    MessageParam OnCreated(WndMessage&) override { return Note("OnCreated"); }
    MessageParam OnCreate(WndMessage&) override { return Note("OnCreate"); }
    MessageParam OnKeyDown(WndMessage&) override { return Note("OnKeyDown"); }
    MessageParam OnMouseWheel(WndMessage&) override { return Note("OnMouseWheel"); }
    MessageParam OnEraseBkgnd(WndMessage&) override { return Note("OnEraseBkgnd"); }
    MessageParam Note(std::string what)
    {
        calls.push_back(std::move(what));
        return 0;
    }
    std::vector<std::string> calls;
};

class MarlinDialogTest : public WindowTest {
protected:
    int Run(std::function<void(WindowHandle)> act)
    {
        WhenModal(std::move(act));
        return dialog.DoModal(&host, kSkins);
    }
    Host host;
    DiaryDialog dialog;
};

TEST_F(MarlinDialogTest, InitComesFirstAndOkOrCancelOrTheCloseBoxEndIt)
{
    const std::pair<std::function<void(WindowHandle)>, int> ends[] = {
        {[](WindowHandle window) { TestPushItem(window, kIdOk); }, 1},
        {[](WindowHandle window) { TestPushItem(window, kIdCancel); }, 0},
        {[](WindowHandle window) { SendTo(window, kWmClose, 0, 0); }, 0}};
    for (const auto& [end, result] : ends) {
        dialog.calls.clear();
        EXPECT_EQ(Run([&](WindowHandle window) {
                      ServeEvents();
                      for (const std::uint32_t message : {kWmKeyDown, kWmMouseWheel, kWmEraseBkgnd, kWmCreate})
                          SendTo(window, message, 0, 0);  // the dialog manager's
                      end(window);
                  }),
                  result);
        EXPECT_THAT(dialog.calls, ElementsAre("OnInitDialog", "OnCreated"));
        EXPECT_FALSE(IsWindow(dialog.window));
    }
}

TEST_F(MarlinDialogTest, AModelessDialogIsNotEndedButDestroyed)
{
    EXPECT_EQ(dialog.DoModal(&host, 4711), -1) << "no such template";
    EXPECT_EQ(dialog.CreateModeless(&host, 4711), 0);
    EXPECT_EQ(dialog.CreateModeless(&host, kSkins), 1);
    dialog.Show();
    dialog.EndDialog(1);
    EXPECT_TRUE(IsWindow(dialog.window));
    dialog.Close();
    EXPECT_FALSE(IsWindow(dialog.window));
}

TEST_F(MarlinDialogTest, ADialogOfADialogIsFreedWhenItEnds)
{
    int before = 0;
    Run([&](WindowHandle window) {
        ServeEvents();
        before = TestWidgetCount();
        host.onCommand = [&](WndMessage&) {
            WhenModal([](WindowHandle inner) { EndModal(inner, 0); });
            MarlinDialog().DoModal(&dialog, kSkins);
        };
        host.Post(kWmCommand, 1, 0);
        EXPECT_TRUE(ServeUntil([&] { return !host.commands.empty(); }, std::chrono::seconds(2)));
        ServeUntil([] { return false; }, std::chrono::milliseconds(20));
        EXPECT_EQ(TestWidgetCount(), before);
        EndModal(window, 0);
    });
}

}  // namespace
}  // namespace jotlet
