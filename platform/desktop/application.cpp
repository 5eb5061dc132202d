#include "platform/desktop/application.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QIcon>
#include <QKeyEvent>
#include <QPixmap>
#include <QPixmapCache>
#include <QRawFont>
#include <QStyleFactory>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/desktop/qt/accessible_native.h"
#include "platform/desktop/qt/bitmap_data.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/font_data.h"
#include "platform/desktop/qt/keys.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/mouse_router.h"
#include "platform/desktop/qt/plugin.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

// The loop that Run is in, and what it was told.
struct LoopState {
    QEventLoop* running = nullptr;
    bool quit = false;
    int code = 0;
    WindowHandle target = 0;
    std::span<const Accelerator> accelerators;
};

LoopState loop;

// Offers keys to the accelerators before any window sees them.
class KeyFilter final : public QObject {
public:
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || loop.accelerators.empty() || !receiver->isWidgetType())
            return false;
        // An unhandled key climbs through the parents; it is offered once, where it enters.
        auto* key = static_cast<QKeyEvent*>(event);
        if (key == lastSeen && key->timestamp() == lastTime)
            return false;
        lastSeen = key;
        lastTime = key->timestamp();
        return Translate(static_cast<QWidget&>(*receiver), *key);
    }

private:
    static bool Translate(QWidget& receiver, const QKeyEvent& key)
    {
        if (ModalDepth() > 0 || QApplication::activeModalWidget() || QApplication::activePopupWidget())
            return false;
        if (IsTextEdit(receiver))
            return false;
        const int virtualKey = VirtualKeyOf(key);
        const bool control = key.modifiers() & Qt::ControlModifier;
        const bool alt = key.modifiers() & Qt::AltModifier;
        if (key.modifiers() & Qt::ShiftModifier)
            return false;
        for (const Accelerator& one : loop.accelerators) {
            if (one.key == virtualKey && one.control == control && one.alt == alt) {
                SendTo(loop.target, kWmCommand, one.command, 0);
                return true;
            }
        }
        return false;
    }

    static bool IsTextEdit(const QWidget& receiver)
    {
        return receiver.inherits("QLineEdit") || receiver.inherits("QTextEdit") ||
               receiver.inherits("QPlainTextEdit") ||
               QString::fromStdString(ClassNameOf(HandleOf(&receiver))).compare("edit", Qt::CaseInsensitive) == 0;
    }

    const QKeyEvent* lastSeen = nullptr;
    quint64 lastTime = 0;
};

QPalette LightPalette()
{
    const QColor face(240, 240, 240);
    QPalette palette(face, face);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(38, 110, 191));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 225));
    palette.setColor(QPalette::ToolTipText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(112, 112, 112));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(128, 128, 128));
    palette.setColor(QPalette::Disabled, QPalette::Base, face);
    return palette;
}

// The toolkit takes a plain function.
QtMessageHandler printMessage = nullptr;

bool connecting = false;

// One line in place of the toolkit's many and its core dump.
[[noreturn]] void EndWithoutDisplay()
{
    std::fputs(
        "jotlet: No display can be used. Start it in a desktop session, or check DISPLAY or WAYLAND_DISPLAY; without a "
        "desktop, use jotctl.\n",
        stderr);
    std::fflush(stderr);
    std::_Exit(1);
}

// What a display or a computer without a sound server cannot do is skipped; the user need not hear of each time.
void LeaveOutSkips(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (connecting && type == QtFatalMsg)
        EndWithoutDisplay();
    if (connecting && QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")))
        return;
    for (const char* skipped : {"This plugin does not support", "PulseAudioService:"}) {
        if (text.startsWith(QLatin1String(skipped)))
            return;
    }
    printMessage(type, context, text);
}

// The program's picture in title bars and task lists.
QIcon ProgramIcon()
{
    constexpr int kProgramIcon = 1000;
    QIcon icon;
    for (const int side : {16, 32, 48}) {
        if (const QImage picture = FindIcon(kProgramIcon, side); !picture.isNull())
            icon.addPixmap(QPixmap::fromImage(picture));
    }
    return icon;
}

void SetDefault(const char* name, const char* value)
{
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

// Where no session bus runs, asking for one would start a helper program and wait for it to fail. This answers the
// question for as long as the connection is set up.
class NoBusLaunch {
public:
    NoBusLaunch()
    {
        const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
        if (qEnvironmentVariableIsSet(kBus) || (!folder.isEmpty() && QFile::exists(QFile::decodeName(folder + "/bus"))))
            return;
        qputenv(kBus, "unix:path=/dev/null/no-bus");
        set = true;
    }
    ~NoBusLaunch()
    {
        if (set)
            qunsetenv(kBus);
    }
    NoBusLaunch(const NoBusLaunch&) = delete;
    NoBusLaunch& operator=(const NoBusLaunch&) = delete;

private:
    static constexpr const char* kBus = "DBUS_SESSION_BUS_ADDRESS";
    bool set = false;
};

// Has title bars drawn by the module for them, where the compositor leaves them to the program. The module fits the
// version of Qt that it was built with and no other.
void ChooseTitleBars()
{
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")) &&
        QLatin1String(qVersion()) == QLatin1String(QT_VERSION_STR) &&
        OfferPlugin("wayland-decoration-client/jotlet_decoration"))
        SetDefault("QT_WAYLAND_DECORATION", "jotlet");
}

}  // namespace

struct Application::Data {
    Data(int count, char** words) : argumentCount(count), application(argumentCount, words) {}

    int argumentCount;
    QApplication application;
    KeyFilter keys;
};

Application::Application(int argc, char** argv)
{
    // Nothing here draws with OpenGL; its libraries would cost more than all the rest of the start.
    SetDefault("QT_XCB_GL_INTEGRATION", "none");
    printMessage = qInstallMessageHandler(LeaveOutSkips);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setDesktopSettingsAware(true);
    {
        const NoBusLaunch whileConnecting;
        connecting = true;
        data = std::make_unique<Data>(argc, argv);
        connecting = false;
    }
    ChooseTitleBars();
    // Merged, the moves between a press and its release come to nothing when the program was busy: a note pulled
    // quickly stays where it is.
    QApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    // Names of fonts are listed even where none is installed; only a real one has tables.
    if (QRawFont::fromFont(QApplication::font()).fontTable("head").isEmpty())
        std::fputs(
            "jotlet: No font is installed, so no text can be shown. Install one, such as the package "
            "fonts-dejavu-core.\n",
            stderr);
    QApplication::setApplicationName(QStringLiteral("Jotlet"));
    QGuiApplication::setDesktopFileName(QStringLiteral("jotlet"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication::setPalette(LightPalette());
    QApplication::setFont(MakeQtFont({"MS Sans Serif", -11}));
    QApplication::setWindowIcon(ProgramIcon());
    // The style keeps pictures of buttons for each dialog that was ever open; few of them are needed twice.
    constexpr int kPictureCacheKilobytes = 512;
    QPixmapCache::setCacheLimit(kPictureCacheKilobytes);
    InstallAccessibility();
    data->application.installEventFilter(&data->keys);
    loop = {};
}

Application::~Application()
{
    for (const WindowHandle handle : AllHandles()) {
        NativeWidget* native = NativeOf(handle);
        if (native && native->isWindow())
            native->Die();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    loop = {};
}

int Application::Run(WindowHandle target, std::span<const Accelerator> accelerators)
{
    QEventLoop events;
    const LoopState outer = loop;
    loop.running = &events;
    loop.target = target;
    loop.accelerators = accelerators;
    if (!loop.quit)
        events.exec();
    const int code = loop.code;
    loop = outer;
    loop.quit = false;
    FinishLeaving();
    return code;
}

void QuitLoop(int code)
{
    if (!qApp)
        return;
    QMetaObject::invokeMethod(
        qApp,
        [code] {
            loop.quit = true;
            loop.code = code;
            WaitForRelease(false);
            LeaveAllModals();
            if (loop.running)
                loop.running->quit();
            else
                FinishLeaving();
        },
        Qt::QueuedConnection);
}

bool ServeEvents()
{
    if (!qApp)
        return false;
    bool served = false;
    // Posted messages may post more; those are served too, up to a limit that ends a chain without end.
    for (int round = 0; round < 100; ++round) {
        const bool any = QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
        if (HandlerDepth() == 0)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        served = served || any;
        if (!any)
            break;
    }
    return served;
}

bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        const auto left = limit.count() - clock.elapsed();
        if (left <= 0 || !qApp)
            return done();
        QTimer wake;
        wake.setSingleShot(true);
        wake.start(static_cast<int>(qMin<qint64>(left, 20)));
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (HandlerDepth() == 0)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

bool ServeUntilButtonReleased()
{
    if (!LeftButtonDown())
        return true;
    WaitForRelease(true);
    while (WaitingForRelease() && !loop.quit)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const bool released = ReleaseSeen();
    WaitForRelease(false);
    return released;
}

}  // namespace jotlet
