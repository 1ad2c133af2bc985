#include "valuetext.h"

#include <array>
#include <charconv>
#include <cmath>

namespace simulator
{

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

double decimal(float value)
{
    const double shortest = floatText(value).toDouble();
    return static_cast<float>(shortest) == value ? shortest : static_cast<double>(value);
}

} // namespace simulator
