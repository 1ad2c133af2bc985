#include "command.h"

#include "console.h"
#include "exitstatus.h"

QString Command::exitStatuses()
{
    return QStringLiteral("Exit status: 0 success; 1 an expectation or a script failed, the audio service denied or refused a "
                          "request, or a settings file cannot be read; 2 a mistake on the command line, a scenario that cannot be "
                          "read, or output that cannot be written; 3 the bus or the audio service does not answer; 130 interrupted.\n");
}

bool Command::wantsVirtualTime(const QCommandLineParser & /*parsed*/) const
{
    return false;
}

int Command::complain(const QString &message) const
{
    Console::error(QStringLiteral("qzaudio-bench: %1; see qzaudio-bench %2 --help\n").arg(message, name()));
    return UsageError;
}
