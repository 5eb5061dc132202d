#include "platform/desktop/system_metrics.h"

#include <QGuiApplication>
#include <QScreen>

#include "platform/desktop/qt/convert.h"

namespace jotlet {

Colour SystemColour(int index)
{
    switch (index) {
        case kSysColourWindow:
        case kSysColourButtonHighlight:
            return Rgb(255, 255, 255);
        case kSysColourButtonShadow:
            return Rgb(160, 160, 160);
        default:
            return Rgb(240, 240, 240);
    }
}

Rect DesktopRect(Point near)
{
    const QScreen* screen = QGuiApplication::screenAt(ToQt(near));
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? FromQt(screen->availableGeometry()) : Rect{};
}

}  // namespace jotlet
