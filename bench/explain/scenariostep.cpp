#include "scenariostep.h"

#include "requesttext.h"

#include "policynames.h"
#include "tracks.h"
#include "valuetext.h"

#include <algorithm>
#include <iterator>

namespace
{

/// What tells of an operation's effect.
struct Look
{
    const char *operation;
    const char *reader; ///< with a place for the first argument where it has one
    int value; ///< index of the argument that it gives
};

constexpr Look looks[] = {
    {"setMasterVolume", "Platform.masterVolume()", 0},
    {"setAlterTrackVolume", "Platform.alternativeVolume()", 0},
    {"setDuckingMode", "Platform.duckingMode()", 0},
    {"setDuckingTargetGain", "Platform.duckingGain()", 0},
    {"setFadeBalance", "Platform.channelGain(%1)", 1},
    {"setMicVolume", "Platform.micVolume()", 0},
    {"setOutputSource", "Platform.outputSource(%1)", 1},
    {"setInputDestination", "Platform.inputDestination(%1)", 1},
    {"setInputSelectPin", "Platform.inputSelectPin(%1)", 1},
    {"setFrontRearMode", "Platform.frontRearMode()", 0},
    {"setMicLeftRightSwitch", "Platform.isMicLeftRightSwapped()", 0},
    {"setHandsfreeDelay", "Platform.handsfreeDelay()", 0},
    {"setLoudness", "Platform.isLoudnessOn()", 0},
    {"setAecQuality", "Platform.aecQuality()", 0},
};

bool isSource(const QString &name)
{
    return std::any_of(
        std::begin(policynames::sources), std::end(policynames::sources), [&name](const policynames::Source &one) { return name == QLatin1String(one.name); });
}

/// One that both a track of the platform and its sources have the names of; a scenario that names others ends there.
bool isNameable(const LoggedCall &call)
{
    const bool hasTrack = call.operation == QLatin1String("setTrackVolume") || call.operation == QLatin1String("setOutputSource")
        || call.operation == QLatin1String("setInputDestination") || call.operation.endsWith(QLatin1String("muteTrack"));
    return !hasTrack || simulator::isTrack(call.arguments.at(0).toString());
}

} // namespace

void ScenarioStep::add(const QVector<LoggedCall> &calls)
{
    for (const LoggedCall &call : calls) {
        const QString operation = QString(simulator::objectKindName(call.kind)) + QLatin1Char('.') + call.operation;
        const int count = ++m_counts[operation];
        if (call.isRefused())
            m_faults.append(QStringLiteral("Platform.failOnce(%1, %2, %3);").arg(simulator::quotedText(operation)).arg(call.result).arg(count));
        else if (call.isWhole() && isNameable(call))
            expect(call);
    }
}

void ScenarioStep::expect(const LoggedCall &call)
{
    if (call.operation == QLatin1String("setTrackVolume")) {
        const QString source = call.arguments.at(1).toString();
        if (isSource(source))
            expect(QStringLiteral("Platform.trackVolume(%1, %2)").arg(simulator::quotedText(call.arguments.at(0).toString()), QStringLiteral("%1")),
                   loggedValueText(call.arguments.at(2)),
                   simulator::quotedText(source));
        return;
    }
    if (call.operation == QLatin1String("setExtEqParameter")) {
        QStringList gains;
        const QVariantList sent = call.arguments.at(0).toList();
        for (const QVariant &gain : sent)
            gains.append(loggedValueText(gain));
        expect(QStringLiteral("Platform.lastExtEqParameter().gain.slice(0, %1)").arg(gains.size()),
               QStringLiteral("[%1]").arg(gains.join(QStringLiteral(", "))),
               {},
               true);
        return;
    }
    if (call.operation == QLatin1String("muteTrack") || call.operation == QLatin1String("unmuteTrack")) {
        expect(QStringLiteral("Platform.isMuted(%1)").arg(loggedValueText(call.arguments.at(0))),
               simulator::valueText(call.operation == QLatin1String("muteTrack")));
        return;
    }
    const auto *const look
        = std::find_if(std::begin(looks), std::end(looks), [&call](const Look &one) { return call.operation == QLatin1String(one.operation); });
    if (look == std::end(looks) || look->value >= call.arguments.size())
        return;
    QString looked = QLatin1String(look->reader);
    if (looked.contains(QLatin1String("%1")))
        looked = looked.arg(loggedValueText(call.arguments.at(0)));
    expect(looked, loggedValueText(call.arguments.at(look->value)));
}

/// What was sent last counts.
void ScenarioStep::expect(const QString &looked, const QString &value, const QString &source, bool isList)
{
    const auto found
        = std::find_if(m_expectations.begin(), m_expectations.end(), [&](const Expectation &one) { return one.looked == looked && one.source == source; });
    if (found != m_expectations.end())
        m_expectations.erase(found);
    m_expectations.append({looked, source, value, isList});
}

QStringList ScenarioStep::expectations() const
{
    QStringList lines;
    QVector<Expectation> left = m_expectations;
    while (!left.isEmpty()) {
        const Expectation one = left.takeFirst();
        QStringList sources(one.source);
        for (int i = 0; i < left.size() && !one.source.isEmpty();) {
            const bool isSame = left.at(i).looked == one.looked && left.at(i).value == one.value;
            if (isSame)
                sources.append(left.takeAt(i).source);
            else
                ++i;
        }
        const QString matcher = (one.isList ? QStringLiteral("toEqual(%1);") : QStringLiteral("toBe(%1);")).arg(one.value);
        if (sources.size() > 1) {
            lines.append(QStringLiteral("for (const source of [%1])").arg(sources.join(QStringLiteral(", "))));
            lines.append(QStringLiteral("    expect(%1).%2").arg(one.looked.arg(QStringLiteral("source")), matcher));
        } else {
            lines.append(QStringLiteral("expect(%1).%2").arg(one.source.isEmpty() ? one.looked : one.looked.arg(one.source), matcher));
        }
    }
    return lines;
}
