#include "scripthelp.h"

#include "qmlaudiocontrol.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"

#include <QtCore/QVector>

namespace
{

QVector<const ScriptType *> types()
{
    return {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType(), &QmlAudioSettings::scriptType(), &QmlPlatform::scriptType()};
}

QString listLine(const QString &name, int width, const QString &meaning)
{
    return QLatin1String("  ") + name.leftJustified(width) + QLatin1String("  ") + meaning + QLatin1Char('\n');
}

QString overview(const ScriptType &type)
{
    constexpr int width = 28;
    QString text;
    QString group;
    for (const ScriptOperation &operation : type.operations()) {
        if (operation.group != group) {
            group = operation.group;
            text += QStringLiteral("\n%1, %2:\n\n").arg(type.name(), group);
        }
        text += listLine(operation.signature(), width, operation.help);
    }
    return text.mid(1);
}

/// "AudioPolicy.Media 0, AudioPolicy.Prompt 1"
QString enumeratorsText(const char *name)
{
    QStringList texts;
    const auto all = types();
    for (const ScriptType *const type : all) {
        for (const ScriptEnumeration &enumeration : type->enumerations()) {
            if (qstrcmp(enumeration.name, name) != 0)
                continue;
            for (std::size_t i = 0; i < enumeration.count; ++i) {
                const policynames::Number &number = enumeration.numbers[i];
                texts.append(QStringLiteral("%1.%2%3 %4").arg(type->name(), QLatin1String(enumeration.prefix), QLatin1String(number.name)).arg(number.number));
            }
        }
    }
    return texts.join(QLatin1String(", "));
}

QString resultText(const ScriptOperation &operation)
{
    if (!operation.resultFields().isEmpty())
        return operation.resultFields();
    const QByteArray type = operation.call.resultType;
    if (type == "void")
        return QStringLiteral("nothing");
    if (type == "bool")
        return QStringLiteral("true or false");
    if (type == "int" || type == "double")
        return QStringLiteral("a number");
    if (type == "QString")
        return QStringLiteral("a text");
    if (type == "QVariantMap")
        return QStringLiteral("an object");
    return type == "QVariant" ? QStringLiteral("what is stored") : QStringLiteral("a list");
}

QString manual(const ScriptType &type, const ScriptOperation &operation)
{
    constexpr int width = 12;
    QString text = type.name() + QLatin1Char('.') + operation.signature() + QLatin1String("\n\n") + operation.help + QLatin1String("\n\n");
    for (const ScriptInput &input : operation.inputs) {
        const QString names = enumeratorsText(input.parameter->enumeration);
        text += listLine(QLatin1String(input.name), width, input.parameter->accepts() + (names.isEmpty() ? QString() : QLatin1String(": ") + names));
    }
    return text + listLine(QStringLiteral("gives"), width, resultText(operation));
}

} // namespace

QStringList ScriptHelp::names() const
{
    QStringList list;
    const auto all = types();
    for (const ScriptType *const type : all) {
        list.append(type->name());
        for (const ScriptOperation &operation : type->operations())
            list.append(type->name() + QLatin1Char('.') + QLatin1String(operation.name));
    }
    return list;
}

QString ScriptHelp::text(const QString &name) const
{
    const auto all = types();
    for (const ScriptType *const type : all) {
        if (name == type->name())
            return overview(*type);
        for (const ScriptOperation &operation : type->operations()) {
            if (name == type->name() + QLatin1Char('.') + QLatin1String(operation.name))
                return manual(*type, operation);
        }
    }
    return {};
}
