#include <QFile>
#include <QGuiApplication>
#include <QHash>

#include "platform/desktop/qt/bitmap_data.h"

#ifdef JOTLET_PICTURES
// A static library's resources are registered by name, and the macro must stand outside of any namespace.
static void RegisterPictures()
{
    Q_INIT_RESOURCE(pictures);
}
#else
static void RegisterPictures() {}
#endif

namespace jotlet {

namespace {

QImage Load(const QString& path)
{
    static const bool registered = (RegisterPictures(), true);
    if (!registered || !QFile::exists(path))
        return {};
    const QImage image(path);
    return image.isNull() ? image : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

StoredPicture FindPicture(const QString& name)
{
    // Each picture is unpacked once.
    static QHash<QString, StoredPicture> known;
    const auto found = known.constFind(name);
    if (found != known.constEnd())
        return *found;
    QString bare = name;
    if (bare.endsWith(QLatin1String(".bmp"), Qt::CaseInsensitive))
        bare.chop(4);
    const QString base = QLatin1String(":/pictures/") + bare;
    StoredPicture picture;
    if (qGuiApp && qGuiApp->devicePixelRatio() > 1) {
        picture.image = Load(base + QLatin1String("@2x.png"));
        picture.scale = 2;
    }
    if (picture.image.isNull()) {
        picture.image = Load(base + QLatin1String(".png"));
        picture.scale = 1;
    }
    known.insert(name, picture);
    return picture;
}

QImage FindIcon(int iconId, int pixels)
{
    static QHash<QString, QImage> known;
    const auto stored = [iconId](int side) {
        const QString path = QStringLiteral(":/pictures/icon_%1_%2.png").arg(iconId).arg(side);
        auto found = known.constFind(path);
        if (found == known.constEnd())
            found = known.insert(path, Load(path));
        return *found;
    };
    QImage nearest;
    for (const int side : {12, 16, 24, 32, 36, 48, 64, 128, 256}) {
        if (const QImage image = stored(side); !image.isNull()) {
            nearest = image;
            if (side >= pixels)
                break;
        }
    }
    return nearest;
}

}  // namespace jotlet
