#include "fuzzapplication.h"

#include <virtualclock.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

namespace
{

void tellFatal(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

} // namespace

void startFuzzApplication(int &argc, char **argv)
{
    simulator::VirtualClock::install();
    qInstallMessageHandler(tellFatal);
    new QCoreApplication(argc, argv); // for ever: a finding ends the process anywhere
}
