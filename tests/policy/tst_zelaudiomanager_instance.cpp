#include "managerstate.h"

#include <journal.h>
#include <platform.h>

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <array>
#include <atomic>
#include <thread>

/// In a process of its own: the first instance() comes once in a process.
class ZelAudioManagerInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstCallFromTwoThreadsAtOnce();
};

void ZelAudioManagerInstanceTest::firstCallFromTwoThreadsAtOnce()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    simulator::Journal *journal = simulator::Platform::instance()->journal();

    // Threads without an event loop: the volumes that the start writes again after 500 ms are not written.
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral(" -- no event loop on this thread: timers will not run$")));
    for (int i = 0; i < 3; ++i)
        QTest::ignoreMessage(QtWarningMsg, "QObject::startTimer: Timers can only be used with threads started with QThread");

    std::atomic<int> waiting = 2;
    std::array<ZelAudioManager *, 2> managers = {};
    const auto callTogether = [&waiting](ZelAudioManager *&manager) {
        --waiting;
        while (waiting > 0) { }
        manager = ZelAudioManager::instance();
        // In its own thread, since that is gone when the manager is destroyed.
        if (manager->thread() == QThread::currentThread())
            managerstate::delayVolumeTimer(*manager).stop();
    };
    std::thread first(callTogether, std::ref(managers[0]));
    std::thread second(callTogether, std::ref(managers[1]));
    first.join();
    second.join();

    QVERIFY(managers[0]);
    QCOMPARE(managers[0], managers[1]);
    QCOMPARE(ZelAudioManager::instance(), managers[0]);
    // What a second construction would do again.
    QCOMPARE(journal->entriesOf(QStringLiteral("Volume.setMicVolume")).size(), 1);
    QCOMPARE(journal->entriesOf(QStringLiteral("App.setLoudness")).size(), 1);
    QCOMPARE(journal->entriesOf(QStringLiteral("Volume.setAlterTrackVolume")).size(), 1);
}

QTEST_GUILESS_MAIN(ZelAudioManagerInstanceTest)

#include "tst_zelaudiomanager_instance.moc"
