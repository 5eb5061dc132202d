#include "platform/desktop/screen_overlay.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/convert.h"

namespace jotlet {

namespace {

class OverlayWindow final : public QWidget {
public:
    OverlayWindow()
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                               Qt::BypassWindowManagerHint | Qt::WindowTransparentForInput |
                               Qt::WindowDoesNotAcceptFocus)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    // Black and white in turn along the lines, to be seen on any ground.
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), QBrush(Qt::black));
        painter.fillRect(rect(), QBrush(Qt::white, Qt::Dense6Pattern));
    }
};

QRegion RegionOf(std::span<const ScreenLine> lines, const QPoint& origin)
{
    QRegion region;
    for (const ScreenLine& line : lines) {
        const QPoint a = ToQt(line.from) - origin;
        const QPoint b = ToQt(line.to) - origin;
        if (a.x() == b.x() || a.y() == b.y()) {
            region += QRect(qMin(a.x(), b.x()), qMin(a.y(), b.y()), qAbs(a.x() - b.x()) + 1, qAbs(a.y() - b.y()) + 1);
            continue;
        }
        // A slanting line as a narrow band: horizontal or vertical runs, one pixel thick.
        const bool steep = qAbs(b.y() - a.y()) > qAbs(b.x() - a.x());
        const QPoint side = steep ? QPoint(2, 0) : QPoint(0, 2);
        region += QRegion(QPolygon({a, b, b + side, a + side}));
    }
    return region;
}

}  // namespace

struct ScreenOverlay::Data {
    std::unique_ptr<OverlayWindow> window;
};

ScreenOverlay::ScreenOverlay() : data(std::make_unique<Data>()) {}
ScreenOverlay::~ScreenOverlay() = default;

bool ScreenOverlay::Available() const
{
    // Only an X server puts a window where it is asked to, over everything, and lets clicks through.
    return qApp && QGuiApplication::platformName() == QLatin1String("xcb");
}

void ScreenOverlay::Show(std::span<const ScreenLine> lines)
{
    if (!Available())
        return;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->virtualGeometry();
    const QRegion region = RegionOf(lines, area.topLeft());
    if (region.isEmpty()) {
        Clear();
        return;
    }
    if (!data->window) {
        data->window = std::make_unique<OverlayWindow>();
        data->window->setGeometry(area);
    }
    data->window->setMask(region);
    data->window->show();
    data->window->repaint();
    FlushToScreen();
}

void ScreenOverlay::Clear()
{
    if (!data->window)
        return;
    data->window->hide();
    FlushToScreen();
}

}  // namespace jotlet
