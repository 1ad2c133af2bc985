#include "storemodel.h"

#include "wrapping.h"

#include <QtCore/QVariant>

#include <cmath>
#include <iterator>
#include <utility>

namespace lives
{

namespace
{

constexpr char none[] = "S+none_APP";

struct Situation
{
    int type;
    const char *source;
};

constexpr Situation statuses[20] = {
    {0, none},
    {3, "S+BtPcmPhone"},
    {2, "S+BtPcmPhone"},
    {2, "S+BtPcmPhone"},
    {0, "S+BtPcmPhone"},
    {3, "S+CarPlayAlert_APP"},
    {2, "S+CarPlayTelephony_APP"},
    {0, none},
    {4, "S+CarPlaySpeech_APP"},
    {0, "S+CarPlaySpeech_APP"},
    {1, none},
    {0, none},
    {4, "S+AndroidAuto_APP"},
    {0, "S+AndroidAuto_APP"},
    {1, "S+AndroidAuto_APP"},
    {0, "S+AndroidAuto_APP"},
    {4, "S+CarLife_APP"},
    {0, "S+CarLife_APP"},
    {1, "S+CarLife_APP"},
    {0, "S+CarLife_APP"},
};

constexpr Situation channels[20] = {
    {1, none},
    {0, none},
    {0, "BT_AUDIO_Track"},
    {0, "S+FilePlayer_APP"},
    {0, "S+IosMirror_APP"},
    {0, "S+CarPlayMedia_APP"},
    {3, "S+CarPlayAlert_APP"},
    {2, "S+CarPlayTelephony_APP"},
    {4, "S+CarPlaySpeech_APP"},
    {0, "S+CarPlayDefault_APP"},
    {0, "S+AndroidAuto_APP"},
    {3, "S+BtRingtone_APP"},
    {2, "S+BtPcmPhone"},
    {0, "S+DiscPlayer_APP"},
    {0, none},
    {0, "S+AuxIn_APP"},
    {0, none},
    {0, "S+CarLife_APP"},
    {0, none},
    {0, "s+AirPlayMedia_APP"},
};

/// Beyond the table it is as if nothing sounded.
const Situation &rowOf(const Situation (&table)[20], int number)
{
    static constexpr Situation unknown = {0, none};
    return number >= 0 && number < static_cast<int>(std::size(table)) ? table[number] : unknown;
}

constexpr std::pair<const char *, int> streams[] = {
    {"S+FilePlayer_APP", 0},
    {"S+DiscPlayer_APP", 0},
    {"BT_AUDIO_Track", 0},
    {"S+BtRingtone_APP", 3},
    {"S+BtPcmPhone", 2},
    {"S+AuxIn_APP", 0},
    {"S+Mic_APP", 0},
    {"S+CarPlayMedia_APP", 0},
    {"S+CarPlayAlert_APP", 3},
    {"S+CarPlayTelephony_APP", 2},
    {"S+CarPlaySpeech_APP", 4},
    {"S+CarPlayDefault_APP", 0},
    {"S+AndroidAuto_APP", 0},
    {"S+IPod_APP", 0},
    {"S+CarLife_APP", 0},
    {"S+WebLink_APP", 0},
    {"s+AirPlayMedia_APP", 0},
    {"S+IosMirror_APP", 0},
};

QString volumeKey(int type)
{
    return QStringLiteral("Volume/%1").arg(type);
}

} // namespace

namespace situation
{

int typeOfStatus(int status)
{
    return rowOf(statuses, status).type;
}
QString sourceOfStatus(int status)
{
    return QLatin1String(rowOf(statuses, status).source);
}
int typeOfChannel(int channel)
{
    return rowOf(channels, channel).type;
}
QString sourceOfChannel(int channel)
{
    return QLatin1String(rowOf(channels, channel).source);
}

const std::array<std::array<float, 16>, 8> curves = {{
    {4.8F, 4.3F, 3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F, 2.7F, 3.2F, 3.8F},
    {5.0F, 5.5F, 4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F, 0.0F, 0.5F, 2.0F, 3.0F, 5.0F, 4.0F, 6.0F, 5.0F},
    {5.0F, 4.5F, 3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 2.0F},
    {6.0F, 5.0F, 4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F, 4.0F, 2.0F, 0.0F, 0.0F, 5.0F, 5.0F, 5.0F, 5.0F},
    {-3.0F, -2.0F, 0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 5.5F, 4.0F, 3.0F, 3.0F, 0.0F, -3.0F, 5.0F, 4.0F},
    {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F, 5.0F, 5.5F, 2.0F, 1.0F, 0.0F, 0.0F, -4.0F, -5.0F},
    {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2},
    {},
}};

} // namespace situation

// The file ------------------------------------------------------------------------------------------------------------------

QMap<QString, QString> FileModel::parse(const QByteArray &text)
{
    QMap<QString, QString> values;
    QString group;
    const auto lines = text.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith('['))
            group = QString::fromLatin1(line.mid(1, line.size() - 2)) + QLatin1Char('/');
        else if (!line.isEmpty())
            values.insert(group + QString::fromLatin1(line).section(QLatin1Char('='), 0, 0), QString::fromLatin1(line).section(QLatin1Char('='), 1));
    }
    return values;
}

void FileModel::insert(const QString &key, const Value &value)
{
    m_values.insert(key, value);
    ++m_revision;
}

void FileModel::erase()
{
    m_values.clear();
    ++m_revision;
}

void FileModel::setText(const QByteArray &text)
{
    erase();
    const auto values = parse(text);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        insert(value.key(), {value.value(), {}});
}

int FileModel::number(const QString &key, int otherwise) const
{
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? otherwise : QVariant(found->text).toInt();
}

bool FileModel::truth(const QString &key, bool otherwise) const
{
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? otherwise : !(found->text.isEmpty() || found->text == QLatin1String("0") || found->text == QLatin1String("false"));
}

float FileModel::gain(const QString &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.cend())
        return 0;
    constexpr float beyondInt = 2147483648.0F;
    // A number that no int can hold reads as none.
    bool isInt = false;
    const int whole = found->text.toInt(&isInt);
    if (found->gain)
        return std::abs(*found->gain) < beyondInt ? static_cast<float>(static_cast<int>(*found->gain)) : 0;
    return static_cast<float>(isInt ? whole : QVariant(found->text).toLongLong() == 1 ? 1 : 0);
}

QString FileModel::differenceTo(const QByteArray &text) const
{
    auto values = parse(text);
    for (auto value = m_values.cbegin(); value != m_values.cend(); ++value) {
        if (!values.contains(value.key()))
            return value.key() + QLatin1String(" is missing in the settings file");
        QString found = values.take(value.key());
        if (found.startsWith(QLatin1Char('"'))) // where one of its bytes is a comma
            found.remove(0, 1);
        if (value->gain ? !found.startsWith(QLatin1String("@Variant(")) : found != value->text)
            return QStringLiteral("%1 is %2 in the settings file, and was stored as %3").arg(value.key(), found, value->text);
    }
    return values.isEmpty() ? QString() : values.firstKey() + QLatin1String(" is in the settings file, and nobody stored it");
}

// The store -----------------------------------------------------------------------------------------------------------------

void StoreModel::start(int homeUiType)
{
    for (int band = 0; band < static_cast<int>(m_custom.size()); ++band)
        m_custom[static_cast<std::size_t>(band)] = m_file.number(QStringLiteral("EQ/Custom%1").arg(band), 0);
    for (int type = 0; type < static_cast<int>(m_volumes.size()); ++type)
        m_volumes[static_cast<std::size_t>(type)] = m_file.number(volumeKey(type), homeUiType == 7 ? 25 : type == 5 ? 15 : 20);
    m_micInputValue = m_file.number(QStringLiteral("Volume/VolumeMic"), 12);
    m_loudness = m_file.truth(QStringLiteral("Volume/Loudness"), true);
    m_eqType = m_file.number(QStringLiteral("EQ/Type"), 6);
    m_micType = m_file.truth(QStringLiteral("Volume/MicType"), true);
}

int StoreModel::getVolume(int type) const
{
    const int place = type % 6;
    return place < 0 ? 0 : m_volumes[static_cast<std::size_t>(place)];
}

void StoreModel::setVolume(int type, int value, bool save)
{
    if (type >= 0 && type < 6)
        m_volumes[static_cast<std::size_t>(type)] = value;
    if (save)
        m_file.save(volumeKey(type), value);
}

void StoreModel::savevolume()
{
    for (int type = 0; type < 6; ++type)
        m_file.save(volumeKey(type), getVolume(type));
}

void StoreModel::setEqType(int type)
{
    m_eqType = type;
    m_file.save(QStringLiteral("EQ/Type"), type);
}

void StoreModel::setLoudNess(bool on)
{
    m_loudness = on;
    m_file.save(QStringLiteral("Volume/Loudness"), on);
}

void StoreModel::setmicType(bool original)
{
    m_micType = original;
    m_file.save(QStringLiteral("Volume/MicType"), original);
}

void StoreModel::setMicInputValue(int value)
{
    m_micInputValue = value;
    m_file.save(QStringLiteral("Volume/VolumeMic"), value);
}

int StoreModel::getCustomEQ(int index) const
{
    return index < 0 || index > 15 ? 0 : m_custom[static_cast<std::size_t>(index)];
}

void StoreModel::setCustomEQ(int value, int index)
{
    if (index < 0 || index > 15)
        return;
    m_custom[static_cast<std::size_t>(index)] = times(value, 2);
    m_file.save(QStringLiteral("EQ/Custom%1").arg(index), times(value, 2));
}

void StoreModel::setAutoMicGain(float gain)
{
    m_file.save(m_micType ? QStringLiteral("Volume/AutoMicGainOrig") : QStringLiteral("Volume/AutoMicGainArm"), gain);
}

float StoreModel::getAutoMicGain() const
{
    return m_file.gain(m_micType ? QStringLiteral("Volume/AutoMicGainOrig") : QStringLiteral("Volume/AutoMicGainArm"));
}

void StoreModel::setHandsfreeDelay(int delay)
{
    m_file.save(m_micType ? QStringLiteral("Volume/MicDelayOrig") : QStringLiteral("Volume/MicDelayArm"), delay);
}

int StoreModel::getHandsfreeDelay() const
{
    return m_file.number(m_micType ? QStringLiteral("Volume/MicDelayOrig") : QStringLiteral("Volume/MicDelayArm"), 0);
}

void StoreModel::getGroupDefaultData(QHash<QString, uchar> &out) const
{
    out.clear();
    for (const auto &stream : streams)
        out.insert(QLatin1String(stream.first), static_cast<uchar>(getVolume(stream.second)));
}

} // namespace lives
