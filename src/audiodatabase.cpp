#include <qzaudio/audiodatabase.h>

#include "audiodatabasetables.h"
#include "logging.h"
#include "settingsstorage.h"
#include "settingstext.h"
#include "situationtables.h"

#include <settingsfile.h>
#include <settingsprovider.h>

#include <QtCore/QFile>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace audio
{

namespace
{

QString volumeGroup()
{
    return QStringLiteral("Volume");
}

QString equalizerGroup()
{
    return QStringLiteral("EQ");
}

bool isIndexOf(int index, int count)
{
    return index >= 0 && index < count;
}

/// A stored number without its fraction, 0 where no int holds it. A stored text counts only when it is a whole number.
int wholeNumber(const QVariant &value)
{
    // QVariant::toInt() would round fractions, and wrap huge numbers round.
    const bool isText = value.userType() == QMetaType::QString || value.userType() == QMetaType::QByteArray;
    const double number = isText ? static_cast<double>(value.toLongLong()) : std::trunc(value.toDouble());
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return number >= lowest && number <= highest ? static_cast<int>(number) : 0;
}

/// What went wrong with the file, at the place of the operation that found it.
void complain(const logging::CodeLocation &at, const QStringList &complaints)
{
    for (const QString &complaint : complaints)
        logging::logCritical(at, SettingsFile::nativePath, qUtf8Printable(complaint));
}

} // namespace

AudioDataBase::AudioDataBase(QObject *parent)
    : QObject(parent)
{
    QStringList complaints;
    settingsstorage::start(complaints);
    complain(QZAUDIO_HERE, complaints);
    _initMaps();
    _initVolume();
    storedMicInputValue = data(volumeGroup(), QStringLiteral("VolumeMic"), tables::defaultMicrophoneVolume).toInt();
    loudness = data(volumeGroup(), QStringLiteral("Loudness"), true).toBool();
    storedEqType = data(equalizerGroup(), QStringLiteral("Type"), tables::defaultEqualizerType).toInt();
    storedMicType = data(volumeGroup(), QStringLiteral("MicType"), true).toBool();
    // Last: which keys these read depends on the microphone type.
    getHandsfreeDelay();
    getAutoMicGain();
}

AudioDataBase::~AudioDataBase()
{
    QStringList complaints;
    settingsstorage::finish(complaints);
    complain(QZAUDIO_HERE, complaints);
}

void AudioDataBase::_initMaps()
{
    std::copy(std::begin(tables::equalizerPresets), std::end(tables::equalizerPresets), std::begin(eqBase));
    for (int band = 0; band < tables::equalizerBandCount; ++band)
        customEq[band] = data(equalizerGroup(), QStringLiteral("Custom%1").arg(band), 0).toInt();
    for (const situations::Status &row : situations::statuses)
        statusInfo.insert(row.status, {row.type, row.tag});
    for (const situations::Channel &row : situations::channels)
        channelInfo.insert(row.channel, {row.type, QString::fromLatin1(row.source)});
    for (const situations::Status &row : situations::statuses)
        statusSpName.insert(row.status, QString::fromLatin1(row.source));
}

void AudioDataBase::_initVolume()
{
    vd::SettingsProvider *provider = vd::SettingsProvider::instance();
    const bool isLarge = provider && provider->getHomeUiType() == tables::largeHomeUiType;
    if (isLarge)
        traceDebug() << "Custom_7's volume default = 50"; // meant so, though it is 25
    for (int type = 0; type < tables::volumeTypeCount; ++type) {
        const int fallback = isLarge ? tables::largeHomeUiVolume : tables::defaultVolumes[type];
        volumes[type] = data(volumeGroup(), QString::number(type), fallback).toInt();
    }
}

// The file ------------------------------------------------------------------------------------------------------------------

QVariant AudioDataBase::data(QString group, QString key, QVariant defaultValue)
{
    QStringList complaints;
    QVariant value = settingsstorage::value(SettingsText::path(group, key), defaultValue, complaints);
    complain(QZAUDIO_HERE, complaints);
    return value;
}

void AudioDataBase::save(QString group, QString key, QVariant value)
{
    QStringList complaints;
    const bool isWritten = settingsstorage::save(SettingsText::path(group, key), value, complaints);
    complain(QZAUDIO_HERE, complaints);
    if (!isWritten && !QFile::exists(SettingsFile::path()))
        traceCritical() << SettingsFile::nativePath << "file not exists!!!";
}

bool AudioDataBase::clear()
{
    const bool removed = QFile::remove(SettingsFile::path());
    if (removed)
        settingsstorage::forgetWaiting();
    else
        traceCritical() << "clear" << SettingsFile::nativePath << "fail!!!";
    return removed;
}

// Volumes and switches ------------------------------------------------------------------------------------------------------

int AudioDataBase::getVolume(ZelAudioType type)
{
    const int index = type % tables::volumeTypeCount;
    return isIndexOf(index, tables::volumeTypeCount) ? volumes[index] : 0;
}

void AudioDataBase::setVolume(ZelAudioType type, int value, bool save)
{
    if (isIndexOf(type, tables::volumeTypeCount))
        volumes[type] = value;
    if (save)
        this->save(volumeGroup(), QString::number(type), value); // whatever the type is
}

void AudioDataBase::savevolume()
{
    for (int type = 0; type < tables::volumeTypeCount; ++type)
        save(volumeGroup(), QString::number(type), volumes[type]);
}

bool AudioDataBase::loudNess()
{
    return loudness;
}

void AudioDataBase::setLoudNess(bool on)
{
    loudness = on;
    save(volumeGroup(), QStringLiteral("Loudness"), on);
}

// Microphone ----------------------------------------------------------------------------------------------------------------

bool AudioDataBase::micType()
{
    return storedMicType;
}

void AudioDataBase::setmicType(bool original)
{
    storedMicType = original;
    save(volumeGroup(), QStringLiteral("MicType"), original);
}

int AudioDataBase::micInputValue()
{
    return storedMicInputValue;
}

void AudioDataBase::setMicInputValue(int value)
{
    storedMicInputValue = value;
    save(volumeGroup(), QStringLiteral("VolumeMic"), value);
}

void AudioDataBase::setAutoMicGain(float gain)
{
    autoMicGain = gain;
    traceDebug();
    save(volumeGroup(), autoMicGainKey(), gain);
}

float AudioDataBase::getAutoMicGain()
{
    const QString key = autoMicGainKey();
    traceDebug() << key;
    autoMicGain = static_cast<float>(wholeNumber(data(volumeGroup(), key, 0)));
    traceDebug() << autoMicGain;
    return autoMicGain;
}

void AudioDataBase::setHandsfreeDelay(int delay)
{
    handsfreeDelay = delay;
    traceDebug();
    save(volumeGroup(), handsfreeDelayKey(), delay);
}

int AudioDataBase::getHandsfreeDelay()
{
    const QString key = handsfreeDelayKey();
    traceDebug() << key;
    handsfreeDelay = data(volumeGroup(), key, 0).toInt();
    traceDebug() << handsfreeDelay;
    return handsfreeDelay;
}

QString AudioDataBase::autoMicGainKey() const
{
    return storedMicType ? QStringLiteral("AutoMicGainOrig") : QStringLiteral("AutoMicGainArm");
}

QString AudioDataBase::handsfreeDelayKey() const
{
    return storedMicType ? QStringLiteral("MicDelayOrig") : QStringLiteral("MicDelayArm");
}

// Equalizer -----------------------------------------------------------------------------------------------------------------

int AudioDataBase::eqType()
{
    return storedEqType;
}

void AudioDataBase::setEqType(int type)
{
    storedEqType = type;
    save(equalizerGroup(), QStringLiteral("Type"), type);
}

int AudioDataBase::getCustomEQ(int index)
{
    return isIndexOf(index, tables::equalizerBandCount) ? customEq[index] : 0;
}

void AudioDataBase::setCustomEQ(int value, int index)
{
    if (!isIndexOf(index, tables::equalizerBandCount))
        return;
    traceDebug() << "###########################" << index << value;
    // Doubled in unsigned arithmetic, where the largest numbers wrap round instead of overflowing.
    customEq[index] = static_cast<int>(static_cast<unsigned int>(value) * 2U);
    save(equalizerGroup(), QStringLiteral("Custom") + QString::number(index), customEq[index]);
}

const EqBaseData *AudioDataBase::getEqBaseData()
{
    return &eqBase[0];
}

int AudioDataBase::getCurrentIndexInItem()
{
    return getCurrentIndexInDefault(storedEqType);
}

int AudioDataBase::getCurrentIndexInDefault(int type)
{
    const auto preset = std::find_if(std::begin(eqBase), std::end(eqBase), [type](const EqBaseData &candidate) { return candidate.type == type; });
    return preset == std::end(eqBase) ? 0 : static_cast<int>(std::distance(std::begin(eqBase), preset));
}

int AudioDataBase::getNextEqType(bool up)
{
    const int index = getCurrentIndexInItem() + (up ? 1 : -1) + tables::equalizerPresetCount;
    return eqBase[index % tables::equalizerPresetCount].type;
}

// Status and channel tables -------------------------------------------------------------------------------------------------

ZelAudioInfo AudioDataBase::getAudioStatusInfo(AudioStatus status)
{
    return statusInfo.value(status, {ZelAudioTypeMedia, 0});
}

QString AudioDataBase::getStatusToSpName(AudioStatus status)
{
    return statusSpName.value(status, QString::fromLatin1(situations::noSource));
}

ZelAudioAChannelInfo AudioDataBase::getChannelInfo(AudioChannel channel)
{
    return channelInfo.value(channel, {ZelAudioTypeMedia, QString::fromLatin1(situations::noSource)});
}

void AudioDataBase::getGroupDefaultData(QHash<QString, uchar> &out)
{
    out.clear();
    for (const situations::Stream &row : situations::streams)
        out.insert(QString::fromLatin1(row.name), static_cast<uchar>(volumes[row.type])); // its low 8 bits
}

} // namespace audio
