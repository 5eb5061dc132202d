#include "platform/desktop/bitmap.h"

#include <QImageReader>

#include "platform/desktop/qt/bitmap_data.h"
#include "platform/desktop/qt/convert.h"

namespace jotlet {

namespace {

constexpr int kGreatestSide = 4096;

// Calls `change` for every opaque pixel of the colour; shares the pixels with other copies until one fits.
int ChangePixels(QImage& image, Colour from, QRgb to)
{
    const QRgb wanted = qRgb(RedOf(from), GreenOf(from), BlueOf(from));
    bool changed = false;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (row[x] != wanted)
                continue;
            if (!changed) {
                image.detach();
                changed = true;
            }
            reinterpret_cast<QRgb*>(image.scanLine(y))[x] = to;
            row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        }
    }
    return 1;
}

}  // namespace

Bitmap::Bitmap() = default;
Bitmap::~Bitmap() = default;
Bitmap::Bitmap(Bitmap&&) noexcept = default;
Bitmap& Bitmap::operator=(Bitmap&&) noexcept = default;

Bitmap::Bitmap(const Bitmap& other) : data(other.data ? std::make_unique<Data>(*other.data) : nullptr) {}

Bitmap& Bitmap::operator=(const Bitmap& other)
{
    if (this != &other)
        data = other.data ? std::make_unique<Data>(*other.data) : nullptr;
    return *this;
}

Bitmap::Bitmap(Size size)
{
    if (size.width <= 0 || size.height <= 0 || size.width > kGreatestSide || size.height > kGreatestSide)
        return;
    data = std::make_unique<Data>();
    data->image = QImage(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    data->image.fill(Qt::black);
}

Bitmap Bitmap::FromResource(std::string_view name)
{
    Bitmap bitmap;
    const StoredPicture picture = FindPicture(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    if (!picture.image.isNull())
        bitmap.data = std::make_unique<Data>(Data{picture.image, picture.scale});
    return bitmap;
}

Bitmap Bitmap::FromResource(int id)
{
    return FromResource(std::to_string(id));
}

Bitmap Bitmap::FromFile(std::string_view path, int& pixelsLeft)
{
    Bitmap bitmap;
    QImageReader reader(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())));
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    const QSize size = reader.size();
    if ((format != "bmp" && format != "png") || size.isEmpty() || size.width() > kGreatestSide ||
        size.height() > kGreatestSide || size.width() * size.height() > pixelsLeft)
        return bitmap;
    const QImage image = reader.read();
    if (image.isNull())
        return bitmap;
    pixelsLeft -= image.width() * image.height();
    bitmap.data = std::make_unique<Data>(Data{image.convertToFormat(QImage::Format_ARGB32_Premultiplied), 1});
    return bitmap;
}

bool Bitmap::IsNone() const
{
    return !data;
}

Size Bitmap::GetSize() const
{
    if (!data)
        return {};
    const QSize size = data->LogicalSize();
    return {size.width(), size.height()};
}

Colour Bitmap::Pixel(Point p) const
{
    if (!data)
        return kNoColour;
    const QPoint device(p.x * data->scale, p.y * data->scale);
    if (p.x < 0 || p.y < 0 || !data->image.rect().contains(device))
        return kNoColour;
    const QRgb pixel = data->image.pixel(device);
    return qAlpha(pixel) == 0 ? kNoColour : FromQt(pixel);
}

int Bitmap::Replace(Colour from, Colour to)
{
    if ((from & 0xFFFFFF) == (to & 0xFFFFFF))
        return 1;
    return data ? ChangePixels(data->image, from, qRgb(RedOf(to), GreenOf(to), BlueOf(to))) : 0;
}

int Bitmap::MakeTransparent(Colour key)
{
    return data ? ChangePixels(data->image, key, 0) : 0;
}

}  // namespace jotlet
