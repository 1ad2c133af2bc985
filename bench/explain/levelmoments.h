#ifndef LEVELMOMENTS_H
#define LEVELMOMENTS_H

#include "heard.h"
#include "levelchain.h"
#include "levelorigins.h"
#include "levelquestion.h"
#include "logstory.h"

#include <QtCore/QMap>
#include <QtCore/QPair>

#include <optional>

/**
 * Looks in a log for the moments that a question asks for: when something was heard quietest or loudest, or changed by so much.
 *
 * Keeps the best moment so far with its answer, and of each source what was heard from it last.
 */
class LevelMoments : public LogStoryListener
{
public:
    /// @param question and @param clock outlive this
    LevelMoments(const LevelQuestion &question, const LogClock &clock, const SettingsReader *settings);

    void request(const LoggedRequest &request) override;
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override;

    /// Prints what was found.
    void finish();

private:
    void lookAtBeginning(qint64 time);
    void lookForBest(const Heard::Sound &sound, const LogTime::Moment &moment);
    void lookForJump(const Heard::Sound &sound, const LoggedRequest &request);
    void tellJump(const Heard::Sound &sound, double before, const LoggedRequest &request);
    QVector<Heard::Sound> soundsAskedFor() const;

    const LevelQuestion &m_question;
    const LogClock &m_clock;
    LevelOrigins m_origins;
    std::optional<LevelChain> m_best;
    double m_bestLevel = 0;
    QMap<QPair<QString, QString>, double> m_lastLevels; // by track and source
    bool m_isBeyondBeginning = false; // of the time that is asked for
    bool m_hasFound = false;
};

#endif
