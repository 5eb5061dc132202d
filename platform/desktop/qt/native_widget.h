// The object behind a toolkit window or a dialog: turns the platform's events into messages of its procedure.
#pragma once

#include <QMargins>
#include <QRegion>
#include <QWidget>
#include <map>
#include <optional>
#include <vector>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/surface.h"

namespace jotlet {

// Of a dialog: kDialogPicker (resources/dialog_template.h).
inline constexpr std::uint32_t kStylePicker = 0x80000000;

class NativeWidget : public QWidget {
public:
    enum class Kind { Window, Dialog };

    NativeWidget(WindowHandle handle, const WindowClass& windowClass, std::uint32_t style, Kind kind, QWidget* parent);
    ~NativeWidget() override;

    WindowHandle Handle() const { return handle; }
    const WindowClass& Class() const { return windowClass; }
    std::uint32_t Style() const { return style; }
    bool IsDialog() const { return kind == Kind::Dialog; }
    bool Alive() const { return alive; }
    bool IsFrame() const { return isWindow() && !margin.isNull(); }
    // A dialog that this window is, or lies in.
    NativeWidget* OwnDialog();

    // Calls the procedure; a dialog's default follows when it left the message alone.
    MessageParam Deliver(std::uint32_t message, MessageParam wParam, MessageParam lParam);
    // A request is dropped when its turn comes while a modal run keeps input from the window.
    enum class Posted { Message, Request };
    void PostMessage(const WndMessage& message, Posted kind = Posted::Message);

    // Geometry. `margin` lies round the client area: the frame's border and title, or a child's border line.
    const QMargins& Margin() const { return margin; }
    QRect ClientArea() const { return rect().marginsRemoved(margin); }
    QPoint ToClient(const QPoint& local) const { return local - QPoint(margin.left(), margin.top()); }
    // Sets position and whole size within the limits; sends what changed at once.
    void Place(const QRect& bounds);
    void ApplyLimits();
    QSize Limited(QSize whole);
    // The whole window on the screen. Of a dialog that was never shown, with the decoration that it is likely to get.
    QRect Whole() const;
    // Sends kWmMove and kWmSize for what changed since the last call.
    void ReportGeometry();

    // Painting.
    void Invalidate(const QRegion& local, bool erase);
    void PaintNow();  // with children; on the screen when visible
    bool RunPaintCycle();
    Surface& GetSurface();
    QColor BackgroundColour() const;

    // The end: tells the window and its children, forgets the handles. The object goes when no handler of it can run.
    void Die();
    // How deep the loop was nested when the window was made.
    int BirthLoop() const { return birthLoop; }

    void* userWord = nullptr;
    WindowProcedure procedure = nullptr;
    // A dialog's units: average character width and height of its font.
    QSize dialogBase{6, 13};
    bool takesReturn = false;  // TakeReturnKey

    void BeginTimer(int id, Milliseconds period);
    void EndTimer(int id);
    // Enter and Escape in a dialog. True when the key was for the dialog.
    bool HandleDialogKey(const QKeyEvent& event);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QPaintEngine* paintEngine() const override { return QWidget::paintEngine(); }

private:
    void ShowTip(const QPoint& screen);
    bool IsDecorated() const;
    QMargins Decoration() const;
    void AllowForDecoration();
    MessageParam DialogDefault(std::uint32_t message, MessageParam wParam);

    WindowHandle handle;
    const WindowClass& windowClass;
    std::uint32_t style;
    Kind kind;
    bool alive = true;
    bool painting = false;
    bool ending = false;
    int birthLoop;
    QMargins margin;
    std::optional<QMargins> assumedDecoration;  // when the window was placed, until it is seen what it got
    Surface surface;
    QRegion invalid;
    bool eraseWanted = false;
    QPoint toldPosition;
    QSize toldSize;
    std::map<int, int> timers;  // the platform's timer by the window's id
    int wheelRest = 0;
    int wheelKeys = 0;
};

// Events that carry a posted message.
int MessageEventType();

}  // namespace jotlet
