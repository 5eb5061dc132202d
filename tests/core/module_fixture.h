// A whole program window for one test, on the folder of CoreTest.
#pragma once

#include "core/jotlet_module.h"
#include "core/process.h"
#include "core_fixture.h"
#include "toolkit/pane_list.h"

namespace jotlet {

class ModuleTest : public CoreTest {
protected:
    ~ModuleTest() override
    {
        End();
        SetProcessNames("Jotlet", "");
    }

    // Starts as main does, splash and loop left out.
    JotletModule& Start(const std::string& commandLine = "")
    {
        SetProcessNames("Jotlet", commandLine);
        module = std::make_unique<JotletModule>();
        module->Create(nullptr);
        module->Show();
        ServeEvents();
        return *module;
    }
    void End()
    {
        module.reset();
        // The end of a window asks the loop to end; as main does, take that up before the next one.
        QuitLoop(0);
        ServeEvents();
        TheApplication()->Run(0, {});
    }
    void Command(int id, MessageParam value = 0)
    {
        module->Send(kWmCommand, id, value);
        ServeEvents();
    }
    std::string Title() const { return WindowTitle(module->window); }
    bool Open() const { return IsWindow(module->window); }
    std::string OpenPath() const { return module->GetNoteFile() ? module->GetNoteFile()->Path() : ""; }

    // Points of the frame's window as client coordinates, which is what events take.
    static Point InWindow(Point p) { return {p.x - kFrameMarginSide, p.y - kFrameMarginTop}; }
    static Point MiddleOf(const Rect& r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

    std::unique_ptr<JotletModule> module;
};

}  // namespace jotlet
