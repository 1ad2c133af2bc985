#include "childprocess.h"

#include <QtCore/QProcessEnvironment>

namespace
{

QStringList linesOf(const QByteArray &text)
{
    return QString::fromLocal8Bit(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

ChildProcess::ChildProcess(const QStringList &arguments)
{
    QStringList command = QStringLiteral(POLICY_PROCESS_COMMAND).split(QLatin1Char(' '), Qt::SkipEmptyParts) + arguments;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.debug=false"));
    process.setProcessEnvironment(environment);
    const QString program = command.takeFirst();
    process.start(program, command);
    process.waitForFinished(60000);
    exitStatus = process.exitStatus();
    exitCode = process.exitCode();
    outputLines = linesOf(process.readAllStandardOutput());
    errorLines = linesOf(process.readAllStandardError());
}
