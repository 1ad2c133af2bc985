#include "command.h"

#include "console.h"
#include "exitstatus.h"

QVector<Command::Ending> Command::endings() const
{
    return {};
}

Command::Completions Command::completions(const QStringList & /*before*/) const
{
    return {};
}

const HelpTopics *Command::helpTopics() const
{
    return nullptr;
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
