#include "documenttables.h"
#include "qmlaudiocontrol.h"
#include "qmlaudiofocus.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"
#include "simulatortypes.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QCoreApplication>
#include <QtCore/QMetaEnum>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QTextStream>

/*
 * Writes what the QML modules offer into the manual and into the type files that QML tools read:
 *
 *   script_tables [--check] DOCUMENT TYPES_OF_QZAUDIO TYPES_OF_SIMULATOR
 */

namespace
{

/// The operations for the manual, by group.
QStringList operationList(const ScriptType &type)
{
    QStringList lines;
    QString group;
    for (const ScriptOperation &operation : type.operations()) {
        if (operation.group != group) {
            group = operation.group;
            lines += {QString(), QStringLiteral("| %1 | |").arg(group.at(0).toUpper() + group.midRef(1)), QStringLiteral("|---|---|")};
        }
        const QString fields = operation.resultFields();
        lines += QStringLiteral("| `%1`%2 | %3 |")
                     .arg(operation.signature(), fields.isEmpty() ? QString() : QStringLiteral(" gives `%1`").arg(fields), operation.help);
    }
    lines += QString();
    return lines;
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString parameters(const QByteArrayList &names, const QByteArrayList &types)
{
    QString text;
    for (int i = 0; i < names.size(); ++i) {
        text += QStringLiteral(" Parameter { name: %1; type: %2 }").arg(quoted(QString::fromLatin1(names.at(i))), quoted(QString::fromLatin1(types.at(i))));
    }
    return text;
}

QStringList enumLines(const QMetaObject &type, const QMetaObject &base = QObject::staticMetaObject)
{
    QStringList lines;
    for (int i = base.enumeratorCount(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        lines += QStringLiteral("        Enum {");
        lines += QStringLiteral("            name: ") + quoted(QLatin1String(enumeration.name()));
        lines += QStringLiteral("            values: {");
        for (int key = 0; key < enumeration.keyCount(); ++key) {
            const QString comma = key + 1 < enumeration.keyCount() ? QStringLiteral(",") : QString();
            lines += QStringLiteral("                %1: %2").arg(quoted(QLatin1String(enumeration.key(key)))).arg(enumeration.value(key)) + comma;
        }
        lines += QStringList{QStringLiteral("            }"), QStringLiteral("        }")};
    }
    return lines;
}

/// @param selfTyped the name of a property that is the object itself, so that tools complete what is behind it
QStringList
propertyLines(const QMetaObject &type, const QString &className, const char *selfTyped = nullptr, const QMetaObject &base = QObject::staticMetaObject)
{
    QStringList lines;
    for (int i = base.propertyCount(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        const bool isSelf = qstrcmp(property.name(), selfTyped) == 0;
        lines += QStringLiteral("        Property { name: %1; type: %2%3%4 }")
                     .arg(quoted(QLatin1String(property.name())),
                          quoted(isSelf ? className : QString::fromLatin1(property.typeName())),
                          isSelf ? QStringLiteral("; isPointer: true") : QString(),
                          property.isWritable() ? QString() : QStringLiteral("; isReadonly: true"));
    }
    return lines;
}

/// Signals, and functions that the class declares by itself.
QStringList methodLines(const QMetaObject &type, const QMetaObject &base = QObject::staticMetaObject)
{
    QStringList lines;
    for (int i = base.methodCount(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const QString result
            = isSignal || method.returnType() == QMetaType::Void ? QString() : QStringLiteral("; type: ") + quoted(QLatin1String(method.typeName()));
        lines += QStringLiteral("        %1 { name: %2%3;%4 }")
                     .arg(isSignal ? QStringLiteral("Signal") : QStringLiteral("Method"),
                          quoted(QString::fromLatin1(method.name())),
                          result,
                          parameters(method.parameterNames(), method.parameterTypes()));
    }
    return lines;
}

QStringList operationLines(const ScriptType &type)
{
    QStringList lines;
    for (const ScriptOperation &operation : type.operations()) {
        const QString result
            = qstrcmp(operation.call.resultType, "void") == 0 ? QString() : QStringLiteral("; type: ") + quoted(QLatin1String(operation.call.resultType));
        QByteArrayList names;
        QByteArrayList types;
        for (const ScriptInput &input : operation.inputs) {
            names.append(input.name);
            types.append("QJSValue");
        }
        lines += QStringLiteral("        Method { name: %1%2;%3 }").arg(quoted(QLatin1String(operation.name)), result, parameters(names, types));
    }
    return lines;
}

/// @param exported with its version: "QzAudio/AudioFocus 1.0"; empty for a class that others are built on
QStringList component(const QString &className, const QString &exported, bool isSingleton, const QStringList &members, const char *base = "QObject")
{
    QStringList lines = {QStringLiteral("    Component {"),
                         QStringLiteral("        name: ") + quoted(className),
                         QStringLiteral("        prototype: ") + quoted(QLatin1String(base))};
    if (!exported.isEmpty())
        lines += QStringLiteral("        exports: [\"%1\"]").arg(exported);
    if (isSingleton)
        lines += QStringList{QStringLiteral("        isCreatable: false"), QStringLiteral("        isSingleton: true")};
    if (!exported.isEmpty())
        lines += QStringLiteral("        exportMetaObjectRevisions: [0]");
    return lines + members + QStringList{QStringLiteral("    }")};
}

/// @param base what the class declares by itself besides the operations
QStringList singleton(const QString &module, const ScriptType &type, const QMetaObject &extended, const QMetaObject &base, const char *selfTyped = nullptr)
{
    const QString className = QString::fromLatin1(extended.className());
    QStringList members = enumLines(extended);
    if (&base != &QObject::staticMetaObject)
        members += propertyLines(base, className, selfTyped) + methodLines(base);
    return component(className, QStringLiteral("%1/%2 1.0").arg(module, type.name()), true, members + operationLines(type));
}

/// @param exported with its version
QStringList element(const QString &exported, const QMetaObject &type)
{
    const QMetaObject &base = *type.superClass();
    return component(QString::fromLatin1(type.className()),
                     exported,
                     false,
                     enumLines(type, base) + propertyLines(type, QString(), nullptr, base) + methodLines(type, base),
                     base.className());
}

/// What lists have in common: no type file of Qt's tells of it.
QStringList listModel()
{
    const QMetaObject &type = QAbstractListModel::staticMetaObject;
    return component(QString::fromLatin1(type.className()), QString(), false, enumLines(type) + propertyLines(type, QString()) + methodLines(type));
}

QStringList types(const QStringList &components)
{
    return QStringList{QStringLiteral("import QtQuick.tooling 1.2"),
                       QString(),
                       QStringLiteral("// For QML tools. Made from the tables of the modules by tools/script-tables."),
                       QStringLiteral("Module {"),
                       QStringLiteral("    dependencies: []")}
    + components + QStringList{QStringLiteral("}"), QString()};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool onlyCheck = arguments.removeAll(QStringLiteral("--check")) > 0;
    if (arguments.size() != 3) {
        QTextStream(stderr) << "Usage: script_tables [--check] DOCUMENT TYPES_OF_QZAUDIO TYPES_OF_SIMULATOR" << Qt::endl;
        return 2;
    }
    const ScriptType &control = QmlAudioControl::scriptType();
    const ScriptType &policy = QmlAudioPolicy::scriptType();
    const ScriptType &settings = QmlAudioSettings::scriptType();
    const ScriptType &platform = QmlPlatform::scriptType();
    DocumentTables tables(onlyCheck, "tools/script-tables");
    tables.renewTables(arguments.at(0),
                       {{control.name(), operationList(control)},
                        {policy.name(), operationList(policy)},
                        {settings.name(), operationList(settings)},
                        {platform.name(), operationList(platform)}});
    const QString module = QStringLiteral("QzAudio");
    tables.renewFile(arguments.at(1),
                     types(singleton(module, control, QmlAudioControl::staticMetaObject, QObject::staticMetaObject)
                           + singleton(module, policy, QmlAudioPolicy::staticMetaObject, AudioPolicyState::staticMetaObject)
                           + singleton(module, settings, QmlAudioSettings::staticMetaObject, QObject::staticMetaObject)
                           + element(module + QStringLiteral("/AudioFocus 1.0"), QmlAudioFocus::staticMetaObject)));
    const QString simulatorModule = QStringLiteral("QzAudio.Simulator");
    QStringList components = singleton(simulatorModule, platform, QmlPlatform::staticMetaObject, PlatformState::staticMetaObject, "live") + listModel();
    for (const SimulatorTypes::Type &type : SimulatorTypes::all())
        components += element(QStringLiteral("%1/%2 1.%3").arg(simulatorModule, QLatin1String(type.name)).arg(type.minor), *type.metaObject);
    tables.renewFile(arguments.at(2), types(components));
    return tables.exitStatus();
}
