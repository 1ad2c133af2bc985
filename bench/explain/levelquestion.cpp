#include "levelquestion.h"

#include "console.h"
#include "exitstatus.h"
#include "facaderules.h"
#include "jsonview.h"
#include "levelchain.h"
#include "levelmoments.h"
#include "levelorigins.h"
#include "logreading.h"
#include "logstory.h"
#include "settingsreader.h"

#include "policynames.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

struct Word
{
    const char *option;
    LevelQuestion::Kind kind;
};

constexpr Word words[] = {
    {"why", LevelQuestion::Kind::Why},
    {"quietest", LevelQuestion::Kind::Quietest},
    {"loudest", LevelQuestion::Kind::Loudest},
    {"jumps", LevelQuestion::Kind::Jumps},
};

/// Options that a question about one moment has no use for, and one about all.
constexpr const char *othersOfWhy[] = {"from", "to", "source"};
constexpr const char *othersOfMoments[] = {"at"};
constexpr const char *othersOfAll[] = {"only", "summary", "follow", "v", "verbose", "scenario", "replay"};

/// The first of the options that is there; null for none.
template<std::size_t count>
const char *firstSet(const QCommandLineParser &parsed, const char *const (&options)[count])
{
    const auto *const found
        = std::find_if(std::begin(options), std::end(options), [&parsed](const char *option) { return parsed.isSet(QLatin1String(option)); });
    return found == std::end(options) ? nullptr : *found;
}

/// "6", "6dB", "4.5 dB"; empty for anything else.
std::optional<double> decibelsOf(const QString &text)
{
    const QString unit = QStringLiteral("dB");
    bool isNumber = false;
    const double value = (text.endsWith(unit, Qt::CaseInsensitive) ? text.chopped(unit.size()).trimmed() : text).toDouble(&isNumber);
    return isNumber && std::isfinite(value) && value > 0 ? std::make_optional(value) : std::nullopt;
}

bool isOfLibrary(const QString &source)
{
    return std::any_of(std::begin(policynames::sources), std::end(policynames::sources), [&source](const policynames::Source &one) {
        return source == QLatin1String(one.name);
    });
}

/// The part of a request that had happened at a moment.
LoggedRequest until(const LoggedRequest &request, qint64 time)
{
    if (request.lines.constLast().time <= time)
        return request;
    LoggedRequest part = request;
    const auto isLater = [time](const auto &one) { return one.time > time; };
    part.lines.erase(std::find_if(part.lines.begin(), part.lines.end(), isLater), part.lines.end());
    part.calls.erase(std::find_if(part.calls.begin(), part.calls.end(), isLater), part.calls.end());
    return part;
}

/// Listens to a log until a moment.
class UntilMoment : public LogStoryListener
{
public:
    UntilMoment(LevelOrigins &origins, const LogClock &clock, const std::optional<LogLimit> &moment)
        : m_origins(origins)
        , m_clock(clock)
        , m_moment(moment)
    {
    }

    void request(const LoggedRequest &request) override
    {
        const auto end = time();
        if (!end)
            m_origins.add(request);
        else if (request.time() <= *end)
            m_origins.add(until(request, *end));
    }
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override
    {
        const auto end = time();
        if (!end || m_clock.now() <= *end)
            m_origins.reboot();
    }

private:
    /// Empty for the end of the log.
    std::optional<qint64> time() const { return m_moment ? m_moment->endIn(m_clock) : std::nullopt; }

    LevelOrigins &m_origins;
    const LogClock &m_clock;
    const std::optional<LogLimit> m_moment;
};

/// Empty where the log has such a moment.
QString problemOfMoment(const LogClock &clock, const std::optional<LogLimit> &moment, const QString &given)
{
    if (!moment)
        return {};
    if (clock.first().clock == LogTime::Clock::None)
        return QStringLiteral("--at %1 is not in the log, whose lines have no time").arg(given);
    const auto begin = moment->in(clock);
    if (begin && *moment->endIn(clock) >= 0 && *begin <= clock.now())
        return {};
    return QStringLiteral("--at %1 is not in the log, which goes from %2 to %3").arg(given, LogTime::toText(clock.first()), LogTime::toText(clock.last()));
}

} // namespace

QVector<Command::Option> LevelQuestion::options()
{
    return {
        {QStringLiteral("why"), QStringLiteral("SOURCE"), QStringLiteral("show why this source was as loud as it was, and what it would have been otherwise")},
        {QStringLiteral("at"), QStringLiteral("TIME"), QStringLiteral("show it of that time, as --from has it, instead of the end of the log")},
        {QStringLiteral("quietest"), {}, QStringLiteral("show why it was so quiet when the driver heard something quietest")},
        {QStringLiteral("loudest"), {}, QStringLiteral("show why it was so loud when the driver heard something loudest")},
        {QStringLiteral("jumps"), QStringLiteral("LEVEL"), QStringLiteral("show when a source became louder or quieter by so much: 6dB")},
    };
}

std::optional<LevelQuestion> LevelQuestion::read(const QCommandLineParser &parsed, QString &problem)
{
    const auto isSet = [&parsed](const char *option) { return parsed.isSet(QLatin1String(option)); };
    const auto count = std::count_if(std::begin(words), std::end(words), [&isSet](const Word &word) { return isSet(word.option); });
    if (count == 0) {
        if (isSet("at"))
            problem = QStringLiteral("--at goes with --why");
        return {};
    }
    if (count > 1) {
        problem = QStringLiteral("--why, --quietest, --loudest and --jumps do not go together");
        return {};
    }
    const auto *const word = std::find_if(std::begin(words), std::end(words), [&isSet](const Word &one) { return isSet(one.option); });
    const char *other = word->kind == Kind::Why ? firstSet(parsed, othersOfWhy) : firstSet(parsed, othersOfMoments);
    other = other ? other : firstSet(parsed, othersOfAll);
    if (other) {
        const QString name = qstrcmp(other, "v") == 0 ? QStringLiteral("verbose") : QString::fromLatin1(other);
        problem = QStringLiteral("--%1 does not go with --%2").arg(name, QLatin1String(word->option));
        return {};
    }
    LevelQuestion question;
    question.kind = word->kind;
    question.isJson = isSet("json");
    question.source = FacadeRules::platformSource(parsed.value(question.kind == Kind::Why ? QStringLiteral("why") : QStringLiteral("source")));
    if (isSet("at")) {
        question.atGiven = parsed.value(QStringLiteral("at"));
        question.at = LogLimit::read(question.atGiven);
        if (!question.at)
            problem = QStringLiteral("--at is a time as in the log, 12:03:07, or from its first line on, +12s, not %1").arg(question.atGiven);
    }
    if (question.kind == Kind::Jumps) {
        const QString given = parsed.value(QStringLiteral("jumps"));
        const auto decibels = decibelsOf(given);
        if (!decibels)
            problem = QStringLiteral("--jumps is a level above 0, 6dB, not %1").arg(given);
        question.decibels = decibels.value_or(0);
    }
    return question;
}

int LevelQuestion::answer(LogReading &log, const SettingsReader *unit, QString &problem) const
{
    if (kind == Kind::Why)
        return answerWhy(log, unit, problem);
    LevelMoments moments(*this, log.clock(), unit);
    log.read(moments);
    const bool hasSuchTimes = (!wanted.from || wanted.from->in(log.clock())) && (!wanted.to || wanted.to->in(log.clock()));
    if (log.hasToldAnything() && hasSuchTimes)
        moments.finish();
    return log.status();
}

int LevelQuestion::answerWhy(LogReading &log, const SettingsReader *unit, QString &problem) const
{
    LevelOrigins origins(unit);
    UntilMoment listener(origins, log.clock(), at);
    log.read(listener);
    if (!log.hasToldAnything())
        return log.status();
    problem = problemOfMoment(log.clock(), at, atGiven);
    if (problem.isEmpty() && !isOfLibrary(source) && !origins.knows(source))
        problem = QStringLiteral("neither the log nor the library has a source %1").arg(Console::printable(source));
    if (!problem.isEmpty())
        return UsageError;
    LogTime::Moment moment = at ? log.clock().first() : log.clock().last();
    if (at)
        moment.milliseconds += std::min(*at->endIn(log.clock()), log.clock().now());
    const LevelChain chain = LevelChain::of(origins, origins.trackOf(source), source, LogTime::toText(moment));
    Console::out(isJson ? QString::fromUtf8(JsonView::line(chain.toJson())) : chain.toText());
    return log.status();
}
