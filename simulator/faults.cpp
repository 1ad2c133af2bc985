#include "faults.h"

#include "appobject.h"
#include "mixerobject.h"
#include "sourceobject.h"
#include "volumeobject.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaType>

#include <algorithm>

namespace simulator
{

namespace
{

/// Where moc listed the operations of a kind of objects.
const QMetaObject &operationsOf(ObjectKind kind)
{
    switch (kind) {
    case ObjectKind::App:
        return AppObject::staticMetaObject;
    case ObjectKind::Mixer:
        return MixerObject::staticMetaObject;
    case ObjectKind::Source:
        return SourceObject::staticMetaObject;
    case ObjectKind::Volume:
        break;
    }
    return VolumeObject::staticMetaObject;
}

QString fullName(ObjectKind kind, const QString &operation)
{
    return objectKindName(kind) + QLatin1Char('.') + operation;
}

/// A pointer to numbers to be written. Names are `const char*`, and records are no types that Qt knows.
bool isOutput(const QByteArray &parameterType)
{
    const bool isWritten = parameterType.endsWith('*') && !parameterType.startsWith("const ");
    return isWritten && QMetaType::type(parameterType.chopped(1).constData()) != QMetaType::UnknownType;
}

/// The names of the operations that fulfil @p condition.
template<typename Condition>
QStringList operationsWith(Condition condition)
{
    QStringList names;
    for (const ObjectKind kind : allObjectKinds) {
        const QMetaObject &operations = operationsOf(kind);
        for (int index = operations.methodOffset(); index < operations.methodCount(); ++index) {
            const QMetaMethod operation = operations.method(index);
            if (condition(operation))
                names += fullName(kind, QString::fromLatin1(operation.name()));
        }
    }
    return names;
}

bool hasOutputs(const QString &name)
{
    const auto writes = [](const QMetaMethod &operation) {
        const QList<QByteArray> types = operation.parameterTypes();
        return std::any_of(types.cbegin(), types.cend(), isOutput);
    };
    return operationsWith(writes).contains(name);
}

QString factoryName(const QString &kind)
{
    return kind + QLatin1String(".create");
}

bool isKind(const QString &name)
{
    return std::any_of(allObjectKinds.cbegin(), allObjectKinds.cend(), [&name](ObjectKind kind) { return objectKindName(kind) == name; });
}

} // namespace

QStringList Faults::operations()
{
    return operationsWith([](const QMetaMethod & /*operation*/) { return true; });
}

bool Faults::fail(const QString &operation, int code)
{
    return add(operations().contains(operation) && code != 0, {operation, {code, false}, 0});
}

bool Faults::fail(const QString &operation, int code, int n)
{
    return add(operations().contains(operation) && code != 0 && n > 0, {operation, {code, false}, n});
}

bool Faults::failAfterWriting(const QString &operation, int code)
{
    return add(hasOutputs(operation) && code != 0, {operation, {code, true}, 0});
}

bool Faults::failAfterWriting(const QString &operation, int code, int n)
{
    return add(hasOutputs(operation) && code != 0 && n > 0, {operation, {code, true}, n});
}

bool Faults::failFactory(const QString &kind)
{
    return add(isKind(kind), {factoryName(kind), {}, 0});
}

bool Faults::failFactory(const QString &kind, int n)
{
    return add(isKind(kind) && n > 0, {factoryName(kind), {}, n});
}

QStringList Faults::pending() const
{
    QStringList lines;
    for (const Fault &fault : m_faults) {
        QString outcome = fault.order.code == 0 ? QStringLiteral(" null") : QLatin1Char(' ') + QString::number(fault.order.code);
        if (fault.order.isAfterWriting)
            outcome += QLatin1String(" after writing");
        const QString when
            = fault.callsLeft == 0 ? QStringLiteral(" always") : QLatin1String(" in ") + QString::number(fault.callsLeft) + QLatin1String(" calls");
        lines += fault.name + outcome + when;
    }
    return lines;
}

void Faults::clear()
{
    if (m_faults.isEmpty())
        return;
    m_faults.clear();
    Q_EMIT changed();
}

std::optional<Faults::Order> Faults::takeFault(ObjectKind kind, const QString &operation)
{
    return m_faults.isEmpty() ? std::nullopt : take(fullName(kind, operation));
}

bool Faults::takeFactoryFault(ObjectKind kind)
{
    return !m_faults.isEmpty() && take(factoryName(objectKindName(kind))).has_value();
}

bool Faults::add(bool isPossible, const Fault &fault)
{
    if (isPossible) {
        m_faults += fault;
        Q_EMIT changed();
    }
    return isPossible;
}

std::optional<Faults::Order> Faults::take(const QString &name)
{
    std::optional<Order> order;
    bool counted = false;
    for (auto fault = m_faults.begin(); fault != m_faults.end();) {
        if (fault->name != name) {
            ++fault;
            continue;
        }
        // Every fault of the operation counts this call; where several are due, the one that was set first tells how it fails.
        const bool isDue = fault->callsLeft <= 1;
        if (isDue && !order)
            order = fault->order;
        if (fault->callsLeft == 0) {
            ++fault;
            continue;
        }
        counted = true;
        if (isDue)
            fault = m_faults.erase(fault);
        else
            (fault++)->callsLeft -= 1;
    }
    if (counted)
        Q_EMIT changed();
    return order;
}

} // namespace simulator
