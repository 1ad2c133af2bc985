#include "desk.h"

#include "carprocess.h"
#include "outputfile.h"
#include "recordingbackup.h"
#include "scenariofiles.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>

#include <cmath>

namespace
{

constexpr int mostRows = 5000; // that are kept for rooms that are opened later
constexpr int stopPatience = 2000; // ms until a car that does not stop is replaced
constexpr qint64 largestFile = 16LL * 1024 * 1024; // bytes of a scenario

QString text(const QVariantMap &map, const char *key)
{
    return map.value(QLatin1String(key)).toString();
}

QString localName(const QUrl &file)
{
    return QFileInfo(file.isLocalFile() ? file.toLocalFile() : file.toString()).absoluteFilePath();
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

struct DeskPrivate
{
    explicit DeskPrivate(Desk *desk)
        : q(desk)
        , car({folder.filePath(QStringLiteral("flash")), folder.filePath(QStringLiteral("drive.log")), folder.filePath(QStringLiteral("drive.sound"))})
        , backup(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/unsaved"))
    {
        leftBehind = backup.takeLeftBehind();
        stopTimer.setSingleShot(true);
        stopTimer.setInterval(stopPatience);
    }

    Desk *const q;
    const QTemporaryDir folder;
    CarProcess car;
    Recording recording;
    RecordingBackup backup;
    QString leftBehind;

    QVariantMap snapshot;
    QVariantList happenings;
    QVariantList journal;
    double speed = 1;
    bool isReplaying = false;
    QString problem;
    QString scenario; // that drives
    QString scenarioFile; // called so in messages
    QString scenarioText; // empty where the car is driven by hand
    QTimer stopTimer;

    void setSpeed(double wanted)
    {
        if (speed == wanted)
            return;
        speed = wanted;
        Q_EMIT q->speedChanged();
    }
    void setReplaying(bool replaying)
    {
        if (isReplaying == replaying)
            return;
        isReplaying = replaying;
        Q_EMIT q->replayingChanged();
    }
    void setScenario(const QString &name)
    {
        if (scenario == name)
            return;
        scenario = name;
        Q_EMIT q->scenarioChanged();
    }
    void send(const char *what, QVariantMap message = {})
    {
        message.insert(QStringLiteral("do"), QString::fromLatin1(what));
        car.send(message);
    }

    void startCar(bool isMeasured)
    {
        snapshot.clear();
        happenings.clear();
        journal.clear();
        stopTimer.stop();
        car.startAnew(isMeasured);
        Q_EMIT q->restarted();
    }
    /// A car that was driven so far by hand. The rest of the recording is to come.
    void replay(int doneCount, qint64 time, double speedThen);
    /// The same of a scenario that drives.
    void playScenario(qint64 time, double speedThen);
    void openText(const QString &file, const QString &program);

    void take(const QVariantMap &message);
    void takeState(const QVariantMap &message);
    void takeSteps(const QVariantList &steps);
    void takeScenario(const QVariantMap &message);
    void lose(const QString &why);
};

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

Desk::Desk(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<DeskPrivate>(this))
{
    connect(&d->car, &CarProcess::told, this, [this](const QVariantMap &message) { d->take(message); });
    connect(&d->car, &CarProcess::lost, this, [this](const QString &why) { d->lose(why); });
    connect(&d->stopTimer, &QTimer::timeout, this, [this] {
        const qint64 time = qint64(now());
        d->replay(d->recording.doneCount(), time, 0);
    });
}

Desk::~Desk() = default;

double Desk::now() const
{
    return d->snapshot.value(QStringLiteral("time")).toMap().value(QStringLiteral("now")).toDouble();
}

double Desk::nextTimer() const
{
    return d->snapshot.value(QStringLiteral("time")).toMap().value(QStringLiteral("next"), -1).toDouble();
}

double Desk::speed() const
{
    return d->speed;
}

void Desk::setSpeed(double speed)
{
    if (!std::isfinite(speed) || speed < 0)
        return;
    d->setSpeed(speed);
    d->send("speed", {{QStringLiteral("value"), speed}});
}

bool Desk::isReplaying() const
{
    return d->isReplaying;
}

QString Desk::scenario() const
{
    return d->scenario;
}

Recording *Desk::recording() const
{
    return &d->recording;
}

QString Desk::message() const
{
    return d->problem;
}

void Desk::setMessage(const QString &message)
{
    if (d->problem == message)
        return;
    d->problem = message;
    Q_EMIT messageChanged();
}

QString Desk::flash() const
{
    return d->folder.filePath(QStringLiteral("flash"));
}

QString Desk::leftBehind() const
{
    return d->leftBehind;
}

QVariantMap Desk::snapshot() const
{
    return d->snapshot;
}

QVariantList Desk::happenings() const
{
    return d->happenings;
}

QVariantList Desk::journal() const
{
    return d->journal;
}

QString Desk::logFile() const
{
    return d->folder.filePath(QStringLiteral("drive.log"));
}

QString Desk::soundFile() const
{
    return d->folder.filePath(QStringLiteral("drive.sound"));
}

void Desk::perform(const QString &line)
{
    if (!d->scenario.isEmpty()) {
        setMessage(tr("The scenario %1 drives the car: take over first.").arg(d->scenario));
        return;
    }
    // A recording has one line for each step.
    const QString whole = line.simplified();
    if (!whole.isEmpty())
        d->send("perform", {{QStringLiteral("line"), line.contains(QLatin1Char('\n')) ? whole : line.trimmed()}});
}

void Desk::stepToNextTimer()
{
    d->setSpeed(0);
    d->send("step");
}

void Desk::goTo(double milliseconds)
{
    const auto time = qint64(qMax(0.0, milliseconds));
    if (!d->scenarioText.isEmpty()) {
        d->playScenario(time, 0);
        return;
    }
    const QVector<Recording::Step> &steps = d->recording.steps();
    int doneCount = 0;
    while (doneCount < steps.size() && steps.at(doneCount).time <= time)
        ++doneCount;
    d->replay(doneCount, time, 0);
}

void Desk::undo()
{
    const int last = d->recording.doneCount() - 1;
    if (last < 0)
        return;
    const qint64 time = d->recording.steps().at(last).time;
    if (!d->scenarioText.isEmpty())
        d->playScenario(qMax<qint64>(0, time - 1), 0);
    else
        d->replay(last, time, 0);
}

void Desk::redo()
{
    if (d->recording.canRedo())
        d->send("redo");
}

void Desk::startAnew()
{
    d->recording.replace({}, 0);
    d->recording.setUnsaved(false);
    d->backup.clear();
    d->replay(0, 0, 1);
    perform(QStringLiteral("powerOn();"));
}

void Desk::open(const QUrl &file)
{
    const QString name = localName(file);
    QFile opened(name);
    if (!opened.open(QIODevice::ReadOnly)) {
        setMessage(tr("%1 cannot be opened: %2").arg(name, opened.errorString()));
        return;
    }
    const QByteArray program = opened.read(largestFile + 1);
    if (program.size() > largestFile || program.contains('\0')) {
        setMessage(tr("%1 is no scenario.").arg(name));
        return;
    }
    d->openText(name, QString::fromUtf8(program));
}

bool Desk::save(const QUrl &file)
{
    const QString name = localName(file);
    OutputFile saved;
    QString problem = saved.open(name);
    if (problem.isEmpty()) {
        saved.write(d->recording.toScenario(qint64(now())).toUtf8());
        problem = saved.close();
    }
    if (!problem.isEmpty()) {
        setMessage(tr("%1 cannot be saved: %2. The recording is still here.").arg(name, problem));
        return false;
    }
    d->recording.setUnsaved(false);
    d->backup.clear();
    return true;
}

void Desk::takeOver()
{
    d->send("takeOver");
    d->stopTimer.start();
}

QStringList Desk::bundledScenarios() const
{
    QStringList names;
    const QStringList files = ScenarioFiles::inFolder(ScenarioFiles::installedFolder());
    for (const QString &file : files)
        names.append(QFileInfo(file).completeBaseName());
    return names;
}

void Desk::openBundled(const QString &name)
{
    QString problem;
    const QStringList files = ScenarioFiles::find(name, problem);
    if (files.isEmpty())
        setMessage(tr("%1: %2").arg(name, problem));
    else
        open(QUrl::fromLocalFile(files.first()));
}

void Desk::recover()
{
    if (d->leftBehind.isEmpty())
        return;
    QFile file(d->leftBehind);
    if (file.open(QIODevice::ReadOnly)) {
        d->openText(tr("the recording that was left behind"), QString::fromUtf8(file.readAll()));
        d->recording.setUnsaved(true);
        d->backup.keep(d->recording);
    }
    dismissLeftBehind();
}

void Desk::dismissLeftBehind()
{
    QFile::remove(d->leftBehind);
    d->leftBehind.clear();
    Q_EMIT leftBehindChanged();
}

void Desk::leaveUnsavedBehind()
{
    d->backup.leaveBehind();
}
