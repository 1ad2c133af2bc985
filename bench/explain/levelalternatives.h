#ifndef LEVELALTERNATIVES_H
#define LEVELALTERNATIVES_H

#include "levelchain.h"
#include "levelorigins.h"

/**
 * How loud a source would be with one thing otherwise than it is on the chip now: without the duck or the mute, in another status, one step up
 * or down, with the platform's last answer the other way.
 *
 * The simulated chip is set otherwise, read, and put back.
 */
class LevelAlternatives
{
public:
    /// @param level that it has, empty where it is not known; @param origins outlives this
    LevelAlternatives(const LevelOrigins &origins, const QString &track, const QString &source, const std::optional<double> &level);

    /// Those that mean something for this source.
    QVector<LevelChain::Otherwise> all() const;

private:
    using Otherwise = LevelChain::Otherwise;

    void addWithoutMute(QVector<Otherwise> &all) const;
    void addWithoutDuck(QVector<Otherwise> &all) const;
    void addStatuses(QVector<Otherwise> &all) const;
    void addSteps(QVector<Otherwise> &all) const;
    void addRefusal(QVector<Otherwise> &all) const;

    Otherwise inStatus(int status, int type) const;
    Otherwise withVolume(const QString &what, const QString &of, int volume) const;
    /// What the chip has, now that it is set otherwise.
    Otherwise asItIs(const QString &what, const QString &of = {}) const;
    int sentFor(int stored) const;
    /// Of the stored volume that it has, or would have.
    int type() const;

    const LevelOrigins &m_origins;
    const QString m_track;
    const QString m_source;
    const std::optional<double> m_level;
    const LevelOrigins::Volume m_volume;
};

#endif
