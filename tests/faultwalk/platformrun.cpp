#include "platformrun.h"

#include <QtCore/QHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonValue>

using simulator::JournalEntry;

namespace
{

QString firstDifference(const char *what, const QStringList &seen, const QStringList &expected)
{
    for (int i = 0; i < qMax(seen.size(), expected.size()); ++i) {
        if (seen.value(i) != expected.value(i) || (i < seen.size()) != (i < expected.size())) {
            const auto shown = [i](const QStringList &list) { return i < list.size() ? list.at(i) : QStringLiteral("(no more)"); };
            return QStringLiteral("%1 %2 is\n    %3\ninstead of\n    %4").arg(QLatin1String(what)).arg(i + 1).arg(shown(seen), shown(expected));
        }
    }
    return {};
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// A value with its type.
QString text(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("nothing");
    return QString::fromUtf8(QJsonDocument::fromVariant(QVariantList{value, QLatin1String(value.typeName())}).toJson(QJsonDocument::Compact));
}

QString differenceAfterwards(const PlatformRun &seen, const PlatformRun &expected)
{
    if (text(seen.result) != text(expected.result))
        return QStringLiteral("the result is %1 instead of %2").arg(text(seen.result), text(expected.result));
    if (!seen.problems.isEmpty())
        return QLatin1String("the books have a problem: ") + seen.problems.first();
    QString found = firstDifference("object left over", seen.living, expected.living);
    if (found.isEmpty() && seen.settings != expected.settings)
        found = firstDifference(
            "settings line", QString::fromUtf8(seen.settings).split(QLatin1Char('\n')), QString::fromUtf8(expected.settings).split(QLatin1Char('\n')));
    return found;
}

/// Whether each call came when the one before had taken its time, and none came earlier than without that.
QString differenceInTime(const PlatformRun &seen, const PlatformRun &expected, int callDuration)
{
    qint64 earliest = 0;
    for (int i = 0; i < seen.entries.size(); ++i) {
        earliest = qMax(earliest, expected.entries.at(i).time - expected.begin);
        const qint64 time = seen.entries.at(i).time - seen.begin;
        if (time < earliest)
            return QStringLiteral("call %1 comes after %2 ms instead of %3 ms or later").arg(i + 1).arg(time).arg(earliest);
        earliest = time + callDuration;
    }
    return {};
}

} // namespace

QString nameOf(const JournalEntry &entry)
{
    return objectKindName(entry.kind) + QLatin1Char('.') + entry.operation;
}

QStringList PlatformRun::calls() const
{
    QHash<QString, QString> names;
    int made = 0;
    QStringList texts;
    for (const JournalEntry &entry : entries) {
        const QString object = entry.object();
        if (entry.isCreate())
            names.insert(object, entry.number > 0 ? QString::number(++made) : QStringLiteral("none"));
        const QString unnamed = entry.number > 0 ? QStringLiteral("kept") : QStringLiteral("none");
        texts += QStringLiteral("[%1] ").arg(names.value(object, unnamed)) + entry.call();
    }
    return texts;
}

QString difference(const PlatformRun &seen, const PlatformRun &expected)
{
    QString found = firstDifference("call", seen.calls(), expected.calls());
    if (found.isEmpty())
        found = firstDifference("line", seen.lines, expected.lines);
    if (found.isEmpty() && seen.promptEntries != expected.promptEntries)
        found = QStringLiteral("%1 calls are made before it returns instead of %2").arg(seen.promptEntries).arg(expected.promptEntries);
    return found.isEmpty() ? differenceAfterwards(seen, expected) : found;
}

QString differenceWhenSlow(const PlatformRun &seen, const PlatformRun &expected, int callDuration, bool orderIsKept)
{
    QString found;
    if (orderIsKept) {
        found = difference(seen, expected);
    } else {
        const auto plain = [](const PlatformRun &run, int from, int count) {
            QStringList texts;
            for (int i = from; i < from + count; ++i)
                texts += run.entries.at(i).call();
            return texts;
        };
        const auto late = [&plain](const PlatformRun &run) { return sorted(plain(run, run.promptEntries, run.entries.size() - run.promptEntries)); };
        found = firstDifference("call", plain(seen, 0, seen.promptEntries), plain(expected, 0, expected.promptEntries));
        if (found.isEmpty())
            found = firstDifference("late call", late(seen), late(expected));
        if (found.isEmpty())
            found = firstDifference("line", seen.lines.mid(0, seen.promptLines), expected.lines.mid(0, expected.promptLines));
        if (found.isEmpty())
            found = firstDifference("late line", sorted(seen.lines.mid(seen.promptLines)), sorted(expected.lines.mid(expected.promptLines)));
        if (found.isEmpty())
            found = differenceAfterwards(seen, expected);
    }
    return found.isEmpty() ? differenceInTime(seen, expected, callDuration) : found;
}

// From one process to another ---------------------------------------------------------------------------------------------------

static QDataStream &operator<<(QDataStream &stream, const JournalEntry &entry)
{
    return stream << entry.time << static_cast<int>(entry.kind) << entry.number << entry.operation << entry.arguments << entry.argumentTexts << entry.record
                  << entry.result << entry.outputs << entry.note;
}

static QDataStream &operator>>(QDataStream &stream, JournalEntry &entry)
{
    int kind = 0;
    stream >> entry.time >> kind >> entry.number >> entry.operation >> entry.arguments >> entry.argumentTexts >> entry.record >> entry.result >> entry.outputs
        >> entry.note;
    entry.kind = static_cast<simulator::ObjectKind>(kind);
    return stream;
}

QDataStream &operator<<(QDataStream &stream, const PlatformRun &run)
{
    return stream << run.entries << run.linesBefore << run.lines << run.result << run.promptEntries << run.promptLines << run.begin << run.settings
                  << run.living << run.problems;
}

QDataStream &operator>>(QDataStream &stream, PlatformRun &run)
{
    return stream >> run.entries >> run.linesBefore >> run.lines >> run.result >> run.promptEntries >> run.promptLines >> run.begin >> run.settings
        >> run.living >> run.problems;
}
