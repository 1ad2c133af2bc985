#ifndef SCRIPTVALUES_H
#define SCRIPTVALUES_H

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <type_traits>
#include <utility>

struct EqBaseData;
struct ZelAudioAChannelInfo;
struct ZelAudioInfo;

/// The library's values as scripts get them.
namespace ScriptValues
{

/// The shortest decimal number that is this float: 4.8, where the plain conversion gives 4.800000190734863.
double decimal(float value);

template<typename Value>
QVariant toScript(const Value &value);
/// The eight equalizer presets that @p table points to: [{type, tag, gains}, ...].
QVariant toScript(const EqBaseData *table);
QVariant toScript(const ZelAudioInfo &info); ///< {type, param}
QVariant toScript(const ZelAudioAChannelInfo &info); ///< {type, spName}

/// As QML tools name the type of what toScript() gives.
template<typename Value>
constexpr const char *typeName();

template<typename Value, typename = void>
struct IsList : std::false_type
{
};
template<typename Value>
struct IsList<Value, std::void_t<decltype(std::declval<Value>().begin(), std::declval<Value>().size())>>
    : std::bool_constant<!std::is_convertible_v<Value, QVariant>>
{
};
template<>
struct IsList<QList<int>> : std::true_type
{
};

template<typename Value, typename = void>
struct IsMap : std::false_type
{
};
template<typename Value>
struct IsMap<Value, std::void_t<typename Value::mapped_type>> : std::bool_constant<!std::is_same_v<Value, QVariantMap>>
{
};

template<typename Value>
QVariant toScript(const Value &value)
{
    if constexpr (std::is_enum_v<Value> || (std::is_integral_v<Value> && sizeof(Value) < sizeof(int) && !std::is_same_v<Value, bool>)) {
        return static_cast<int>(value);
    } else if constexpr (std::is_same_v<Value, float>) {
        return decimal(value);
    } else if constexpr (IsMap<Value>::value) {
        QVariantMap object;
        for (auto entry = value.cbegin(); entry != value.cend(); ++entry)
            object.insert(entry.key(), toScript(entry.value()));
        return object;
    } else if constexpr (IsList<Value>::value || std::is_array_v<Value>) {
        QVariantList list;
        for (const auto &element : value)
            list.append(toScript(element));
        return list;
    } else {
        return QVariant(value);
    }
}

template<typename Value>
constexpr const char *typeName()
{
    if constexpr (std::is_same_v<Value, bool>)
        return "bool";
    else if constexpr (std::is_enum_v<Value> || std::is_integral_v<Value>)
        return "int";
    else if constexpr (std::is_floating_point_v<Value>)
        return "double";
    else if constexpr (std::is_same_v<Value, QString>)
        return "QString";
    else if constexpr (std::is_same_v<Value, QVariant>)
        return "QVariant";
    else if constexpr (std::is_same_v<Value, QStringList>)
        return "QStringList";
    else if constexpr (std::is_same_v<Value, const EqBaseData *> || (IsList<Value>::value && !IsMap<Value>::value))
        return "QVariantList";
    else
        return "QVariantMap";
}

} // namespace ScriptValues

#endif
