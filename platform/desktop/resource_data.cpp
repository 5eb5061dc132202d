#include "platform/desktop/resource_data.h"

#include <QFile>

namespace jotlet {

std::string DesktopResource(std::string_view name)
{
    QFile file(QStringLiteral(":/desktop/") + QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().toStdString();
}

}  // namespace jotlet
