#include "platform/desktop/cursor.h"

#include <QApplication>
#include <QBitmap>
#include <QCursor>
#include <QFile>
#include <QHash>
#include <QTextStream>
#include <QWindow>

#include "platform/desktop/native_window.h"
#include "platform/desktop/qt/bitmap_data.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

// The platform keeps one stack of cursors for the whole program.
bool waitShown = false;
bool hidden = false;

const char* PictureName(CursorId cursor)
{
    switch (cursor) {
        case CursorId::Hand:
            return "CUR_HAND1";
        case CursorId::DragTrue:
            return "CUR_DRAG_TRUE";
        case CursorId::DragTrueCopy:
            return "CUR_DRAG_TRUE_COPY";
        case CursorId::DragStop:
            return "CUR_DRAG_STOP";
        default:
            return nullptr;
    }
}

Qt::CursorShape ShapeOf(CursorId cursor)
{
    switch (cursor) {
        case CursorId::Wait:
            return Qt::WaitCursor;
        case CursorId::SizeNwse:
            return Qt::SizeFDiagCursor;
        case CursorId::Hand:
            return Qt::PointingHandCursor;
        case CursorId::DragTrue:
            return Qt::DragMoveCursor;
        case CursorId::DragTrueCopy:
            return Qt::DragCopyCursor;
        case CursorId::DragStop:
            return Qt::ForbiddenCursor;
        default:
            return Qt::ArrowCursor;
    }
}

// "<name> <x> <y>" a line, in the pixels of the plain picture.
QPoint HotSpot(const QString& name)
{
    QFile file(QStringLiteral(":/pictures/cursors.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QTextStream lines(&file);
    while (!lines.atEnd()) {
        const QStringList words = lines.readLine().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.size() >= 3 && words[0].section(QLatin1Char('.'), 0, 0).compare(name, Qt::CaseInsensitive) == 0)
            return {words[1].toInt(), words[2].toInt()};
    }
    return {};
}

// There a picture is shown pixel by pixel, and its hot spot counts in its pixels, whatever the scale.
QCursor CursorInPixels(const StoredPicture& picture, const QPoint& spot)
{
    const double scale = qApp->devicePixelRatio();
    const QSize size = picture.image.size() * scale / picture.scale;
    const QImage image = picture.image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return QCursor(QPixmap::fromImage(image), qRound(spot.x() * scale), qRound(spot.y() * scale));
}

QCursor MakeCursor(CursorId cursor)
{
    if (const char* name = PictureName(cursor)) {
        const QString text = QString::fromLatin1(name);
        StoredPicture picture = FindPicture(text);
        if (picture.image.isNull())
            picture = FindPicture(text.toLower());
        if (!picture.image.isNull()) {
            const QPoint spot = HotSpot(text);
            if (QGuiApplication::platformName() == QLatin1String("xcb"))
                return CursorInPixels(picture, spot);
            QPixmap pixmap = QPixmap::fromImage(picture.image);
            pixmap.setDevicePixelRatio(picture.scale);
            return QCursor(pixmap, spot.x(), spot.y());
        }
    }
    return QCursor(ShapeOf(cursor));
}

const QCursor& CursorFor(CursorId cursor)
{
    static QHash<int, QCursor> made;
    const int key = static_cast<int>(cursor);
    auto found = made.find(key);
    if (found == made.end())
        found = made.insert(key, MakeCursor(cursor));
    return *found;
}

}  // namespace

void ShowWaitCursor()
{
    if (waitShown || !qApp)
        return;
    waitShown = true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

void RestoreCursor()
{
    if (!waitShown || !qApp)
        return;
    waitShown = false;
    QGuiApplication::restoreOverrideCursor();
}

bool IsWaitCursorShown()
{
    return waitShown;
}

void ShowCursorNow(bool visible)
{
    if (visible != hidden || !qApp)
        return;
    hidden = !visible;
    if (hidden)
        QGuiApplication::setOverrideCursor(Qt::BlankCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

void SetCursorNow(CursorId cursor)
{
    WindowHandle window = CapturedWindow();
    if (!window)
        window = WindowFromScreenPoint(CursorPosition());
    QWidget* widget = WidgetOf(window);
    if (!widget)
        return;
    const QCursor& wanted = cursor == CursorId::None ? CursorFor(CursorId::Arrow) : CursorFor(cursor);
    if (widget->cursor() != wanted)
        widget->setCursor(wanted);
    // Under capture the cursor is this window's wherever the mouse is, also when it never saw the mouse come in.
    if (CapturedWindow()) {
        if (QWindow* native = widget->window()->windowHandle(); native && native->cursor() != wanted)
            native->setCursor(wanted);
    }
}

}  // namespace jotlet
