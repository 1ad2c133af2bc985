#include "growth.h"

#include <livedunit.h>
#include <operations.h>
#include <virtualclock.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTextStream>

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <numeric>
#include <random>

// Random lives at full speed in one process, to see whether anything grows.

namespace
{

constexpr int lifeLength = 250;
constexpr int probeLength = 100;
constexpr unsigned int probeSeed = 4711;

struct Options
{
    qint64 seconds = 0;
    qint64 operations = 0; ///< 0: until the time is over
    unsigned int seed = 0;
    double timeLimit = 0; ///< percent
    QString leak; ///< what a broken library would do, so that it is seen to be found
};

Options optionsOf(const QCoreApplication &application)
{
    QCommandLineParser parser;
    const QCommandLineOption seconds(QStringLiteral("seconds"), {}, QStringLiteral("S"), QStringLiteral("60"));
    const QCommandLineOption operations(QStringLiteral("operations"), {}, QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption seed(QStringLiteral("seed"), {}, QStringLiteral("N"), QStringLiteral("1"));
    const QCommandLineOption timeLimit(QStringLiteral("time-limit"), {}, QStringLiteral("PERCENT"), QStringLiteral("1"));
    const QCommandLineOption leak(QStringLiteral("leak"), {}, QStringLiteral("memory|descriptors|files|time"));
    parser.addOptions({seconds, operations, seed, timeLimit, leak});
    parser.process(application);
    Options options;
    options.seconds = parser.value(seconds).toLongLong();
    options.operations = parser.value(operations).toLongLong();
    options.seed = parser.value(seed).toUInt();
    options.timeLimit = parser.value(timeLimit).toDouble();
    options.leak = parser.value(leak);
    return options;
}

double processorTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    constexpr double nanosecondsInSecond = 1e9;
    return static_cast<double>(time.tv_sec) * nanosecondsInSecond + static_cast<double>(time.tv_nsec);
}

/// Lives on one unit, with nothing beside: no model, no journal.
class Soak
{
public:
    explicit Soak(const Options &options)
        : m_leak(options.leak)
        , m_random(options.seed)
    {
        lives::LivedUnit::platform().journal()->setEnabled(false);
        m_unit.manager(); // a facade that the platform refused its objects would live with that for ever
        // Code is read into memory when it is used first, and tables get the size that they keep.
        constexpr int warmUp = 60;
        for (int i = 0; i < warmUp; ++i)
            live();
        m_operations = 0;
    }

    void live() { live(m_random, lifeLength); }

    /// The same operations each time. @return their processor time, ns
    double probe()
    {
        std::mt19937_64 random(probeSeed);
        const double begin = processorTime();
        live(random, probeLength);
        return processorTime() - begin;
    }

    qint64 operations() const { return m_operations; }

private:
    void live(std::mt19937_64 &random, int length)
    {
        for (int i = 0; i < length; ++i) {
            const lives::Operation operation = lives::anyOperation([&random] { return random(); });
            if (operation.what().weight == lives::rare)
                continue; // another process has figures of its own
            operation.what().call(m_unit, lives::Arguments(operation.arguments));
            ++m_operations;
            leak();
        }
        m_unit.takeVolumeNews();
        m_unit.takeFocusNews();
        m_unit.switchOff();
        // The simulator keeps what was destroyed, to know it when it is used again.
        lives::LivedUnit::platform().reset();
        lives::LivedUnit::eraseSettings();
    }

    void leak()
    {
        constexpr int memory = 64;
        constexpr int operationsPerDescriptor = 1000;
        if (m_leak == QLatin1String("memory")) {
            m_leaked.push_back(std::make_unique<char[]>(memory));
        } else if (m_leak == QLatin1String("descriptors") && m_operations % operationsPerDescriptor == 0) {
            open("/dev/null", O_RDONLY | O_CLOEXEC);
        } else if (m_leak == QLatin1String("files") && m_operations % operationsPerDescriptor == 0) {
            QFile file(QStringLiteral("/media/flash/nvm/leaked%1").arg(m_operations));
            file.open(QIODevice::WriteOnly);
        } else if (m_leak == QLatin1String("time")) {
            m_numbers.push_back(m_operations);
            m_sum = std::accumulate(m_numbers.cbegin(), m_numbers.cend(), m_sum);
        }
    }

    const QString m_leak;
    std::mt19937_64 m_random;
    lives::LivedUnit m_unit;
    qint64 m_operations = 0;
    std::vector<std::unique_ptr<char[]>> m_leaked;
    std::vector<qint64> m_numbers;
    volatile qint64 m_sum = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.critical=false\nqzaudio.simulator=false"));
    const Options options = optionsOf(application);
    constexpr double percent = 100;
    constexpr double millisecondsInSecond = 1000;
    Soak soak(options);
    Growth growth(options.timeLimit / percent);
    QElapsedTimer timer;
    timer.start();
    double progress = 0;
    while (progress < 1) {
        soak.live();
        const double probe = soak.probe();
        progress = options.operations > 0 ? double(soak.operations()) / double(options.operations)
                                          : double(timer.elapsed()) / millisecondsInSecond / double(options.seconds);
        growth.add(progress, probe);
    }
    growth.finish();
    const auto rows = growth.rows();
    const bool isOut = std::any_of(rows.cbegin(), rows.cend(), [](const Growth::Row &row) { return row.isOut; });
    QTextStream(stdout) << QStringLiteral("%1 operations in %2 s\n\n").arg(soak.operations()).arg(double(timer.elapsed()) / millisecondsInSecond, 0, 'f', 1)
                        << growth.toText();
    return isOut ? 1 : 0;
}
