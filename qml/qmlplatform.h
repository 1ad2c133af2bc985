#ifndef QMLPLATFORM_H
#define QMLPLATFORM_H

#include "scriptobject.h"

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QVariant>

/// What of the simulated platform can be bound, and its signals.
class PlatformState : public QObject
{
    Q_OBJECT
    /// Reverse gear, as the MCU service reports it.
    Q_PROPERTY(bool reverseGear READ reverseGear NOTIFY reverseGearChanged)
    /// Home screen that the settings provider reports; 7 has volume defaults of its own.
    Q_PROPERTY(int homeUiType READ homeUiType NOTIFY homeUiTypeChanged)
    /// The platform itself, for bindings: what is read through it is read again after each change. "Platform.live.isDucked()"
    Q_PROPERTY(QObject *live READ live NOTIFY liveChanged)

public:
    explicit PlatformState(QObject *parent = nullptr);

    bool reverseGear() const;
    int homeUiType() const;
    QObject *live();
    /// Names of sources that were set or routed so far, besides those of the library.
    const QSet<QString> &sourcesInUse() const { return m_sources; }

Q_SIGNALS:
    void reverseGearChanged();
    void homeUiTypeChanged();
    /// Something that the functions read may be different, journal, faults and books included.
    void liveChanged();
    /// One item of state() really changed; an invalid value: it is no longer set.
    void stateChanged(const QString &group, const QString &name, const QVariant &value);
    /// A call reached the platform, as a line of journal().
    void called(const QString &call);

private:
    Q_DISABLE_COPY(PlatformState)

    /// Takes over an item of the chip's state.
    void learn(const QString &group, const QString &name, const QVariant &value);
    /// The chip tells only that all of it may be different.
    void compareState();

    QMap<QPair<QString, QString>, QVariant> m_known; // by group and name
    QSet<QString> m_sources;
};

/**
 * The simulated platform for QML and JavaScript: the singleton Platform of the module QzAudio.Simulator.
 *
 * The readers are those of simulator::AudioChip, and what one can do to platform and car. Tracks and sources are the platform's ("main",
 * "S+FilePlayer"), channels are output channel bits (1, 2, 4, 8, 16, 32). Arguments are checked as in AudioControl; besides, a reader
 * throws a RangeError for a track, source, channel, input or band that there is none of. Sources are those of the library, and whatever was
 * set or routed so far.
 *
 * Use it from the engine's thread, which must be the one that calls the platform.
 */
class QmlPlatform : public ScriptObject<QmlPlatform, PlatformState>
{
public:
    using ScriptObject::ScriptObject;

    static const ScriptType &scriptType();
};

#endif
