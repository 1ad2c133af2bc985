#include "levelmoments.h"

#include "console.h"
#include "jsonview.h"
#include "policytext.h"
#include "requesttext.h"
#include "viewtext.h"

#include <cmath>

using Kind = LevelQuestion::Kind;

namespace
{

/// A log may name any number of sources, a unit has some twenty.
constexpr int mostSources = 1000;

QJsonValue levelValue(double level)
{
    return std::isfinite(level) ? QJsonValue(level) : QJsonValue();
}

} // namespace

LevelMoments::LevelMoments(const LevelQuestion &question, const LogClock &clock, const SettingsReader *settings)
    : m_question(question)
    , m_clock(clock)
    , m_origins(settings)
{
}

void LevelMoments::request(const LoggedRequest &request)
{
    lookAtBeginning(request.time());
    m_origins.add(request);
    const bool isInTime = m_question.wanted.isInTime(request.time(), m_clock);
    const auto sounds = soundsAskedFor();
    for (const Heard::Sound &sound : sounds) {
        if (m_question.kind == Kind::Jumps) {
            lookForJump(sound, request);
        } else if (isInTime) {
            lookForBest(sound, request.moment);
        }
    }
}

void LevelMoments::reboot()
{
    m_origins.reboot();
}

/// What is heard when the time begins that is asked for came about before.
void LevelMoments::lookAtBeginning(qint64 time)
{
    if (m_isBeyondBeginning || !m_question.wanted.from || m_question.kind == Kind::Jumps)
        return;
    const auto beginning = m_question.wanted.from->in(m_clock);
    if (!beginning || time <= *beginning)
        return;
    m_isBeyondBeginning = true;
    if (!m_question.wanted.isInTime(*beginning, m_clock))
        return;
    LogTime::Moment moment = m_clock.first();
    moment.milliseconds += *beginning;
    const auto sounds = soundsAskedFor();
    for (const Heard::Sound &sound : sounds)
        lookForBest(sound, moment);
}

/// Those that are heard now, as far as their volume is known.
QVector<Heard::Sound> LevelMoments::soundsAskedFor() const
{
    QVector<Heard::Sound> sounds;
    const auto all = Heard::now().sounds;
    for (Heard::Sound sound : all) {
        const bool isAskedFor = m_question.source.isEmpty() || sound.source == m_question.source;
        if (!isAskedFor || !m_origins.take(sound.track, sound.source))
            continue;
        sound.level = Heard::levelOf(sound.track, sound.source);
        sounds.append(sound);
    }
    return sounds;
}

void LevelMoments::lookForBest(const Heard::Sound &sound, const LogTime::Moment &moment)
{
    const bool isBetter = m_question.kind == Kind::Quietest ? sound.level < m_bestLevel : sound.level > m_bestLevel;
    if (m_best && !isBetter)
        return;
    m_bestLevel = sound.level;
    m_best = LevelChain::of(m_origins, sound.track, sound.source, LogTime::toText(moment));
}

void LevelMoments::lookForJump(const Heard::Sound &sound, const LoggedRequest &request)
{
    if (m_lastLevels.size() > mostSources)
        m_lastLevels.clear();
    const QPair<QString, QString> key(sound.track, sound.source);
    const auto before = m_lastLevels.constFind(key);
    const bool isKnown = before != m_lastLevels.cend();
    const double level = isKnown ? *before : sound.level;
    m_lastLevels.insert(key, sound.level);
    constexpr double rounding = 1e-9;
    const bool areHeard = std::isfinite(level) && std::isfinite(sound.level);
    const bool isJump = areHeard ? std::abs(sound.level - level) >= m_question.decibels - rounding : std::isfinite(level) != std::isfinite(sound.level);
    if (isJump && m_question.wanted.isInTime(request.time(), m_clock))
        tellJump(sound, level, request);
}

void LevelMoments::tellJump(const Heard::Sound &sound, double before, const LoggedRequest &request)
{
    m_hasFound = true;
    const quint64 line = request.lines.constFirst().number;
    const QString at = LogTime::toText(request.moment);
    const QString cause = causeText(request);
    if (m_question.isJson) {
        Console::out(QString::fromUtf8(JsonView::line({
            {QStringLiteral("time"), request.time()},
            {QStringLiteral("line"), qint64(line)},
            {QStringLiteral("at"), at},
            {QStringLiteral("source"), sound.source},
            {QStringLiteral("name"), sourceText(sound.source)},
            {QStringLiteral("track"), sound.track},
            {QStringLiteral("from"), levelValue(before)},
            {QStringLiteral("to"), levelValue(sound.level)},
            {QStringLiteral("cause"), cause},
        })));
        return;
    }
    const QString place = at.isEmpty() ? QStringLiteral("line %1").arg(line) : QStringLiteral("line %1 at %2").arg(line).arg(at);
    const QString text = QStringLiteral("%1: %2, %3 -> %4: %5")
                             .arg(place, Console::printable(sourceText(sound.source)), Heard::levelText(before), Heard::levelText(sound.level), cause);
    Console::out(ViewText::time(request.time()) + ViewText::paragraph(text) + QLatin1Char('\n'));
}

void LevelMoments::finish()
{
    lookAtBeginning(m_clock.now());
    if (m_best && m_question.isJson)
        Console::out(QString::fromUtf8(JsonView::line(m_best->toJson())));
    else if (m_best)
        Console::out(m_best->toText());
    else if (m_question.kind != Kind::Jumps && !m_question.isJson)
        Console::out(QStringLiteral("Nothing was heard then, as far as the log says.\n"));
    else if (!m_hasFound && !m_question.isJson)
        Console::out(QStringLiteral("No source became louder or quieter by %1 dB.\n").arg(m_question.decibels));
}
