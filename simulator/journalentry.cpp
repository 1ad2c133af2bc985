#include "journalentry.h"

#include "valuetext.h"

namespace simulator
{

namespace
{

/// `operation(arguments) -> result, outputs`
QString operationText(const JournalEntry &entry)
{
    QString call = entry.operation + QLatin1Char('(') + entry.argumentTexts.join(QLatin1String(", ")) + QLatin1Char(')');
    if (entry.isDestroy())
        return call;
    if (entry.isCreate())
        return call + (entry.number > 0 ? QLatin1String(" -> ok") : QLatin1String(" -> null"));

    QString result = call + QLatin1String(" -> ");
    if (!entry.result.isValid())
        result += QLatin1String("null");
    else if (entry.result.type() == QVariant::String)
        result += quotedText(entry.result.toString());
    else
        result += QString::number(entry.result.toInt());
    for (const QVariant &output : entry.outputs) {
        const bool isFloat = output.userType() == QMetaType::Double;
        result += QLatin1String(", ") + (isFloat ? floatText(output.toFloat()) : QString::number(output.toInt()));
    }
    return result;
}

} // namespace

QString JournalEntry::object() const
{
    const QLatin1String name = objectKindName(kind);
    return number > 0 ? name + QLatin1Char('#') + QString::number(number) : QString(name);
}

bool JournalEntry::isCreate() const
{
    return operation == QLatin1String("create");
}

bool JournalEntry::isDestroy() const
{
    return operation == QLatin1String("destroy");
}

QString JournalEntry::call() const
{
    return objectKindName(kind) + QLatin1Char('.') + operationText(*this);
}

QString JournalEntry::line() const
{
    return object() + QLatin1Char('.') + operationText(*this);
}

bool operator==(const JournalEntry &a, const JournalEntry &b)
{
    return a.time == b.time && a.line() == b.line() && a.record == b.record && a.note == b.note;
}

} // namespace simulator
