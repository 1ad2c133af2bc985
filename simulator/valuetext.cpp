#include "valuetext.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

namespace simulator
{

namespace
{

/// Collects "name: value" pairs of one record.
class FieldTexts
{
public:
    template<typename Value>
    FieldTexts &field(const char *name, const Value &value)
    {
        m_fields += QLatin1String(name) + QLatin1String(": ") + valueText(value);
        return *this;
    }

    /// A field that nobody should fill: shown only when somebody did.
    template<typename Value>
    FieldTexts &reserved(const char *name, const Value &value)
    {
        if (recordBytes(value) != QByteArray(sizeof value, '\0'))
            field(name, value);
        return *this;
    }

    QString text() const { return QLatin1Char('{') + m_fields.join(QLatin1String(", ")) + QLatin1Char('}'); }

private:
    static QString valueText(const QString &text) { return text; }
    static QString valueText(quint8 value) { return QString::number(value); }
    static QString valueText(quint16 value) { return QString::number(value); }
    static QString valueText(quint32 value) { return QString::number(value); }
    static QString valueText(float value) { return floatText(value); }

    template<typename Element, std::size_t Size>
    static QString valueText(const Element (&array)[Size])
    {
        QStringList elements;
        for (const Element &element : array)
            elements += valueText(element);
        return QLatin1Char('[') + elements.join(QLatin1String(", ")) + QLatin1Char(']');
    }

    QStringList m_fields;
};

QString bandText(const audio::audio_ext_eq_band_t &band)
{
    return FieldTexts()
        .field("type", band.type)
        .field("frequency", band.frequency)
        .reserved("reserved0", band.reserved0)
        .field("gain", band.gain)
        .field("q", band.q)
        .reserved("reserved1", band.reserved1)
        .text();
}

bool isAllZero(const audio::audio_ext_eq_band_t &band)
{
    return recordBytes(band) == recordBytes(audio::audio_ext_eq_band_t{});
}

template<typename Element, std::size_t Size>
QVariantList listOf(const Element (&array)[Size])
{
    QVariantList list;
    for (const Element &element : array)
        list += QVariant::fromValue(element);
    return list;
}

} // namespace

QString quotedText(const QString &text)
{
    if (text.isNull())
        return QStringLiteral("null");
    QString quoted = QStringLiteral("\"");
    for (const QChar character : text) {
        if (character == QLatin1Char('"') || character == QLatin1Char('\\'))
            quoted += QLatin1Char('\\') + QString(character);
        else if (character.unicode() < 0x20)
            quoted += QLatin1String("\\x") + QString::number(character.unicode(), 16).rightJustified(2, QLatin1Char('0'));
        else
            quoted += character;
    }
    return quoted + QLatin1Char('"');
}

QString floatText(float value)
{
    // The sign of a NaN differs between processors.
    if (std::isnan(value))
        return QStringLiteral("nan");
    std::array<char, 32> buffer = {};
    const std::to_chars_result result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return QString::fromLatin1(buffer.data(), static_cast<int>(result.ptr - buffer.data()));
}

QString recordText(const audio::audio_channel_gain_t &record)
{
    return FieldTexts().field("channel", record.channel).field("gain", record.gain).reserved("reserved", record.reserved).text();
}

QString recordText(const audio::audio_loudness_t &record)
{
    return FieldTexts().field("on", record.on).field("onAgain", record.onAgain).field("level", record.level).text();
}

QString recordText(const audio::audio_filter_t &record)
{
    return FieldTexts()
        .field("channel", record.channel)
        .field("value1", record.value1)
        .field("notFlag", record.notFlag)
        .field("value2", record.value2)
        .field("kind", record.kind)
        .field("value3", record.value3)
        .field("value4", record.value4)
        .text();
}

QString recordText(const audio::audio_eq_parameter_t &record)
{
    return FieldTexts().field("channel", record.channel).field("frequency", record.frequency).field("gain", record.gain).field("type", record.type).text();
}

QString recordText(const audio::audio_ext_eq_parameter_t &record)
{
    const auto lastUsed = std::find_if_not(std::crbegin(record.band), std::crend(record.band), isAllZero);
    QStringList bands;
    std::for_each(std::cbegin(record.band), lastUsed.base(), [&bands](const audio::audio_ext_eq_band_t &band) { bands += bandText(band); });
    return FieldTexts().field("channel", record.channel).field("band", QString(QLatin1Char('[') + bands.join(QLatin1String(", ")) + QLatin1Char(']'))).text();
}

QVariantMap recordFields(const audio::audio_channel_gain_t &record)
{
    return {
        {QStringLiteral("channel"), record.channel},
        {QStringLiteral("gain"), record.gain},
        {QStringLiteral("reserved"), listOf(record.reserved)},
    };
}

QVariantMap recordFields(const audio::audio_loudness_t &record)
{
    return {
        {QStringLiteral("on"), record.on},
        {QStringLiteral("onAgain"), record.onAgain},
        {QStringLiteral("level"), record.level},
    };
}

QVariantMap recordFields(const audio::audio_filter_t &record)
{
    return {
        {QStringLiteral("channel"), record.channel},
        {QStringLiteral("value1"), record.value1},
        {QStringLiteral("notFlag"), record.notFlag},
        {QStringLiteral("value2"), record.value2},
        {QStringLiteral("kind"), record.kind},
        {QStringLiteral("value3"), record.value3},
        {QStringLiteral("value4"), record.value4},
    };
}

QVariantMap recordFields(const audio::audio_eq_parameter_t &record)
{
    return {
        {QStringLiteral("channel"), record.channel},
        {QStringLiteral("frequency"), listOf(record.frequency)},
        {QStringLiteral("gain"), listOf(record.gain)},
        {QStringLiteral("type"), listOf(record.type)},
    };
}

QVariantMap recordFields(const audio::audio_ext_eq_parameter_t &record)
{
    QVariantList bands;
    for (const audio::audio_ext_eq_band_t &band : record.band) {
        bands += QVariantMap{
            {QStringLiteral("type"), band.type},
            {QStringLiteral("frequency"), band.frequency},
            {QStringLiteral("reserved0"), band.reserved0},
            {QStringLiteral("gain"), band.gain},
            {QStringLiteral("q"), band.q},
            {QStringLiteral("reserved1"), listOf(band.reserved1)},
        };
    }
    return {
        {QStringLiteral("channel"), record.channel},
        {QStringLiteral("band"), bands},
    };
}

} // namespace simulator
