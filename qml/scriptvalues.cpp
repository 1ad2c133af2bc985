#include "scriptvalues.h"

#include <qzaudio/audiotypes.h>

#include <QtCore/QByteArray>

#include <limits>

namespace ScriptValues
{

double decimal(float value)
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

QVariant toScript(const EqBaseData *table)
{
    constexpr int presetCount = 8;
    QVariantList presets;
    for (int i = 0; i < presetCount; ++i) {
        presets.append(
            QVariantMap{{QStringLiteral("type"), table[i].type}, {QStringLiteral("tag"), table[i].tag}, {QStringLiteral("gains"), toScript(table[i].gains)}});
    }
    return presets;
}

QVariant toScript(const ZelAudioInfo &info)
{
    return QVariantMap{{QStringLiteral("type"), int(info.type)}, {QStringLiteral("param"), info.param}};
}

QVariant toScript(const ZelAudioAChannelInfo &info)
{
    return QVariantMap{{QStringLiteral("type"), int(info.type)}, {QStringLiteral("spName"), info.spName}};
}

} // namespace ScriptValues
