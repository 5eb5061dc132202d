#include "platform/desktop/qt/plugin.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QStringList>

namespace jotlet {

namespace {

QStringList Places()
{
    const QString folder = QCoreApplication::applicationDirPath();
    return {folder, folder + QLatin1String("/../lib/jotlet"), folder + QLatin1String("/lib")};
}

}  // namespace

void* FindPluginFunction(const char* module, const char* function)
{
    const QString name = QString::fromLatin1(module) + QLatin1String(".so");
    for (const QString& place : Places()) {
        QLibrary library(place + QLatin1Char('/') + name);
        library.setLoadHints(QLibrary::PreventUnloadHint);
        if (const QFunctionPointer found = library.resolve(function))
            return reinterpret_cast<void*>(found);
    }
    return nullptr;
}

bool OfferPlugin(const char* module)
{
    for (const QString& place : Places()) {
        if (QFile::exists(place + QLatin1Char('/') + QLatin1String(module) + QLatin1String(".so"))) {
            QCoreApplication::addLibraryPath(place);
            return true;
        }
    }
    return false;
}

}  // namespace jotlet
