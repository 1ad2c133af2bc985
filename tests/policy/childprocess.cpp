#include "childprocess.h"

#include <QtCore/QProcessEnvironment>

namespace
{

program::Run runQuietly(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.debug=false"));
    QProcess process;
    process.setProcessEnvironment(environment);
    return program::run(process, program::commandLine(QStringLiteral(POLICY_PROCESS), arguments));
}

} // namespace

ChildProcess::ChildProcess(const QStringList &arguments)
    : program::Run(runQuietly(arguments))
{
}
