#include "childprocess.h"
#include "policytest.h"

#include <situationexpectations.h>

#include <qzaudio/audiocontrol.h>

#include <QtCore/QMetaMethod>

#include <algorithm>
#include <csignal>

using TimerOf = QTimer &(*)(ZelAudioManager &);
Q_DECLARE_METATYPE(TimerOf)

namespace
{

/// Volumes as they reach the platform: volume × 4, and for telephone, ring, alert, speech and aux-in sources × 1.5, 148 at most.
struct StartVolumes
{
    int media;
    int auxIn;
    int prompt;
    int telephony;
    int ring;
    int speech;

    int of(const expectation::Stream &stream) const
    {
        const int plain[] = {media, prompt, telephony, ring, speech};
        return stream.type == 0 && stream.source.boosted ? auxIn : plain[stream.type];
    }
};

QString trackVolume(const char *source, int volume)
{
    return QStringLiteral("Volume.setTrackVolume(\"main\", \"%1\", %2) -> 0").arg(QLatin1String(source)).arg(volume);
}

/// What every source of the main track is given first. Their order is that of a hash.
QStringList stepVolumes(const StartVolumes &volumes)
{
    QStringList lines = {trackVolume("S+AndroidAuto", volumes.media)}; // as a member of the file player's group, and once more as itself
    for (const expectation::Stream &stream : expectation::streams)
        lines += trackVolume(stream.source.platformName, volumes.of(stream));
    lines.sort();
    return lines;
}

/// What the volume types 0 to 4 are given at the end, by type.
QStringList pushedMedia(const StartVolumes &volumes)
{
    return calls::volumeOfType(0, volumes.media, volumes.auxIn);
}

QStringList pushedPrompt(const StartVolumes &volumes)
{
    return calls::fresh(QStringLiteral("Volume.setAlterTrackVolume(%1) -> 0").arg(volumes.prompt));
}

// All of these sources are boosted.
QStringList pushedTelephony(const StartVolumes &volumes)
{
    return calls::volumeOfType(2, -1, volumes.telephony);
}

QStringList pushedRing(const StartVolumes &volumes)
{
    return calls::volumeOfType(3, -1, volumes.ring);
}

QStringList pushedSpeech(const StartVolumes &volumes)
{
    return calls::volumeOfType(4, -1, volumes.speech);
}

QStringList pushedVolumes(const StartVolumes &volumes)
{
    return pushedMedia(volumes) + pushedPrompt(volumes) + pushedTelephony(volumes) + pushedRing(volumes) + pushedSpeech(volumes);
}

QStringList micAnalogGain(int gain)
{
    return calls::fresh(QStringLiteral("Volume.setMicAnalogGain(%1, %1) -> 0").arg(gain));
}

QStringList handsfreeDelay(int delay)
{
    return calls::fresh(QStringLiteral("Source.setHandsfreeDelay(%1) -> 0").arg(delay));
}

QStringList micStages(const char *stage, int rest)
{
    return {
        QStringLiteral("Volume.create() -> ok"),
        QStringLiteral("Volume.setMicOpGain(0, %1, %1) -> 0").arg(QLatin1String(stage)),
        QStringLiteral("Volume.setMicPgaGain(0, %1, %1) -> 0").arg(rest),
        QStringLiteral("Volume.destroy()"),
    };
}

/// Brings the one block whose order is a hash's into alphabetical order.
QStringList withSortedStepVolumes(QStringList lines)
{
    const auto first = std::find_if(lines.begin(), lines.end(), [](const QString &line) { return line.startsWith(QLatin1String("Volume.setTrackVolume")); });
    const auto last = std::find(first, lines.end(), QStringLiteral("Volume.destroy()"));
    std::sort(first, last);
    return lines;
}

const StartVolumes defaultVolumes = {80, 120, 120, 120, 120, 120};

} // namespace

class ZelAudioManagerStartUpTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void everyCallAndWriteInOrder_data();
    void everyCallAndWriteInOrder();
    void volumeGroupIsSetMembersFirst();
    void stateAfterTheStart();
    void timers_data();
    void timers();
    void membersStandInOrder();
    void metaObjectHoldsFourSignalsAndTwoSlots();
    void instanceIsOneObject();
    void firstVolumesAreWrittenAgain();
    void stepRangeIsTwentyFive();
    void managerOwnsItsStore();
    void endOfProcess_data();
    void endOfProcess();
    void usedByStaticObject_data();
    void usedByStaticObject();
};

void ZelAudioManagerStartUpTest::everyCallAndWriteInOrder_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<int>("homeUiType");
    QTest::addColumn<QStringList>("expected");

    const QStringList facade = {QStringLiteral("Volume.create() -> ok"), QStringLiteral("App.create() -> ok")};
    const QStringList begin = facade + QStringList{QStringLiteral("Volume.create() -> ok")};
    const QStringList end = {QStringLiteral("Volume.destroy()")};
    const QString loudnessOff = QStringLiteral("App.setLoudness({on: 0, onAgain: 0, level: 800}) -> 0");
    const QString masterVolume = QStringLiteral("Volume.setMasterVolume(100) -> 0");
    const QString originalMicrophone = QStringLiteral("Source.setMicLeftRightSwitch(false) -> 0");
    const QString armMicrophone = QStringLiteral("Source.setMicLeftRightSwitch(true) -> 0");

    const auto wholeStart = [&](const StartVolumes &volumes, const char *micStage, int micRest) {
        return begin + stepVolumes(volumes) + end + QStringList{QStringLiteral("Volume.setMicVolume(12) -> 0"), QStringLiteral("file: Volume/VolumeMic=12")}
        + QStringList{loudnessOff, QStringLiteral("file: Volume/Loudness=false")} + calls::equalizer(calls::curveOf(2.0F))
            + QStringList{QStringLiteral("file: EQ/Type=6")} + calls::fresh(originalMicrophone) + QStringList{QStringLiteral("file: Volume/MicType=true")}
        + micAnalogGain(0) + handsfreeDelay(0) + QStringList{masterVolume} + micAnalogGain(0) + micStages(micStage, micRest) + pushedVolumes(volumes);
    };

    QTest::newRow("the first start of a new head unit") << QVariantMap() << 0 << wholeStart(defaultVolumes, "0", 0);
    QTest::newRow("home screen 7 starts at full volume") << QVariantMap() << 7 << wholeStart({100, 148, 148, 148, 148, 148}, "0", 0);
    QTest::newRow("home screen 6 has no defaults of its own") << QVariantMap() << 6 << wholeStart(defaultVolumes, "0", 0);

    const QVariantMap everything = {
        {QStringLiteral("Volume/0"), 10},
        {QStringLiteral("Volume/1"), 11},
        {QStringLiteral("Volume/2"), 12},
        {QStringLiteral("Volume/3"), 13},
        {QStringLiteral("Volume/4"), 14},
        {QStringLiteral("Volume/5"), 9},
        {QStringLiteral("Volume/VolumeMic"), 30},
        {QStringLiteral("Volume/Loudness"), true},
        {QStringLiteral("Volume/MicType"), false},
        {QStringLiteral("Volume/AutoMicGainOrig"), 5},
        {QStringLiteral("Volume/AutoMicGainArm"), 20},
        {QStringLiteral("Volume/MicDelayOrig"), 80},
        {QStringLiteral("Volume/MicDelayArm"), 120},
        {QStringLiteral("EQ/Type"), 3},
    };
    const StartVolumes storedVolumes = {40, 60, 66, 72, 78, 84};
    const calls::Curve preset3 = {6, 5, 4, 0, 0, 0, 3, 4, 4, 2, 0, 0, 5, 5, 5, 5};
    // Written though nothing is new, but for the loudness, which is off after every start.
    const QString unchanged = QStringLiteral("file: nothing new");
    QTest::newRow("stored settings of a unit with the arm microphone") << everything << 7
                                                                       << begin + stepVolumes(storedVolumes) + end
            + QStringList{QStringLiteral("Volume.setMicVolume(30) -> 0"), unchanged} + QStringList{loudnessOff, QStringLiteral("file: Volume/Loudness=false")}
            + calls::equalizer(preset3) + QStringList{unchanged} + calls::fresh(armMicrophone) + QStringList{unchanged} + micAnalogGain(20)
            + handsfreeDelay(120) + QStringList{masterVolume} + micAnalogGain(20) + micStages("21", -1) + pushedVolumes(storedVolumes);

    QVariantMap custom = {{QStringLiteral("EQ/Type"), 7}};
    calls::Curve customCurve = {};
    for (int band = 0; band < 16; ++band) {
        const int gain = band * 2 - 14;
        custom.insert(QStringLiteral("EQ/Custom%1").arg(band), gain < -12 ? -12 : gain > 12 ? 12 : gain);
        customCurve[static_cast<std::size_t>(band)] = static_cast<float>(gain < -12 ? -12 : gain > 12 ? 12 : gain);
    }
    QTest::newRow("a stored custom curve sounds from the start")
        << custom << 0
        << begin + stepVolumes(defaultVolumes) + end + QStringList{QStringLiteral("Volume.setMicVolume(12) -> 0"), QStringLiteral("file: Volume/VolumeMic=12")}
            + QStringList{loudnessOff, QStringLiteral("file: Volume/Loudness=false")} + calls::equalizer(customCurve) + QStringList{unchanged}
            + calls::fresh(originalMicrophone) + QStringList{QStringLiteral("file: Volume/MicType=true")} + micAnalogGain(0) + handsfreeDelay(0)
            + QStringList{masterVolume} + micAnalogGain(0) + micStages("0", 0) + pushedVolumes(defaultVolumes);

    // A step volume is held at its range, a stream volume beyond 148 and an alternative volume beyond 100 are refused.
    const QVariantMap tooLoud = {{QStringLiteral("Volume/0"), 50}, {QStringLiteral("Volume/1"), 50}, {QStringLiteral("Volume/VolumeMic"), 92}};
    const StartVolumes held = {100, 148, 120, 120, 120, 120};
    QTest::newRow("volumes edited beyond their range are not pushed")
        << tooLoud << 0
        << begin + stepVolumes(held) + end + QStringList{unchanged} + QStringList{loudnessOff, QStringLiteral("file: Volume/Loudness=false")}
            + calls::equalizer(calls::curveOf(2.0F)) + QStringList{QStringLiteral("file: EQ/Type=6")} + calls::fresh(originalMicrophone)
            + QStringList{QStringLiteral("file: Volume/MicType=true")} + micAnalogGain(0) + handsfreeDelay(0) + QStringList{masterVolume} + micAnalogGain(0)
            + micStages("0", 0) + pushedTelephony(held) + pushedRing(held) + pushedSpeech(held);
}

void ZelAudioManagerStartUpTest::everyCallAndWriteInOrder()
{
    QFETCH(QVariantMap, settings);
    QFETCH(int, homeUiType);
    QFETCH(QStringList, expected);
    for (auto entry = settings.cbegin(); entry != settings.cend(); ++entry)
        store(entry.key(), entry.value());

    const ChildProcess process({QStringLiteral("start"), QString::number(homeUiType)});

    QCOMPARE(process.exitStatus, QProcess::NormalExit);
    QCOMPARE(process.exitCode, 0);
    QCOMPARE(withSortedStepVolumes(process.outputLines()), expected);
}

void ZelAudioManagerStartUpTest::volumeGroupIsSetMembersFirst()
{
    const ChildProcess process({QStringLiteral("start"), QStringLiteral("0")});
    const int filePlayer = process.outputLines().indexOf(trackVolume("S+FilePlayer", 80));
    QVERIFY(filePlayer > 0);
    QCOMPARE(process.outputLines().at(filePlayer - 1), trackVolume("S+AndroidAuto", 80));
}

void ZelAudioManagerStartUpTest::stateAfterTheStart()
{
    startOnly();
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    QCOMPARE(manager->currentAudioChannel(), 0);
    QCOMPARE(manager->getCPConnected(), false);
    QCOMPARE(managerstate::cpDucking(*manager), false);
    QCOMPARE(manager->isAttOn(), false);
    QCOMPARE(manager->loudNess(), false);
    QCOMPARE(manager->eqType(), 6);
    QCOMPARE(manager->micInputValue(), 12);
    QCOMPARE(manager->micTypeIsDefault(), true);
    // Type 1's volume, 20, and not type 5's, 15.
    QCOMPARE(platform->chip()->alternativeVolume(), 120);
    QCOMPARE(manager->getVolume(ZelAudioTypeHiCarCall), 15);
    QCOMPARE(storedLines(),
             QStringList({QStringLiteral("EQ/Type=6"),
                          QStringLiteral("Volume/Loudness=false"),
                          QStringLiteral("Volume/MicType=true"),
                          QStringLiteral("Volume/VolumeMic=12")}));
}

void ZelAudioManagerStartUpTest::timers_data()
{
    struct Row
    {
        const char *name;
        TimerOf timer;
        int interval;
        Qt::TimerType type;
        bool runsAtStart;
    };
    // The two without an interval of their own get it when they are started; volumes were pushed at the start.
    const Row rows[] = {
        {"muteTimer", managerstate::muteTimer, 0, Qt::PreciseTimer, false},
        {"delayVolumeTimer", managerstate::delayVolumeTimer, 500, Qt::CoarseTimer, true},
        {"customEqTimer", managerstate::customEqTimer, 500, Qt::CoarseTimer, false},
        {"firstEqTimer", managerstate::firstEqTimer, 2000, Qt::CoarseTimer, false},
        {"cpAlertTimer", managerstate::cpAlertTimer, 1000, Qt::CoarseTimer, false},
        {"cpUnduckTimer", managerstate::cpUnduckTimer, 500, Qt::CoarseTimer, false},
    };
    QTest::addColumn<TimerOf>("timerOf");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("runsAtStart");
    for (const Row &row : rows)
        QTest::newRow(row.name) << row.timer << row.interval << int(row.type) << row.runsAtStart;
}

void ZelAudioManagerStartUpTest::timers()
{
    QFETCH(TimerOf, timerOf);
    QFETCH(int, interval);
    QFETCH(int, type);
    QFETCH(bool, runsAtStart);
    startOnly();
    const QTimer &timer = timerOf(*manager);
    QCOMPARE(timer.isSingleShot(), true);
    QCOMPARE(timer.interval(), interval);
    QCOMPARE(int(timer.timerType()), type);
    QCOMPARE(timer.isActive(), runsAtStart);
    QCOMPARE(timer.parent(), nullptr);
}

void ZelAudioManagerStartUpTest::membersStandInOrder()
{
    startOnly();
    const QList<const void *> addresses = managerstate::memberAddresses(*manager);
    QCOMPARE(addresses.size(), 14);
    QVERIFY(std::is_sorted(addresses.cbegin(), addresses.cend(), std::less<>()));
    QVERIFY(addresses.constFirst() > static_cast<const void *>(manager.get()));
}

void ZelAudioManagerStartUpTest::metaObjectHoldsFourSignalsAndTwoSlots()
{
    const QMetaObject &meta = ZelAudioManager::staticMetaObject;
    QStringList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        const QLatin1String kind(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ");
        methods += kind + QString::fromLatin1(method.methodSignature());
    }
    const QStringList expected = {
        QStringLiteral("signal audioChannel(int)"),
        QStringLiteral("signal volumeChanged()"),
        QStringLiteral("signal audioVolumeChanged(bool,int)"),
        QStringLiteral("signal zelvolumeChanged(bool,int,int)"),
        QStringLiteral("slot onCarplayAlertStart()"),
        QStringLiteral("slot onCarplayAlertStop()"),
    };
    QCOMPARE(methods, expected);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.constructorCount(), 0);
}

void ZelAudioManagerStartUpTest::instanceIsOneObject()
{
    // In a process of its own the whole journal above shows one construction; here the second call adds nothing.
    ZelAudioManager *first = ZelAudioManager::instance();
    takeCalls();
    log->take();
    QCOMPARE(ZelAudioManager::instance(), first);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
    clock->advance(500); // what the first call left pending
    takeCalls();
}

void ZelAudioManagerStartUpTest::firstVolumesAreWrittenAgain()
{
    startOnly();
    takeCalls();
    const QList<ZelAudioType> pushed = {ZelAudioTypeMedia, ZelAudioTypeTelephony, ZelAudioTypeRing};
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), pushed);
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    // Of three the second is dropped and the third stays for the next time.
    QCOMPARE(takeCalls(), pushedMedia(defaultVolumes) + pushedRing(defaultVolumes));
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>{ZelAudioTypeRing});
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
    // So the first volume set after the start is not the one that is written again.
    manager->setVolume(ZelAudioTypeMedia, 5, false);
    takeCalls();
    clock->advance(500);
    QCOMPARE(takeCalls(), pushedRing(defaultVolumes));
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>{ZelAudioTypeMedia});
}

void ZelAudioManagerStartUpTest::stepRangeIsTwentyFive()
{
    audio::AudioControl::getInstance()->setStepRange(100);
    startOnly();
    QCOMPARE(int(audio::AudioControl::getInstance()->getStepRang()), 25);
    QCOMPARE(int(audio::AudioControl::getInstance()->getMasterStepVolume()), 25);
}

void ZelAudioManagerStartUpTest::managerOwnsItsStore()
{
    startOnly();
    QCOMPARE(manager->parent(), nullptr);
    QCOMPARE(manager->children().size(), 1);
    QCOMPARE(manager->children().constFirst()->metaObject()->className(), "audio::AudioDataBase");
    QObject parent;
    const auto owned = std::make_unique<ZelAudioManager>(&parent);
    QCOMPARE(owned->parent(), &parent);
}

void ZelAudioManagerStartUpTest::endOfProcess_data()
{
    QTest::addColumn<QString>("application");
    QTest::addColumn<int>("timersRefused");
    QTest::newRow("the application object is gone before the manager") << QStringLiteral("destroyed") << 0;
    QTest::newRow("the application object outlives the manager") << QStringLiteral("living") << 0;
    // Without an event loop timers cannot start, which Qt tells for each try: pushed volumes at the start (3), first channel,
    // volume, mute, custom equalizer, unduck, duck.
    QTest::newRow("there never was an application object") << QStringLiteral("never") << 9;
}

void ZelAudioManagerStartUpTest::endOfProcess()
{
    QFETCH(QString, application);
    QFETCH(int, timersRefused);
    const ChildProcess process({QStringLiteral("end"), application});
    QCOMPARE(process.exitStatus, QProcess::NormalExit);
    QCOMPARE(process.exitCode, 0);
    QStringList expected = {QStringLiteral("qzaudio.simulator: This is the simulated audio platform: nothing reaches any hardware.")};
    if (timersRefused > 0) // told once
        expected += QStringLiteral("[ERR] THREAD ZelAudioManager::ZelAudioManager(QObject*) LINE -- no event loop on this thread: timers will not run");
    for (int i = 0; i < timersRefused; ++i)
        expected += QStringLiteral("QObject::startTimer: Timers can only be used with threads started with QThread");
    QStringList lines = process.errorLines();
    lines.replaceInStrings(QRegularExpression(QStringLiteral("^\\[ERR\\] \\d+ (.*) \\d+ --")), QStringLiteral("[ERR] THREAD \\1 LINE --"));
    QCOMPARE(lines, expected);
    QCOMPARE(stored(QStringLiteral("Volume/0")).toInt(), 10);
    QCOMPARE(stored(QStringLiteral("EQ/Custom3")).toInt(), 4);
}

void ZelAudioManagerStartUpTest::usedByStaticObject_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QStringList>("output");
    QTest::newRow("manager") << QStringLiteral("manager")
                             << QStringList{
                                    QStringLiteral("channel 3"), // the manager that there was, not a new one
                                    QStringLiteral("Volume.muteTrack(\"main\", 0) -> 0"),
                                    QStringLiteral("Volume.muteTrack(\"alternative\", 0) -> 0"),
                                    trackVolume("S+CarPlayTelephony", 120),
                                    QStringLiteral("saved 33"),
                                    QStringLiteral("client is gone"),
                                    QStringLiteral("manager is gone"), // destroyed at exit nevertheless
                                };
    QTest::newRow("focus") << QStringLiteral("focus")
                           << QStringList{
                                  QStringLiteral("told -2"),
                                  QStringLiteral("null client requests 0"),
                                  QStringLiteral("told 1"),
                                  QStringLiteral("null client abandons 0"),
                                  QStringLiteral("client abandons 0"),
                                  QStringLiteral("client is gone"),
                              };
    QTest::newRow("facade") << QStringLiteral("facade")
                            << QStringList{
                                   QStringLiteral("Volume.unmuteTrack(\"main\", 0) -> 0"),
                                   QStringLiteral("Volume.unmuteTrack(\"alternative\", 0) -> 0"),
                                   QStringLiteral("client is gone"),
                               };
}

void ZelAudioManagerStartUpTest::usedByStaticObject()
{
    QFETCH(QString, what);
    const ChildProcess process({QStringLiteral("late"), what});
    QCOMPARE(process.exitStatus, QProcess::NormalExit);
    QCOMPARE(process.exitCode, 0);
    QTEST(process.outputLines(), "output");
}

POLICY_TEST_MAIN(ZelAudioManagerStartUpTest)

#include "tst_zelaudiomanager_startup.moc"
