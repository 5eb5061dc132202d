#include "platform/desktop/file_dialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

FileDialogAnswer& PendingAnswer()
{
    static FileDialogAnswer answer;
    return answer;
}

// "name|pattern|name|pattern||", whatever stands last being the separator, as the chooser's own list.
QStringList NameFilters(const std::string& filter)
{
    QStringList filters;
    if (filter.empty())
        return filters;
    const QStringList parts = ShownText(filter).split(QChar(static_cast<unsigned char>(filter.back())));
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i + 1].isEmpty(); i += 2) {
        QString name = parts[i].section(QLatin1Char('('), 0, 0).trimmed();
        QString pattern = parts[i + 1];
        pattern.replace(QLatin1Char(';'), QLatin1Char(' '));
        if (pattern == QLatin1String("*.*"))
            pattern = QStringLiteral("*");  // names without a dot are files as well
        if (name.isEmpty())
            name = QStringLiteral("All files");
        filters << QStringLiteral("%1 (%2)").arg(name, pattern);
    }
    return filters;
}

QString StartFolder(const std::string& folder)
{
    const QString wanted = ShownText(folder);
    return !wanted.isEmpty() && QFileInfo(wanted).isDir() ? wanted : QDir::currentPath();
}

std::optional<std::string> ChosenPath(QFileDialog& dialog)
{
    if (LeavingModals())
        return std::nullopt;
    const HandlerScope scope;
    const ForeignRun run;
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QByteArray path = QFile::encodeName(dialog.selectedFiles().first());
    return path.toStdString();
}

QWidget* OwnerOf(WindowHandle owner)
{
    QWidget* widget = WidgetOf(owner);
    return widget ? widget->window() : nullptr;
}

}  // namespace

std::optional<std::string> RunFileDialog(WindowHandle owner, const FileDialogRequest& request)
{
    if (PendingAnswer())
        return PendingAnswer()(request);
    if (!qApp)
        return std::nullopt;
    QFileDialog dialog(OwnerOf(owner), ShownText(request.title), StartFolder(request.folder));
    const bool open = request.mode == FileDialogMode::Open;
    dialog.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    if (const QStringList filters = NameFilters(request.filter); !filters.isEmpty())
        dialog.setNameFilters(filters);
    if (!request.extension.empty() && request.extension != "*.*") {
        QString suffix = ShownText(request.extension);
        dialog.setDefaultSuffix(suffix.remove(QLatin1String("*.")));
    }
    if (!request.fileName.empty())
        dialog.selectFile(ShownText(request.fileName));
    return ChosenPath(dialog);
}

std::optional<std::string> RunFolderDialog(WindowHandle owner, std::string_view title, std::string_view start)
{
    if (PendingAnswer()) {
        FileDialogRequest request;
        request.title = title;
        request.folder = start;
        return PendingAnswer()(request);
    }
    if (!qApp)
        return std::nullopt;
    QFileDialog dialog(OwnerOf(owner), ShownText(title), StartFolder(std::string(start)));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return ChosenPath(dialog);
}

ScopedFileAnswer::ScopedFileAnswer(FileDialogAnswer answer)
{
    PendingAnswer() = std::move(answer);
}

ScopedFileAnswer::~ScopedFileAnswer()
{
    PendingAnswer() = nullptr;
}

}  // namespace jotlet
