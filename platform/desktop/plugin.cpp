#include "platform/desktop/qt/plugin.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QString>

namespace jotlet {

void* FindPluginFunction(const char* module, const char* function)
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString name = QString::fromLatin1(module) + QLatin1String(".so");
    for (const QString& place : {folder, folder + QLatin1String("/../lib/jotlet"), folder + QLatin1String("/lib")}) {
        QLibrary library(place + QLatin1Char('/') + name);
        library.setLoadHints(QLibrary::PreventUnloadHint);
        if (const QFunctionPointer found = library.resolve(function))
            return reinterpret_cast<void*>(found);
    }
    return nullptr;
}

}  // namespace jotlet
