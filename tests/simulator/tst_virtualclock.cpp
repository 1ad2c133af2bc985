#include <platform.h>
#include <spaudiosetting.h>
#include <virtualclock.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QSocketNotifier>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <array>
#include <memory>

#include <unistd.h>

using simulator::VirtualClock;

class VirtualClockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void singleShot_data();
    void singleShot();
    void repeating();
    void restarted();
    void stoppedBySlot();
    void orderOfDeadlines();
    void startedInsideSlot();
    void nestedAdvance();
    void zeroTimers();
    void postedEventsBetweenTimers();
    void deletedBetween();
    void remainingAndRegistered();
    void processEventsKeepsTime();
    void blockedTime();
    void hasPendingEvents();
    void execJumpsToDeadline();
    void execWaitsForThread();
    void idleWait();
    void descriptors();
    void processRuns();
    void longDrive();
    void journalTime();
    void slowPlatform();
    void nextDeadline();
    void ofAThread();

private:
    qint64 elapsed() const { return m_clock->now() - m_start; }

    VirtualClock *const m_clock = VirtualClock::installed();
    qint64 m_start = 0;
};

void VirtualClockTest::init()
{
    m_clock->setIdle(VirtualClock::Idle::Advance);
    m_start = m_clock->now();
}

void VirtualClockTest::singleShot_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<Qt::TimerType>("type");

    QTest::newRow("1 ms") << 1 << Qt::PreciseTimer;
    QTest::newRow("500 ms precise") << 500 << Qt::PreciseTimer;
    QTest::newRow("500 ms coarse") << 500 << Qt::CoarseTimer;
    QTest::newRow("2001 ms very coarse") << 2001 << Qt::VeryCoarseTimer;
    QTest::newRow("the longest") << std::numeric_limits<int>::max() << Qt::CoarseTimer;
}

void VirtualClockTest::singleShot()
{
    QFETCH(int, interval);
    QFETCH(Qt::TimerType, type);

    QTimer timer;
    timer.setTimerType(type);
    timer.setSingleShot(true);
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(interval);
    m_clock->advance(interval - 1);
    QCOMPARE(timeout.count(), 0);
    QVERIFY(timer.isActive());
    m_clock->advance(1);
    QCOMPARE(timeout.count(), 1);
    QVERIFY(!timer.isActive());
    m_clock->advance(interval);
    QCOMPARE(timeout.count(), 1);
    QCOMPARE(elapsed(), 2 * qint64(interval));
}

void VirtualClockTest::repeating()
{
    QTimer timer;
    QList<qint64> instants;
    connect(&timer, &QTimer::timeout, this, [this, &instants] { instants += elapsed(); });
    timer.start(50);
    m_clock->advance(49);
    QCOMPARE(instants, QList<qint64>());
    m_clock->advance(151);
    QCOMPARE(instants, QList<qint64>({50, 100, 150, 200}));
    QCOMPARE(elapsed(), qint64(200));
}

void VirtualClockTest::restarted()
{
    QTimer timer;
    timer.setSingleShot(true);
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(500);
    m_clock->advance(499);
    timer.start(500);
    m_clock->advance(499);
    QCOMPARE(timeout.count(), 0);
    m_clock->advance(1);
    QCOMPARE(timeout.count(), 1);
    timer.start(500);
    timer.stop();
    m_clock->advance(1000);
    QCOMPARE(timeout.count(), 1);
}

void VirtualClockTest::stoppedBySlot()
{
    QTimer timer;
    int turns = 0;
    connect(&timer, &QTimer::timeout, this, [&timer, &turns] {
        if (++turns == 2)
            timer.stop();
    });
    timer.start(10);
    m_clock->advance(100);
    QCOMPARE(turns, 2);
}

void VirtualClockTest::orderOfDeadlines()
{
    QStringList order;
    const auto note = [&order](const char *name) { return [&order, name] { order += QLatin1String(name); }; };
    QTimer::singleShot(20, Qt::PreciseTimer, this, note("20 first"));
    QTimer::singleShot(10, Qt::PreciseTimer, this, note("10"));
    QTimer::singleShot(20, Qt::CoarseTimer, this, note("20 second"));
    QTimer::singleShot(15, Qt::PreciseTimer, this, note("15"));
    m_clock->advance(20);
    QCOMPARE(order, QStringList({QStringLiteral("10"), QStringLiteral("15"), QStringLiteral("20 first"), QStringLiteral("20 second")}));
}

void VirtualClockTest::startedInsideSlot()
{
    QList<qint64> instants;
    QTimer::singleShot(10, this, [this, &instants] {
        instants += elapsed();
        QTimer::singleShot(5, this, [this, &instants] { instants += elapsed(); });
        QTimer::singleShot(0, this, [this, &instants] { instants += elapsed(); });
        QTimer::singleShot(11, this, [this, &instants] { instants += elapsed(); });
    });
    m_clock->advance(20);
    QCOMPARE(instants, QList<qint64>({10, 10, 15}));
    m_clock->advance(1);
    QCOMPARE(instants.last(), qint64(21));
}

void VirtualClockTest::nestedAdvance()
{
    QStringList order;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [this, &order] {
        order += QStringLiteral("outer %1").arg(elapsed());
        if (order.count() == 1)
            m_clock->advance(25); // the timer itself does not run again meanwhile
    });
    timer.start(10);
    QTimer::singleShot(30, this, [this, &order] { order += QStringLiteral("inner %1").arg(elapsed()); });
    m_clock->advance(12);
    QCOMPARE(elapsed(), qint64(35));
    QCOMPARE(order, QStringList({QStringLiteral("outer 10"), QStringLiteral("inner 30")}));
    m_clock->advance(5);
    QCOMPARE(order.last(), QStringLiteral("outer 40"));
}

void VirtualClockTest::zeroTimers()
{
    QTimer timer;
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(0);
    QCOMPARE(timeout.count(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(timeout.count(), 1);
    m_clock->advance(0);
    QCOMPARE(timeout.count(), 2);
    QTimer::singleShot(7, this, [] {});
    m_clock->advance(10); // at the start and at 7
    QCOMPARE(timeout.count(), 4);

    QTimer once;
    once.setSingleShot(true);
    QSignalSpy onceTimeout(&once, &QTimer::timeout);
    once.start(0);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(onceTimeout.count(), 1);
}

void VirtualClockTest::postedEventsBetweenTimers()
{
    QStringList order;
    QTimer::singleShot(10, this, [this, &order] {
        order += QStringLiteral("first");
        QMetaObject::invokeMethod(
            this, [&order] { order += QStringLiteral("posted"); }, Qt::QueuedConnection);
    });
    QTimer::singleShot(10, this, [&order] { order += QStringLiteral("second"); });
    QMetaObject::invokeMethod(
        this, [&order] { order += QStringLiteral("before"); }, Qt::QueuedConnection);
    m_clock->advance(10);
    QCOMPARE(order, QStringList({QStringLiteral("before"), QStringLiteral("first"), QStringLiteral("posted"), QStringLiteral("second")}));
}

void VirtualClockTest::deletedBetween()
{
    auto *const doomed = new QTimer(this);
    QSignalSpy timeout(doomed, &QTimer::timeout);
    doomed->start(20);
    QTimer::singleShot(10, this, [doomed] { delete doomed; });
    m_clock->advance(50);
    QCOMPARE(timeout.count(), 0);

    auto *const suicidal = new QTimer(this);
    const auto turns = std::make_shared<int>(0);
    connect(suicidal, &QTimer::timeout, this, [suicidal, turns] {
        ++*turns;
        delete suicidal;
    });
    suicidal->start(10);
    m_clock->advance(50);
    QCOMPARE(*turns, 1);
}

void VirtualClockTest::remainingAndRegistered()
{
    QTimer timer;
    timer.setTimerType(Qt::CoarseTimer);
    timer.start(500);
    QCOMPARE(timer.remainingTime(), 500);
    m_clock->advance(123);
    QCOMPARE(timer.remainingTime(), 377);
    const QList<QAbstractEventDispatcher::TimerInfo> infos = m_clock->registeredTimers(&timer);
    QCOMPARE(infos.count(), 1);
    QCOMPARE(infos.at(0).timerId, timer.timerId());
    QCOMPARE(infos.at(0).interval, 500);
    QCOMPARE(infos.at(0).timerType, Qt::CoarseTimer);
    m_clock->block(500);
    QCOMPARE(timer.remainingTime(), 0);
    timer.stop();
    QCOMPARE(timer.remainingTime(), -1);
    QCOMPARE(m_clock->registeredTimers(&timer).count(), 0);
    QCOMPARE(m_clock->remainingTime(123456), -1);
    QVERIFY(!m_clock->unregisterTimer(123456));
}

void VirtualClockTest::processEventsKeepsTime()
{
    QTimer timer;
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(1);
    for (int turn = 0; turn < 100; ++turn)
        QCoreApplication::processEvents();
    QCOMPARE(elapsed(), qint64(0));
    QCOMPARE(timeout.count(), 0);
    m_clock->advance(-5);
    QCOMPARE(elapsed(), qint64(0));
}

void VirtualClockTest::blockedTime()
{
    QTimer timer;
    QList<qint64> instants;
    connect(&timer, &QTimer::timeout, this, [this, &instants] { instants += elapsed(); });
    timer.start(10);
    m_clock->block(35);
    QCOMPARE(instants, QList<qint64>());
    QCoreApplication::processEvents();
    QCOMPARE(instants, QList<qint64>({35})); // late once, the turns missed are skipped
    m_clock->advance(5);
    QCOMPARE(instants, QList<qint64>({35, 40}));
}

void VirtualClockTest::hasPendingEvents()
{
    QCoreApplication::processEvents();
    QVERIFY(!m_clock->hasPendingEvents());
    QTimer timer;
    timer.start(5);
    QVERIFY(!m_clock->hasPendingEvents());
    m_clock->block(5);
    QVERIFY(m_clock->hasPendingEvents());
    timer.stop();
    QMetaObject::invokeMethod(
        this, [] {}, Qt::QueuedConnection);
    QVERIFY(m_clock->hasPendingEvents());
    QCoreApplication::processEvents();
    QVERIFY(!m_clock->hasPendingEvents());
}

void VirtualClockTest::execJumpsToDeadline()
{
    QElapsedTimer real;
    real.start();
    QEventLoop loop;
    QTimer::singleShot(600'000, &loop, &QEventLoop::quit);
    QTimer ticks;
    QSignalSpy timeout(&ticks, &QTimer::timeout);
    ticks.start(100'000);
    loop.exec();
    QCOMPARE(elapsed(), qint64(600'000));
    QVERIFY(timeout.count() == 5 || timeout.count() == 6); // the last tick and the end fall together
    QVERIFY(real.elapsed() < 60'000);
}

void VirtualClockTest::execWaitsForThread()
{
    QEventLoop loop;
    const std::unique_ptr<QThread> thread(QThread::create([&loop] {
        QThread::msleep(5); // real time, while the loop waits
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    }));
    thread->start();
    loop.exec();
    QVERIFY(thread->wait());
    QCOMPARE(elapsed(), qint64(0));
}

void VirtualClockTest::idleWait()
{
    m_clock->setIdle(VirtualClock::Idle::Wait);
    QCOMPARE(m_clock->idle(), VirtualClock::Idle::Wait);
    QTimer timer;
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(5);
    QEventLoop loop;
    const std::unique_ptr<QThread> thread(QThread::create([&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); }));
    thread->start();
    loop.exec();
    QVERIFY(thread->wait());
    QCOMPARE(elapsed(), qint64(0));
    QCOMPARE(timeout.count(), 0);
    m_clock->advance(5);
    QCOMPARE(timeout.count(), 1);
}

void VirtualClockTest::descriptors()
{
    std::array<int, 2> ends = {};
    QCOMPARE(pipe(ends.data()), 0);
    QSocketNotifier readable(ends[0], QSocketNotifier::Read);
    QSocketNotifier writable(ends[1], QSocketNotifier::Write);
    writable.setEnabled(false);
    int reads = 0;
    int writes = 0;
    connect(&readable, &QSocketNotifier::activated, this, [&reads, &ends] {
        char byte = 0;
        reads += static_cast<int>(::read(ends[0], &byte, 1));
    });
    connect(&writable, &QSocketNotifier::activated, this, [&writes, &writable] {
        ++writes;
        writable.setEnabled(false);
    });
    QCoreApplication::processEvents();
    QCOMPARE(reads, 0);
    QCOMPARE(::write(ends[1], "x", 1), ssize_t(1));
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCOMPARE(reads, 0);
    QCoreApplication::processEvents();
    QCOMPARE(reads, 1);
    writable.setEnabled(true);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(writes, 1);
    readable.setEnabled(false);
    ::close(ends[0]);
    ::close(ends[1]);
}

void VirtualClockTest::processRuns()
{
    QProcess process;
    QEventLoop loop;
    connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop, &QEventLoop::quit);
    process.start(QStringLiteral("cat"), QStringList());
    process.write("through the event loop");
    process.closeWriteChannel();
    loop.exec();
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAll(), QByteArray("through the event loop"));
}

void VirtualClockTest::longDrive()
{
    QTimer timer;
    QSignalSpy timeout(&timer, &QTimer::timeout);
    timer.start(50);
    m_clock->advance(10 * 60 * 1000);
    QCOMPARE(timeout.count(), 12'000);
}

void VirtualClockTest::journalTime()
{
    using namespace audio::SPAudioSetting;
    simulator::Platform *const platform = simulator::Platform::instance();
    platform->reset();
    QTimer::singleShot(250, this, [] { destroy(createMixer()); });
    m_clock->advance(1000);
    QCOMPARE(platform->now(), m_clock->now());
    QCOMPARE(platform->journal()->count(), 2);
    QCOMPARE(platform->journal()->entries().at(0).time, m_start + 250);
}

void VirtualClockTest::slowPlatform()
{
    using namespace audio::SPAudioSetting;
    simulator::Platform *const platform = simulator::Platform::instance();
    platform->reset();
    platform->setCallDuration(100);
    qint64 late = -1;
    QTimer::singleShot(150, this, [this, &late] { late = elapsed(); });
    destroy(createMixer());
    QCOMPARE(elapsed(), qint64(200));
    QCOMPARE(late, qint64(-1));
    QCoreApplication::processEvents();
    QCOMPARE(late, qint64(200));
    platform->reset();
}

void VirtualClockTest::nextDeadline()
{
    QCOMPARE(m_clock->nextDeadline(), qint64(-1));
    QTimer late;
    late.start(300);
    QTimer early;
    early.start(200);
    QCOMPARE(m_clock->nextDeadline(), m_start + 200);
    m_clock->block(250);
    QCOMPARE(m_clock->nextDeadline(), m_start + 250);
    early.stop();
    QCOMPARE(m_clock->nextDeadline(), m_start + 300);
}

void VirtualClockTest::ofAThread()
{
    m_clock->advance(70);
    VirtualClock *found = nullptr;
    QVector<qint64> times;
    const std::unique_ptr<QThread> thread(QThread::create([&found, &times] {
        VirtualClock *const clock = VirtualClock::installed();
        found = clock;
        if (!clock)
            return;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &timer, [clock, &times] { times.append(clock->now()); });
        timer.start(500);
        clock->advance(1600);
        times.append(clock->now());
        // An event loop jumps to the deadline, too.
        QEventLoop loop;
        QTimer::singleShot(250, &loop, &QEventLoop::quit);
        loop.exec();
        times.append(clock->now());
    }));
    VirtualClock *const installed = VirtualClock::install(*thread);
    thread->start();
    QVERIFY(thread->wait());
    QCOMPARE(found, installed);
    QCOMPARE(times, QVector<qint64>({500, 1000, 1500, 1600, 1850}));
    // Neither time is that of the other.
    QCOMPARE(VirtualClock::installed(), m_clock);
    QCOMPARE(elapsed(), qint64(70));

    bool isReal = false;
    const std::unique_ptr<QThread> other(QThread::create([&isReal] { isReal = VirtualClock::installed() == nullptr; }));
    other->start();
    QVERIFY(other->wait());
    QVERIFY(isReal);
}

namespace
{

/// Lives until static objects are destroyed, after the application object and its event dispatcher.
QTimer *lateTimer()
{
    static QTimer timer;
    return &timer;
}

} // namespace

int main(int argc, char **argv)
{
    VirtualClock::install();
    QCoreApplication application(argc, argv);
    VirtualClockTest test;
    const int result = QTest::qExec(&test, argc, argv);
    lateTimer()->start(1000);
    return result;
}

#include "tst_virtualclock.moc"
