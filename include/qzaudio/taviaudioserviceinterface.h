#ifndef QZAUDIO_TAVIAUDIOSERVICEINTERFACE_H
#define QZAUDIO_TAVIAUDIOSERVICEINTERFACE_H

#include <qzaudio/export.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtDBus/QDBusAbstractInterface>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusPendingReply>

/**
 * Client-side proxy of the bus interface "tavi.AudioService".
 *
 * No method blocks: each gives a pending reply, which carries the value or the error (an absent service included). The caller
 * names service and object path. Constructing the proxy may ask the bus for the service's owner.
 *
 * Focus results: 0 granted, 1 failed. Focus change codes: see AudioFocusChange.
 *
 * Threads: use the object from the thread that made it, which must run a Qt event loop for the signals.
 */
class QZAUDIO_EXPORT TaviAudioServiceInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// "tavi.AudioService"
    static inline const char *staticInterfaceName() { return "tavi.AudioService"; }

    /// For the daemon, service is "tavi.AudioService" and path "/tavi/AudioService".
    TaviAudioServiceInterface(const QString &service, const QString &path, const QDBusConnection &connection, QObject *parent = nullptr);
    ~TaviAudioServiceInterface() override;

Q_SIGNALS:
    /// A client gained (1) or lost (-1 to -3) focus.
    void audioFocusChanged(int newState, const QString &clientId);
    /// Another mega base is chosen.
    void megaBaseChanged(int newValue);
    /// The first argument is spelled so on the bus; it tells whether the volume is muted.
    void volumeChanged(bool isMite, int level);

public Q_SLOTS:
    /// Gives focus up, or leaves the stack. Always 0, unless it is refused with an error.
    inline QDBusPendingReply<int> abandonAudioFocus(const QString &clientId)
    {
        return asyncCallWithArgumentList(QStringLiteral("abandonAudioFocus"), {QVariant::fromValue(clientId)});
    }

    /// The mega base that is chosen, from 0 on.
    inline QDBusPendingReply<int> currentMegaBase() { return asyncCallWithArgumentList(QStringLiteral("currentMegaBase"), {}); }

    /// The duration hint of the holder, 0 when there is none.
    inline QDBusPendingReply<int> getCurrentAudioFocus() { return asyncCallWithArgumentList(QStringLiteral("getCurrentAudioFocus"), {}); }

    /// Whether the service has a volume: without it isVolumeMute() and volumeLevel() give the error NotSupported.
    inline QDBusPendingReply<bool> isVolumeAvailable() { return asyncCallWithArgumentList(QStringLiteral("isVolumeAvailable"), {}); }

    /// Whether the policy manager in the service's process mutes. The first question starts up the audio there, as volumeLevel() does.
    inline QDBusPendingReply<bool> isVolumeMute() { return asyncCallWithArgumentList(QStringLiteral("isVolumeMute"), {}); }

    /// Goes on to the next mega base, from the last one to 0.
    inline QDBusPendingReply<> nextMegaBase() { return asyncCallWithArgumentList(QStringLiteral("nextMegaBase"), {}); }

    /// Requests focus for a client: 0 granted, 1 failed. The stream is only remembered; @p durationHint is a gain, 1 to 4.
    inline QDBusPendingReply<int> requestAudioFocus(int mainStreamType, int durationHint, const QString &clientId)
    {
        return asyncCallWithArgumentList(QStringLiteral("requestAudioFocus"),
                                         {QVariant::fromValue(mainStreamType), QVariant::fromValue(durationHint), QVariant::fromValue(clientId)});
    }

    /// Leaves the stack without anybody being told.
    inline QDBusPendingReply<> unregisterAudioFocusClient(const QString &clientId)
    {
        return asyncCallWithArgumentList(QStringLiteral("unregisterAudioFocusClient"), {QVariant::fromValue(clientId)});
    }

    /// The stored media volume, 0 to 25. The first question starts up the audio in the service's process.
    inline QDBusPendingReply<int> volumeLevel() { return asyncCallWithArgumentList(QStringLiteral("volumeLevel"), {}); }
};

#endif
