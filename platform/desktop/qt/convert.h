// Between the layer's own values and those of the platform's toolkit.
#pragma once

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QString>
#include <string>
#include <string_view>

#include "platform/desktop/geometry.h"

namespace jotlet {

inline QColor ToQt(Colour colour)
{
    return QColor(RedOf(colour), GreenOf(colour), BlueOf(colour));
}
inline Colour FromQt(QRgb pixel)
{
    return Rgb(qRed(pixel), qGreen(pixel), qBlue(pixel));
}
inline QPoint ToQt(Point p)
{
    return {p.x, p.y};
}
inline Point FromQt(const QPoint& p)
{
    return {p.x(), p.y()};
}
inline QRect ToQt(const Rect& r)
{
    return {r.left, r.top, r.Width(), r.Height()};
}
inline Rect FromQt(const QRect& r)
{
    return Rect::At(r.x(), r.y(), r.width(), r.height());
}

// Stored bytes as they are shown: UTF-8, other bytes as Windows-1252, up to the first zero byte.
QString ShownText(std::string_view bytes);
// The same with every line break as a single LF.
QString ShownLines(std::string_view bytes);
std::string ToUtf8(const QString& text);

}  // namespace jotlet
