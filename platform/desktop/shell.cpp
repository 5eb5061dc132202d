#include "platform/desktop/shell.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/plugin.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

ShellHook& Hook()
{
    static ShellHook hook;
    return hook;
}

// A module stays loaded to the end of the process.
bool soundLoaded = false;

QUrl UrlOf(std::string_view pathOrUrl)
{
    const QFileInfo info(QFile::decodeName(QByteArray(pathOrUrl.data(), static_cast<qsizetype>(pathOrUrl.size()))));
    return info.exists() ? QUrl::fromLocalFile(info.absoluteFilePath())
                         : QUrl::fromUserInput(ShownText(pathOrUrl), QString(), QUrl::DefaultResolution);
}

bool IsMissing(const QUrl& url)
{
    return url.isLocalFile() && !QFileInfo::exists(url.toLocalFile());
}

}  // namespace

std::string LocalTarget(std::string_view pathOrUrl)
{
    const QUrl url = pathOrUrl.empty() ? QUrl() : UrlOf(pathOrUrl);
    if (!url.isLocalFile() || IsMissing(url))
        return {};
    return QFile::encodeName(url.toLocalFile()).toStdString();
}

bool OpenWithDesktop(std::string_view pathOrUrl)
{
    if (Hook()) {
        Hook()("open", pathOrUrl);
        return true;
    }
    if (!qApp || pathOrUrl.empty())
        return false;
    const QUrl url = UrlOf(pathOrUrl);
    // A file that is not there and cannot be an address is refused here; the opener would only say so later.
    if (!url.isValid() || IsMissing(url))
        return false;
    return QDesktopServices::openUrl(url);
}

bool PrintText(WindowHandle owner, std::string_view documentName, std::string_view text, std::string& problem)
{
    problem.clear();
    if (Hook()) {
        Hook()("print", documentName);
        return true;
    }
    using Print = bool (*)(QWidget*, const QString&, const QString&, QString&);
    static const auto print =
        reinterpret_cast<Print>(qApp ? FindPluginFunction("jotlet_print", "JotletPrintText") : nullptr);
    if (!print) {
        problem = "Printing is not available: its module is missing.";
        return false;
    }
    if (LeavingModals())
        return false;
    const HandlerScope scope;
    const ForeignRun run;
    QWidget* parent = WidgetOf(owner);
    QString reason;
    const bool done = print(parent ? parent->window() : nullptr, ShownText(documentName), ShownLines(text), reason);
    problem = ToUtf8(reason);
    return done;
}

bool PrintTextToPdf(std::string_view path, std::string_view documentName, std::string_view text, std::string& problem)
{
    using Print = bool (*)(const QString&, const QString&, const QString&);
    static const auto print =
        reinterpret_cast<Print>(qApp ? FindPluginFunction("jotlet_print", "JotletPrintToPdf") : nullptr);
    problem = print ? "" : "Printing is not available: its module is missing.";
    if (!print)
        return false;
    const QByteArray bytes(path.data(), static_cast<qsizetype>(path.size()));
    if (print(QFile::decodeName(bytes), ShownText(documentName), ShownLines(text)))
        return true;
    problem = "The file cannot be written.";
    return false;
}

void PlayWave(std::string_view path)
{
    if (Hook()) {
        Hook()("play", path);
        return;
    }
    const QByteArray bytes(path.data(), static_cast<qsizetype>(path.size()));
    const QString file = QFile::decodeName(bytes);
    if (!qApp || !QFileInfo::exists(file))
        return;
    using Play = void (*)(const QString&);
    static const auto play = reinterpret_cast<Play>(FindPluginFunction("jotlet_sound", "JotletPlayWave"));
    if (play)
        play(file);
    soundLoaded = play != nullptr;
}

void StopWave()
{
    if (Hook()) {
        Hook()("stop", "");
        return;
    }
    if (!soundLoaded)
        return;
    static const auto stop = reinterpret_cast<void (*)()>(FindPluginFunction("jotlet_sound", "JotletStopWave"));
    if (stop)
        stop();
}

ScopedShellHook::ScopedShellHook(ShellHook hook)
{
    Hook() = std::move(hook);
}

ScopedShellHook::~ScopedShellHook()
{
    Hook() = nullptr;
}

}  // namespace jotlet
