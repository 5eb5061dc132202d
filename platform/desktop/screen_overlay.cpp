#include "platform/desktop/screen_overlay.h"

#include <QApplication>
#include <QBackingStore>
#include <QPainter>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "platform/desktop/qt/convert.h"

namespace jotlet {

namespace {

// One line as a region: its pixels where it is straight, a band of their thickness where it slants.
QRegion LineRegion(const ScreenLine& line)
{
    const QPoint a = ToQt(line.from);
    const QPoint b = ToQt(line.to);
    if (a.x() == b.x() || a.y() == b.y())
        return QRect(qMin(a.x(), b.x()), qMin(a.y(), b.y()), qAbs(a.x() - b.x()) + 1, qAbs(a.y() - b.y()) + 1);
    const bool steep = qAbs(b.y() - a.y()) > qAbs(b.x() - a.x());
    const QPoint side = steep ? QPoint(2, 0) : QPoint(0, 2);
    return QRegion(QPolygon({a, b, b + side, a + side}));
}

// Without a compositor the display forgets what lay under the lines. Other programs hear of it and draw again; our own
// windows cannot while the loop stands still.
void DrawAgain(const QRegion& screen)
{
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (QWidget* top : tops) {
        if (!top->isVisible() || top->isMinimized())
            continue;
        const QRegion local = screen.translated(-top->mapToGlobal(QPoint(0, 0))).intersected(top->rect());
        if (!local.isEmpty())
            top->repaint(local);
    }
}

}  // namespace

// A bare window and its image, without the widgets above: the animations run with the loop standing still, and what is
// put on an image here reaches the display without any event.
struct ScreenOverlay::Data {
    Data() : store(&window)
    {
        window.setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint |
                        Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
    }

    void Paint(const QRegion& region)
    {
        const QRect area = region.boundingRect();
        // What the last lines covered, and, for the moment between its moving and its new shape, cover once more.
        const QRegion before = shown + shown.translated(area.topLeft() - shown.boundingRect().topLeft());
        shown = region;
        const QRegion local = region.translated(-area.topLeft());
        if (window.geometry() != area)
            window.setGeometry(area);
        window.setMask(local);
        if (!window.isVisible())
            window.show();
        store.resize(area.size());
        const QRect whole(QPoint(0, 0), area.size());
        store.beginPaint(whole);
        {
            // Black and white in turn along the lines, to be seen on any ground.
            QPainter painter(store.paintDevice());
            painter.fillRect(whole, Qt::black);
            painter.fillRect(whole, QBrush(Qt::white, Qt::Dense6Pattern));
        }
        store.endPaint();
        store.flush(whole);
        DrawAgain(before.subtracted(region));
    }

    QRegion shown;
    QWindow window;
    QBackingStore store;
};

ScreenOverlay::ScreenOverlay() = default;
ScreenOverlay::~ScreenOverlay()
{
    Clear();
}

bool ScreenOverlay::Available() const
{
    // Only an X server puts a window where it is asked to, over everything, and lets clicks through.
    return qGuiApp && QGuiApplication::platformName() == QLatin1String("xcb");
}

void ScreenOverlay::Show(std::span<const ScreenLine> lines)
{
    if (!Available())
        return;
    QRegion region;
    for (const ScreenLine& line : lines)
        region += LineRegion(line);
    if (region.isEmpty()) {
        Clear();
        return;
    }
    if (!data)
        data = std::make_unique<Data>();
    data->Paint(region);
}

void ScreenOverlay::Clear()
{
    if (!data || !data->window.isVisible())
        return;
    data->window.hide();
    // Nothing is drawn on a hidden window, but the display is sent what waits, the hiding too.
    data->store.flush(QRect(0, 0, 1, 1));
    DrawAgain(std::exchange(data->shown, {}));
}

}  // namespace jotlet
