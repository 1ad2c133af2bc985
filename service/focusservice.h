#ifndef FOCUSSERVICE_H
#define FOCUSSERVICE_H

#include "callers.h"
#include "clientregistry.h"
#include "options.h"
#include "volumesource.h"

#include <qzaudio/audioservice.h>

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>
#include <QtDBus/QDBusServiceWatcher>

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
    bool isVolumeMute();
    int volumeLevel();

Q_SIGNALS:
    void audioFocusChanged(int newState, const QString &clientId);
    void megaBaseChanged(int newValue);
    void volumeChanged(bool isMite, int level);

private:
    Q_DISABLE_COPY(FocusService)

    QString caller() const;
    bool isAllowed(ClientRegistry::Answer answer) const;
    bool mayCall(uint user) const;
    void reportEndOfCall();
    bool hasVolume() const;
    void watch(const ClientRegistry::Caller &caller);
    void unwatch(const QString &connection);
    void onConnectionGone(const QString &connection);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_departures;
    AudioService m_focus;
    Callers m_callers;
    ClientRegistry m_registry;
    QVector<uint> m_callUsers; // empty: everybody
    std::unique_ptr<VolumeSource> m_volume; // null: isVolumeAvailable() is false, the other two answer NotSupported
    int m_megaBase = 0;
    int m_megaBaseCount;
};

#endif
