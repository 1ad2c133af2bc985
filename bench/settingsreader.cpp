#include "settingsreader.h"

#include "settingstext.h"
#include "storereading.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <cerrno>
#include <limits>
#include <sys/stat.h>

namespace
{

/// What the store makes of a stored value.
enum class Kind {
    Number,
    Gain, ///< a number whose fraction is unused
    Truth,
};

struct Range
{
    int lowest;
    int highest;
};

constexpr Range anyNumber = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
constexpr Range volumes = {0, 25};
constexpr Range microphoneVolumes = {0, 91};
constexpr Range equalizerTypes = {0, 7};
constexpr Range customGains = {-12, 12}; // beyond it the whole curve is refused

struct KnownKey
{
    const char *key;
    const char *defaultText;
    const char *meaning;
    Kind kind;
    Range range;
};

constexpr KnownKey knownKeys[] = {
    {"Volume/0", "20, or 25 with home UI type 7", "media volume, 0 to 25", Kind::Number, volumes},
    {"Volume/1", "20, or 25 with home UI type 7", "prompts over the main audio, 0 to 25", Kind::Number, volumes},
    {"Volume/2", "20, or 25 with home UI type 7", "telephony, 0 to 25", Kind::Number, volumes},
    {"Volume/3", "20, or 25 with home UI type 7", "ringtones and alerts, 0 to 25", Kind::Number, volumes},
    {"Volume/4", "20, or 25 with home UI type 7", "speech, 0 to 25", Kind::Number, volumes},
    {"Volume/5", "15, or 25 with home UI type 7", "HiCar call, 0 to 25", Kind::Number, volumes},
    {"Volume/VolumeMic", "12", "microphone input volume, 0 to 91", Kind::Number, microphoneVolumes},
    {"Volume/Loudness", "true", "loudness", Kind::Truth, anyNumber},
    {"Volume/MicType", "true", "microphone: true original, false arm", Kind::Truth, anyNumber},
    {"Volume/AutoMicGainOrig", "0", "gain of the original microphone, dB, its fraction unused", Kind::Gain, anyNumber},
    {"Volume/AutoMicGainArm", "0", "gain of the arm microphone, dB, its fraction unused", Kind::Gain, anyNumber},
    {"Volume/MicDelayOrig", "0", "hands-free delay, original microphone", Kind::Number, anyNumber},
    {"Volume/MicDelayArm", "0", "hands-free delay, arm microphone", Kind::Number, anyNumber},
    {"EQ/Type", "6", "equalizer type, 0 to 7; 7 is the custom curve", Kind::Number, equalizerTypes},
};

constexpr int customBands = 16;

/// A key that the library knows.
struct Key
{
    QString name;
    QString defaultText;
    QString meaning;
    Kind kind;
    Range range;
};

QVector<Key> allKeys()
{
    QVector<Key> keys;
    for (const KnownKey &known : knownKeys)
        keys.append({QLatin1String(known.key), QLatin1String(known.defaultText), QLatin1String(known.meaning), known.kind, known.range});
    for (int band = 0; band < customBands; ++band) {
        keys.append(
            {QStringLiteral("EQ/Custom%1").arg(band), QStringLiteral("0"), QStringLiteral("custom curve, band %1, dB").arg(band), Kind::Number, customGains});
    }
    return keys;
}

QStringList allNames()
{
    QStringList names;
    const auto keys = allKeys();
    for (const Key &key : keys)
        names.append(key.name);
    return names;
}

QString truthText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// In words of what was written; empty where it counts as it is.
QString problemOfNumber(const QString &stored, int inEffect, const Range &range)
{
    bool isWhole = false;
    const qlonglong number = stored.toLongLong(&isWhole);
    bool isNumber = false;
    const double decimal = stored.toDouble(&isNumber);
    if (!isWhole && !(isNumber && decimal == double(inEffect)))
        return QStringLiteral("no whole number");
    if (isWhole && (number < anyNumber.lowest || number > anyNumber.highest))
        return QStringLiteral("too large a number");
    if (isWhole && number != inEffect)
        return QStringLiteral("of an earlier line, the last is damaged");
    if (inEffect < range.lowest || inEffect > range.highest)
        return QStringLiteral("outside %1 to %2").arg(range.lowest).arg(range.highest);
    return {};
}

QString problemOfTruth(const QString &stored, bool inEffect)
{
    const QString text = stored.toLower();
    const bool isTrue = text == QLatin1String("true") || text == QLatin1String("1");
    const bool isFalse = text == QLatin1String("false") || text == QLatin1String("0");
    if (!isTrue && !isFalse)
        return QStringLiteral("neither true nor false");
    return isTrue == inEffect ? QString() : QStringLiteral("of an earlier line, the last is damaged");
}

void addEffect(SettingsReader::Setting &setting, const Key &key, const QMap<QString, QVariant> &storeValues)
{
    const auto found = storeValues.constFind(key.name);
    if (found == storeValues.cend()) {
        setting.inEffect = key.defaultText;
        if (setting.stored.isValid())
            setting.problem = QStringLiteral("the line is damaged and left out");
        return;
    }
    const int number = key.kind == Kind::Gain ? StoreReading::wholeNumber(*found) : found->toInt();
    setting.inEffect = key.kind == Kind::Truth ? truthText(found->toBool()) : QString::number(number);
    if (!setting.stored.isValid()) {
        setting.problem = found->isValid() ? QStringLiteral("read from damaged lines") : QStringLiteral("stored without a value");
        return;
    }
    const QString stored = setting.stored.toString();
    setting.problem = key.kind == Kind::Truth ? problemOfTruth(stored, found->toBool()) : problemOfNumber(stored, number, key.range);
}

} // namespace

SettingsReader::SettingsReader(const QString &file)
    : m_path(file)
{
    reload();
}

QString SettingsReader::file() const
{
    return m_path;
}

bool SettingsReader::exists() const
{
    return exists(m_path);
}

bool SettingsReader::exists(const QString &file)
{
    struct stat status = {};
    return stat(QFile::encodeName(file).constData(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

QString SettingsReader::problem() const
{
    return m_readProblem;
}

bool SettingsReader::isReadable() const
{
    return m_readable;
}

void SettingsReader::reload()
{
    m_values.clear();
    m_storeValues.clear();
    m_readProblem.clear();
    m_readable = true;
    QFile file(m_path);
    if (!exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        m_readable = false;
        m_readProblem = file.errorString();
        return;
    }
    const QByteArray text = file.read(sizeLimit + 1);
    if (text.size() > sizeLimit) {
        m_readable = false;
        m_readProblem = QStringLiteral("more than 1 MB, too large to be a settings file");
        return;
    }
    const SettingsText::Content content = SettingsText::read(text);
    m_values = content.values;
    m_storeValues = StoreReading::values(text, allNames());
    if (!content.isWhole)
        m_readProblem = QStringLiteral("some of it is not written as settings are");
}

QVector<SettingsReader::Setting> SettingsReader::settings() const
{
    QMap<QString, QVariant> left = m_values;
    QVector<Setting> result;
    const auto keys = allKeys();
    for (const Key &key : keys) {
        Setting setting = {key.name, left.take(key.name), key.defaultText, key.meaning, true, {}, {}};
        addEffect(setting, key, m_storeValues);
        result.append(setting);
    }
    for (auto entry = left.cbegin(); entry != left.cend(); ++entry)
        result.append({entry.key(), entry.value(), {}, QStringLiteral("unknown to the library, kept"), false, {}, {}});
    return result;
}
