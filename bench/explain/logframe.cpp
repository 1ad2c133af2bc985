#include "logframe.h"

QString LogFrame::writer(qint64 thread) const
{
    QString name = QString::fromUtf8(program.data(), int(program.size()));
    const qint64 number = process != unknown ? process : thread;
    if (number == unknown)
        return name;
    return name.isEmpty() ? QStringLiteral("process %1").arg(number) : QStringLiteral("%1 (%2)").arg(name).arg(number);
}
