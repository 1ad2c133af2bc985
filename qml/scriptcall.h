#ifndef SCRIPTCALL_H
#define SCRIPTCALL_H

#include <qzaudio/audiocontrol.h>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QJSValue>

#include <limits>
#include <type_traits>

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

/// A whole number that has to be in a range.
template<int minimum, int maximum>
struct ScriptRange
{
    int value = minimum;
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
    void read(const ScriptArgument &argument, QVariant &out);
    void read(const ScriptArgument &argument, QHash<QString, quint8> &out);
    void read(const ScriptArgument &argument, audio::AudioControl::AudioFilter_t &out);

    template<typename Number>
    std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>> read(const ScriptArgument &argument, Number &out)
    {
        out = static_cast<Number>(integer(argument, Limits<Number>::min(), Limits<Number>::max()));
    }

    template<int minimum, int maximum>
    void read(const ScriptArgument &argument, ScriptRange<minimum, maximum> &out)
    {
        out.value = int(integer(argument, minimum, maximum));
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

    /// What read() takes: "a whole number from 0 to 255".
    template<typename Value>
    static QString accepted()
    {
        if constexpr (IsRange<Value>::value)
            return IsRange<Value>::text();
        else if constexpr (std::is_same_v<Value, bool>)
            return QStringLiteral("true or false");
        else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>)
            return wholeNumber(Limits<Value>::min(), Limits<Value>::max());
        else if constexpr (std::is_same_v<Value, float>)
            return QStringLiteral("a number");
        else if constexpr (std::is_same_v<Value, QString> || std::is_same_v<Value, ScriptName>)
            return QStringLiteral("a text");
        else if constexpr (std::is_same_v<Value, QVariant>)
            return QStringLiteral("anything");
        else if constexpr (std::is_same_v<Value, QHash<QString, quint8>>)
            return QStringLiteral("an object of names and numbers");
        else if constexpr (std::is_same_v<Value, audio::AudioControl::AudioFilter_t>)
            return QStringLiteral("an object {value1, flag, kind, value2, value3, value4}");
        else
            return QStringLiteral("a list");
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
    template<typename Value>
    struct IsRange : std::false_type
    {
    };
    template<int minimum, int maximum>
    struct IsRange<ScriptRange<minimum, maximum>> : std::true_type
    {
        static QString text() { return wholeNumber(minimum, maximum); }
    };
    template<typename Number>
    using Limits = std::numeric_limits<typename IntegerOf<Number>::type>;

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

    static QString wholeNumber(qint64 minimum, qint64 maximum);
    quint32 length(const ScriptArgument &argument);
    QJSValue field(const ScriptArgument &argument, const char *name);
    static QByteArray elementName(const ScriptArgument &argument, quint32 index);
    void fail(QJSValue::ErrorType type, const ScriptArgument &argument, const QString &wanted);

    const QObject *const m_object;
    bool m_thrown = false;
};

/// Throws a JavaScript error in the engine that @p callee is used from; without one, warns.
void throwScriptError(const QObject *callee, QJSValue::ErrorType type, const QString &message);

#endif
