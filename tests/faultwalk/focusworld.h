#ifndef FOCUSWORLD_H
#define FOCUSWORLD_H

#include <logrecorder.h>

#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/audioservice.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <functional>
#include <map>
#include <memory>

/// Which of the three classes that keep or reach a focus stack.
enum class FocusLevel {
    Control,
    Service,
    Manager,
};

/// Audio focus makes no calls on the platform: what can be missing, or meddle, is who is told.
struct FocusFault
{
    enum Way {
        None,
        NobodyThere, ///< a dispatcher or a listener that is null, a signal that nobody is connected to
        CallsBack, ///< who is told calls the class it is told by
    };

    Way way = None;
    QString client;

    QString describe() const;
};

/// What one call on audio focus led to.
struct FocusRun
{
    QVariant result;
    QStringList told; ///< "-3 navi"
    QStringList stack; ///< from bottom to top, "music 3 1 0": id, stream, hint, loss
    QStringList lines;
    int callbacks = 0;
    QStringList answers; ///< what callbacks were given, each once
};

/// A focus stack of its own with its clients.
class FocusWorld
{
public:
    FocusWorld(FocusLevel level, FocusFault fault);
    ~FocusWorld();

    FocusRun run(const std::function<QVariant(FocusWorld &)> &call);

    /// The calls of a client, on the class of this level.
    int request(const QString &id, int hint);
    int abandon(const QString &id);

    /// Null where nobody is to be there.
    IAudioFocusDispatcher *dispatcherOf(const QString &id);
    IAudioFocusChangeListener *listenerOf(const QString &id);

    AudioFocusControl control;
    AudioService service;
    AudioManager manager;

private:
    Q_DISABLE_COPY(FocusWorld)

    class Client;

    Client &client(const QString &id);
    void tell(int focusChange, const QString &clientId);
    QString callBack();
    QStringList stack();

    const FocusLevel m_level;
    const FocusFault m_fault;
    std::map<QString, std::unique_ptr<Client>> m_clients;
    QObject m_context; ///< of the connection
    FocusRun m_current;
    LogRecorder m_log;
};

#endif
