#include "logrecorder.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <sys/syscall.h>
#include <unistd.h>

namespace
{

QMutex mutex;
QList<LogRecorder::Line> lines;
QtMessageHandler previousHandler = nullptr;

void record(QtMsgType level, const QMessageLogContext &context, const QString &text)
{
    if (level == QtFatalMsg) {
        previousHandler(level, context, text);
        return;
    }
    if (qstrcmp(context.category, "default") != 0)
        return;
    const QMutexLocker locker(&mutex);
    lines.append({level, context.file, context.line, context.function, text});
}

QString withoutNumbers(const LogRecorder::Line &line)
{
    const QString number = QString::number(line.number);
    QString text = line.text;
    const QString thread = QString::number(::syscall(SYS_gettid));
    for (const char *level : {"[DBG] ", "[ERR] "}) {
        const QLatin1String prefix(level);
        const QString head = prefix + thread + QLatin1Char(' ') + QString::fromLatin1(line.signature) + QLatin1Char(' ') + number + QStringLiteral(" --");
        if (text.startsWith(head))
            return prefix + QStringLiteral("THREAD ") + QString::fromLatin1(line.signature) + QStringLiteral(" LINE --") + text.mid(head.size());
    }
    text.replace(QStringLiteral("line: ") + number + QLatin1Char(' ') + number + QLatin1Char(' '), QStringLiteral("line: LINE LINE "));
    text.replace(QStringLiteral("line: ") + number + QLatin1Char(' '), QStringLiteral("line: LINE "));
    return text;
}

} // namespace

LogRecorder::LogRecorder()
{
    lines.clear();
    previousHandler = qInstallMessageHandler(record);
}

LogRecorder::~LogRecorder()
{
    qInstallMessageHandler(previousHandler);
}

QList<LogRecorder::Line> LogRecorder::take()
{
    const QMutexLocker locker(&mutex);
    const QList<Line> taken = lines;
    lines.clear();
    return taken;
}

QStringList LogRecorder::takeTexts()
{
    QStringList texts;
    const QList<Line> taken = take();
    for (const Line &line : taken)
        texts.append(withoutNumbers(line));
    return texts;
}

QStringList LogRecorder::takeFacadeTexts()
{
    return takeTexts().filter(QLatin1String("[QT] "));
}
