#ifndef LEVELORIGINS_H
#define LEVELORIGINS_H

#include "loggedrequest.h"
#include "logplace.h"

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

class SettingsReader;

/**
 * The unit that wrote a log, as it is loud: makes its platform calls once more on the simulated chip, and remembers of each value that the
 * loudness depends on which line of the log it comes from.
 *
 * Of each value the last origin is kept, so this does not grow with the log.
 */
class LevelOrigins
{
public:
    static constexpr int none = -1;

    /// A volume in the policy's store.
    struct Stored
    {
        int volume = 0;
        LogPlace place;
        QString remark; ///< where it comes from, if not from the log
    };

    struct Refusal
    {
        int code = 0;
        QVariant value; ///< what was refused; invalid where the log does not say it
        LogPlace place;
    };

    /// A value of the chip that is there once, or once for each track.
    struct Value
    {
        LogPlace place; ///< of the call that set it
        bool isWhole = true; ///< false where the log does not say what it was set to
        std::optional<Refusal> refusal; ///< of another value since
    };

    /// A volume that was sent for a source.
    struct Sent
    {
        int volume = 0;
        LogPlace place;
        int type = none; ///< of the stored volume that it comes from; none where it does not
        int status = none; ///< of the policy that it was sent for; none where it was sent for another reason
        std::optional<Stored> stored; ///< that it was made of
    };

    struct Volume
    {
        std::optional<Sent> sent; ///< that the platform has
        std::optional<Sent> before; ///< that it had before
        std::optional<Sent> refused; ///< the last one that it refused; a volume of none where the log does not say it
        int code = 0; ///< that it was refused with
        bool isRefusedLast = false; ///< since then none was accepted
    };

    struct Position
    {
        int fade = 0;
        qint64 balance = 0;
    };

    /// @param settings of the unit, for what the log does not say; null for none
    explicit LevelOrigins(const SettingsReader *settings = nullptr);

    void add(const LoggedRequest &request);
    /// The unit was without power.
    void reboot();

    /// Whether the log has a start of the audio since the unit was switched on. What was not set since is as after switching on then.
    bool hasStarted() const { return m_hasStarted; }
    int status() const { return m_status; } ///< none where it is not known
    int channel() const { return m_channel; } ///< none where it is not known

    /// Empty where nothing says it.
    std::optional<Stored> stored(int type) const;
    /// What is known of a source's volume on a track.
    Volume volume(const QString &track, const QString &source) const;
    /// Whether the log names the source.
    bool knows(const QString &source) const;
    /// The track that a source plays on, else the one that it got its volume on last; "main" where neither is known.
    QString trackOf(const QString &source) const;
    /// Gives the chip the volume that a source most likely has where the log does not say one: that of its type. False where that is unknown, too.
    bool take(const QString &track, const QString &source) const;

    const Value &master() const { return m_master; }
    const Value &duckingMode() const { return m_duckingMode; }
    const Value &duckingGain() const { return m_duckingGain; }
    const Value &loudspeakers() const { return m_loudspeakers; }
    const Value &equalizer() const { return m_equalizer; }
    const Value &loudness() const { return m_loudness; }
    Value mute(const QString &track) const { return m_mutes.value(track); }
    Value playing(const QString &track) const { return m_playing.value(track); }
    /// As they were given; empty where the gains were never set.
    std::optional<Position> position() const { return m_position; }
    /// none where the curve has no type; what is stored where the log says nothing of it.
    int equalizerType() const { return m_equalizerType; }
    QString equalizerRemark() const { return m_equalizerRemark; }

private:
    using Line = LoggedRequest::Line;
    using Key = QPair<QString, QString>; // track and source

    void readSettings(const SettingsReader &settings);
    void begin(const LoggedRequest &request);
    void learn(const Line &line);
    void learnVolume(const Line &line);
    void learnAdjusted(const Line &line);
    void apply(const LoggedCall &call, const Line &line);
    void applyVolume(const LoggedCall &call, const Line &line);
    void applyTo(Value &value, const LoggedCall &call, const Line &line, int argument = 0);
    Value *valueOf(const LoggedCall &call);
    Sent sent(const Line &line);
    const Line *around(const Line &line, LogLines::Id id) const;
    void store(int type, int volume, const LogPlace &place);
    /// Unless it is known to be the same.
    void storeIfNew(int type, int volume, const Line &line);
    LogPlace place(const Line &line, const QString &cause);
    LogPlace place(const Line &line);
    QString cause();

    QMap<int, Stored> m_stored; // by type
    QMap<Key, Volume> m_volumes;
    QMap<QString, QString> m_tracks; // that each source got its volume on last
    QMap<QString, Value> m_mutes; // by track
    QMap<QString, Value> m_playing; // by track
    Value m_master;
    Value m_duckingMode;
    Value m_duckingGain;
    Value m_loudspeakers;
    Value m_equalizer;
    Value m_loudness;
    std::optional<Position> m_position;
    int m_equalizerType = none;
    QString m_equalizerRemark;
    int m_status = none;
    int m_channel = none;
    bool m_hasBegun = false;
    bool m_hasStarted = false;

    // Of the request that is being added.
    const LoggedRequest *m_request = nullptr;
    QString m_cause; // what began it, in words; empty until it is asked for
    int m_delayedType = none;
    int m_typeToSet = none; // of the equalizer
    std::optional<Position> m_positionToSet;
};

#endif
