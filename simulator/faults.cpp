#include "faults.h"

#include <algorithm>

namespace simulator
{

namespace
{

bool isOperation(const QString &name)
{
    return std::any_of(
        std::cbegin(operationTable), std::cend(operationTable), [&name](const OperationInfo &info) { return operationName(info.operation) == name; });
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

Faults::Faults(QObject *parent)
    : QObject(parent)
{
}

bool Faults::fail(const QString &operation, int code)
{
    if (!isOperation(operation) || code == 0)
        return false;
    add(operation, code, 0);
    return true;
}

bool Faults::fail(const QString &operation, int code, int n)
{
    if (!isOperation(operation) || code == 0 || n < 1)
        return false;
    add(operation, code, n);
    return true;
}

bool Faults::failFactory(const QString &kind)
{
    if (!isKind(kind))
        return false;
    add(factoryName(kind), 0, 0);
    return true;
}

bool Faults::failFactory(const QString &kind, int n)
{
    if (!isKind(kind) || n < 1)
        return false;
    add(factoryName(kind), 0, n);
    return true;
}

void Faults::failFactory(ObjectKind kind)
{
    failFactory(QString(objectKindName(kind)));
}

void Faults::failFactory(ObjectKind kind, int n)
{
    failFactory(QString(objectKindName(kind)), n);
}

QStringList Faults::pending() const
{
    QStringList lines;
    for (const Fault &fault : m_faults) {
        const QString outcome = fault.code == 0 ? QStringLiteral(" null") : QLatin1Char(' ') + QString::number(fault.code);
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

std::optional<int> Faults::takeFault(Operation operation)
{
    if (m_faults.isEmpty())
        return std::nullopt;
    return take(operationName(operation));
}

bool Faults::takeFactoryFault(ObjectKind kind)
{
    if (m_faults.isEmpty())
        return false;
    return take(factoryName(objectKindName(kind))).has_value();
}

void Faults::add(const QString &name, int code, int n)
{
    m_faults += Fault{name, code, n};
    Q_EMIT changed();
}

std::optional<int> Faults::take(const QString &name)
{
    std::optional<int> code;
    bool counted = false;
    for (auto fault = m_faults.begin(); fault != m_faults.end();) {
        if (fault->name != name) {
            ++fault;
            continue;
        }
        // Every fault of the operation counts this call; where several are due, the one that was set first gives the code.
        const bool isDue = fault->callsLeft <= 1;
        if (isDue && !code)
            code = fault->code;
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
    return code;
}

} // namespace simulator
