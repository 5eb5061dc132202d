// Title bars under Wayland, where the compositor draws none: unlike the usual ones they have no buttons to minimise and
// maximise where a window cannot do either.
#include <QExposeEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <QStyleHints>
#include <QWindow>
#include <array>
#include <chrono>
#include <memory>
#include <optional>

#include "platform/desktop/qt/wayland_decoration.h"

namespace jotlet {

namespace {

using QtWaylandClient::QWaylandInputDevice;

constexpr int kBar = 30;     // height of the title bar
constexpr int kBorder = 3;   // the other sides, where a window is pulled larger
constexpr int kButton = 24;  // width of a button
constexpr int kSign = 8;     // side of the sign on it
constexpr int kIcon = 16;    // side of the window's picture
constexpr int kCorner = 12;  // what counts as the corner along a side

enum class Button { None, Close, Maximise, Minimise };
constexpr std::array kFromTheRight{Button::Close, Button::Maximise, Button::Minimise};

class TitleBar final : public QtWaylandClient::QWaylandAbstractDecoration {
public:
    QMargins margins(MarginsType type) const override
    {
        return type == ShadowsOnly ? QMargins() : QMargins(kBorder, kBar, kBorder, kBorder);
    }

    bool handleMouse(QWaylandInputDevice* device, const QPointF& local, const QPointF&, Qt::MouseButtons buttons,
                     Qt::KeyboardModifiers) override
    {
        const bool ours = !Content().contains(local);
        const Button under = ButtonAt(local);
        const Qt::Edges edges = EdgesAt(local);
        if (ours)
            waylandWindow()->setMouseCursor(device, CursorFor(edges));
        else
            waylandWindow()->restoreMouseCursor(device);
        if (isLeftReleased(buttons) && under == pressed)
            Act(under);
        if (!ours || !(buttons & Qt::LeftButton))
            Press(Button::None);
        if (ours && isRightClicked(buttons)) {
            showWindowMenu(device);
        } else if (ours && isLeftClicked(buttons)) {
            Press(under);
            if (edges) {
                startResize(device, edges, buttons);
                buttons = Qt::NoButton;  // the compositor keeps the release
            } else if (under == Button::None && !Doubled()) {
                startMove(device, buttons);
                buttons = Qt::NoButton;
            }
        }
        setMouseButtons(buttons);
        return ours;
    }

    bool handleTouch(QWaylandInputDevice*, const QPointF& local, const QPointF&, QEventPoint::State state,
                     Qt::KeyboardModifiers) override
    {
        if (Content().contains(local))
            return false;
        if (state != QEventPoint::Pressed)
            return true;
        if (const Button under = ButtonAt(local); under != Button::None)
            Act(under);
        else if (const Qt::Edges edges = EdgesAt(local))
            window()->startSystemResize(edges);
        else if (!Doubled())
            window()->startSystemMove();
        return true;
    }

protected:
    void paint(QPaintDevice* device) override
    {
        const QPalette palette = QGuiApplication::palette();
        QPainter painter(device);
        painter.fillRect(Whole(), palette.color(QPalette::Window));
        painter.setPen(palette.color(QPalette::Dark));
        painter.drawRect(Whole().adjusted(0, 0, -1, -1));
        const QColor ink =
            palette.color(window()->isActive() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
        int right = Whole().width() - kBorder;
        for (const Button one : kFromTheRight) {
            if (!Allows(one))
                continue;
            const QRect place = PlaceOf(one);
            right = place.left();
            if (one == pressed)
                painter.fillRect(place, palette.color(QPalette::Mid));
            painter.setPen(ink);
            DrawSign(painter, one, place);
        }
        const int left = (kBar - kIcon) / 2;
        window()->icon().paint(&painter, left, left, kIcon, kIcon);
        const QRect room(kBar, 0, right - kBar - kBorder, kBar);
        painter.setPen(ink);
        painter.drawText(room, Qt::AlignCenter,
                         painter.fontMetrics().elidedText(window()->title(), Qt::ElideRight, room.width()));
    }

private:
    QRect Whole() const { return {QPoint(), window()->size().grownBy(margins(Full))}; }
    QRectF Content() const { return Whole().marginsRemoved(margins(Full)); }
    bool Fixed() const { return window()->minimumSize() == window()->maximumSize(); }

    bool Allows(Button button) const
    {
        const Qt::WindowFlags flags = window()->flags();
        const auto asked = [flags](Qt::WindowType hint) {
            return !(flags & Qt::CustomizeWindowHint) || (flags & hint);
        };
        switch (button) {
            case Button::Close:
                return asked(Qt::WindowCloseButtonHint);
            case Button::Maximise:
                return !Fixed() && asked(Qt::WindowMaximizeButtonHint);
            case Button::Minimise:
                return !Fixed() && asked(Qt::WindowMinimizeButtonHint);
            default:
                return false;
        }
    }

    QRect PlaceOf(Button button) const
    {
        int left = Whole().width() - kBorder;
        for (const Button one : kFromTheRight) {
            left -= Allows(one) ? kButton : 0;
            if (one == button)
                break;
        }
        return {left, kBorder, kButton, kBar - 2 * kBorder};
    }

    Button ButtonAt(const QPointF& local) const
    {
        for (const Button one : kFromTheRight) {
            if (Allows(one) && QRectF(PlaceOf(one)).contains(local))
                return one;
        }
        return Button::None;
    }

    Qt::Edges EdgesAt(const QPointF& local) const
    {
        const QRectF whole = Whole();
        if (Fixed() || window()->windowStates() & Qt::WindowMaximized ||
            whole.adjusted(kBorder, kBorder, -kBorder, -kBorder).contains(local))
            return {};
        Qt::Edges edges;
        edges.setFlag(Qt::LeftEdge, local.x() < kCorner);
        edges.setFlag(Qt::RightEdge, local.x() >= whole.right() - kCorner);
        edges.setFlag(Qt::TopEdge, local.y() < kCorner);
        edges.setFlag(Qt::BottomEdge, local.y() >= whole.bottom() - kCorner);
        return edges;
    }

    static Qt::CursorShape CursorFor(Qt::Edges edges)
    {
        const bool upright = edges & (Qt::TopEdge | Qt::BottomEdge);
        const bool across = edges & (Qt::LeftEdge | Qt::RightEdge);
        const bool falling = edges.testFlag(Qt::TopEdge) == edges.testFlag(Qt::LeftEdge);
        if (upright && across)
            return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
        return upright ? Qt::SizeVerCursor : across ? Qt::SizeHorCursor : Qt::ArrowCursor;
    }

    static void DrawSign(QPainter& painter, Button button, const QRect& place)
    {
        QRect sign(0, 0, kSign, kSign);
        sign.moveCenter(place.center());
        if (button == Button::Maximise) {
            painter.drawRect(sign);
        } else if (button == Button::Minimise) {
            painter.drawLine(sign.bottomLeft(), sign.bottomRight());
        } else {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.drawLine(sign.topLeft(), sign.bottomRight());
            painter.drawLine(sign.topRight(), sign.bottomLeft());
            painter.setRenderHint(QPainter::Antialiasing, false);
        }
    }

    void Press(Button button)
    {
        if (button == pressed)
            return;
        pressed = button;
        update();
        // Drawn when the window shows something, which a press alone does not make it do.
        QCoreApplication::postEvent(window(), std::make_unique<QExposeEvent>(QRect(0, 0, 1, 1)).release());
    }

    // True at the second click on the bar in quick succession, which is answered here.
    bool Doubled()
    {
        const auto now = std::chrono::steady_clock::now();
        const auto limit = std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval());
        const bool second = lastClick && now - *lastClick < limit;
        lastClick = second ? std::nullopt : std::optional(now);
        if (second && Allows(Button::Maximise))
            Act(Button::Maximise);
        return second;
    }

    // A window behind a modal one stays as it is.
    bool Blocked() const
    {
        const QWindow* modal = QGuiApplication::modalWindow();
        for (const QWindow* one = window(); one && modal; one = one->transientParent()) {
            if (one == modal)
                return false;
        }
        return modal;
    }

    void Act(Button button)
    {
        if (button == Button::Maximise)
            window()->setWindowStates(window()->windowStates() ^ Qt::WindowMaximized);
        else if (button == Button::Minimise)
            window()->setWindowStates(window()->windowStates() | Qt::WindowMinimized);
        else if (button == Button::Close && !Blocked())
            // Later: with the window this goes too. A call queued at the window would reach its widget.
            QMetaObject::invokeMethod(
                qGuiApp,
                [closed = QPointer(window())] {
                    if (closed)
                        closed->close();
                },
                Qt::QueuedConnection);
    }

    Button pressed = Button::None;
    std::optional<std::chrono::steady_clock::time_point> lastClick;
};

}  // namespace

class DecorationPlugin final : public QtWaylandClient::QWaylandDecorationPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.WaylandClient.QWaylandDecorationFactoryInterface.5.4" FILE
                          "decoration_plugin.json")

public:
    QtWaylandClient::QWaylandAbstractDecoration* create(const QString&, const QStringList&) override
    {
        return std::make_unique<TitleBar>().release();  // the window owns it
    }
};

}  // namespace jotlet

#include "decoration_plugin.moc"
