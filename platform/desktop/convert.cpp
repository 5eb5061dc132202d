#include "platform/desktop/qt/convert.h"

#include <ostream>

#include "platform/base/text.h"

namespace jotlet {

std::ostream& operator<<(std::ostream& out, const Point& p)
{
    return out << '(' << p.x << ", " << p.y << ')';
}

std::ostream& operator<<(std::ostream& out, const Size& s)
{
    return out << s.width << " by " << s.height;
}

std::ostream& operator<<(std::ostream& out, const Rect& r)
{
    return out << '[' << r.left << ", " << r.top << " to " << r.right << ", " << r.bottom << ')';
}

QString ShownText(std::string_view bytes)
{
    const std::string_view text = bytes.substr(0, bytes.find('\0'));
    const std::string shown = DecodeForDisplay(text);
    return QString::fromUtf8(shown.data(), static_cast<qsizetype>(shown.size()));
}

QString ShownLines(std::string_view bytes)
{
    const std::string shown = ToLf(DecodeForDisplay(bytes.substr(0, bytes.find('\0'))));
    return QString::fromUtf8(shown.data(), static_cast<qsizetype>(shown.size()));
}

std::string ToUtf8(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace jotlet
