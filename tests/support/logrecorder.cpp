#include "logrecorder.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

namespace
{

struct Recording
{
    QMutex mutex;
    QList<LogRecorder::Line> lines;
    QtMessageHandler previousHandler = nullptr;
};

Recording &recording()
{
    static Recording only;
    return only;
}

void record(QtMsgType level, const QMessageLogContext &context, const QString &text)
{
    if (level == QtFatalMsg) {
        recording().previousHandler(level, context, text);
        return;
    }
    if (qstrcmp(context.category, "default") != 0)
        return;
    const QMutexLocker locker(&recording().mutex);
    recording().lines.append({level, context.file, context.line, context.function, text});
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
    recording().lines.clear();
    recording().previousHandler = qInstallMessageHandler(record);
}

LogRecorder::~LogRecorder()
{
    qInstallMessageHandler(recording().previousHandler);
}

QList<LogRecorder::Line> LogRecorder::take()
{
    const QMutexLocker locker(&recording().mutex);
    return std::exchange(recording().lines, {});
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
