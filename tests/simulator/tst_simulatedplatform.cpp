#include <platform.h>
#include <program.h>

#include <mcuservice.h>
#include <settingsprovider.h>
#include <spaudiosetting.h>

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(simulator::ObjectKind)

using namespace audio::SPAudioSetting;
using simulator::Journal;
using simulator::JournalEntry;
using simulator::ObjectKind;
using simulator::Platform;

namespace
{

QStringList &criticalLines()
{
    static QStringList lines;
    return lines;
}

void recordCritical(QtMsgType level, const QMessageLogContext &context, const QString &text)
{
    if (level == QtCriticalMsg && qstrcmp(context.category, "qzaudio.simulator") == 0)
        criticalLines() += text;
}

} // namespace

class SimulatedPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void journalLinesOfOneObject();
    void journalEntryHoldsValues();
    void journalTells();
    void journalSwitchedOff();
    void journalFiltersByOperation();

    void faultAlways();
    void faultOnNthCall_data();
    void faultOnNthCall();
    void faultsTogether();
    void faultOfActiveSource();
    void faultOfAlterNumber();
    void faultAfterWriting();
    void factoryFault_data();
    void factoryFault();
    void unknownFaultIsRefused();
    void pendingFaults();

    void booksCount_data();
    void booksCount();
    void problems_data();
    void problems();
    void destroyedObjectChangesNothing();

    void exitReport_data();
    void exitReport();
    void saysThatItIsSimulated();

    void reverseGear();
    void homeUiType();
    void callsTakeTime();
    void resetBringsEverythingBack();
    void heldObjectsSurviveReset();

private:
    Platform *const m_platform = Platform::instance();
};

void SimulatedPlatformTest::init()
{
    m_platform->reset();
}

void SimulatedPlatformTest::cleanup()
{
    qInstallMessageHandler(nullptr);
    m_platform->reset();
}

void SimulatedPlatformTest::journalLinesOfOneObject()
{
    Volume *const first = createVolume();
    Volume *const second = createVolume();
    second->setTrackVolume("main", "S+FilePlayer", 80);
    first->setTrackVolume("mian", "S+FilePlayer", 80);
    destroy(second);
    destroy(first);

    QStringList lines;
    const QVector<JournalEntry> entries = m_platform->journal()->entries();
    for (const JournalEntry &entry : entries)
        lines += entry.line();
    const QString firstName = entries.at(0).object();
    const QString secondName = entries.at(1).object();
    QVERIFY(firstName != secondName);
    QCOMPARE(lines,
             QStringList({
                 firstName + QStringLiteral(".create() -> ok"),
                 secondName + QStringLiteral(".create() -> ok"),
                 secondName + QStringLiteral(".setTrackVolume(\"main\", \"S+FilePlayer\", 80) -> 0"),
                 firstName + QStringLiteral(".setTrackVolume(\"mian\", \"S+FilePlayer\", 80) -> 101"),
                 secondName + QStringLiteral(".destroy()"),
                 firstName + QStringLiteral(".destroy()"),
             }));
    QCOMPARE(m_platform->journal()->calls(),
             QStringList({
                 QStringLiteral("Volume.setTrackVolume(\"main\", \"S+FilePlayer\", 80) -> 0"),
                 QStringLiteral("Volume.setTrackVolume(\"mian\", \"S+FilePlayer\", 80) -> 101"),
             }));
    QCOMPARE(m_platform->journal()->calls(Journal::Lifetimes::Include).count(), 6);
    QVERIFY(m_platform->journal()->toText().contains(QLatin1String(" ms  ") + lines.at(3) + QLatin1String("  (unknown track)\n")));
}

void SimulatedPlatformTest::journalEntryHoldsValues()
{
    audio::audio_channel_gain_t gain = {4, 67, {}};
    Volume *const volume = createVolume();
    volume->setFadeBalance(&gain);
    destroy(volume);

    const JournalEntry entry = m_platform->journal()->entries().at(1);
    QCOMPARE(entry.kind, ObjectKind::Volume);
    QVERIFY(entry.number > 0);
    QCOMPARE(entry.operation, QStringLiteral("setFadeBalance"));
    QCOMPARE(entry.record, QByteArray(reinterpret_cast<const char *>(&gain), sizeof gain));
    const QVariantMap fields = entry.arguments.at(0).toMap();
    QCOMPARE(fields.value(QStringLiteral("channel")).toInt(), 4);
    QCOMPARE(fields.value(QStringLiteral("gain")).toInt(), 67);
    QCOMPARE(entry.result, QVariant(0));
    QCOMPARE(entry.note, QString());
}

void SimulatedPlatformTest::journalTells()
{
    QSignalSpy appended(m_platform->journal(), &Journal::appended);
    QSignalSpy cleared(m_platform->journal(), &Journal::cleared);
    Mixer *const mixer = createMixer();
    mixer->setFrontRearMode(0);
    destroy(mixer);
    QCOMPARE(appended.count(), 3);
    QCOMPARE(appended.at(1).at(0).value<JournalEntry>().call(), QStringLiteral("Mixer.setFrontRearMode(0) -> 0"));
    m_platform->journal()->clear();
    m_platform->journal()->clear();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(m_platform->journal()->count(), 0);
}

void SimulatedPlatformTest::journalSwitchedOff()
{
    m_platform->journal()->setEnabled(false);
    Mixer *const mixer = createMixer();
    QCOMPARE(mixer->setFrontRearMode(0), 0);
    destroy(mixer);
    QCOMPARE(m_platform->journal()->count(), 0);
    QCOMPARE(m_platform->chip()->frontRearMode(), 0);
    m_platform->journal()->setEnabled(true);
    destroy(createMixer());
    QCOMPARE(m_platform->journal()->count(), 2);
}

void SimulatedPlatformTest::journalFiltersByOperation()
{
    Mixer *const mixer = createMixer();
    mixer->setFrontRearMode(0);
    mixer->setFrontRearMode(1);
    destroy(mixer);
    QCOMPARE(m_platform->journal()->entriesOf(QStringLiteral("Mixer.setFrontRearMode")).count(), 2);
    QCOMPARE(m_platform->journal()->entriesOf(QStringLiteral("Mixer.destroy")).count(), 1);
    QCOMPARE(m_platform->journal()->entriesOf(QStringLiteral("Volume.create")).count(), 0);
}

void SimulatedPlatformTest::faultAlways()
{
    QVERIFY(m_platform->faults()->fail(QStringLiteral("Volume.setMasterVolume"), 7));
    Volume *const volume = createVolume();
    for (int call = 0; call < 3; ++call)
        QCOMPARE(volume->setMasterVolume(50), 7);
    QCOMPARE(volume->setDuckingMode(1), 0);
    QCOMPARE(m_platform->chip()->masterVolume(), 0);
    QCOMPARE(m_platform->journal()->entriesOf(QStringLiteral("Volume.setMasterVolume")).at(2).note, QStringLiteral("injected fault"));
    m_platform->faults()->clear();
    QCOMPARE(volume->setMasterVolume(50), 0);
    QCOMPARE(m_platform->chip()->masterVolume(), 50);
    destroy(volume);
}

void SimulatedPlatformTest::faultOnNthCall_data()
{
    QTest::addColumn<QList<int>>("failingCalls");
    QTest::addColumn<QList<int>>("results");

    QTest::newRow("first") << QList<int>{1} << QList<int>{9, 0, 0, 0};
    QTest::newRow("second") << QList<int>{2} << QList<int>{0, 9, 0, 0};
    QTest::newRow("fourth") << QList<int>{4} << QList<int>{0, 0, 0, 9};
    QTest::newRow("second and fourth") << QList<int>{2, 4} << QList<int>{0, 9, 0, 9};
    QTest::newRow("given in the other order") << QList<int>{4, 2} << QList<int>{0, 9, 0, 9};
    QTest::newRow("beyond the last") << QList<int>{5} << QList<int>{0, 0, 0, 0};
}

void SimulatedPlatformTest::faultOnNthCall()
{
    QFETCH(QList<int>, failingCalls);
    QFETCH(QList<int>, results);

    for (const int n : qAsConst(failingCalls))
        QVERIFY(m_platform->faults()->fail(QStringLiteral("App.setSpeakerDelay"), 9, n));
    App *const app = createApp();
    QList<int> seen;
    for (int call = 0; call < results.count(); ++call) {
        seen += app->setSpeakerDelay(1, 2);
        app->enableDps(); // counts for nothing
    }
    destroy(app);
    QCOMPARE(seen, results);
}

void SimulatedPlatformTest::faultsTogether()
{
    // The n-th call comes first where it was ordered first; a call of another operation counts for neither.
    QVERIFY(m_platform->faults()->fail(QStringLiteral("App.enableDps"), 5, 2));
    QVERIFY(m_platform->faults()->fail(QStringLiteral("App.enableDps"), 6));
    App *const app = createApp();
    QCOMPARE(app->enableDps(), 6);
    QCOMPARE(app->disableDps(), 0);
    QCOMPARE(app->enableDps(), 5);
    QCOMPARE(app->enableDps(), 6);
    destroy(app);
}

void SimulatedPlatformTest::faultOfActiveSource()
{
    Source *const source = createSource();
    QCOMPARE(source->setOutputSource("main", "S+GPS"), 0);
    QVERIFY(m_platform->faults()->fail(QStringLiteral("Source.getActiveSource"), 3, 1));
    QVERIFY(source->getActiveSource("main") == nullptr);
    QCOMPARE(source->getActiveSource("main"), "S+GPS");
    destroy(source);
    QCOMPARE(m_platform->journal()->calls().mid(1),
             QStringList({QStringLiteral("Source.getActiveSource(\"main\") -> null"), QStringLiteral("Source.getActiveSource(\"main\") -> \"S+GPS\"")}));
}

void SimulatedPlatformTest::faultOfAlterNumber()
{
    Source *const source = createSource();
    m_platform->chip()->setAlternativeCount(2);
    QVERIFY(m_platform->faults()->fail(QStringLiteral("Source.queryAlterNumber"), -5, 2));
    QCOMPARE(source->queryAlterNumber("alternative"), 2);
    QCOMPARE(source->queryAlterNumber("alternative"), -5);
    destroy(source);
    QCOMPARE(m_platform->journal()->calls().last(), QStringLiteral("Source.queryAlterNumber(\"alternative\") -> -5"));
}

void SimulatedPlatformTest::faultAfterWriting()
{
    simulator::Faults *const faults = m_platform->faults();
    m_platform->chip()->setMasterVolume(42);
    QVERIFY(faults->failAfterWriting(QStringLiteral("Volume.getMasterVolume"), 7));
    QVERIFY(faults->fail(QStringLiteral("Volume.getMasterVolume"), 8, 1));
    QVERIFY(faults->failAfterWriting(QStringLiteral("Volume.getTrackVolume"), 9));
    QCOMPARE(faults->pending().at(0), QStringLiteral("Volume.getMasterVolume 7 after writing always"));

    Volume *const volume = createVolume();
    unsigned char written = 255;
    QCOMPARE(volume->getMasterVolume(&written, 0), 7); // the fault that was ordered first
    QCOMPARE(int(written), 42);
    QCOMPARE(volume->getMasterVolume(nullptr, 0), 7);
    // What the chip refuses is not written.
    written = 255;
    QCOMPARE(volume->getTrackVolume("mian", "S+GPS", &written), 9);
    QCOMPARE(int(written), 255);
    faults->clear();
    QVERIFY(faults->fail(QStringLiteral("Volume.getMasterVolume"), 8));
    QCOMPARE(volume->getMasterVolume(&written, 0), 8);
    QCOMPARE(int(written), 255);
    destroy(volume);
    QCOMPARE(m_platform->journal()->calls(),
             QStringList({
                 QStringLiteral("Volume.getMasterVolume(0) -> 7, 42"),
                 QStringLiteral("Volume.getMasterVolume(0) -> 7"),
                 QStringLiteral("Volume.getTrackVolume(\"mian\", \"S+GPS\") -> 9"),
                 QStringLiteral("Volume.getMasterVolume(0) -> 8"),
             }));
}

void SimulatedPlatformTest::factoryFault_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVector<bool>>("made"); // per factory in the order App, Mixer, Source, Volume

    QTest::newRow("App") << QStringLiteral("App") << QVector<bool>{false, true, true, true};
    QTest::newRow("Mixer") << QStringLiteral("Mixer") << QVector<bool>{true, false, true, true};
    QTest::newRow("Source") << QStringLiteral("Source") << QVector<bool>{true, true, false, true};
    QTest::newRow("Volume") << QStringLiteral("Volume") << QVector<bool>{true, true, true, false};
}

void SimulatedPlatformTest::factoryFault()
{
    QFETCH(QString, kind);
    QFETCH(QVector<bool>, made);

    const auto makeAll = [] {
        QVector<bool> results;
        const auto make = [&results](auto factory) {
            auto *const object = factory();
            results += object != nullptr;
            if (object)
                destroy(object);
        };
        make(createApp);
        make(createMixer);
        make(createSource);
        make(createVolume);
        return results;
    };
    const QVector<bool> all(4, true);

    QVERIFY(m_platform->faults()->failFactory(kind, 2));
    QCOMPARE(makeAll(), all);
    QCOMPARE(makeAll(), made);
    QCOMPARE(makeAll(), all);
    QVERIFY(m_platform->journal()->calls(Journal::Lifetimes::Include).contains(kind + QStringLiteral(".create() -> null")));

    QVERIFY(m_platform->faults()->failFactory(kind));
    QCOMPARE(makeAll(), made);
    QCOMPARE(makeAll(), made);
    QCOMPARE(m_platform->books()->problems(), QStringList());
}

void SimulatedPlatformTest::unknownFaultIsRefused()
{
    simulator::Faults *const faults = m_platform->faults();
    QVERIFY(!faults->fail(QStringLiteral("Volume.setTrackVolum"), 1));
    QVERIFY(!faults->fail(QStringLiteral("setTrackVolume"), 1));
    QVERIFY(!faults->fail(QStringLiteral("App.setTrackVolume"), 1, 1));
    QVERIFY(!faults->fail(QStringLiteral("Volume.create"), 1));
    QVERIFY(!faults->fail(QStringLiteral("Volume.setTrackVolume"), 0));
    QVERIFY(!faults->fail(QStringLiteral("Volume.setTrackVolume"), 1, 0));
    QVERIFY(!faults->failFactory(QStringLiteral("volume")));
    QVERIFY(!faults->failFactory(QStringLiteral("Volume"), 0));
    QCOMPARE(faults->pending(), QStringList());
}

void SimulatedPlatformTest::pendingFaults()
{
    simulator::Faults *const faults = m_platform->faults();
    QSignalSpy changed(faults, &simulator::Faults::changed);
    QVERIFY(faults->fail(QStringLiteral("Volume.setMasterVolume"), 7));
    QVERIFY(faults->fail(QStringLiteral("Mixer.setFrontRearMode"), 8, 2));
    QVERIFY(faults->failFactory(QStringLiteral("Source"), 3));
    QCOMPARE(changed.count(), 3);
    QCOMPARE(faults->pending(),
             QStringList({
                 QStringLiteral("Volume.setMasterVolume 7 always"),
                 QStringLiteral("Mixer.setFrontRearMode 8 in 2 calls"),
                 QStringLiteral("Source.create null in 3 calls"),
             }));
    Mixer *const mixer = createMixer();
    mixer->setFrontRearMode(1);
    QCOMPARE(faults->pending().at(1), QStringLiteral("Mixer.setFrontRearMode 8 in 1 calls"));
    QCOMPARE(mixer->setFrontRearMode(1), 8);
    destroy(mixer);
    QCOMPARE(faults->pending().count(), 2);
}

void SimulatedPlatformTest::booksCount_data()
{
    QTest::addColumn<ObjectKind>("kind");
    for (const ObjectKind kind : simulator::allObjectKinds)
        QTest::newRow(simulator::objectKindName(kind).data()) << kind;
}

void SimulatedPlatformTest::booksCount()
{
    QFETCH(ObjectKind, kind);
    simulator::Books *const books = m_platform->books();
    const int aliveBefore = books->alive(kind);
    QCOMPARE(books->made(kind), 0);

    const auto check = [books, kind, aliveBefore](auto factory) {
        QSignalSpy changed(books, &simulator::Books::changed);
        auto *const first = factory();
        auto *const second = factory();
        QCOMPARE(books->alive(kind), aliveBefore + 2);
        QCOMPARE(books->made(kind), 2);
        destroy(first);
        QCOMPARE(books->alive(kind), aliveBefore + 1);
        QCOMPARE(books->living().filter(simulator::objectKindName(kind)).count(), aliveBefore + 1);
        destroy(second);
        QCOMPARE(books->alive(kind), aliveBefore);
        QCOMPARE(books->made(kind), 2);
        QCOMPARE(changed.count(), 4);
    };
    switch (kind) {
    case ObjectKind::App:
        check(createApp);
        break;
    case ObjectKind::Mixer:
        check(createMixer);
        break;
    case ObjectKind::Source:
        check(createSource);
        break;
    case ObjectKind::Volume:
        check(createVolume);
        break;
    }
    QCOMPARE(books->problems(), QStringList());
}

void SimulatedPlatformTest::problems_data()
{
    QTest::addColumn<QString>("mistake");
    QTest::addColumn<QString>("problem");

    QTest::newRow("destroyed twice") << QStringLiteral("twice") << QStringLiteral("Volume#1 is destroyed twice");
    QTest::newRow("used after destroy") << QStringLiteral("use") << QStringLiteral("Volume#1.setMasterVolume is called after its destroy");
    QTest::newRow("null") << QStringLiteral("null") << QStringLiteral("destroy(Mixer *) of null");
    QTest::newRow("nonsense") << QStringLiteral("nonsense") << QStringLiteral("destroy(App *) of a pointer that no factory gave");
    QTest::newRow("another kind") << QStringLiteral("kind") << QStringLiteral("destroy(Source *) of a pointer that no factory gave");
}

void SimulatedPlatformTest::problems()
{
    QFETCH(QString, mistake);
    QFETCH(QString, problem);

    criticalLines().clear();
    qInstallMessageHandler(recordCritical);
    QSignalSpy found(m_platform->books(), &simulator::Books::problemFound);
    const int aliveBefore = m_platform->books()->alive(ObjectKind::Volume);
    Volume *const volume = createVolume();
    const QString name = m_platform->journal()->entries().last().object();
    if (mistake == QLatin1String("twice")) {
        destroy(volume);
        destroy(volume);
    } else if (mistake == QLatin1String("use")) {
        destroy(volume);
        QCOMPARE(volume->setMasterVolume(30), int(simulator::ObjectDestroyed));
    } else if (mistake == QLatin1String("null")) {
        destroy(volume);
        destroy(static_cast<Mixer *>(nullptr));
    } else if (mistake == QLatin1String("nonsense")) {
        destroy(volume);
        destroy(reinterpret_cast<App *>(this));
    } else {
        destroy(reinterpret_cast<Source *>(volume));
        QCOMPARE(m_platform->books()->alive(ObjectKind::Volume), aliveBefore + 1);
        destroy(volume);
    }
    problem.replace(QStringLiteral("Volume#1"), name);
    QCOMPARE(m_platform->books()->problems(), QStringList(problem));
    QCOMPARE(criticalLines(), QStringList(problem));
    QCOMPARE(found.count(), 1);
    QCOMPARE(found.at(0).at(0).toString(), problem);
    QCOMPARE(m_platform->books()->alive(ObjectKind::Volume), aliveBefore);
    m_platform->books()->clearProblems();
    QCOMPARE(m_platform->books()->problems(), QStringList());
}

void SimulatedPlatformTest::destroyedObjectChangesNothing()
{
    qInstallMessageHandler(recordCritical);
    QVERIFY(m_platform->faults()->fail(QStringLiteral("Volume.setMasterVolume"), 7, 1));
    Volume *const volume = createVolume();
    destroy(volume);
    volume->setMasterVolume(30);
    QCOMPARE(m_platform->chip()->masterVolume(), 0);
    // A fault waits for a call that reaches the chip.
    QCOMPARE(m_platform->faults()->pending().count(), 1);
    QCOMPARE(m_platform->journal()->entries().last().note, QStringLiteral("the object is destroyed"));
}

void SimulatedPlatformTest::exitReport_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QStringList>("reported");

    const auto left = [](const char *name) { return QString(QLatin1String(name) + QLatin1String(" was never destroyed")); };
    QTest::newRow("unused") << QStringLiteral("unused") << QStringList();
    QTest::newRow("all destroyed") << QStringLiteral("nothing") << QStringList();
    QTest::newRow("the App of a destroyed facade") << QStringLiteral("app") << QStringList();
    QTest::newRow("the facade's singleton") << QStringLiteral("facade") << QStringList();
    QTest::newRow("two facades") << QStringLiteral("two facades") << QStringList({left("Volume#2"), left("App#2")});
    QTest::newRow("a Volume without its App") << QStringLiteral("volume alone") << QStringList(left("Volume#1"));
    QTest::newRow("Source and Mixer") << QStringLiteral("source and mixer") << QStringList({left("Source#1"), left("Mixer#1")});
    QTest::newRow("forgiven by a reset") << QStringLiteral("forgiven") << QStringList();
    QTest::newRow("leaked after a reset") << QStringLiteral("beside forgiven") << QStringList(left("App#2"));
    QTest::newRow("destroyed by a static object") << QStringLiteral("late") << QStringList();
}

namespace
{

program::Run runLeftovers(const QString &state, const QString &loggingRules)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), loggingRules);
    environment.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{category} %{type}: %{message}"));
    environment.insert(QStringLiteral("QT_LOGGING_TO_CONSOLE"), QStringLiteral("1"));
    QProcess process;
    process.setProcessEnvironment(environment);
    return program::run(process, program::commandLine(QStringLiteral(PLATFORMLEFTOVERS), {state}));
}

} // namespace

void SimulatedPlatformTest::exitReport()
{
    QFETCH(QString, state);
    QFETCH(QStringList, reported);

    const program::Run ending = runLeftovers(state, QStringLiteral("*.info=false"));
    QCOMPARE(ending.exitCode, 0);
    // Qt's message pattern is gone by the time of the report, so a line may be the bare text.
    QStringList texts = program::lines(ending.errors);
    texts.replaceInStrings(QStringLiteral("qzaudio.simulator critical: "), QString());
    QCOMPARE(texts, reported);

    const program::Run switchedOff = runLeftovers(state, QStringLiteral("qzaudio.simulator=false"));
    QCOMPARE(switchedOff.errors, QString());
}

void SimulatedPlatformTest::saysThatItIsSimulated()
{
    const QString line = QStringLiteral("qzaudio.simulator info: This is the simulated audio platform: nothing reaches any hardware.");
    QCOMPARE(program::lines(runLeftovers(QStringLiteral("nothing"), QString()).errors), QStringList(line));
    QCOMPARE(runLeftovers(QStringLiteral("unused"), QString()).errors, QString());
    QCOMPARE(runLeftovers(QStringLiteral("nothing"), QStringLiteral("qzaudio.simulator.info=false")).errors, QString());
}

void SimulatedPlatformTest::reverseGear()
{
    QSignalSpy reported(zelmcu::ZEL_McuService::instance(), &zelmcu::ZEL_McuService::mcuBackCarSetMute);
    QSignalSpy changed(m_platform, &Platform::reverseGearChanged);
    m_platform->setReverseGear(true);
    m_platform->setReverseGear(true);
    m_platform->setReverseGear(false);
    QCOMPARE(reported, QList<QVariantList>({{true}, {true}, {false}}));
    QCOMPARE(changed, QList<QVariantList>({{true}, {false}}));
    QVERIFY(!m_platform->reverseGear());
}

void SimulatedPlatformTest::homeUiType()
{
    QSignalSpy changed(m_platform, &Platform::homeUiTypeChanged);
    QCOMPARE(vd::SettingsProvider::instance()->getHomeUiType(), 0);
    m_platform->setHomeUiType(7);
    m_platform->setHomeUiType(7);
    QCOMPARE(vd::SettingsProvider::instance()->getHomeUiType(), 7);
    QCOMPARE(changed.count(), 1);
    m_platform->setHomeUiType(-3);
    QCOMPARE(vd::SettingsProvider::instance()->getHomeUiType(), -3);
}

void SimulatedPlatformTest::callsTakeTime()
{
    QCOMPARE(m_platform->callDuration(), 0);
    m_platform->setCallDuration(-1);
    QCOMPARE(m_platform->callDuration(), 0);
    m_platform->setCallDuration(2);
    const qint64 start = m_platform->now();
    Mixer *const mixer = createMixer();
    mixer->setFrontRearMode(0);
    destroy(mixer);
    QVERIFY(m_platform->now() - start >= 6);
}

void SimulatedPlatformTest::resetBringsEverythingBack()
{
    qInstallMessageHandler(recordCritical);
    const QVector<simulator::StateItem> before = m_platform->chip()->stateTable();
    Volume *const volume = createVolume();
    volume->setMasterVolume(80);
    volume->muteTrack("main", 0);
    destroy(volume);
    destroy(volume);
    m_platform->faults()->fail(QStringLiteral("Volume.setMasterVolume"), 7);
    m_platform->setHomeUiType(7);
    m_platform->setReverseGear(true);
    m_platform->setCallDuration(1);
    m_platform->journal()->setEnabled(false);

    QSignalSpy reported(zelmcu::ZEL_McuService::instance(), &zelmcu::ZEL_McuService::mcuBackCarSetMute);
    m_platform->reset();
    QCOMPARE(reported.count(), 0);
    QVERIFY(!m_platform->reverseGear());
    QCOMPARE(m_platform->homeUiType(), 0);
    QCOMPARE(m_platform->callDuration(), 0);
    QCOMPARE(m_platform->faults()->pending(), QStringList());
    QCOMPARE(m_platform->journal()->count(), 0);
    QVERIFY(m_platform->journal()->isEnabled());
    QCOMPARE(m_platform->books()->problems(), QStringList());
    QCOMPARE(m_platform->books()->made(ObjectKind::Volume), 0);
    const QVector<simulator::StateItem> after = m_platform->chip()->stateTable();
    QCOMPARE(after.count(), before.count());
    for (int row = 0; row < after.count(); ++row) {
        QCOMPARE(after.at(row).name, before.at(row).name);
        QCOMPARE(after.at(row).value, before.at(row).value);
    }
}

void SimulatedPlatformTest::heldObjectsSurviveReset()
{
    const int aliveBefore = m_platform->books()->alive(ObjectKind::Source);
    Source *const held = createSource();
    const QString heldName = m_platform->journal()->entries().last().object();
    m_platform->reset();
    QCOMPARE(m_platform->books()->alive(ObjectKind::Source), aliveBefore + 1);
    QCOMPARE(m_platform->books()->made(ObjectKind::Source), 0);
    QCOMPARE(held->setHandsfreeDelay(12), 0);
    Source *const fresh = createSource();
    QVERIFY(m_platform->journal()->entries().last().object() != heldName);
    QCOMPARE(m_platform->books()->exitReport().count(), 1);
    destroy(fresh);
    QCOMPARE(m_platform->books()->exitReport(), QStringList());
    destroy(held);
    QCOMPARE(m_platform->books()->alive(ObjectKind::Source), aliveBefore);
    QCOMPARE(m_platform->books()->problems(), QStringList());
}

QTEST_GUILESS_MAIN(SimulatedPlatformTest)
#include "tst_simulatedplatform.moc"
