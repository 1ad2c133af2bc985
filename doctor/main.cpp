/*
 * qzaudio-doctor: looks whether a unit is set up rightly. It is built for the vendor's platform, too, and needs neither QML nor the
 * simulator.
 */

#include "busexamination.h"
#include "flashexamination.h"
#include "libraryexamination.h"
#include "logexamination.h"
#include "options.h"
#include "platformexamination.h"
#include "report.h"
#include "settingsexamination.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

enum ExitStatus : int {
    CannotPrint = 1,
    UsageError = 2,
};

/// What COLUMNS says, or those of the terminal; 0 without either, as for a program that reads lines.
int columns()
{
    constexpr int narrowest = 40;
    constexpr int widest = 200;
    int columns = qEnvironmentVariableIntValue("COLUMNS");
    if (columns <= 0) {
        winsize size = {};
        columns = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
    }
    return columns > 0 ? std::clamp(columns, narrowest, widest) : 0;
}

/// A full disk shows only when all is written out.
bool print(const QByteArray &text)
{
    const bool isWritten = std::fputs(text.constData(), stdout) >= 0;
    return std::fclose(stdout) == 0 && isWritten;
}

int fail(int status, const QString &text)
{
    const QString line = QStringLiteral("qzaudio-doctor: ") + text + QLatin1Char('\n');
    std::fputs(line.toLocal8Bit().constData(), stderr);
    return status;
}

int show(const QByteArray &text, int status = 0)
{
    return print(text) ? status : fail(CannotPrint, QStringLiteral("the output cannot be written"));
}

int examine(const Options &options)
{
    Findings findings = examineLibrary();
    findings += examinePlatform(options.patienceMs);
    findings += examineRecords();
    findings += examineFlash(options.writeTest, options.patienceMs);
    findings += examineSettings(options.patienceMs);
    findings += examineBuses(options.patienceMs);
    findings += examineLog();
    return show(options.json ? Report::json(findings) : Report::text(findings, columns()).toLocal8Bit(), exitStatusOf(findings));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Options options = Options::parse(QCoreApplication::arguments().mid(1));
    switch (options.action) {
    case Options::Action::ShowHelp:
        return show(Options::help(columns()).toLocal8Bit());
    case Options::Action::ShowVersion:
        return show("qzaudio-doctor " QZAUDIO_VERSION "\n");
    case Options::Action::Complain:
        return fail(UsageError, QStringLiteral("%1 See qzaudio-doctor --help.").arg(options.complaint));
    case Options::Action::Examine:
        break;
    }
    return examine(options);
}
