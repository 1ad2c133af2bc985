#ifndef AUDIOPOLICYINSPECTOR_H
#define AUDIOPOLICYINSPECTOR_H

#include <QtCore/QLatin1String>
#include <QtCore/QList>
#include <QtCore/QVector>

class QTimer;
class ZelAudioManager;

/**
 * A window into a policy manager's state: what has no getter, and what a getter would leave a log line for.
 *
 * Reading changes nothing, logs nothing and asks neither the platform nor the flash.
 */
class AudioPolicyInspector
{
public:
    struct Timer
    {
        QLatin1String purpose; ///< in words, such as "unmute after the timed mute"
        QTimer *timer;
    };

    explicit AudioPolicyInspector(ZelAudioManager &inspected);

    /// 0 to 19, as last given to updateAudioStatus() by an application or by the manager's own timers.
    int status() const;
    int channel() const;
    /// The six volumes by volume type, 0 to 25.
    QList<int> volumes() const;
    int equalizerType() const;
    /// The sixteen bands of the custom curve as stored: twice what adjustCustomEq() was given.
    QList<int> customCurve() const;
    /// The six timers, in the order of their declaration.
    QVector<Timer> timers() const;

private:
    ZelAudioManager &m_manager;
};

#endif
