#include "desk.h"

struct DeskPrivate
{
    Recording recording;
    double speed = 1;
    QString message;
};

Desk::Desk(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<DeskPrivate>())
{
}

Desk::~Desk() = default;

double Desk::now() const
{
    return 0;
}

double Desk::nextTimer() const
{
    return -1;
}

double Desk::speed() const
{
    return d->speed;
}

void Desk::setSpeed(double speed)
{
    d->speed = speed;
    Q_EMIT speedChanged();
}

bool Desk::isReplaying() const
{
    return false;
}

QString Desk::scenario() const
{
    return {};
}

Recording *Desk::recording() const
{
    return &d->recording;
}

QString Desk::message() const
{
    return d->message;
}

void Desk::setMessage(const QString &message)
{
    d->message = message;
    Q_EMIT messageChanged();
}

QString Desk::flash() const
{
    return {};
}

QString Desk::leftBehind() const
{
    return {};
}

QVariantMap Desk::snapshot() const
{
    return {};
}

QVariantList Desk::happenings() const
{
    return {};
}

QVariantList Desk::journal() const
{
    return {};
}

QString Desk::logFile() const
{
    return {};
}

QString Desk::soundFile() const
{
    return {};
}

void Desk::perform(const QString &line)
{
    Q_EMIT performed(line, {}, {});
}

void Desk::stepToNextTimer()
{
}

void Desk::goTo(double /*milliseconds*/)
{
}

void Desk::undo()
{
}

void Desk::redo()
{
}

void Desk::startAnew()
{
}

void Desk::open(const QUrl & /*file*/)
{
}

bool Desk::save(const QUrl & /*file*/)
{
    return false;
}

void Desk::takeOver()
{
}

QStringList Desk::bundledScenarios() const
{
    return {};
}

void Desk::openBundled(const QString & /*name*/)
{
}

void Desk::recover()
{
}

void Desk::dismissLeftBehind()
{
}
