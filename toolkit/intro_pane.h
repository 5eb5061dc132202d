// IntroPane: the first page, whose whole content is fixed: a picture, the program's name and what it is for.
#pragma once

#include <memory>
#include <string>

#include "toolkit/intro_picture.h"
#include "toolkit/intro_text.h"
#include "toolkit/marlin_pane.h"

namespace jotlet {

// Where everything stands for a client area of this size.
struct IntroLayout {
    Rect picture;
    Rect text;
    Rect title;
    Rect header;
};
IntroLayout LayOutIntro(Size client);

class IntroPane : public MarlinPane {
public:
    // `moduleName`: what the header and the title line say.
    IntroPane(const PaneColours& colours, std::string name, std::string moduleName);

    int OnEntered() override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnClose(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    void CollectTabStops(TabStops& stops) override;

private:
    std::string moduleName;
    std::unique_ptr<IntroPicture> picture;
    std::unique_ptr<IntroText> text;
};

}  // namespace jotlet
