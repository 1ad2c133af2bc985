#ifndef PROGRAM_H
#define PROGRAM_H

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Programs of this build, started the way the test itself was: in an emulator when they are for another processor.
namespace program
{

bool isEmulated();
/// The words of the command line, the emulator's first where there is one.
QStringList commandLine(const QString &file, const QStringList &arguments = {});

/// A command line as text, for a shell; the tree may stand in a folder with blanks in its name.
QString forShell(const QStringList &commandLine);

/// The words in front of a command that "nobody" runs.
QStringList asNobody();
/// Why that user cannot run @p file; empty where it can. It may not enter the folder of another user's build.
QString whyNobodyCannotRun(const QString &file);

/// A run from start to end, on the same flash as the test.
struct Run
{
    QProcess::ExitStatus exitStatus = QProcess::CrashExit;
    int exitCode = -1; ///< -1 where it did not end by itself, or not in time
    QString output;
    QString errors;
    qint64 milliseconds = 0;
};

Run run(const QStringList &commandLine);
/// The same in a folder, or with an environment, that @p process was given.
Run run(QProcess &process, const QStringList &commandLine);

/// Starts it, and no more.
void start(QProcess &process, const QStringList &commandLine);

/// The lines of an output, without empty ones.
QStringList lines(const QString &output);

} // namespace program

#endif
