// Sounds, in a module of its own that is loaded at the first one.
//
// Everything of the sound library lives on a thread of its own: opening a device, or finding that there is none, may
// take long, and the program must not wait for it.
#include <QAudioDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QThread>
#include <QUrl>
#include <memory>

namespace {

class Player {
public:
    Player()
    {
        context.moveToThread(&thread);
        thread.setObjectName(QStringLiteral("sound"));
        thread.start(QThread::LowPriority);
    }

    void Play(const QString& path)
    {
        QMetaObject::invokeMethod(&context, [this, path] { Start(path); });
    }

    void Silence()
    {
        QMetaObject::invokeMethod(&context, [this] { effect.reset(); });
    }

    // False when the device hangs; the thread is then left behind.
    bool Stop()
    {
        Silence();
        thread.quit();
        return thread.wait(500);
    }

private:
    void Start(const QString& path)
    {
        if (QMediaDevices::defaultAudioOutput().isNull())
            return;
        effect = std::make_unique<QSoundEffect>();
        effect->setSource(QUrl::fromLocalFile(path));
        effect->play();
    }

    QThread thread;
    QObject context;
    std::unique_ptr<QSoundEffect> effect;
};

// One sound plays at a time; a new one ends it.
std::unique_ptr<Player> player;

void StopPlayer()
{
    if (player && !player->Stop())
        player.release();
    player.reset();
}

}  // namespace

extern "C" Q_DECL_EXPORT void JotletPlayWave(const QString& path)
{
    if (!player) {
        player = std::make_unique<Player>();
        qAddPostRoutine(StopPlayer);
    }
    player->Play(path);
}

extern "C" Q_DECL_EXPORT void JotletStopWave()
{
    if (player)
        player->Silence();
}
