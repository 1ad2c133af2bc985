#ifndef LEVELLINKS_H
#define LEVELLINKS_H

#include "levelchain.h"
#include "levelorigins.h"

/// What the level of a source is made of, as the chip is now: each thing with the line of the log that made it.
class LevelLinks
{
public:
    /// @param origins outlives this
    LevelLinks(const LevelOrigins &origins, const QString &track, const QString &source);

    /// In the order in which the sound goes through them.
    QVector<LevelChain::Link> all() const;
    /// The level in words, and whether it is heard at all.
    QString outcome(const std::optional<double> &level) const;

    /// "file player, S+FilePlayer"
    static QString named(const QString &source);

private:
    using Link = LevelChain::Link;

    Link storedLink() const;
    Link factorLink() const;
    Link boostLink() const;
    Link sentLink() const;
    Link refusedLink() const;
    Link masterLink() const;
    Link playingLink() const;
    Link duckLink() const;
    Link muteLink() const;
    Link loudspeakersLink() const;
    Link equalizerLink() const;
    Link loudnessLink() const;

    /// A value of the chip, which the text is of.
    Link chipLink(const char *what, const QString &text, const QJsonValue &value, const LevelOrigins::Value &origin) const;
    std::optional<LevelOrigins::Stored> stored() const;

    const LevelOrigins &m_origins;
    const QString m_track;
    const QString m_source;
    const LevelOrigins::Volume m_volume;
    const int m_type; // of its stored volume
};

#endif
