#include "desk.h"

#include "desk_p.h"
#include "outputfile.h"
#include "scenariofiles.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cmath>

namespace
{

constexpr qint64 largestFile = 16LL * 1024 * 1024; // bytes of a scenario

QString localName(const QUrl &file)
{
    return QFileInfo(file.isLocalFile() ? file.toLocalFile() : file.toString()).absoluteFilePath();
}

} // namespace

Desk::Desk(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<DeskPrivate>(this))
{
    connect(&d->car, &CarProcess::told, this, [this](const QVariantMap &message) { d->take(message); });
    connect(&d->car, &CarProcess::lost, this, [this](const QString &why) { d->lose(why); });
    connect(&d->stopTimer, &QTimer::timeout, this, [this] {
        const auto time = qint64(now());
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
