#include "microphonemodel.h"

#include <algorithm>
#include <iterator>

namespace
{

// As the policy has them; tst_microphonemodel compares.
constexpr double stageGains[] = {0, 9, 12, 21, 27.5, 30, 40}; // dB
constexpr double largestRest = 6; // dB above a stage, while a higher one is left
constexpr double highestStage = stageGains[std::size(stageGains) - 1];

} // namespace

MicrophoneModel::MicrophoneModel(QObject *parent)
    : RoomModel(parent)
{
}

QVariantList MicrophoneModel::pair(const char *key) const
{
    const QVariantList values = m_given.value(QLatin1String(key)).toList();
    return values.size() == 2 ? values : QVariantList{0, 0};
}

MicrophoneModel::Split MicrophoneModel::split(double gain)
{
    double stage = gain <= 0 ? 0 : highestStage;
    if (gain > 0 && gain < highestStage) {
        std::size_t next = 1;
        while (stageGains[next] < gain)
            ++next;
        const double above = stageGains[next];
        const double below = stageGains[next - 1];
        stage = above == gain || gain - below > largestRest ? above : below;
    }
    return {stage, int(gain - stage)};
}

QString MicrophoneModel::splitText(double gain)
{
    const Split parts = split(gain);
    return tr("stage %1 dB, rest %2 dB").arg(parts.stage).arg(parts.rest);
}

QString MicrophoneModel::stagesLine(double gain)
{
    const Split parts = split(gain);
    return QStringLiteral("AudioControl.setMicOpAndPga(%1, %2);").arg(parts.stage).arg(parts.rest);
}

QVariantList MicrophoneModel::stages() const
{
    const double inUse = op().constFirst().toDouble();
    QVariantList rows;
    for (std::size_t index = 0; index < std::size(stageGains); ++index) {
        const double stage = stageGains[index];
        // Up to so much above the stage below the lower one serves.
        const double from = index == 0 ? stage : std::min(stageGains[index - 1] + largestRest, stage);
        const bool isLast = index + 1 == std::size(stageGains);
        const double to = isLast ? stage : std::min(stage + largestRest, stageGains[index + 1]);
        rows.append(QVariantMap{
            {QStringLiteral("stage"), stage},
            {QStringLiteral("gains"),
             index == 0          ? tr("up to %1").arg(to)
                 : isLast        ? tr("above %1").arg(from)
                 : from == stage ? tr("%1 to %2").arg(from).arg(to)
                                 : tr("above %1 to %2").arg(from).arg(to)},
            {QStringLiteral("current"), !m_given.isEmpty() && stage == inUse},
        });
    }
    return rows;
}

bool MicrophoneModel::stagesFit() const
{
    const Split parts = split(analog().constFirst().toDouble());
    return m_given.isEmpty() || (op().constFirst().toDouble() == parts.stage && pga().constFirst().toDouble() == parts.rest);
}

void MicrophoneModel::update(const QVariantMap &snapshot)
{
    const QVariantMap given = snapshot.value(QStringLiteral("microphone")).toMap();
    const int duration = snapshot.value(QStringLiteral("platform")).toMap().value(QStringLiteral("callDuration")).toInt();
    if (given == m_given && duration == m_callDuration)
        return;
    m_given = given;
    m_callDuration = duration;
    Q_EMIT changed();
}
