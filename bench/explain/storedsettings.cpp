#include "storedsettings.h"

#include "settingsreader.h"

#include "policynames.h"

#include <algorithm>
#include <iterator>

using LogLines::Id;

namespace
{

constexpr int customType = 7;

// What the library takes where nothing is stored.
constexpr int defaultMicrophoneVolume = 12;
constexpr int defaultEqualizerType = 6;
constexpr int defaultVolumes[] = {20, 20, 20, 20, 20, 15};
constexpr int largeHomeVolume = 25;

bool isDefault(int type, int volume, bool isLargeHome)
{
    if (isLargeHome)
        return volume == largeHomeVolume;
    return type >= 0 && std::size_t(type) < std::size(defaultVolumes) && volume == defaultVolumes[type];
}

QString volumeStatement(int type, int volume)
{
    const bool isNamed = type >= 0 && std::size_t(type) < std::size(policynames::volumeTypes);
    const QString name = isNamed ? QStringLiteral("AudioPolicy.%1").arg(QLatin1String(policynames::volumeTypes[type].name)) : QString::number(type);
    return QStringLiteral("AudioPolicy.setVolume(%1, %2, true);").arg(name).arg(volume);
}

/// The line that caused this one is the manager's start, or what it does first.
bool isOfStart(const LoggedRequest &start, const LoggedRequest::Line &line)
{
    return line.parent != LoggedRequest::none
        && (start.lines.at(line.parent).line.id() == Id::ManagerStarts || start.lines.at(line.parent).line.id() == Id::Init);
}

} // namespace

StoredSettings StoredSettings::ofStart(const LoggedRequest &start)
{
    StoredSettings stored;
    bool isOriginal = true;
    for (const LoggedRequest::Line &each : start.lines) {
        const LogLine &line = each.line;
        switch (line.id()) {
        case Id::StoreLargeHomeUi:
            stored.m_isLargeHome = true;
            break;
        case Id::HandleChannelVolumeChanged:
            if (isOfStart(start, each))
                stored.m_volumes[line.number(0)] = line.number(1);
            break;
        case Id::SetMicInputValue:
            stored.m_microphoneVolume = line.number(0);
            break;
        case Id::SetMicLeftRightSwitch:
            isOriginal = line.isTrue(0);
            stored.m_isOriginalMicrophone = isOriginal;
            break;
        case Id::StoreAutoMicGain:
            if (stored.m_isOriginalMicrophone)
                stored.m_microphones[isOriginal].gain = int(line.real(0));
            break;
        case Id::StoreHandsfreeDelay:
            if (stored.m_isOriginalMicrophone)
                stored.m_microphones[isOriginal].delay = line.number(0);
            break;
        case Id::SetEqType:
            stored.m_equalizerType = line.number(0);
            break;
        case Id::SetEqTypeGains: {
            const QVariantList gains = line.values.at(0).toList();
            for (int band = 0; stored.m_equalizerType == customType && band < gains.size(); ++band)
                stored.m_customGains[band] = gains.at(band).toInt();
            break;
        }
        default:
            break;
        }
    }
    return stored;
}

StoredSettings StoredSettings::ofFile(const SettingsReader &file)
{
    StoredSettings stored;
    const QVector<SettingsReader::Setting> settings = file.settings();
    for (const SettingsReader::Setting &setting : settings) {
        bool isNumber = false;
        const int number = setting.inEffect.toInt(&isNumber);
        const QString key = setting.key.section(QLatin1Char('/'), 1);
        if (setting.key == QLatin1String("Volume/MicType")) {
            stored.m_isOriginalMicrophone = setting.inEffect != QLatin1String("false");
        } else if (!setting.isKnown || !isNumber) {
            continue; // a volume's default depends on the home screen
        } else if (setting.key == QLatin1String("Volume/VolumeMic")) {
            stored.m_microphoneVolume = number;
        } else if (setting.key == QLatin1String("EQ/Type")) {
            stored.m_equalizerType = number;
        } else if (key.startsWith(QLatin1String("AutoMicGain"))) {
            stored.m_microphones[key.endsWith(QLatin1String("Orig"))].gain = number;
        } else if (key.startsWith(QLatin1String("MicDelay"))) {
            stored.m_microphones[key.endsWith(QLatin1String("Orig"))].delay = number;
        } else if (key.startsWith(QLatin1String("Custom"))) {
            stored.m_customGains[QString(key).remove(QStringLiteral("Custom")).toInt()] = number;
        } else if (setting.key.startsWith(QLatin1String("Volume/"))) {
            stored.m_volumes[key.toInt()] = number;
        }
    }
    return stored;
}

QStringList StoredSettings::statements() const
{
    QStringList lines;
    for (const auto &[type, volume] : m_volumes) {
        if (!isDefault(type, volume, m_isLargeHome))
            lines.append(volumeStatement(type, volume));
    }
    if (m_microphoneVolume.value_or(defaultMicrophoneVolume) != defaultMicrophoneVolume)
        lines.append(QStringLiteral("AudioPolicy.setMicInputValue(%1);").arg(*m_microphoneVolume));
    bool isOriginal = true;
    const auto choose = [&lines, &isOriginal](bool wanted) {
        if (isOriginal != wanted)
            lines.append(QStringLiteral("AudioPolicy.setMicLeftRightSwitch(%1);").arg(wanted ? QLatin1String("true") : QLatin1String("false")));
        isOriginal = wanted;
    };
    for (const auto &[original, microphone] : m_microphones) {
        if (microphone.gain.value_or(0) == 0 && microphone.delay.value_or(0) == 0)
            continue;
        choose(original);
        if (microphone.gain.value_or(0) != 0)
            lines.append(QStringLiteral("AudioPolicy.setMicAnalogGain(%1, %1);").arg(*microphone.gain));
        if (microphone.delay.value_or(0) != 0)
            lines.append(QStringLiteral("AudioPolicy.setHandsfreeDelay(%1);").arg(*microphone.delay));
    }
    choose(m_isOriginalMicrophone.value_or(true));
    bool isCustom = false;
    for (const auto &[band, gain] : m_customGains) {
        if (gain == 0)
            continue;
        lines.append(QStringLiteral("AudioPolicy.adjustCustomEq(%1, %2);").arg(gain / 2).arg(band)); // it stores the double
        isCustom = true;
    }
    const int type = m_equalizerType.value_or(defaultEqualizerType);
    if (isCustom ? type != customType : type != defaultEqualizerType)
        lines.append(QStringLiteral("AudioPolicy.setEqType(%1);").arg(type));
    return lines;
}
