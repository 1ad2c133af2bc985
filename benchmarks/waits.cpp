// How long a save keeps its caller waiting while somebody else uses the settings file.
//
// Prints a line for each measurement: scenario, who calls, the first save's time, the median and the longest of the following ones in ms, the
// number of saves that were in the file when the call came back, and that of all. Fields are separated by tabs. A caller that does not come
// back gets only as many times as it has come back.

#include "byhandsettings.h"
#include "slowflash.h"

#include <qzaudio/audiodatabase.h>
#include <settingsfile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace
{

constexpr int longestWait = 40000; // ms: beyond the 30 seconds after which QSettings takes a lock for left behind
constexpr int pause = 2; // ms between two saves, so that each meets the other writer somewhere else in its work
constexpr int pauseOfOther = 50; // ms between two saves of one that saves often
constexpr int valueOfFirstSave = 1000;

struct Scenario
{
    const char *name;
    const char *other; ///< who else saves: "library", "QSettings", or nobody
    const char *behaviour; ///< of the other
    int delay; ///< of the flash, in ms
    int saves;
};

constexpr Scenario scenarios[] = {
    {"nobody else", "", "", 0, 200},
    {"busy, with the library", "library", "saves", 0, 200},
    {"busy, with QSettings", "QSettings", "saves", 0, 200},
    {"saves every 50 ms, with the library", "library", "saves often", 0, 200},
    {"saves every 50 ms, with QSettings", "QSettings", "saves often", 0, 200},
    {"hanging, with the library", "library", "stops", 0, 20},
    {"hanging, with QSettings", "QSettings", "stops", 0, 20},
    {"dead, with the library", "library", "dies", 0, 20},
    {"dead, with QSettings", "QSettings", "dies", 0, 20},
    {"nobody else, slow flash", "", "", 500, 3},
    {"busy, with the library, slow flash", "library", "saves", 500, 5},
    {"busy, with QSettings, slow flash", "QSettings", "saves", 500, 5},
};

[[noreturn]] void fail(const QString &text)
{
    std::fprintf(stderr, "qzaudio-waits: %s\n", qPrintable(text));
    std::exit(1);
}

/// Saves a volume in one way or the other.
class Writer
{
public:
    explicit Writer(const QString &way)
        : m_store(way == QLatin1String("library") ? new audio::AudioDataBase : nullptr)
    {
    }

    void save(ZelAudioType type, int value)
    {
        if (m_store)
            m_store->setVolume(type, value, true);
        else
            byhand::saveSetting(QStringLiteral("Volume/%1").arg(type), value);
    }

private:
    std::unique_ptr<audio::AudioDataBase> m_store;
};

bool isInFile(int value)
{
    QFile file(SettingsFile::path());
    return file.open(QFile::ReadOnly) && file.readAll().contains("\n0=" + QByteArray::number(value) + '\n');
}

/// Prints the time of each save in ms, and whether it was in the file afterwards.
void beCaller(const QString &way, int saves, int delay)
{
    Writer writer(way);
    slowflash::setDelay(delay);
    for (int i = 0; i < saves; ++i) {
        const auto before = std::chrono::steady_clock::now();
        writer.save(ZelAudioTypeMedia, valueOfFirstSave + i);
        const auto after = std::chrono::steady_clock::now();
        std::printf("%.3f %d\n", std::chrono::duration<double, std::milli>(after - before).count(), isInFile(valueOfFirstSave + i) ? 1 : 0);
        std::fflush(stdout);
        QThread::msleep(pause);
    }
    std::_Exit(0); // a store that ends would wait once more
}

[[noreturn]] void beOther(const QString &way, const QString &behaviour, int delay)
{
    Writer writer(way);
    writer.save(ZelAudioTypePrompt, 0);
    slowflash::setDelay(delay);
    if (behaviour.startsWith(QLatin1String("saves"))) {
        std::puts("saves");
        std::fflush(stdout);
    } else {
        slowflash::setMishap(behaviour == QLatin1String("stops") ? slowflash::Mishap::Stop : slowflash::Mishap::Death);
    }
    for (int value = 0;; value = (value + 1) % 26) {
        writer.save(ZelAudioTypePrompt, value);
        if (behaviour == QLatin1String("saves often"))
            QThread::msleep(pauseOfOther);
    }
}

bool isStopped(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    return file.open(QFile::ReadOnly) && file.readAll().contains(") T ");
}

std::unique_ptr<QProcess> startOther(const Scenario &scenario)
{
    auto other = std::make_unique<QProcess>();
    other->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString behaviour = QString::fromLatin1(scenario.behaviour);
    other->start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("other"), QString::fromLatin1(scenario.other), behaviour, QString::number(scenario.delay)});
    while (!other->canReadLine()) {
        if (!other->waitForReadyRead(longestWait))
            fail(QStringLiteral("the other writer does not start"));
    }
    if (behaviour == QLatin1String("dies"))
        other->waitForFinished(longestWait);
    while (behaviour == QLatin1String("stops") && !isStopped(other->processId()))
        QThread::msleep(1);
    return other;
}

void clearFlash()
{
    const QDir folder(SettingsFile::folder());
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        QFile::remove(folder.filePath(name));
}

void measure(const Scenario &scenario, const QString &way)
{
    clearFlash();
    const std::unique_ptr<QProcess> other = *scenario.other ? startOther(scenario) : nullptr;
    QProcess caller;
    caller.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    caller.start(QCoreApplication::applicationFilePath(), {QStringLiteral("caller"), way, QString::number(scenario.saves), QString::number(scenario.delay)});
    const bool hasEnded = caller.waitForFinished(longestWait);
    if (!hasEnded) {
        caller.kill();
        caller.waitForFinished();
    }
    if (other && other->state() != QProcess::NotRunning) {
        other->kill();
        other->waitForFinished(longestWait);
    }
    std::vector<double> times;
    int written = 0;
    while (caller.canReadLine()) {
        const QList<QByteArray> words = caller.readLine().trimmed().split(' ');
        times.push_back(words.at(0).toDouble());
        written += words.at(1).toInt();
    }
    if (!hasEnded) {
        std::printf("%s\t%s\t%d\n", scenario.name, qPrintable(way), static_cast<int>(times.size()));
        std::fflush(stdout);
        return;
    }
    if (static_cast<int>(times.size()) != scenario.saves)
        fail(QStringLiteral("the caller did not save so often as it was told"));
    const double first = times.front();
    std::sort(times.begin() + 1, times.end());
    const double median = times[1 + (times.size() - 1) / 2];
    std::printf("%s\t%s\t%.3f\t%.3f\t%.3f\t%d\t%d\n", scenario.name, qPrintable(way), first, median, times.back(), written, scenario.saves);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
    const QStringList arguments = QCoreApplication::arguments();
    const QString role = arguments.value(1);
    if (role == QLatin1String("caller"))
        beCaller(arguments.value(2), arguments.value(3).toInt(), arguments.value(4).toInt());
    if (role == QLatin1String("other"))
        beOther(arguments.value(2), arguments.value(3), arguments.value(4).toInt());
    for (const Scenario &scenario : scenarios) {
        for (const QString &way : {QStringLiteral("library"), QStringLiteral("QSettings")})
            measure(scenario, way);
    }
    return 0;
}
