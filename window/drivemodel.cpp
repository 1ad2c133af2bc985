#include "drivemodel.h"

#include "policynames.h"

#include <cstddef>
#include <cstdlib>

namespace
{

constexpr int highestVolume = 25;

QString lineOfKey(bool up)
{
    return QStringLiteral("AudioPolicy.updateCurrentAudioVolume(%1);").arg(up ? QLatin1String("true") : QLatin1String("false"));
}

/// "AudioPolicy.StatusBtRing", or the number where it has no name.
template<std::size_t count>
QString script(const char *prefix, const policynames::Number (&numbers)[count], int number)
{
    if (number < 0 || number >= int(count))
        return QString::number(number);
    return QStringLiteral("AudioPolicy.") + QLatin1String(prefix) + QLatin1String(numbers[number].name);
}

template<std::size_t count>
QVariantList inWords(const policynames::Number (&numbers)[count])
{
    QVariantList list;
    for (const policynames::Number &row : numbers) {
        const QString name = QString::fromLatin1(row.name);
        list.append(QVariantMap{{QStringLiteral("number"), row.number},
                                {QStringLiteral("text"), QStringLiteral("%1 %2").arg(row.number).arg(name)},
                                {QStringLiteral("name"), name},
                                {QStringLiteral("meaning"), QString::fromLatin1(row.meaning)}});
    }
    return list;
}

QString expectation(const QString &actual, const QString &value)
{
    return QStringLiteral("expect(%1).toBe(%2);").arg(actual, value);
}

} // namespace

bool DriveModel::Sound::operator==(const Sound &other) const
{
    return isOn == other.isOn && heard == other.heard && reverseGear == other.reverseGear && isDucked == other.isDucked && duckGain == other.duckGain;
}

DriveModel::DriveModel(QObject *parent)
    : RoomModel(parent)
{
    connect(this, &RoomModel::deskChanged, this, &DriveModel::watchDesk);
}

QVariantList DriveModel::channels() const
{
    return inWords(policynames::channels);
}

QVariantList DriveModel::statuses() const
{
    return inWords(policynames::statuses);
}

QVariantList DriveModel::volumeTypes() const
{
    return inWords(policynames::volumeTypes);
}

QVariantList DriveModel::situationGroups() const
{
    const QString title = QStringLiteral("title");
    const QString members = QStringLiteral("situations");
    QVariantList groups;
    for (int row = 0; row < m_situations.rowCount(); ++row) {
        const QModelIndex index = m_situations.index(row);
        const QVariant group = m_situations.data(index, Situations::GroupRole);
        if (groups.isEmpty() || groups.constLast().toMap().value(title) != group)
            groups.append(QVariantMap{{title, group}, {members, QVariantList()}});
        QVariantMap grown = groups.constLast().toMap();
        QVariantList situations = grown.value(members).toList();
        situations.append(QVariantMap{{QStringLiteral("name"), m_situations.data(index, Situations::NameRole)},
                                      {title, m_situations.data(index, Situations::TitleRole)},
                                      {QStringLiteral("explanation"), m_situations.data(index, Situations::ExplanationRole)}});
        grown.insert(members, situations);
        groups.last() = grown;
    }
    return groups;
}

int DriveModel::keyVolume() const
{
    if (m_wantedVolume >= 0)
        return m_wantedVolume;
    return m_keyType >= 0 && m_keyType < m_volumes.size() ? m_volumes.at(m_keyType).toInt() : -1;
}

void DriveModel::watchDesk()
{
    if (m_watched)
        m_watched->disconnect(this);
    m_watched = desk();
    if (!m_watched)
        return;
    // What plays before a call has to be known when the call is over, whether this room is looked at or not.
    connect(m_watched, &Desk::snapshotChanged, this, &DriveModel::noteChannel);
    connect(m_watched, &Desk::performed, this, &DriveModel::noteOutcome);
    connect(m_watched, &Desk::restarted, this, &DriveModel::forgetSteps);
    noteChannel();
}

void DriveModel::noteChannel()
{
    const QVariantMap drive = m_watched->snapshot().value(QStringLiteral("drive")).toMap();
    const QVariant channel = drive.value(QStringLiteral("channel"));
    if (channel.isValid() && !Situations::isChannelOfCall(channel.toInt()))
        m_situations.setChannelAfterCall(channel.toInt());
}

void DriveModel::noteOutcome(const QString &line)
{
    if (m_stepsOnTheirWay > 0 && (line == lineOfKey(true) || line == lineOfKey(false)))
        --m_stepsOnTheirWay;
}

void DriveModel::forgetSteps()
{
    m_stepsOnTheirWay = 0;
}

QStringList DriveModel::performed(const QStringList &lines)
{
    if (Desk *const car = desk()) {
        for (const QString &line : lines)
            car->perform(line);
    }
    return lines;
}

QStringList DriveModel::chooseChannel(int channel)
{
    return performed({QStringLiteral("AudioPolicy.updateAudioChannel(%1);").arg(script("Channel", policynames::channels, channel))});
}

QStringList DriveModel::chooseStatus(int status)
{
    return performed({QStringLiteral("AudioPolicy.updateAudioStatus(%1);").arg(script("Status", policynames::statuses, status))});
}

QStringList DriveModel::perform(const QString &situation)
{
    return performed(m_situations.lines(situation));
}

QStringList DriveModel::step(bool up)
{
    const int volume = keyVolume();
    if (volume >= 0)
        return turnTo(volume + (up ? 1 : -1));
    return performed({lineOfKey(up)});
}

QStringList DriveModel::turnTo(int volume)
{
    const int before = keyVolume();
    if (before < 0)
        return {};
    QStringList lines;
    // The keys themselves end at the limits: a step beyond them is one that changes nothing.
    for (int i = 0; i < std::abs(volume - before); ++i)
        lines.append(lineOfKey(volume > before));
    // While a scenario drives, nothing is on its way.
    if (desk() && desk()->scenario().isEmpty() && !lines.isEmpty()) {
        m_stepsOnTheirWay += lines.size();
        m_wantedVolume = qBound(0, volume, highestVolume);
        if (m_wantedVolume != before)
            Q_EMIT keyVolumeChanged();
    }
    return performed(lines);
}

QStringList DriveModel::setVolume(int type, int volume)
{
    return performed({QStringLiteral("AudioPolicy.setVolume(%1, %2, true);").arg(script("", policynames::volumeTypes, type)).arg(volume)});
}

QStringList DriveModel::setMuted(bool muted)
{
    return performed({QStringLiteral("AudioPolicy.setMute(%1);").arg(muted ? QLatin1String("true") : QLatin1String("false"))});
}

QStringList DriveModel::toggleMute()
{
    return performed({QStringLiteral("AudioPolicy.triggerAtt();")});
}

QStringList DriveModel::muteFor(int milliseconds)
{
    return performed({QStringLiteral("AudioPolicy.setAudioMute(true, %1);").arg(milliseconds / muteUnit)});
}

QString DriveModel::expectedStatus() const
{
    return expectation(QStringLiteral("AudioPolicy.status"), script("Status", policynames::statuses, m_status));
}

QString DriveModel::expectedChannel() const
{
    return expectation(QStringLiteral("AudioPolicy.channel"), script("Channel", policynames::channels, m_channel));
}

QString DriveModel::expectedVolume(int type) const
{
    return expectation(QStringLiteral("AudioPolicy.volumes[%1]").arg(script("", policynames::volumeTypes, type)),
                       QString::number(m_volumes.value(type).toInt()));
}

void DriveModel::update(const QVariantMap &snapshot)
{
    const QVariantMap drive = snapshot.value(QStringLiteral("drive")).toMap();

    const Sound sound{drive.value(QStringLiteral("on")).toBool(),
                      drive.value(QStringLiteral("heard")).toString(),
                      drive.value(QStringLiteral("reverseGear")).toBool(),
                      drive.value(QStringLiteral("ducked")).toBool(),
                      drive.value(QStringLiteral("duckGain")).toInt()};
    if (!(sound == m_sound)) {
        m_sound = sound;
        Q_EMIT soundChanged();
    }

    const int channel = drive.value(QStringLiteral("channel")).toInt();
    const int status = drive.value(QStringLiteral("status")).toInt();
    if (channel != m_channel || status != m_status) {
        m_channel = channel;
        m_status = status;
        Q_EMIT situationChanged();
    }

    const int volumeBefore = keyVolume();
    const QVariantList volumes = drive.value(QStringLiteral("volumes")).toList();
    const int keyType = drive.value(QStringLiteral("keyType"), -1).toInt();
    const QString keyReason = drive.value(QStringLiteral("keyReason")).toString();
    // Steps lead elsewhere where the keys work on something else meanwhile.
    if (m_stepsOnTheirWay == 0 || keyType != m_keyType)
        m_wantedVolume = -1;
    if (volumes != m_volumes || keyType != m_keyType || keyReason != m_keyReason) {
        m_volumes = volumes;
        m_keyType = keyType;
        m_keyReason = keyReason;
        Q_EMIT volumesChanged();
    }
    if (keyVolume() != volumeBefore)
        Q_EMIT keyVolumeChanged();

    const bool isMuted = drive.value(QStringLiteral("muted")).toBool();
    const qint64 muteLeft = drive.value(QStringLiteral("muteLeft"), -1).toLongLong();
    if (isMuted != m_isMuted || muteLeft != m_mute.left()) {
        m_isMuted = isMuted;
        m_mute.setLeft(muteLeft);
        Q_EMIT muteChanged();
    }
    m_timers.update(drive.value(QStringLiteral("timers")).toList());
}
