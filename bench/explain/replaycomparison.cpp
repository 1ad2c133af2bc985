#include "replaycomparison.h"

#include "scenariowriter.h"

#include "refusal.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

void collectCalls(const QJsonObject &event, std::deque<ReplayCall> &calls)
{
    if (event.value(QLatin1String("event")) == QLatin1String("call"))
        calls.push_back(ReplayCall::read(event.value(QLatin1String("text")).toString()));
    const QJsonArray caused = event.value(QLatin1String("caused")).toArray();
    for (const QJsonValue &one : caused)
        collectCalls(one.toObject(), calls);
}

/// The simulated platform says why.
QString refusalHere(const QString &code)
{
    const QLatin1String meaning = simulator::refusalText(code.toInt());
    return QStringLiteral("refused by the simulated platform, not by the unit's, with %1").arg(code)
        + (meaning.size() > 0 ? QStringLiteral(" (%1)").arg(meaning) : QString());
}

/// What a unit stores and sends.
struct Stored
{
    const char *operation;
    int targets; ///< so many arguments say what it is for
    const char *cause;
};

constexpr Stored storedValues[] = {
    {"Volume.setTrackVolume", 2, "another stored volume"},
    {"Volume.setAlterTrackVolume", 0, "another stored volume"},
    {"App.setExtEqParameter", 0, "another stored equalizer curve"},
    {"Volume.setMicVolume", 0, "another stored microphone volume"},
    {"Volume.setMicAnalogGain", 0, "another stored microphone gain"},
    {"Volume.setMicOpGain", 1, "another stored microphone gain"},
    {"Volume.setMicPgaGain", 1, "another stored microphone gain"},
    {"Source.setMicLeftRightSwitch", 0, "another stored microphone"},
    {"Source.setHandsfreeDelay", 0, "another stored hands-free delay"},
};

/// Of two calls that differ only in what is stored; else null.
const char *causeOfOtherValue(const ReplayCall &one, const ReplayCall &other)
{
    if (one.operation != other.operation || one.arguments.size() != other.arguments.size())
        return nullptr;
    const auto *const stored = std::find_if(
        std::begin(storedValues), std::end(storedValues), [&one](const Stored &candidate) { return one.operation == QLatin1String(candidate.operation); });
    const bool isIt = stored != std::end(storedValues) && one.arguments.mid(0, stored->targets) == other.arguments.mid(0, stored->targets);
    return isIt ? stored->cause : nullptr;
}

} // namespace

QString ReplayDifference::cause() const
{
    if (logged && replayed && logged->call.canBe(*replayed)) {
        const bool isUnits = logged->call.result != QLatin1String("0");
        return isUnits ? QStringLiteral("refused by the unit's platform with %1").arg(logged->call.result) : refusalHere(replayed->result);
    }
    if (logged && logged->isAfterOtherThread)
        return QStringLiteral("calls by two threads: the audio manager is made for one");
    const char *const stored = logged && replayed ? causeOfOtherValue(logged->call, *replayed) : nullptr;
    if (stored)
        return QLatin1String(stored) + QStringLiteral(" than the log tells of, or than --settings gave");
    return QStringLiteral("another release of the library, or a call before it that left no line");
}

ReplayComparison::ReplayComparison(QIODevice &logged, QIODevice &played)
    : m_logged(&logged)
    , m_played(played)
{
}

std::optional<ReplayDifference> ReplayComparison::find()
{
    while (const auto expected = takeExpected()) {
        auto found = expected->isOfSteps ? compareSteps(*expected) : compare(*expected);
        if (found)
            return found;
    }
    return {};
}

const ExpectedCall *ReplayComparison::nextExpected()
{
    if (!m_nextExpected && !m_logged.atEnd()) {
        ExpectedCall next;
        m_logged >> next;
        m_nextExpected = next;
    }
    return m_nextExpected ? &*m_nextExpected : nullptr;
}

std::optional<ExpectedCall> ReplayComparison::takeExpected()
{
    if (!nextExpected())
        return {};
    ++m_count;
    return std::exchange(m_nextExpected, std::nullopt);
}

void ReplayComparison::readPlayed()
{
    while (m_read.empty() && !m_played.atEnd()) {
        const QJsonObject event = QJsonDocument::fromJson(m_played.readLine()).object();
        if (m_hasBegun)
            collectCalls(event, m_read);
        else
            m_hasBegun = event.value(QLatin1String("text")) == ScenarioWriter::beginning();
    }
}

const ReplayCall *ReplayComparison::nextPlayed()
{
    readPlayed();
    return m_read.empty() ? nullptr : &m_read.front();
}

std::optional<ReplayCall> ReplayComparison::takePlayed()
{
    if (!nextPlayed())
        return {};
    const ReplayCall call = m_read.front();
    m_read.pop_front();
    return call;
}

std::optional<ReplayDifference> ReplayComparison::compare(const ExpectedCall &expected)
{
    while (nextPlayed() && nextPlayed()->isSilent() && !expected.call.canBe(*nextPlayed()))
        takePlayed();
    const auto played = takePlayed();
    if (!played)
        return ReplayDifference{m_count, expected, {}, 0};
    if (expected.call.canBe(*played) && expected.call.hasResultOf(*played))
        return {};
    return difference(expected, *played);
}

ReplayDifference ReplayComparison::difference(const ExpectedCall &expected, const ReplayCall &played)
{
    if (!expected.call.canBe(played)) {
        if (nextPlayed() && expected.call.canBe(*nextPlayed()))
            return {m_count, {}, played, expected.line};
        if (nextExpected() && nextExpected()->call.canBe(played))
            return {m_count, expected, {}, 0};
    }
    return {m_count, expected, played, 0};
}

/// Steps are sent in the order of a hash, which each process has its own of.
std::optional<ReplayDifference> ReplayComparison::compareSteps(const ExpectedCall &first)
{
    const quint64 number = m_count;
    QVector<ExpectedCall> expected{first};
    while (nextExpected() && nextExpected()->isOfSteps && nextExpected()->request == first.request)
        expected.append(*takeExpected());
    QVector<ReplayCall> played;
    while (played.size() < expected.size() && nextPlayed())
        played.append(*takePlayed());
    for (int i = 0; i < expected.size(); ++i) {
        const ExpectedCall &one = expected.at(i);
        const auto found = std::find_if(played.begin(), played.end(), [&one](const ReplayCall &other) { return one.call.canBe(other); });
        if (found != played.end()) {
            if (!one.call.hasResultOf(*found))
                return ReplayDifference{number + quint64(i), one, *found, 0};
            played.erase(found);
            continue;
        }
        const auto similar
            = std::find_if(played.begin(), played.end(), [&one](const ReplayCall &other) { return causeOfOtherValue(one.call, other) != nullptr; });
        if (similar != played.end())
            return ReplayDifference{number + quint64(i), one, *similar, 0};
        return ReplayDifference{number + quint64(i), one, {}, 0};
    }
    return {};
}
