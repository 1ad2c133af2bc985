#ifndef VALUETEXT_H
#define VALUETEXT_H

#include "recordfields.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

#include <iterator>
#include <type_traits>

// How values look in the journal, whose manual describes the format, and what scripts and tables get of them.

namespace simulator
{

/// In double quotes, with quotes, backslashes and control characters escaped; null for a null string.
QString quotedText(const QString &text);

/// The fewest digits that read back the same.
QString floatText(float value);

/// The number that floatText() shows: 4.8, where the plain conversion gives 4.800000190734863.
double decimal(float value);

/// As it lies in memory; the platform's records have no padding.
template<typename Record>
QByteArray recordBytes(const Record &record)
{
    return {reinterpret_cast<const char *>(&record), static_cast<int>(sizeof record)};
}

template<typename Value>
bool isAllZero(const Value &value)
{
    return recordBytes(value) == QByteArray(sizeof value, '\0');
}

inline QString valueText(const QString &text)
{
    return quotedText(text);
}

inline QString valueText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// Of a number, a record, or an array of either.
template<typename Value>
QString valueText(const Value &value)
{
    if constexpr (std::is_same_v<Value, float>) {
        return floatText(value);
    } else if constexpr (std::is_arithmetic_v<Value>) {
        return QString::number(value);
    } else if constexpr (std::is_array_v<Value>) {
        const auto *end = std::end(value);
        if constexpr (std::is_class_v<std::remove_extent_t<Value>>) {
            while (end != std::begin(value) && isAllZero(*std::prev(end)))
                --end;
        }
        QStringList elements;
        for (const auto *element = std::begin(value); element != end; ++element)
            elements += valueText(*element);
        return QLatin1Char('[') + elements.join(QLatin1String(", ")) + QLatin1Char(']');
    } else {
        QStringList fields;
        visitFields(value, [&fields](const char *name, const auto &field) {
            const QLatin1String fieldName(name);
            if (!fieldName.startsWith(QLatin1String("reserved")) || !isAllZero(field))
                fields += fieldName + QLatin1String(": ") + valueText(field);
        });
        return QLatin1Char('{') + fields.join(QLatin1String(", ")) + QLatin1Char('}');
    }
}

/// What scripts and tables get: small integers as int, a float as its decimal(), a null name as nothing, a record with all its fields.
template<typename Value>
QVariant toVariant(const Value &value)
{
    if constexpr (std::is_same_v<Value, float>) {
        return decimal(value);
    } else if constexpr (std::is_enum_v<Value> || (std::is_arithmetic_v<Value> && !std::is_same_v<Value, bool> && sizeof(Value) < sizeof(int))) {
        return static_cast<int>(value);
    } else if constexpr (std::is_arithmetic_v<Value>) {
        return value;
    } else if constexpr (std::is_same_v<Value, QString>) {
        return value.isNull() ? QVariant() : QVariant(value);
    } else if constexpr (std::is_array_v<Value>) {
        QVariantList list;
        for (const auto &element : value)
            list += toVariant(element);
        return list;
    } else {
        QVariantMap fields;
        visitFields(value, [&fields](const char *name, const auto &field) { fields.insert(QLatin1String(name), toVariant(field)); });
        return fields;
    }
}

} // namespace simulator

#endif
