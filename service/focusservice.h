#ifndef FOCUSSERVICE_H
#define FOCUSSERVICE_H

#include "callers.h"
#include "clientregistry.h"
#include "options.h"
#include "volumethread.h"

#include <qzaudio/audioservice.h>

#include <QtCore/QObject>
#include <QtCore/QQueue>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>
#include <QtDBus/QDBusMessage>

#include <memory>

/**
 * What the bus interface "tavi.AudioService" does, for the connections of a bus; an adaptor made from the interface's
 * description puts it there.
 *
 * The focus stack is the library's AudioService. To its rules come those of a bus with many processes:
 * - A client id belongs to the connection that requested with it. Other connections get AccessDenied for it.
 * - When a connection leaves the bus, its clients are abandoned, the one that asked last at the end: nobody is given focus who
 *   is gone.
 * - While the call's client, "IN_VOICE_COMM_FOCUS_ID", is on top nobody else can request, so only some users may request with it;
 *   others get AccessDenied. Who has it is reported.
 * - Over a limit of ClientRegistry the answer is LimitsExceeded, for an id that is too long InvalidArgs. The stack stays as
 *   it is.
 * - Questions for volume and mute are answered one after the other, and whoever waits for the settings file holds up nobody who asks
 *   for focus. Only so many may wait: over that it is LimitsExceeded.
 * - A duration hint outside 1 to 4 is denied with the result 1, as AudioManager denies it.
 *
 * Threads: use the object from the thread that made it, which must run a Qt event loop.
 */
class FocusService : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    FocusService(const QDBusConnection &bus, const Options &options, QObject *parent = nullptr);
    ~FocusService() override;

    int requestAudioFocus(int mainStreamType, int durationHint, const QString &clientId);
    int abandonAudioFocus(const QString &clientId);
    void unregisterAudioFocusClient(const QString &clientId);
    int getCurrentAudioFocus();

    int currentMegaBase() const;
    /// One further, and after the last one back to 0.
    void nextMegaBase();

    bool isVolumeAvailable() const;
    /// These two are answered later, when the volume's thread has the answer; their values go nowhere.
    bool isVolumeMute();
    int volumeLevel();

    /// To be called before the end; false when the volume's thread hangs and only the whole process can be ended.
    bool stop();

Q_SIGNALS:
    // These the adaptor passes on; audioFocusChanged goes to the bus by itself.
    void megaBaseChanged(int newValue);
    void volumeChanged(bool isMite, int level);

private Q_SLOTS:
    void onNameGone(const QString &name);

private:
    Q_DISABLE_COPY(FocusService)

    QString caller() const;
    bool isAllowed(ClientRegistry::Answer answer) const;
    bool mayCall(uint user) const;
    void endCall();
    void askForVolume(bool isForLevel);
    void onVolumeAnswered(bool isMuted, int level);
    void tell(int newState, const QString &clientId);
    void makeRoom(const ClientRegistry::Caller &caller);

    struct VolumeQuestion
    {
        QDBusMessage message;
        uint user;
        bool isForLevel;
    };

    QDBusConnection m_bus;
    QString m_path;
    AudioService m_focus;
    Callers m_callers;
    ClientRegistry m_registry;
    QVector<uint> m_callUsers; // empty: everybody
    std::unique_ptr<VolumeThread> m_volume; // null: isVolumeAvailable() is false, the other two answer NotSupported
    QQueue<VolumeQuestion> m_volumeQuestions; // each of them was passed on to the volume's thread
    QString m_call; // who has the focus of a call, for people; empty: nobody
    int m_megaBase = 0;
    int m_megaBaseCount;
};

#endif
