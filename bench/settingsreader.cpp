#include "settingsreader.h"

#include "settingstext.h"

#include <QtCore/QFile>

namespace
{

struct KnownKey
{
    const char *key;
    const char *defaultText;
    const char *meaning;
};

constexpr KnownKey knownKeys[] = {
    {"Volume/0", "20, or 25 with home UI type 7", "media volume, 0 to 25"},
    {"Volume/1", "20, or 25 with home UI type 7", "prompts over the main audio, 0 to 25"},
    {"Volume/2", "20, or 25 with home UI type 7", "telephony, 0 to 25"},
    {"Volume/3", "20, or 25 with home UI type 7", "ringtones and alerts, 0 to 25"},
    {"Volume/4", "20, or 25 with home UI type 7", "speech, 0 to 25"},
    {"Volume/5", "15, or 25 with home UI type 7", "HiCar call, 0 to 25"},
    {"Volume/VolumeMic", "12", "microphone input volume, 0 to 91"},
    {"Volume/Loudness", "true", "loudness"},
    {"Volume/MicType", "true", "microphone: true original, false arm"},
    {"Volume/AutoMicGainOrig", "0", "gain of the original microphone, dB, its fraction unused"},
    {"Volume/AutoMicGainArm", "0", "gain of the arm microphone, dB, its fraction unused"},
    {"Volume/MicDelayOrig", "0", "hands-free delay, original microphone"},
    {"Volume/MicDelayArm", "0", "hands-free delay, arm microphone"},
    {"EQ/Type", "6", "equalizer type, 0 to 7; 7 is the custom curve"},
};

constexpr int customBands = 16;

} // namespace

SettingsReader::SettingsReader(const QString &file)
    : path(file)
{
    reload();
}

QString SettingsReader::file() const
{
    return path;
}

bool SettingsReader::exists() const
{
    return QFile::exists(path);
}

QString SettingsReader::problem() const
{
    return readProblem;
}

bool SettingsReader::isReadable() const
{
    return readable;
}

void SettingsReader::reload()
{
    values.clear();
    readProblem.clear();
    readable = true;
    QFile file(path);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        readable = false;
        readProblem = file.errorString();
        return;
    }
    const QByteArray text = file.read(sizeLimit + 1);
    if (text.size() > sizeLimit) {
        readable = false;
        readProblem = QStringLiteral("more than 1 MB, too large to be a settings file");
        return;
    }
    const SettingsText::Content content = SettingsText::read(text);
    values = content.values;
    if (!content.isWhole)
        readProblem = QStringLiteral("some of it is not written as settings are");
}

QVector<SettingsReader::Setting> SettingsReader::settings() const
{
    QMap<QString, QVariant> left = values;
    QVector<Setting> result;
    for (const KnownKey &known : knownKeys) {
        const QString key = QLatin1String(known.key);
        result.append({key, left.take(key), QLatin1String(known.defaultText), QLatin1String(known.meaning), true});
    }
    for (int band = 0; band < customBands; ++band) {
        const QString key = QStringLiteral("EQ/Custom%1").arg(band);
        result.append({key, left.take(key), QStringLiteral("0"), QStringLiteral("custom curve, band %1, dB").arg(band), true});
    }
    for (auto entry = left.cbegin(); entry != left.cend(); ++entry)
        result.append({entry.key(), entry.value(), {}, QStringLiteral("unknown to the library, kept"), false});
    return result;
}
