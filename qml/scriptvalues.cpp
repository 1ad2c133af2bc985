#include "scriptvalues.h"

#include <qzaudio/audiotypes.h>

#include <QtCore/QByteArray>

#include <limits>

QVariantList ScriptValues::array(const QList<int> &values)
{
    return {values.cbegin(), values.cend()};
}

double ScriptValues::decimal(float value)
{
    constexpr int fewestDigits = std::numeric_limits<float>::digits10;
    constexpr int enoughDigits = std::numeric_limits<float>::max_digits10;
    for (int digits = fewestDigits; digits < enoughDigits; ++digits) {
        const double candidate = QByteArray::number(double(value), 'g', digits).toDouble();
        if (static_cast<float>(candidate) == value)
            return candidate;
    }
    return double(value);
}

QVariantList ScriptValues::equalizerPresets(const EqBaseData *table)
{
    constexpr int presetCount = 8;
    QVariantList presets;
    for (int i = 0; i < presetCount; ++i) {
        QVariantList gains;
        for (const float gain : table[i].gains)
            gains.append(decimal(gain));
        presets.append(QVariantMap{{QStringLiteral("type"), table[i].type}, {QStringLiteral("tag"), table[i].tag}, {QStringLiteral("gains"), gains}});
    }
    return presets;
}
