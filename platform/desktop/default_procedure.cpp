// What the platform does with a message nobody handled.
#include <QWindow>
#include <cstring>

#include "platform/desktop/device_context.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"
#include "platform/desktop/system_metrics.h"

namespace jotlet {

namespace {

constexpr int kCornerSide = 18;  // how far along the border a corner reaches

MessageParam EraseBackground(NativeWidget& window, MessageParam wParam)
{
    auto* dc = reinterpret_cast<DeviceContext*>(wParam);
    if (!dc || (!window.IsDialog() && window.Class().background == Background::None))
        return 0;
    const QSize size = window.ClientArea().size();
    dc->FillRect({0, 0, size.width(), size.height()}, FromQt(window.BackgroundColour().rgb()));
    return 1;
}

MessageParam SetClassCursor(NativeWidget& window, MessageParam lParam)
{
    const int hit = LowWord(lParam);
    if (hit == kHitTopLeft || hit == kHitBottomRight)
        SetCursorNow(CursorId::SizeNwse);
    else if (hit != kHitClient)
        SetCursorNow(CursorId::Arrow);
    else if (window.Class().cursor != CursorId::None)
        SetCursorNow(window.Class().cursor);
    return 1;
}

MessageParam TestHit(NativeWidget& window, MessageParam lParam)
{
    const WndMessage at{0, 0, 0, lParam};
    const QPoint p = window.mapFromGlobal(ToQt(MousePoint(at)));
    if (!window.rect().contains(p))
        return kHitNowhere;
    if (window.ClientArea().contains(p))
        return kHitClient;
    if (!window.IsFrame())
        return kHitBorder;
    const bool left = p.x() < kFrameMarginSide;
    const bool right = p.x() >= window.width() - kFrameMarginSide;
    const bool top = p.y() < kCyFrame;
    const bool bottom = p.y() >= window.height() - kFrameMarginBottom;
    if (!left && !right && !top && !bottom)
        return kHitCaption;
    const bool nearLeft = p.x() < kCornerSide;
    const bool nearRight = p.x() >= window.width() - kCornerSide;
    const bool nearTop = p.y() < kCornerSide;
    const bool nearBottom = p.y() >= window.height() - kCornerSide;
    if (nearTop && nearLeft)
        return kHitTopLeft;
    if (nearTop && nearRight)
        return kHitTopRight;
    if (nearBottom && nearLeft)
        return kHitBottomLeft;
    if (nearBottom && nearRight)
        return kHitBottomRight;
    if (left)
        return kHitLeft;
    if (right)
        return kHitRight;
    return top ? kHitTop : kHitBottom;
}

MessageParam PaintMargin(NativeWidget& window)
{
    if (window.Margin().isNull())
        return 0;
    DrawOnWholeWindow(window.Handle(), [&](DeviceContext& dc) {
        const Rect whole{0, 0, window.width(), window.height()};
        if (!window.IsFrame()) {
            dc.FrameRect(whole, SystemColour(kSysColourButtonShadow));
            return;
        }
        const Rect client = FromQt(window.ClientArea());
        const Colour face = SystemColour(kSysColourButtonFace);
        dc.FillRect({0, 0, whole.right, client.top}, face);
        dc.FillRect({0, client.bottom, whole.right, whole.bottom}, face);
        dc.FillRect({0, client.top, client.left, client.bottom}, face);
        dc.FillRect({client.right, client.top, whole.right, client.bottom}, face);
        dc.FrameRect(whole, SystemColour(kSysColourButtonShadow));
    });
    return 0;
}

MessageParam PressMargin(NativeWidget& window, MessageParam hit, MessageParam lParam)
{
    if (hit == kHitCaption)
        window.Deliver(kWmSysCommand, kSysMove + kHitCaption, lParam);
    else if (hit >= kHitLeft && hit <= kHitBottomRight)
        window.Deliver(kWmSysCommand, kSysSize + hit - 9, lParam);
    return 0;
}

// 1 left, 2 right, 3 top, 4 top left, 5 top right, 6 bottom, 7 bottom left, 8 bottom right.
Qt::Edges EdgesOf(int direction)
{
    switch (direction) {
        case 1:
            return Qt::LeftEdge;
        case 2:
            return Qt::RightEdge;
        case 3:
            return Qt::TopEdge;
        case 4:
            return Qt::TopEdge | Qt::LeftEdge;
        case 5:
            return Qt::TopEdge | Qt::RightEdge;
        case 6:
            return Qt::BottomEdge;
        case 7:
            return Qt::BottomEdge | Qt::LeftEdge;
        default:
            return Qt::BottomEdge | Qt::RightEdge;
    }
}

MessageParam RunSystemCommand(NativeWidget& window, MessageParam wParam)
{
    switch (static_cast<int>(wParam) & 0xFFF0) {
        case kSysMove:
            BeginFrameTracking(window, {});
            break;
        case kSysSize:
            window.ApplyLimits();
            BeginFrameTracking(window, EdgesOf(static_cast<int>(wParam) & 15));
            break;
        case kSysMinimize:
            window.showMinimized();
            break;
        case kSysMaximize:
            window.showMaximized();
            break;
        case kSysRestore:
            window.showNormal();
            break;
        case kSysClose:
            window.Deliver(kWmClose, 0, 0);
            break;
        default:
            break;
    }
    return 0;
}

}  // namespace

MessageParam DefaultProcedure(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    NativeWidget* native = NativeOf(window);
    if (!native)
        return 0;
    switch (message) {
        case kWmEraseBkgnd:
            return EraseBackground(*native, wParam);
        case kWmSetCursor:
            return SetClassCursor(*native, lParam);
        case kWmSetText:
            native->setWindowTitle(lParam ? ShownText(reinterpret_cast<const char*>(lParam)) : QString());
            // A frame that draws its title without a ground of its own finds no old text under it.
            if (native->IsFrame() && native->isVisible())
                PaintMargin(*native);
            return 1;
        case kWmNcHitTest:
            return TestHit(*native, lParam);
        case kWmNcPaint:
            return PaintMargin(*native);
        case kWmNcActivate:
            return 1;
        case kWmNcLButtonDown:
            return PressMargin(*native, wParam, lParam);
        case kWmSysCommand:
            return RunSystemCommand(*native, wParam);
        case kWmClose:
            DestroyNativeWindow(window);
            return 0;
        case kWmMouseWheel:
            // A wheel that a child does not want is offered to the windows it lies in.
            if (native->Style() & kStyleChild)
                return SendTo(ParentOf(window), message, wParam, lParam);
            return 0;
        default:
            return 0;
    }
}

}  // namespace jotlet
