#include "policytest.h"

#include <books.h>
#include <situationexpectations.h>

#include <QtCore/QLoggingCategory>

#include <array>

/*
 * Every status with every channel and every volume type.
 */

namespace
{

using expectation::channelCount;
using expectation::Source;
using expectation::statusCount;
using expectation::typeCount;

/// What the platform is sent for a stored volume, by type: × 4, and × 1.5 for a boosted source.
struct Level
{
    int stored;
    int plain;
    int boosted;
};

constexpr std::array<Level, typeCount> levels = {{
    {3, 12, 18},
    {7, 28, 42},
    {11, 44, 66},
    {13, 52, 78},
    {17, 68, 102},
    {19, 76, 114},
}};

constexpr std::array<bool, typeCount> isWrittenAgain = {true, false, true, true, false, false};

QString streamVolume(const Source &source, const Level &level)
{
    return QStringLiteral("Volume.setTrackVolume(\"main\", \"%1\", %2) -> 0")
        .arg(QLatin1String(source.platformName))
        .arg(source.boosted ? level.boosted : level.plain);
}

/// The calls of setVolume() for a type at a level.
QStringList callsOfType(int type, const Level &level)
{
    QStringList expected;
    if (type != 1 && type != 5) {
        const QList<int> channels = expectation::channelsOfType(type);
        for (const int channel : channels)
            expected += streamVolume(expectation::channel(channel).source, level);
    }
    if (type == 5)
        expected += QStringLiteral("Volume.setTrackVolume(\"main\", \"hicar_voice_callmodemspeaker10\", %1) -> 0").arg(level.boosted);
    if (type == 1 || type == 5)
        expected += QStringLiteral("Volume.setAlterTrackVolume(%1) -> 0").arg(level.boosted);
    return expected;
}

void addSituations()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("channel");
    for (int status = 0; status < statusCount; ++status) {
        for (int channel = 0; channel < channelCount; ++channel)
            QTest::addRow("status %d, channel %d", status, channel) << status << channel;
    }
}

} // namespace

class ZelAudioManagerSituationsTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void updateAudioStatus_data();
    void updateAudioStatus();
    void setVolume_data();
    void setVolume();
    void updateCurrentAudioVolume_data();
    void updateCurrentAudioVolume();

private:
    /// Brings the manager into a situation, whatever the operations under test would do on the way.
    void enter(int status, int channel);
    /// Without what is made and destroyed, which other tests look at.
    QStringList takePlainCalls();
};

void ZelAudioManagerSituationsTest::initTestCase()
{
    // Thousands of rows: one manager serves them all, and its lines are other tests' business.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    PolicyTest::initTestCase();
    startOnly();
}

void ZelAudioManagerSituationsTest::init()
{
    platform->reset();
    for (int type = 0; type < typeCount; ++type)
        manager->setVolume(static_cast<ZelAudioType>(type), levels[static_cast<std::size_t>(type)].stored, false);
}

void ZelAudioManagerSituationsTest::cleanup()
{
}

void ZelAudioManagerSituationsTest::cleanupTestCase()
{
    manager.reset();
    QCOMPARE(platform->books()->problems(), QStringList());
    QCOMPARE(takeVolumeChanges(), QList<VolumeChange>());
}

void ZelAudioManagerSituationsTest::enter(int status, int channel)
{
    manager->updateAudioChannel(static_cast<AudioChannel>(channel));
    managerstate::currentStatus(*manager) = static_cast<AudioStatus>(status);
    managerstate::delayVolumeTimer(*manager).stop();
    managerstate::pendingVolumeTypes(*manager).clear();
    takePlainCalls();
}

QStringList ZelAudioManagerSituationsTest::takePlainCalls()
{
    QStringList plain;
    const QStringList all = takeCalls();
    for (const QString &call : all) {
        if (!call.contains(QLatin1String(".create(")) && !call.endsWith(QLatin1String(".destroy()")))
            plain += call;
    }
    return plain;
}

void ZelAudioManagerSituationsTest::updateAudioStatus_data()
{
    addSituations();
}

void ZelAudioManagerSituationsTest::updateAudioStatus()
{
    QFETCH(int, status);
    QFETCH(int, channel);
    for (const bool ducking : {false, true}) {
        enter((status + 1) % statusCount, channel);
        managerstate::cpDucking(*manager) = ducking;
        manager->updateAudioStatus(static_cast<AudioStatus>(status));
        managerstate::cpDucking(*manager) = false;

        const expectation::Status &row = expectation::status(status);
        Source source = row.source;
        if (expectation::isNone(source))
            source = channel == 0 ? expectation::auxIn : expectation::channel(channel).source;
        if (status == 11 && channel == 7)
            source = expectation::carPlayMedia;
        QStringList expected = {streamVolume(source, levels[static_cast<std::size_t>(row.type)])};
        if (status == 10 && !ducking)
            expected.clear();
        QCOMPARE(takePlainCalls(), expected);
        QCOMPARE(int(managerstate::currentStatus(*manager)), status);

        manager->updateAudioStatus(static_cast<AudioStatus>(status));
        QCOMPARE(takePlainCalls(), QStringList());
    }
}

void ZelAudioManagerSituationsTest::setVolume_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("channel");
    QTest::addColumn<int>("type");
    for (int status = 0; status < statusCount; ++status) {
        for (int channel = 0; channel < channelCount; ++channel) {
            for (int type = 0; type < typeCount; ++type)
                QTest::addRow("status %d, channel %d, type %d", status, channel, type) << status << channel << type;
        }
    }
}

void ZelAudioManagerSituationsTest::setVolume()
{
    QFETCH(int, status);
    QFETCH(int, channel);
    QFETCH(int, type);
    const auto volumeType = static_cast<ZelAudioType>(type);
    enter(status, channel);

    manager->setVolume(volumeType, 9, false);
    const QStringList expected = callsOfType(type, {9, 36, 54});
    QCOMPARE(takePlainCalls(), expected);
    for (int other = 0; other < typeCount; ++other)
        QCOMPARE(manager->getVolume(static_cast<ZelAudioType>(other)), other == type ? 9 : levels[static_cast<std::size_t>(other)].stored);

    const bool again = isWrittenAgain[static_cast<std::size_t>(type)];
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), again ? QList<ZelAudioType>{volumeType} : QList<ZelAudioType>());
    clock->advance(499);
    QCOMPARE(takePlainCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takePlainCalls(), again ? expected : QStringList());
    QVERIFY(managerstate::pendingVolumeTypes(*manager).isEmpty());
    QCOMPARE(int(managerstate::currentStatus(*manager)), status);
    QCOMPARE(manager->currentAudioChannel(), channel);
}

void ZelAudioManagerSituationsTest::updateCurrentAudioVolume_data()
{
    addSituations();
}

void ZelAudioManagerSituationsTest::updateCurrentAudioVolume()
{
    // One step up from levels, and the step back.
    constexpr std::array<Level, typeCount> louder = {{
        {4, 16, 24},
        {8, 32, 48},
        {12, 48, 72},
        {14, 56, 84},
        {18, 72, 108},
        {20, 80, 120},
    }};
    QFETCH(int, status);
    QFETCH(int, channel);
    int type = expectation::status(status).keyType;
    if (type == expectation::asTheChannel)
        type = expectation::channel(channel).keyType;
    if (channel == 18)
        type = 5;

    enter(status, channel);
    for (const bool up : {true, false}) {
        manager->updateCurrentAudioVolume(up);
        if (type == expectation::none) {
            QCOMPARE(takePlainCalls(), QStringList());
            QCOMPARE(takeVolumeChanges(), QList<VolumeChange>());
            continue;
        }
        const Level &level = (up ? louder : levels)[static_cast<std::size_t>(type)];
        QCOMPARE(takePlainCalls(), callsOfType(type, level));
        QCOMPARE(takeVolumeChanges(), (QList<VolumeChange>{{false, level.stored, type}}));
        QCOMPARE(stored(QStringLiteral("Volume/%1").arg(type)).toInt(), level.stored);
    }
    for (int each = 0; each < typeCount; ++each)
        QCOMPARE(manager->getVolume(static_cast<ZelAudioType>(each)), levels[static_cast<std::size_t>(each)].stored);
}

POLICY_TEST_MAIN(ZelAudioManagerSituationsTest)

#include "tst_zelaudiomanager_situations.moc"
