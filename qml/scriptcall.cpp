#include "scriptcall.h"

#include <QtCore/QDebug>
#include <QtCore/QObject>
#include <QtQml/QJSEngine>
#include <QtQml/QJSValueIterator>
#include <QtQml/qqml.h>

#include <cmath>

void throwScriptError(const QObject *callee, QJSValue::ErrorType type, const QString &message)
{
    if (QJSEngine *engine = qjsEngine(callee))
        engine->throwError(type, message);
    else
        qWarning().noquote() << message;
}

ScriptArguments::ScriptArguments(const QObject *callee)
    : m_object(callee)
{
}

void ScriptArguments::fail(QJSValue::ErrorType type, const ScriptArgument &argument, const QString &wanted)
{
    if (m_thrown)
        return;
    m_thrown = true;
    throwScriptError(m_object, type, QStringLiteral("%1 must be %2, not %3").arg(QLatin1String(argument.name), wanted, argument.value.toString()));
}

QString ScriptArguments::wholeNumber(qint64 minimum, qint64 maximum)
{
    return QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum);
}

qint64 ScriptArguments::integer(const ScriptArgument &argument, qint64 minimum, qint64 maximum)
{
    const QString wanted = wholeNumber(minimum, maximum);
    if (!argument.value.isNumber()) {
        fail(QJSValue::TypeError, argument, wanted);
        return 0;
    }
    const double number = argument.value.toNumber();
    // Written so that NaN is refused too.
    if (!(number >= static_cast<double>(minimum) && number <= static_cast<double>(maximum)) || std::trunc(number) != number) {
        fail(QJSValue::RangeError, argument, wanted);
        return 0;
    }
    return static_cast<qint64>(number);
}

void ScriptArguments::read(const ScriptArgument &argument, bool &out)
{
    if (!argument.value.isBool()) {
        fail(QJSValue::TypeError, argument, accepted<bool>());
        return;
    }
    out = argument.value.toBool();
}

void ScriptArguments::read(const ScriptArgument &argument, float &out)
{
    if (!argument.value.isNumber()) {
        fail(QJSValue::TypeError, argument, accepted<float>());
        return;
    }
    const double number = argument.value.toNumber();
    if (std::isfinite(number) && std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        fail(QJSValue::RangeError, argument, QStringLiteral("a number that a float holds"));
        return;
    }
    out = static_cast<float>(number);
}

void ScriptArguments::read(const ScriptArgument &argument, QString &out)
{
    if (!argument.value.isString()) {
        fail(QJSValue::TypeError, argument, accepted<QString>());
        return;
    }
    out = argument.value.toString();
}

void ScriptArguments::read(const ScriptArgument &argument, ScriptName &out)
{
    if (argument.value.isNull())
        return;
    QString text;
    read(argument, text);
    out = ScriptName(text.toUtf8());
}

void ScriptArguments::read(const ScriptArgument &argument, QVariant &out)
{
    out = argument.value.toVariant();
}

void ScriptArguments::read(const ScriptArgument &argument, QHash<QString, quint8> &out)
{
    if (!argument.value.isObject()) {
        fail(QJSValue::TypeError, argument, accepted<QHash<QString, quint8>>());
        return;
    }
    QJSValueIterator entry(argument.value);
    while (entry.hasNext() && !m_thrown) {
        entry.next();
        const QByteArray name = entry.name().toUtf8();
        const QJSValue value = entry.value();
        quint8 number = 0;
        read({name.constData(), value}, number);
        out.insert(entry.name(), number);
    }
}

void ScriptArguments::read(const ScriptArgument &argument, audio::AudioControl::AudioFilter_t &out)
{
    readField(argument, "value1", out.value1);
    readField(argument, "flag", out.flag);
    readField(argument, "kind", out.kind);
    readField(argument, "value2", out.value2);
    readField(argument, "value3", out.value3);
    readField(argument, "value4", out.value4);
}

quint32 ScriptArguments::length(const ScriptArgument &argument)
{
    const QJSValue length = argument.value.isObject() ? argument.value.property(QStringLiteral("length")) : QJSValue();
    if (!length.isNumber()) {
        fail(QJSValue::TypeError, argument, accepted<QList<int>>());
        return 0;
    }
    return length.toUInt();
}

QJSValue ScriptArguments::field(const ScriptArgument &argument, const char *name)
{
    if (!argument.value.isObject()) {
        fail(QJSValue::TypeError, argument, QStringLiteral("an object with the field ") + QLatin1String(name));
        return {};
    }
    return argument.value.property(QLatin1String(name));
}

QByteArray ScriptArguments::elementName(const ScriptArgument &argument, quint32 index)
{
    return QByteArray(argument.name) + '[' + QByteArray::number(index) + ']';
}
