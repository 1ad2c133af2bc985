#include "desk_p.h"

#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

namespace
{

constexpr int mostRows = 5000; // that are kept for rooms that are opened later
constexpr int stopPatience = 2000; // ms until a car that does not stop is replaced

QString text(const QVariantMap &map, const char *key)
{
    return map.value(QLatin1String(key)).toString();
}

/// Adds to a list that keeps the latest ones only.
void addBounded(QVariantList &list, const QVariantList &added)
{
    list += added;
    // In large portions, so that it is done seldom.
    if (list.size() > 2 * mostRows)
        list.erase(list.begin(), list.end() - mostRows);
}

} // namespace

DeskPrivate::DeskPrivate(Desk *desk)
    : q(desk)
    , car({folder.filePath(QStringLiteral("flash")), folder.filePath(QStringLiteral("drive.log")), folder.filePath(QStringLiteral("drive.sound"))})
    , backup(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/unsaved"))
{
    leftBehind = backup.takeLeftBehind();
    stopTimer.setSingleShot(true);
    stopTimer.setInterval(stopPatience);
}

void DeskPrivate::replay(int doneCount, qint64 time, double speedThen)
{
    scenarioText.clear();
    setScenario({});
    QVariantList steps;
    for (const Recording::Step &step : recording.steps())
        steps.append(QVariantMap{{QStringLiteral("time"), step.time}, {QStringLiteral("line"), step.line}});
    recording.setDoneCount(0);
    setReplaying(true);
    setSpeed(speedThen);
    startCar(false);
    send("start",
         {{QStringLiteral("steps"), steps}, {QStringLiteral("done"), doneCount}, {QStringLiteral("time"), time}, {QStringLiteral("speed"), speedThen}});
}

void DeskPrivate::playScenario(qint64 time, double speedThen)
{
    recording.replace({}, 0);
    recording.setUnsaved(false);
    backup.clear();
    setReplaying(time > 0);
    setSpeed(speedThen);
    startCar(scenarioText.contains(QLatin1String("Sound")));
    send(
        "play",
        {{QStringLiteral("file"), scenarioFile}, {QStringLiteral("text"), scenarioText}, {QStringLiteral("time"), time}, {QStringLiteral("speed"), speedThen}});
    setScenario(QFileInfo(scenarioFile).completeBaseName());
}

void DeskPrivate::openText(const QString &file, const QString &program)
{
    qint64 end = 0;
    const auto steps = Recording::fromScenario(program, end);
    scenarioFile = file;
    if (!steps) {
        scenarioText = program;
        playScenario(0, 0);
        return;
    }
    recording.replace(*steps, 0);
    recording.setUnsaved(false);
    backup.clear();
    replay(0, 0, 0);
}

void DeskPrivate::take(const QVariantMap &message)
{
    const QString what = text(message, "tell");
    if (what == QLatin1String("state")) {
        takeState(message);
    } else if (what == QLatin1String("journal")) {
        const QVariantList rows = message.value(QStringLiteral("rows")).toList();
        addBounded(journal, rows);
        Q_EMIT q->journalGrew(rows);
    } else if (what == QLatin1String("happened")) {
        const QVariantList entries = message.value(QStringLiteral("entries")).toList();
        addBounded(happenings, entries);
        Q_EMIT q->happened(entries);
    } else if (what == QLatin1String("steps")) {
        takeSteps(message.value(QStringLiteral("steps")).toList());
    } else if (what == QLatin1String("performed")) {
        stopTimer.stop();
        const QString error = text(message, "error");
        if (!error.isEmpty())
            q->setMessage(error);
        Q_EMIT q->performed(text(message, "line"), text(message, "result"), error);
    } else if (what == QLatin1String("scenario")) {
        takeScenario(message);
    }
}

void DeskPrivate::takeState(const QVariantMap &message)
{
    bool isChanged = false;
    bool isLater = false;
    for (auto section = message.cbegin(); section != message.cend(); ++section) {
        if (section->type() != QVariant::Map)
            continue;
        snapshot.insert(section.key(), *section);
        isLater = isLater || section.key() == QLatin1String("time");
        isChanged = true;
    }
    if (isLater)
        Q_EMIT q->nowChanged();
    if (isChanged)
        Q_EMIT q->snapshotChanged();
    if (message.contains(QStringLiteral("arrived")))
        setReplaying(false);
}

void DeskPrivate::takeSteps(const QVariantList &steps)
{
    QVector<Recording::Step> added;
    for (const QVariant &each : steps) {
        const QVariantMap map = each.toMap();
        const Recording::Step step{
            map.value(QStringLiteral("time")).toLongLong(),
            text(map, "line"),
            text(map, "outcome"),
            map.value(QStringLiteral("failed")).toBool(),
        };
        if (map.value(QStringLiteral("expected")).toBool())
            recording.done(step);
        else
            added.append(step);
    }
    if (added.isEmpty())
        return;
    const bool isAtEnd = !recording.canRedo();
    recording.add(added);
    if (!scenarioText.isEmpty())
        recording.setUnsaved(false);
    else if (isAtEnd && added.size() == 1)
        backup.append(recording);
    else
        backup.keep(recording);
}

void DeskPrivate::takeScenario(const QVariantMap &message)
{
    if (!message.value(QStringLiteral("ended")).toBool())
        return;
    stopTimer.stop();
    scenarioText.clear();
    setScenario({});
    const QString error = text(message, "error");
    const int line = message.value(QStringLiteral("line")).toInt();
    const int failed = message.value(QStringLiteral("failed")).toInt();
    const QString name = QFileInfo(scenarioFile).fileName();
    if (!error.isEmpty())
        q->setMessage(line > 0 ? Desk::tr("%1, line %2: %3").arg(name).arg(line).arg(error) : Desk::tr("%1: %2").arg(name, error));
    else if (failed > 0)
        q->setMessage(Desk::tr("%1: %n expectation(s) did not hold", nullptr, failed).arg(name));
}

void DeskPrivate::lose(const QString &why)
{
    setReplaying(false);
    setScenario({});
    scenarioText.clear();
    setSpeed(0);
    q->setMessage(Desk::tr("The car is gone: %1. Going back to a moment brings another one.").arg(why));
}
