#include "settingstarget.h"

#include "flash.h"
#include "settingstext.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QSettings>
#include <QtCore/QVariantMap>

#include <algorithm>

using audio::AudioDataBase;
using audio::SettingsText;

namespace
{

const QString comparedName = QStringLiteral("compared.ini");
const QString damagedName = QStringLiteral("audioData.db.damaged");

constexpr int volumeTypes = 6;
constexpr int bands = 16;

void require(bool holds, const char *what, const QString &where = {})
{
    if (!holds)
        qFatal("does not hold: %s %s", what, qUtf8Printable(where));
}

/// All keys that can be asked for with their values, as QSettings finds them in a file of these bytes.
QVariantMap readByQSettings(const QByteArray &bytes)
{
    flash::setContent(bytes, comparedName);
    const QSettings settings(flash::folder() + QLatin1Char('/') + comparedName, QSettings::IniFormat);
    QVariantMap values;
    const QStringList keys = settings.allKeys();
    const QString mark = QStringLiteral("\u00ef\u00bb\u00bf");
    for (const QString &key : keys) {
        const bool hasSlashesTooMany = key != SettingsText::path({}, key);
        // A key right behind the byte order mark, without a group: QSettings takes the mark for a part of it.
        if (!hasSlashesTooMany && !key.startsWith(mark))
            values.insert(key, settings.value(key));
    }
    return values;
}

/// Whether some keys stand below "[]": QSettings has names for them that nobody can ask for, to the library they have no group.
bool hasNamelessGroup(const QByteArray &bytes)
{
    const QByteArrayList lines = QByteArray(bytes).replace('\r', '\n').split('\n');
    return std::any_of(lines.begin(), lines.end(), [](const QByteArray &line) {
        const QByteArray text = line.trimmed();
        return text.startsWith('[') && text.mid(1).trimmed().startsWith(']');
    });
}

QByteArray serialized(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

bool isSame(const QVariant &left, const QVariant &right)
{
    if (left.userType() != right.userType())
        return false;
    if (left == right)
        return true;
    // What is no number is not equal to itself.
    return serialized(left) == serialized(right);
}

void requireSame(const QVariantMap &actual, const QVariantMap &expected, const char *what)
{
    for (auto value = expected.begin(); value != expected.end(); ++value)
        require(isSame(actual.value(value.key()), value.value()), what, value.key());
    require(actual.size() == expected.size(), what, QStringLiteral("(as many keys)"));
}

/// A size, place or rectangle with a bracket in its middle, which QSettings itself never writes. It reads some of them as more numbers, or none.
bool isOddShape(const QByteArray &raw)
{
    const bool isShape = raw.contains("@Size(") || raw.contains("@Point(") || raw.contains("@Rect(");
    return isShape && raw.count(')') > 1;
}

void requireRead(const SettingsText &text, const QVariantMap &values)
{
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (!isOddShape(text.rawValue(value.key())))
            require(isSame(text.value(value.key(), QStringLiteral("none")), value.value()), "a text reads as QSettings reads it", value.key());
    }
}

/// What is left of the bytes without damage: it is whole itself, and means the same to QSettings.
QVariantMap checkText(const SettingsText &text)
{
    const SettingsText again(text.bytes());
    require(again.damagedLines() == 0 && again.bytes() == text.bytes(), "what is left of a damaged text is whole");
    const QVariantMap values = readByQSettings(text.bytes());
    requireRead(text, values);
    return values;
}

int numberIn(const QVariantMap &values, const QString &key, int fallback)
{
    return values.value(key, fallback).toInt();
}

/// All readers, by what QSettings finds.
void checkReaders(AudioDataBase &store, const QVariantMap &values)
{
    for (int type = 0; type < volumeTypes; ++type) {
        const int expected = numberIn(values, QStringLiteral("Volume/%1").arg(type), type == ZelAudioTypeHiCarCall ? 15 : 20);
        require(store.getVolume(static_cast<ZelAudioType>(type)) == expected, "a volume is the stored one");
    }
    for (int band = 0; band < bands; ++band)
        require(store.getCustomEQ(band) == numberIn(values, QStringLiteral("EQ/Custom%1").arg(band), 0), "a band is the stored one");
    require(store.eqType() == numberIn(values, QStringLiteral("EQ/Type"), 6), "the equalizer type is the stored one");
    require(store.micInputValue() == numberIn(values, QStringLiteral("Volume/VolumeMic"), 12), "the microphone volume is the stored one");
    require(store.loudNess() == values.value(QStringLiteral("Volume/Loudness"), true).toBool(), "loudness is the stored one");
    const bool isOriginal = values.value(QStringLiteral("Volume/MicType"), true).toBool();
    require(store.micType() == isOriginal, "the microphone type is the stored one");
    const QString delay = isOriginal ? QStringLiteral("Volume/MicDelayOrig") : QStringLiteral("Volume/MicDelayArm");
    require(store.getHandsfreeDelay() == numberIn(values, delay, 0), "the delay is the stored one");
    store.getAutoMicGain();
}

/// Saves what an application would, and what the bytes themselves give.
void save(AudioDataBase &store, const QByteArray &bytes, QVariantMap &expected)
{
    constexpr int longest = 64;
    store.setEqType(3);
    expected.insert(QStringLiteral("EQ/Type"), QStringLiteral("3"));
    store.setVolume(ZelAudioTypeSpeech, -9, true);
    expected.insert(QStringLiteral("Volume/4"), QStringLiteral("-9"));
    store.setLoudNess(false);
    expected.insert(QStringLiteral("Volume/Loudness"), QStringLiteral("false"));
    store.setmicType(true);
    expected.insert(QStringLiteral("Volume/MicType"), QStringLiteral("true"));
    store.setAutoMicGain(3.5F);
    expected.insert(QStringLiteral("Volume/AutoMicGainOrig"), 3.5F);
    const QString text = QString::fromLatin1(bytes.right(longest));
    store.save(QStringLiteral("Elsewhere"), QStringLiteral("a text"), text);
    expected.insert(QStringLiteral("Elsewhere/a text"), text);
}

} // namespace

QStringList keptFrom(std::string_view bytes)
{
    flash::clean();
    const QByteArray content(bytes.data(), int(bytes.size()));
    const SettingsText text(content);
    flash::setContent(content);
    if (hasNamelessGroup(text.bytes())) {
        AudioDataBase store;
        store.setEqType(3);
        return {};
    }
    const QVariantMap before = checkText(text);
    QVariantMap expected = before;
    {
        AudioDataBase store;
        require(flash::content(damagedName) == (text.damagedLines() > 0 ? content : QByteArray()), "a damaged file is kept, and no other");
        checkReaders(store, before);
        save(store, content, expected);
        require(store.eqType() == 3 && store.getVolume(ZelAudioTypeSpeech) == -9 && !store.loudNess(), "what was saved is read");
        require(store.getAutoMicGain() == 3, "what was saved is read from the file");
    }
    requireSame(readByQSettings(flash::content()), expected, "a save changes what is saved and nothing else");
    AudioDataBase again;
    checkReaders(again, expected);
    requireRead(SettingsText(flash::content()), expected);
    return before.keys();
}
