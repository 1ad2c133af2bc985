#ifndef SCRIPTCALL_H
#define SCRIPTCALL_H

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtQml/QJSValue>

#include <cstddef>
#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>

class QJSEngine;
class QObject;

/*
 * The border between scripts and the library's operations.
 *
 * A script has one number type; the operations have quint8, int, float and enumerations. Every argument is therefore read
 * through the types of the operation's own signature, and what does not fit throws a JavaScript error that names the argument,
 * instead of arriving as another number.
 */

/// One argument as the script gave it, with the name that messages call it by.
struct ScriptArgument
{
    const char *name;
    const QJSValue &value;
};

/// An 8-bit name; null when the script gave null.
class ScriptName
{
public:
    ScriptName() = default;
    explicit ScriptName(const QByteArray &name)
        : m_bytes(name)
        , m_given(true)
    {
    }

    operator const char *() const { return m_given ? m_bytes.constData() : nullptr; } // NOLINT(google-explicit-constructor)

private:
    QByteArray m_bytes;
    bool m_given = false;
};

/**
 * Reads the arguments of one call. The first one that does not fit throws in the engine that @p callee is used from.
 *
 * Use it on the engine's thread, inside the call that the script made.
 */
class ScriptArguments
{
public:
    explicit ScriptArguments(const QObject *callee);

    /// Whether an argument did not fit: the operation must not be called then.
    bool failed() const { return m_thrown; }

    /// A whole number from @p minimum to @p maximum, both within what a double holds exactly.
    qint64 integer(const ScriptArgument &argument, qint64 minimum, qint64 maximum);

    void read(const ScriptArgument &argument, bool &out);
    /// NaN and the infinities are numbers here: the operations say what they do with them.
    void read(const ScriptArgument &argument, float &out);
    void read(const ScriptArgument &argument, QString &out);
    void read(const ScriptArgument &argument, ScriptName &out);
    void read(const ScriptArgument &argument, QHash<QString, quint8> &out);

    template<typename Number>
    std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>> read(const ScriptArgument &argument, Number &out)
    {
        using Limits = std::numeric_limits<typename IntegerOf<Number>::type>;
        out = static_cast<Number>(integer(argument, Limits::min(), Limits::max()));
    }

    template<typename Element>
    void read(const ScriptArgument &argument, QList<Element> &out)
    {
        const quint32 count = length(argument);
        for (quint32 i = 0; i < count && !m_thrown; ++i) {
            const QByteArray name = elementName(argument, i);
            const QJSValue value = argument.value.property(i);
            Element element = {};
            read({name.constData(), value}, element);
            out.append(element);
        }
    }

    /// Reads the field of an object under its own name.
    template<typename Field>
    void readField(const ScriptArgument &argument, const char *name, Field &out)
    {
        // Looking at another value would take a thrown error back.
        if (!m_thrown) {
            const QJSValue value = field(argument, name);
            if (!m_thrown)
                read({name, value}, out);
        }
    }

private:
    template<typename Number, bool isEnum = std::is_enum_v<Number>>
    struct IntegerOf
    {
        using type = Number;
    };
    template<typename Number>
    struct IntegerOf<Number, true>
    {
        using type = std::underlying_type_t<Number>;
    };

    quint32 length(const ScriptArgument &argument);
    QJSValue field(const ScriptArgument &argument, const char *name);
    static QByteArray elementName(const ScriptArgument &argument, quint32 index);
    void fail(QJSValue::ErrorType type, const ScriptArgument &argument, const QString &wanted);

    QJSEngine *m_engine;
    bool m_thrown = false;
};

/// Throws a JavaScript error in the engine that @p callee is used from; without one, warns.
void throwScriptError(const QObject *callee, QJSValue::ErrorType type, const QString &message);

namespace ScriptCall
{
template<typename Parameter>
using Holder = std::conditional_t<std::is_same_v<Parameter, const char *>, ScriptName, std::decay_t<Parameter>>;

template<typename Value>
Value read(ScriptArguments &reader, const ScriptArgument &argument)
{
    Value value = {};
    if (!reader.failed())
        reader.read(argument, value);
    return value;
}

/// @param operation a pointer to a member function of Result and Parameters, const or not
template<typename Result, typename... Parameters, typename GetObject, typename Operation, std::size_t... Index>
Result invoke(const QObject *callee, const GetObject &getObject, Operation operation, const ScriptArgument *arguments, std::index_sequence<Index...> /*unused*/)
{
    ScriptArguments reader(callee);
    const std::tuple<Holder<Parameters>...> values{read<Holder<Parameters>>(reader, arguments[Index])...};
    if (reader.failed())
        return Result();
    return (getObject()->*operation)(std::get<Index>(values)...);
}
} // namespace ScriptCall

/**
 * Calls an operation of the library with what a script gave, read through the operation's own parameter types.
 *
 * @param getObject gives the object to call; not asked for when an argument does not fit, so that objects made on first use are not
 *        made by a mistaken call
 * @return the operation's result, or a default value when an argument did not fit (the script sees the error)
 */
template<typename GetObject, typename Object, typename Result, typename... Parameters>
Result callFromScript(const QObject *callee,
                      const GetObject &getObject,
                      Result (Object::*operation)(Parameters...),
                      const ScriptArgument (&arguments)[sizeof...(Parameters)])
{
    return ScriptCall::invoke<Result, Parameters...>(callee, getObject, operation, arguments, std::index_sequence_for<Parameters...>());
}

template<typename GetObject, typename Object, typename Result, typename... Parameters>
Result callFromScript(const QObject *callee,
                      const GetObject &getObject,
                      Result (Object::*operation)(Parameters...) const,
                      const ScriptArgument (&arguments)[sizeof...(Parameters)])
{
    return ScriptCall::invoke<Result, Parameters...>(callee, getObject, operation, arguments, std::index_sequence_for<Parameters...>());
}

#endif
