#include "scriptobject.h"

#include <QtCore/QScopeGuard>
#include <QtCore/QVarLengthArray>

#include <private/qmetaobjectbuilder_p.h>

#include <algorithm>

QString ScriptOperation::signature() const
{
    QByteArrayList given;
    for (const ScriptInput &input : inputs)
        given.append(input.name);
    return QLatin1String(name) + QLatin1Char('(') + QLatin1String(given.join(", ")) + QLatin1Char(')');
}

QString ScriptOperation::resultFields() const
{
    QByteArrayList fields;
    for (int i = 0; i < call.count; ++i) {
        if (call.parameters[i].isOutput)
            fields.append(names.at(i));
    }
    // A result with a name of its own belongs behind the others.
    if (call.givesResult)
        fields.insert(resultName == "result" ? 0 : fields.size(), resultName);
    return fields.size() < 2 ? QString() : QLatin1Char('{') + QLatin1String(fields.join(", ")) + QLatin1Char('}');
}

void ScriptType::read(const ScriptRow *table, std::size_t size)
{
    QString group;
    for (const ScriptRow *row = table; row != table + size; ++row) {
        if (!row->call.run) {
            group = QLatin1String(row->name);
            continue;
        }
        QByteArrayList names = QByteArray(row->names).replace(", ", ",").split(',');
        names.removeAll(QByteArray());
        const bool writes
            = std::any_of(row->call.parameters, row->call.parameters + row->call.count, [](const ScriptParameter &parameter) { return parameter.isOutput; });
        Q_ASSERT_X(names.size() == row->call.count || (names.size() == row->call.count + 1 && writes && row->call.givesResult),
                   row->name,
                   "each parameter has a name");
        const QByteArray resultName = names.size() > row->call.count ? names.takeLast() : QByteArray("result");
        QVector<ScriptInput> inputs;
        for (int i = 0; i < row->call.count; ++i) {
            if (!row->call.parameters[i].isOutput)
                inputs.append({names.at(i), row->call.parameters + i});
        }
        m_callable.append({row->name, row->call, names, resultName, QString::fromUtf8(row->help), row->kind, group, inputs});
    }
}

QMetaObject ScriptType::extend(const QMetaObject &base) const
{
    QMetaObjectBuilder builder;
    builder.setClassName(QByteArray("Qml") + m_typeName);
    builder.setSuperClass(&base);
    for (const ScriptEnumeration &enumeration : m_enumerators) {
        QMetaEnumBuilder keys = builder.addEnumerator(enumeration.name);
        for (std::size_t i = 0; i < enumeration.count; ++i)
            keys.addKey(QByteArray(enumeration.prefix) + enumeration.numbers[i].name, enumeration.numbers[i].number);
    }
    for (const ScriptOperation &operation : m_callable) {
        QByteArrayList names;
        QByteArrayList types;
        for (const ScriptInput &input : operation.inputs) {
            names.append(input.name);
            types.append("QJSValue");
        }
        const bool givesNothing = qstrcmp(operation.call.resultType, "void") == 0;
        QMetaMethodBuilder method = builder.addMethod(operation.name + '(' + types.join(',') + ')', givesNothing ? "void" : "QVariant");
        method.setParameterNames(names);
    }
    // What the copy points to lives as long as the process, as that of any class does.
    return *builder.toMetaObject();
}

int ScriptType::metacall(QObject &callee, QMetaObject::Call call, int id, void **arguments) const
{
    if (id < 0 || (call != QMetaObject::InvokeMetaMethod && call != QMetaObject::RegisterMethodArgumentMetaType))
        return id;
    if (id >= m_callable.size())
        return id - m_callable.size();
    if (call == QMetaObject::RegisterMethodArgumentMetaType) {
        *static_cast<int *>(arguments[0]) = qRegisterMetaType<QJSValue>();
        return -1;
    }
    const ScriptOperation &operation = m_callable.at(id);
    QVarLengthArray<QJSValue> given;
    for (int i = 0; i < operation.inputs.size(); ++i)
        given.append(*static_cast<const QJSValue *>(arguments[i + 1]));
    const auto afterwards = qScopeGuard([this, &callee] {
        if (m_after)
            m_after(callee);
    });
    if (m_check && !m_check(callee, operation, given.constData()))
        return -1;
    const QVariant result = operation.call.run(callee, operation, given.constData());
    if (arguments[0] && result.isValid())
        *static_cast<QVariant *>(arguments[0]) = result;
    return -1;
}
