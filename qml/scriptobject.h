#ifndef SCRIPTOBJECT_H
#define SCRIPTOBJECT_H

#include "policynames.h"
#include "scriptoperation.h"

#include <QtCore/QMetaObject>
#include <QtCore/QVector>

#include <cstddef>
#include <initializer_list>

/// Numbers with names, as enumerators of an object: prefix and name.
struct ScriptEnumeration
{
    template<std::size_t size>
    constexpr ScriptEnumeration(const char *called, const char *before, const policynames::Number (&table)[size])
        : name(called)
        , prefix(before)
        , numbers(table)
        , count(size)
    {
    }

    const char *name;
    const char *prefix;
    const policynames::Number *numbers;
    std::size_t count;
};

/// All that is known of an object that scripts see: what the engine, QML tools, the manual, the bench and the tests are told is made from it.
class ScriptType
{
public:
    /// Called before an operation's arguments are read; throws where one names what there is none of, and is false then.
    using Check = bool (*)(QObject &callee, const ScriptOperation &operation, const QJSValue *given);
    /// Called after an operation, also after one that threw.
    using After = void (*)(QObject &callee);

    template<std::size_t size>
    ScriptType(const char *called,
               const ScriptRow (&table)[size],
               std::initializer_list<ScriptEnumeration> namedNumbers = {},
               Check checkArguments = nullptr,
               After afterwards = nullptr)
        : m_typeName(called)
        , m_enumerators(namedNumbers)
        , m_check(checkArguments)
        , m_after(afterwards)
    {
        read(table, size);
    }

    QLatin1String name() const { return QLatin1String(m_typeName); }
    const QVector<ScriptOperation> &operations() const { return m_callable; }
    const QVector<ScriptEnumeration> &enumerations() const { return m_enumerators; }

    /// A meta-object like @p base, with the enumerators and with the operations as methods.
    QMetaObject extend(const QMetaObject &base) const;
    /// What qt_metacall() does beyond that of @p base, whose result @p id is.
    int metacall(QObject &callee, QMetaObject::Call call, int id, void **arguments) const;

private:
    void read(const ScriptRow *table, std::size_t size);

    const char *const m_typeName;
    const QVector<ScriptEnumeration> m_enumerators;
    const Check m_check;
    const After m_after;
    QVector<ScriptOperation> m_callable;
};

/**
 * An object that has the operations and enumerators of Self::scriptType() besides what Base has.
 *
 * They are methods like any other to the engine, so that its own checks and messages are the usual ones.
 */
template<typename Self, typename Base>
class ScriptObject : public Base
{
public:
    using Base::Base;

    static const QMetaObject staticMetaObject;

    const QMetaObject *metaObject() const override { return &staticMetaObject; }
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        return Self::scriptType().metacall(*this, call, Base::qt_metacall(call, id, arguments), arguments);
    }
};

template<typename Self, typename Base>
const QMetaObject ScriptObject<Self, Base>::staticMetaObject = Self::scriptType().extend(Base::staticMetaObject);

#endif
