#include "policytest.h"

#include <books.h>

#include <QtCore/QLoggingCategory>

#include <array>

/*
 * Every status with every channel and every volume type, against tables written out here.
 */

namespace
{

constexpr int statusCount = 20;
constexpr int channelCount = 20;
constexpr int typeCount = 6;

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

struct Source
{
    const char *name;
    bool boosted;
};

struct StatusRow
{
    int type;
    Source source; ///< null: that of the channel
    int keyType; ///< what the volume keys work on; -1: what the channel says
};

constexpr Source ofTheChannel = {nullptr, false};
constexpr int asTheChannel = -1;

constexpr std::array<StatusRow, statusCount> statuses = {{
    {0, ofTheChannel, asTheChannel}, // 0
    {3, {"S+BtPcmPhone", true}, 3}, // 1
    {2, {"S+BtPcmPhone", true}, 2}, // 2
    {2, {"S+BtPcmPhone", true}, 2}, // 3
    {0, {"S+BtPcmPhone", true}, asTheChannel}, // 4
    {3, {"S+CarPlayAlert", true}, 3}, // 5
    {2, {"S+CarPlayTelephony", true}, 2}, // 6
    {0, ofTheChannel, asTheChannel}, // 7
    {4, {"S+CarPlaySpeech", true}, asTheChannel}, // 8
    {0, {"S+CarPlaySpeech", true}, asTheChannel}, // 9
    {1, ofTheChannel, 1}, // 10
    {0, ofTheChannel, asTheChannel}, // 11
    {4, {"S+AndroidAuto", false}, asTheChannel}, // 12
    {0, {"S+AndroidAuto", false}, asTheChannel}, // 13
    {1, {"S+AndroidAuto", false}, 1}, // 14
    {0, {"S+AndroidAuto", false}, asTheChannel}, // 15
    {4, {"S+CarLife", false}, asTheChannel}, // 16
    {0, {"S+CarLife", false}, asTheChannel}, // 17
    {1, {"S+CarLife", false}, 1}, // 18
    {0, {"S+CarLife", false}, asTheChannel}, // 19
}};

constexpr int none = -1; ///< the keys do nothing

struct ChannelRow
{
    Source source;
    int keyType; ///< what the volume keys work on where the status leaves it to the channel
};

constexpr std::array<ChannelRow, channelCount> channels = {{
    {{"S+none", false}, none}, // 0
    {{"S+none", false}, 0}, // 1
    {{"BT_AUDIO_Track", false}, 0}, // 2
    {{"S+FilePlayer", false}, 0}, // 3
    {{"S+IosMirror", false}, 0}, // 4
    {{"S+CarPlayMedia", false}, 0}, // 5
    {{"S+CarPlayAlert", true}, none}, // 6
    {{"S+CarPlayTelephony", true}, none}, // 7
    {{"S+CarPlaySpeech", true}, none}, // 8
    {{"S+CarPlayDefault", false}, 0}, // 9
    {{"S+AndroidAuto", false}, 0}, // 10
    {{"S+BtRingtone", true}, none}, // 11
    {{"S+BtPcmPhone", true}, none}, // 12
    {{"S+DiscPlayer", false}, 0}, // 13
    {{"S+none", false}, 0}, // 14
    {{"S+AuxIn", true}, 0}, // 15
    {{"S+none", false}, 0}, // 16
    {{"S+CarLife", false}, 0}, // 17
    {{"S+none", false}, 5}, // 18, HiCar
    {{"S+AirPlayMedia", false}, 0}, // 19
}};

/// The sources that setVolume() goes to, by type, in the order of their channels. Null: the alternative track.
const std::array<QList<Source>, typeCount> sourcesOfTypes = {{
    {{"S+none", false},
     {"BT_AUDIO_Track", false},
     {"S+FilePlayer", false},
     {"S+IosMirror", false},
     {"S+CarPlayMedia", false},
     {"S+CarPlayDefault", false},
     {"S+AndroidAuto", false},
     {"S+DiscPlayer", false},
     {"S+none", false},
     {"S+AuxIn", true},
     {"S+none", false},
     {"S+CarLife", false},
     {"S+none", false},
     {"S+AirPlayMedia", false}},
    {},
    {{"S+CarPlayTelephony", true}, {"S+BtPcmPhone", true}},
    {{"S+CarPlayAlert", true}, {"S+BtRingtone", true}},
    {{"S+CarPlaySpeech", true}},
    {},
}};

constexpr std::array<bool, typeCount> isWrittenAgain = {true, false, true, true, false, false};

QString streamVolume(const Source &source, const Level &level)
{
    return QStringLiteral("Volume.setTrackVolume(\"main\", \"%1\", %2) -> 0").arg(QLatin1String(source.name)).arg(source.boosted ? level.boosted : level.plain);
}

/// The calls of setVolume() for a type at a level.
QStringList callsOfType(int type, const Level &level)
{
    QStringList expected;
    for (const Source &source : sourcesOfTypes[static_cast<std::size_t>(type)])
        expected += streamVolume(source, level);
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

        const StatusRow &row = statuses[static_cast<std::size_t>(status)];
        Source source = row.source;
        if (!source.name)
            source = channels[static_cast<std::size_t>(channel)].source;
        if (!row.source.name && channel == 0)
            source = {"S+AuxIn", true};
        if (status == 11 && channel == 7)
            source = {"S+CarPlayMedia", false};
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
    int type = statuses[static_cast<std::size_t>(status)].keyType;
    if (type == asTheChannel)
        type = channels[static_cast<std::size_t>(channel)].keyType;
    if (channel == 18)
        type = 5;

    enter(status, channel);
    for (const bool up : {true, false}) {
        manager->updateCurrentAudioVolume(up);
        if (type == none) {
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
