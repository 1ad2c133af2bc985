#ifndef SCRIPTOPERATION_H
#define SCRIPTOPERATION_H

#include "scriptcall.h"
#include "scriptvalues.h"

#include <qzaudio/audiotypes.h>
#include <qzaudio/audiocontrol.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

class QObject;
/// One parameter of an operation, as its C++ type says.
struct ScriptParameter
{
    bool isOutput; ///< written by the operation: part of the result
    QString (*accepts)(); ///< what a script may give, "a whole number from 0 to 255"
    const char *enumeration; ///< names of its numbers: "AudioTag", "Status", "Channel", "VolumeType"; null for none
};

struct ScriptOperation;

/// How an operation is called, made from its signature by scriptCall.
struct ScriptCall
{
    QVariant (*run)(QObject &callee, const ScriptOperation &operation, const QJSValue *given);
    const ScriptParameter *parameters;
    int count;
    const char *resultType; ///< as QML tools name it; "void" for none
    bool givesResult; ///< besides what it writes to its arguments
};

/// Whether a scenario causes something with an operation, so that it stands in the timeline.
enum class ScriptKind { Acts, Looks };

/**
 * A row of the table of an object's operations: all that is known of one.
 *
 *     {SCRIPT_CALL(AudioControl, changeAlterStepVolume), "up, current, step", "one step up or down from the current one"},
 *
 * The names are those of the C++ parameters in their order; one more names the result where it is not "result". A script calls it with the
 * arguments that the operation does not write, changeAlterStepVolume(up, current). What it writes comes back under its name beside the
 * result, {result, step}; a single output without a result is the value itself. A row without a call is a heading.
 */
struct ScriptRow
{
    const char *name;
    ScriptCall call = {};
    const char *names = "";
    const char *help = ""; ///< one line
    ScriptKind kind = ScriptKind::Acts;
};

#define SCRIPT_CALL(Class, operation) #operation, scriptCall < &Class::operation>

/// A parameter that a script gives.
struct ScriptInput
{
    QByteArray name;
    const ScriptParameter *parameter;
};

/// An operation as its row says.
struct ScriptOperation
{
    QByteArray name;
    ScriptCall call;
    QByteArrayList names; // one for each parameter
    QByteArray resultName;
    QString help;
    ScriptKind kind;
    QString group; // the heading that it stands under
    QVector<ScriptInput> inputs; // the parameters that are not written

    /// "setVolume(type, volume, save)"
    QString signature() const;
    /// "{result, step}", or empty where the result is a plain value or none.
    QString resultFields() const;
};

/**
 * The object that operations of @p Target are called on, for one that scripts see: itself, or what it stands for.
 *
 * It is asked for only once all arguments fit, so that a mistaken call makes nothing that is made on first use. Specialised beside each table.
 */
template<typename Target>
Target &scriptTarget(QObject &callee);

namespace ScriptDetail
{

template<typename Parameter>
struct ParameterType
{
    static constexpr bool isOutput = false;
    using Value = std::decay_t<Parameter>;
};
template<>
struct ParameterType<const char *>
{
    static constexpr bool isOutput = false;
    using Value = ScriptName;
};
template<typename Pointed>
struct ParameterType<Pointed *>
{
    static constexpr bool isOutput = true;
    using Value = Pointed;
};
template<typename Referred>
struct ParameterType<Referred &>
{
    static constexpr bool isOutput = !std::is_const_v<Referred>;
    using Value = std::decay_t<Referred>;
};

template<typename Value>
constexpr const char *enumerationOf()
{
    if constexpr (std::is_same_v<Value, audio::AudioControl::AudioTag>)
        return "AudioTag";
    else if constexpr (std::is_same_v<Value, AudioStatus>)
        return "Status";
    else if constexpr (std::is_same_v<Value, AudioChannel>)
        return "Channel";
    else if constexpr (std::is_same_v<Value, ZelAudioType>)
        return "VolumeType";
    else
        return nullptr;
}

template<typename Parameter>
constexpr ScriptParameter describe()
{
    using Type = ParameterType<Parameter>;
    if constexpr (Type::isOutput)
        return {true, nullptr, nullptr};
    else
        return {false, &ScriptArguments::accepted<typename Type::Value>, enumerationOf<typename Type::Value>()};
}

template<typename Parameter>
void readInput(ScriptArguments &reader, const char *name, const QJSValue *given, std::size_t &next, typename ParameterType<Parameter>::Value &value)
{
    if constexpr (!ParameterType<Parameter>::isOutput) {
        const QJSValue &argument = given[next++];
        if (!reader.failed())
            reader.read({name, argument}, value);
    }
}

template<typename Parameter>
Parameter pass(typename ParameterType<Parameter>::Value &value)
{
    if constexpr (std::is_pointer_v<Parameter> && ParameterType<Parameter>::isOutput)
        return &value;
    else
        return static_cast<Parameter>(value);
}

template<typename Parameter>
void addOutput(QVariantMap &fields, const char *name, const typename ParameterType<Parameter>::Value &value)
{
    if constexpr (ParameterType<Parameter>::isOutput)
        fields.insert(QLatin1String(name), ScriptValues::toScript(value));
}

template<auto operation, typename Result, typename Target, typename... Parameters>
struct Caller
{
    static constexpr std::size_t outputs = (std::size_t{0} + ... + std::size_t{ParameterType<Parameters>::isOutput});
    static constexpr bool givesResult = !std::is_void_v<Result>;
    static constexpr ScriptParameter parameters[sizeof...(Parameters) + 1] = {describe<Parameters>()...}; // one more, so that none is an array, too

    template<std::size_t... Index>
    static QVariant run(QObject &callee, const ScriptOperation &row, [[maybe_unused]] const QJSValue *given, std::index_sequence<Index...> /*unused*/)
    {
        ScriptArguments reader(&callee);
        std::tuple<typename ParameterType<Parameters>::Value...> values;
        [[maybe_unused]] std::size_t next = 0;
        (readInput<Parameters>(reader, row.names.at(int(Index)).constData(), given, next, std::get<Index>(values)), ...);
        if (reader.failed())
            return {};
        auto &target = scriptTarget<Target>(callee);
        const auto invoke = [&]() -> Result {
            if constexpr (std::is_member_function_pointer_v<decltype(operation)>)
                return (target.*operation)(pass<Parameters>(std::get<Index>(values))...);
            else
                return operation(target, pass<Parameters>(std::get<Index>(values))...);
        };
        QVariant result;
        if constexpr (givesResult)
            result = ScriptValues::toScript(invoke());
        else
            invoke();
        if constexpr (outputs == 0) {
            return result;
        } else {
            QVariantMap fields;
            (addOutput<Parameters>(fields, row.names.at(int(Index)).constData(), std::get<Index>(values)), ...);
            if constexpr (!givesResult && outputs == 1)
                return fields.first();
            if constexpr (givesResult)
                fields.insert(QLatin1String(row.resultName), result);
            return fields;
        }
    }

    static QVariant call(QObject &callee, const ScriptOperation &row, const QJSValue *given)
    {
        return run(callee, row, given, std::index_sequence_for<Parameters...>());
    }

    static constexpr const char *resultType()
    {
        if constexpr (givesResult && outputs == 0)
            return ScriptValues::typeName<Result>();
        else if constexpr (outputs == 0)
            return "void";
        else if constexpr (!givesResult && outputs == 1)
            return ScriptValues::typeName<std::tuple_element_t<0, decltype(std::tuple_cat(outputType<Parameters>()...))>>();
        else
            return "QVariantMap";
    }

    static constexpr ScriptCall description() { return {&call, parameters, int(sizeof...(Parameters)), resultType(), givesResult}; }

private:
    template<typename Parameter>
    static constexpr auto outputType()
    {
        using Type = ParameterType<Parameter>;
        return std::conditional_t<Type::isOutput, std::tuple<typename Type::Value>, std::tuple<>>();
    }
};

template<auto operation, typename Target, typename Result, typename... Parameters>
constexpr ScriptCall describe(Result (Target::* /*unused*/)(Parameters...))
{
    return Caller<operation, Result, Target, Parameters...>::description();
}
template<auto operation, typename Target, typename Result, typename... Parameters>
constexpr ScriptCall describe(Result (Target::* /*unused*/)(Parameters...) const)
{
    return Caller<operation, Result, Target, Parameters...>::description();
}
template<auto operation, typename Target, typename Result, typename... Parameters>
constexpr ScriptCall describe(Result (* /*unused*/)(Target &, Parameters...))
{
    return Caller<operation, Result, Target, Parameters...>::description();
}

} // namespace ScriptDetail

/// Calls a member function, or a function whose first parameter is the object.
template<auto operation>
constexpr ScriptCall scriptCall = ScriptDetail::describe<operation>(operation);

#endif
