#include "audiopolicyinspector.h"
#include "headunit.h"
#include "journal.h"
#include "platform.h"
#include "policytimers.h"
#include "virtualclock.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <memory>

using simulator::Platform;
using simulator::VirtualClock;

namespace
{

/// What the watcher tells and what the platform is called, in the order of their coming.
class Record : public QObject
{
public:
    Record(const PolicyTimers &timers, QStringList &lines)
    {
        connect(&timers, &PolicyTimers::runsOut, this, [&](const QString &purpose) {
            lines += QStringLiteral("timer: ") + purpose;
            running.append(purpose);
        });
        connect(&timers, &PolicyTimers::statusChanged, this, [&](int before, int now) { lines += QStringLiteral("status: %1 to %2").arg(before).arg(now); });
        connect(&timers, &PolicyTimers::hasRun, this, [&](const QString &purpose) {
            lines += QStringLiteral("end: ") + purpose;
            QCOMPARE(running.isEmpty() ? QString() : running.takeLast(), purpose);
        });
        connect(Platform::instance()->journal(), &simulator::Journal::appended, this, [&](const simulator::JournalEntry &entry) {
            if (!entry.isCreate() && !entry.isDestroy())
                lines += current() + QStringLiteral(" > ") + entry.operation;
        });
    }

    /// What the timer that is running out right now is for; empty when none is.
    QString current() const { return running.isEmpty() ? QString() : running.last(); }

private:
    QStringList running;
};

} // namespace

/// Which timer runs out, before what it causes; and the status that a timer brings.
class PolicyTimersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void causesStandBetween();
    void whatOthersDoComesLater();
    void everyTimerIsTold_data();
    void everyTimerIsTold();
    void theStatusChangesByItself();
    void whatIsReportedIsNoChangeByItself();
    void aPowerCycle();
    void anotherManagerWhileTheFirstOneLives();
    void realTime();
};

void PolicyTimersTest::init()
{
    QFile::remove(QStringLiteral("/media/flash/nvm/audioData.db"));
    Platform::instance()->reset();
}

void PolicyTimersTest::causesStandBetween()
{
    HeadUnit unit;
    PolicyTimers timers;
    timers.watch(unit.manager());
    VirtualClock::installed()->advance(1000); // the start's own writes
    QStringList lines;
    const Record record(timers, lines);
    unit.manager()->setAudioMute(true, 4);
    QCOMPARE(lines, QStringList({QStringLiteral(" > muteTrack"), QStringLiteral(" > muteTrack")}));
    lines.clear();
    VirtualClock::installed()->advance(199);
    QCOMPARE(lines, QStringList());
    VirtualClock::installed()->advance(1);
    QCOMPARE(lines,
             QStringList({QStringLiteral("timer: unmute after the timed mute"),
                          QStringLiteral("unmute after the timed mute > unmuteTrack"),
                          QStringLiteral("unmute after the timed mute > unmuteTrack"),
                          QStringLiteral("end: unmute after the timed mute")}));
    QCOMPARE(record.current(), QString());
}

void PolicyTimersTest::whatOthersDoComesLater()
{
    ZelAudioManager manager;
    PolicyTimers timers;
    timers.watch(&manager);
    VirtualClock::installed()->advance(1000);
    QStringList lines;
    const Record record(timers, lines);
    const auto all = AudioPolicyInspector(manager).timers();
    const QTimer *const muteTimer = all.first().timer;
    connect(muteTimer, &QTimer::timeout, &timers, [told = &lines, asked = &record] { *told += QStringLiteral("another") + asked->current(); });
    timers.watch(&manager); // keeps its place
    manager.setAudioMute(true, 1);
    VirtualClock::installed()->advance(50);
    QCOMPARE(lines.mid(lines.size() - 2), QStringList({QStringLiteral("end: unmute after the timed mute"), QStringLiteral("another")}));
}

void PolicyTimersTest::everyTimerIsTold_data()
{
    QTest::addColumn<int>("index"); // in the order of the inspector
    QTest::addColumn<QString>("purpose");
    QTest::newRow("timed mute") << 0 << QStringLiteral("unmute after the timed mute");
    QTest::newRow("deferred volume") << 1 << QStringLiteral("write pending volumes again");
    QTest::newRow("custom equalizer") << 2 << QStringLiteral("take a repeated equalizer gain again");
    QTest::newRow("first equalizer") << 3 << QStringLiteral("set the equalizer again after the first channel");
    QTest::newRow("CarPlay alert") << 4 << QStringLiteral("apply the prompts' volume while ducked");
    QTest::newRow("CarPlay unduck") << 5 << QStringLiteral("restore after the projection's prompt or reverse gear");
}

void PolicyTimersTest::everyTimerIsTold()
{
    QFETCH(int, index);
    QFETCH(QString, purpose);
    ZelAudioManager manager;
    PolicyTimers timers;
    timers.watch(&manager);
    VirtualClock::installed()->advance(1000);
    QSignalSpy runsOut(&timers, &PolicyTimers::runsOut);
    const auto entries = AudioPolicyInspector(manager).timers();
    QCOMPARE(entries.size(), 6);

    switch (index) {
    case 0:
        manager.setAudioMute(true, 1);
        break;
    case 1:
        manager.setVolume(ZelAudioTypeMedia, 5, false);
        break;
    case 2:
        manager.adjustCustomEq(3, 0);
        break;
    case 3:
        entries.at(index).timer->start(); // the first channel comes once in a process
        break;
    case 4:
        manager.cpDuckAudio(0, 0);
        break;
    default:
        manager.cpUnduckAudio(0);
        break;
    }
    QVERIFY(entries.at(index).timer->isActive());
    VirtualClock::installed()->advance(2000);
    QCOMPARE(runsOut.count(), 1);
    QCOMPARE(runsOut.first().first().toString(), purpose);
}

void PolicyTimersTest::theStatusChangesByItself()
{
    HeadUnit unit;
    PolicyTimers timers;
    timers.watch(unit.manager());
    unit.manager()->updateAudioChannel(AudioChannelCarPlayMedia);
    VirtualClock::installed()->advance(3000);
    QStringList lines;
    const Record record(timers, lines);
    unit.manager()->cpDuckAudio(0, 0);
    lines.clear();
    VirtualClock::installed()->advance(1000);
    QCOMPARE(lines,
             QStringList({QStringLiteral("timer: apply the prompts' volume while ducked"),
                          QStringLiteral("apply the prompts' volume while ducked > setTrackVolume"),
                          QStringLiteral("status: 0 to 10"),
                          QStringLiteral("end: apply the prompts' volume while ducked")}));
    lines.clear();
    unit.manager()->cpUnduckAudio(0);
    VirtualClock::installed()->advance(500);
    QCOMPARE(lines,
             QStringList({QStringLiteral("timer: restore after the projection's prompt or reverse gear"),
                          QStringLiteral("restore after the projection's prompt or reverse gear > setTrackVolume"),
                          QStringLiteral("restore after the projection's prompt or reverse gear > setDuckingMode"),
                          QStringLiteral("status: 10 to 11"),
                          QStringLiteral("end: restore after the projection's prompt or reverse gear")}));
}

void PolicyTimersTest::whatIsReportedIsNoChangeByItself()
{
    HeadUnit unit;
    PolicyTimers timers;
    timers.watch(unit.manager());
    QSignalSpy changes(&timers, &PolicyTimers::statusChanged);
    unit.manager()->setAudioMute(true, 10);
    unit.manager()->updateAudioStatus(AudioStatusBtPhoneTelephony);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(changes.count(), 0);
}

void PolicyTimersTest::aPowerCycle()
{
    HeadUnit unit;
    PolicyTimers timers;
    timers.watch(unit.manager());
    timers.watch(unit.manager()); // once more changes nothing
    QSignalSpy runsOut(&timers, &PolicyTimers::runsOut);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(runsOut.count(), 1); // the start writes volumes again
    unit.switchOff();
    timers.watch(nullptr);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(runsOut.count(), 1);
    timers.watch(unit.manager());
    unit.manager()->cpUnduckAudio(0);
    QSignalSpy changes(&timers, &PolicyTimers::statusChanged);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(runsOut.count(), 3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.first(), QVariantList({0, 11}));
}

void PolicyTimersTest::anotherManagerWhileTheFirstOneLives()
{
    HeadUnit first;
    HeadUnit second;
    PolicyTimers timers;
    timers.watch(first.manager());
    timers.watch(second.manager());
    VirtualClock::installed()->advance(1000);
    QSignalSpy runsOut(&timers, &PolicyTimers::runsOut);
    QSignalSpy hasRun(&timers, &PolicyTimers::hasRun);
    first.manager()->setAudioMute(true, 1);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(runsOut.count(), 0);
    QCOMPARE(hasRun.count(), 0);
    second.manager()->setAudioMute(true, 1);
    VirtualClock::installed()->advance(1000);
    QCOMPARE(runsOut.count(), 1);
    QCOMPARE(hasRun.count(), 1);
}

void PolicyTimersTest::realTime()
{
    // Time is virtual on the main thread only.
    QStringList lines;
    qint64 elapsed = 0;
    const std::unique_ptr<QThread> thread(QThread::create([&lines, &elapsed] {
        ZelAudioManager manager;
        PolicyTimers timers;
        timers.watch(&manager);
        QEventLoop loop;
        connect(&timers, &PolicyTimers::hasRun, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        const Record record(timers, lines);
        QElapsedTimer clock;
        clock.start();
        manager.setAudioMute(true, 1); // sooner than what the start writes again
        lines.clear();
        loop.exec();
        elapsed = clock.elapsed();
    }));
    thread->start();
    QVERIFY(thread->wait());
    QCOMPARE(lines,
             QStringList({QStringLiteral("timer: unmute after the timed mute"),
                          QStringLiteral("unmute after the timed mute > unmuteTrack"),
                          QStringLiteral("unmute after the timed mute > unmuteTrack"),
                          QStringLiteral("end: unmute after the timed mute")}));
    QVERIFY2(elapsed >= 50, qPrintable(QString::number(elapsed)));
}

int main(int argc, char **argv)
{
    VirtualClock::install();
    QCoreApplication application(argc, argv);
    PolicyTimersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_policytimers.moc"
