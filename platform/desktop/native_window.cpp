#include "platform/desktop/native_window.h"

#include <QApplication>
#include <QWindow>

#include "platform/desktop/device_context.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

WindowHandle CreateNativeWindow(std::string_view className, std::string_view title, std::uint32_t style,
                                const Rect& bounds, WindowHandle parent)
{
    const WindowClass* windowClass = FindClass(className);
    NativeWidget* owner = NativeOf(parent);
    if (!windowClass || !qApp || ((style & kStyleChild) && !owner) || (parent && !owner))
        return 0;
    const HandlerScope scope;
    const WindowHandle handle = NewHandle();
    auto* widget = std::make_unique<NativeWidget>(handle, *windowClass, style, NativeWidget::Kind::Window, owner)
                       .release();  // its parent or the registry owns it from here on
    RegisterHandle(handle, {widget, widget, std::string(className), 0});
    widget->setWindowTitle(ShownText(title));
    if (widget->Deliver(kWmCreate, 0, 0) == -1 || !widget->Alive()) {
        DestroyNativeWindow(handle);
        return 0;
    }
    if (bounds.left == kUseDefault || bounds.top == kUseDefault) {
        // Width and height were added to the position's mark; the arithmetic wraps and comes back.
        const auto width = static_cast<int>(static_cast<unsigned>(bounds.right) - static_cast<unsigned>(bounds.left));
        const auto height = static_cast<int>(static_cast<unsigned>(bounds.bottom) - static_cast<unsigned>(bounds.top));
        widget->resize(widget->Limited({width, height}));
        widget->ReportGeometry();
    } else if (bounds != Rect{}) {
        MoveTo(handle, bounds, false);
    }
    // Told explicitly either way: a child that nobody hid would appear with its parent.
    widget->setVisible((style & kStyleVisible) != 0);
    return IsWindow(handle) ? handle : 0;
}

void DestroyNativeWindow(WindowHandle window)
{
    if (NativeWidget* native = NativeOf(window))
        native->Die();
}

bool IsWindow(WindowHandle window)
{
    return FindEntry(window) != nullptr;
}

WindowHandle ParentOf(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    return widget ? HandleOf(widget->parentWidget()) : 0;
}

std::string ClassNameOf(WindowHandle window)
{
    const WindowEntry* entry = FindEntry(window);
    return entry ? entry->className : std::string();
}

void SetUserWord(WindowHandle window, void* word)
{
    if (NativeWidget* native = NativeOf(window))
        native->userWord = word;
}

void* UserWord(WindowHandle window)
{
    const NativeWidget* native = NativeOf(window);
    return native ? native->userWord : nullptr;
}

MessageParam SendTo(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    NativeWidget* native = NativeOf(window);
    return native ? native->Deliver(message, wParam, lParam) : 0;
}

void PostTo(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    if (NativeWidget* native = NativeOf(window))
        native->PostMessage({window, message, wParam, lParam});
}

void PostRequest(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    if (NativeWidget* native = NativeOf(window))
        native->PostMessage({window, message, wParam, lParam}, NativeWidget::Posted::Request);
}

Rect ClientRect(WindowHandle window)
{
    if (const NativeWidget* native = NativeOf(window)) {
        const QSize size = native->ClientArea().size();
        return {0, 0, qMax(0, size.width()), qMax(0, size.height())};
    }
    const QWidget* widget = WidgetOf(window);
    return widget ? Rect{0, 0, widget->width(), widget->height()} : Rect{};
}

Rect WindowRect(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    if (!widget)
        return {};
    if (const NativeWidget* native = NativeOf(window); native && native->isWindow())
        return FromQt(native->Whole());
    return FromQt(QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size()));
}

void MoveTo(WindowHandle window, const Rect& bounds, bool repaint)
{
    QRect place = ToQt(bounds);
    NativeWidget* native = NativeOf(window);
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    if (const auto* parent = dynamic_cast<NativeWidget*>(widget->parentWidget()); parent && !widget->isWindow())
        place.translate(parent->Margin().left(), parent->Margin().top());
    if (!native) {
        widget->setGeometry(place);
        return;
    }
    native->Place(place);
    if (repaint && native->Alive())
        native->Invalidate(native->rect(), true);
}

Point ClientToScreen(WindowHandle window, Point p)
{
    if (const NativeWidget* native = NativeOf(window))
        return FromQt(native->mapToGlobal(ToQt(p) + QPoint(native->Margin().left(), native->Margin().top())));
    const QWidget* widget = WidgetOf(window);
    return widget ? FromQt(widget->mapToGlobal(ToQt(p))) : p;
}

Point ScreenToClient(WindowHandle window, Point p)
{
    if (const NativeWidget* native = NativeOf(window))
        return FromQt(native->ToClient(native->mapFromGlobal(ToQt(p))));
    const QWidget* widget = WidgetOf(window);
    return widget ? FromQt(widget->mapFromGlobal(ToQt(p))) : p;
}

void SetWindowShape(WindowHandle window, const Point* corners, int count)
{
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    QPolygon polygon;
    for (int i = 0; i < count; ++i)
        polygon << ToQt(corners[i]);
    if (polygon.isEmpty())
        widget->clearMask();
    else
        widget->setMask(QRegion(polygon, Qt::WindingFill));
}

void SetWindowTitle(WindowHandle window, std::string_view title)
{
    const std::string text(title);
    if (NativeWidget* native = NativeOf(window))
        native->Deliver(kWmSetText, 0, reinterpret_cast<MessageParam>(text.c_str()));
    // A dialog leaves the message alone; its caption is the window manager's business.
    if (NativeWidget* native = NativeOf(window); native && native->IsDialog())
        native->setWindowTitle(ShownText(text));
}

std::string WindowTitle(WindowHandle window)
{
    const QWidget* widget = WidgetOf(window);
    return widget ? ToUtf8(widget->windowTitle()) : std::string();
}

void StartTimer(WindowHandle window, int id, Milliseconds period)
{
    if (NativeWidget* native = NativeOf(window))
        native->BeginTimer(id, period);
}

void StopTimer(WindowHandle window, int id)
{
    if (NativeWidget* native = NativeOf(window))
        native->EndTimer(id);
}

void InvalidateArea(WindowHandle window, const Rect* area, bool erase)
{
    NativeWidget* native = NativeOf(window);
    if (!native)
        return;
    const QRect client = native->ClientArea();
    native->Invalidate(area ? client.intersected(ToQt(*area).translated(client.topLeft())) : client, erase);
}

void UpdateNow(WindowHandle window)
{
    if (NativeWidget* native = NativeOf(window))
        native->PaintNow();
}

namespace {

void DrawAt(NativeWidget& native, const QRect& area, const std::function<void(DeviceContext&)>& draw)
{
    const HandlerScope scope;
    Surface& surface = native.GetSurface();
    if (surface.image.isNull() || area.isEmpty())
        return;
    {
        SurfacePainter painter(surface, area.topLeft(), area);
        PainterContext dc(painter.Get(), painter.Clip());
        draw(dc);
    }
    native.update(area);
}

}  // namespace

void DrawOutsidePaint(WindowHandle window, const std::function<void(DeviceContext&)>& draw)
{
    if (NativeWidget* native = NativeOf(window))
        DrawAt(*native, native->ClientArea(), draw);
}

void DrawOnWholeWindow(WindowHandle window, const std::function<void(DeviceContext&)>& draw)
{
    if (NativeWidget* native = NativeOf(window))
        DrawAt(*native, native->rect(), draw);
}

Colour PixelAt(WindowHandle window, Point client)
{
    NativeWidget* native = NativeOf(window);
    if (!native)
        return kNoColour;
    const QImage& image = native->GetSurface().image;
    const QPoint local = ToQt(client) + QPoint(native->Margin().left(), native->Margin().top());
    const qreal scale = image.isNull() ? 1 : image.devicePixelRatio();
    const QPoint pixel(qFloor(local.x() * scale), qFloor(local.y() * scale));
    return image.rect().contains(pixel) ? FromQt(image.pixel(pixel)) : kNoColour;
}

}  // namespace jotlet
