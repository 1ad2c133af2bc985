#ifndef AUDIOMANAGER_P_H
#define AUDIOMANAGER_P_H

#include "privateexport.h"

#include <qzaudio/audiolisteners.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/qxprivate.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

class AudioService;

/// State of AudioManager. Only requesting and abandoning focus are serialised, by the mutex.
class QZAUDIO_PRIVATE_EXPORT AudioManagerPrivate : public QObject, public QxPrivate<AudioManager>
{
    Q_OBJECT

public:
    AudioManagerPrivate();
    ~AudioManagerPrivate() override;

    /// The listener's own id; null for a null listener.
    QString getIdForAudioFocusListener(IAudioFocusChangeListener *listener);
    /// The first listener registered under an id keeps it.
    void registerAudioFocusListener(IAudioFocusChangeListener *listener);
    void unregisterAudioFocusListener(IAudioFocusChangeListener *listener);

    AudioService *service; ///< a child
    QHash<QString, IAudioFocusChangeListener *> listeners; ///< client id to listener, not owned
    QList<IMegaBaseChangeListener *> megaBaseListeners; ///< not owned
    QList<IVolumeListener *> volumeListeners; ///< not owned
    QMutex mutex; ///< not recursive; held while listeners are told

public Q_SLOTS:
    /**
     * Takes no lock. The connection is an automatic one: on this object's thread it runs within the request or abandonment,
     * which holds the mutex; what another thread causes arrives later, from this thread's event loop, without the mutex.
     */
    void onAudioFocusChanged(int newState, QString clientId);
    /// For a source of mega base changes to connect; nothing in the library does.
    void onMegaBaseChanged(int newValue);
};

#endif
