#include <audiochip.h>
#include <tracks.h>

#include <QtTest/QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(simulator::AudioChip &)>)

using simulator::AudioChip;

namespace
{

const QString mainTrack = QStringLiteral("main");
const QString second = QStringLiteral("second");
const QString alternative = QStringLiteral("alternative");
const QString player = QStringLiteral("S+FilePlayer");
const QString gps = QStringLiteral("S+GPS");

QVariant stateValue(const AudioChip &chip, const QString &group, const QString &name)
{
    const QVector<simulator::StateItem> table = chip.stateTable();
    for (const simulator::StateItem &item : table) {
        if (item.group == group && item.name == name)
            return item.value;
    }
    return {};
}

/// A chip on which the player can be heard everywhere: track volume 74 of 148, master 50 of 100.
void makeAudible(AudioChip &chip)
{
    chip.setMasterVolume(50);
    chip.setTrackVolume(mainTrack, player, 74);
}

} // namespace

class AudioChipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsSilent();
    void effectiveGain_data();
    void effectiveGain();
    void effectiveGainOfUnknown();
    void effectiveMainVolume_data();
    void effectiveMainVolume();
    void equalizerBands();
    void effectiveSound();
    void alternativeTrack();
    void alternativeCount();
    void activeSourceFollowsRouting();
    void maskGoesToTrackRoutedLast();
    void filterAndDelayOfAllOutputs();
    void calibration();
    void floatsReadAsTheirDecimals();
    void changeSignals();
    void changesAreFoundInStateTable();
};

void AudioChipTest::startsSilent()
{
    const AudioChip chip;
    QCOMPARE(chip.masterVolume(), 0);
    QCOMPARE(chip.frontRearMode(), 1);
    QCOMPARE(chip.aecQuality(), 1);
    QCOMPARE(chip.calibration(), simulator::Calibration::Idle);
    for (const char *name : simulator::trackNames) {
        const QString track = QLatin1String(name);
        QVERIFY(chip.activeSource(track).isNull());
        QVERIFY(!chip.isMuted(track));
        QCOMPARE(chip.outputChannelMask(track), 0x3FU);
        QCOMPARE(chip.trackVolume(track, player), 0);
    }
    for (const simulator::OutputChannel &channel : simulator::outputChannels) {
        QCOMPARE(chip.channelGain(channel.bit), 100);
        QCOMPARE(chip.effectiveGain(mainTrack, player, channel.bit), 0.0);
        QCOMPARE(chip.speakerDelay(channel.bit), 0.0);
        QVERIFY(!chip.filter(channel.bit));
    }
}

void AudioChipTest::effectiveGain_data()
{
    using Prepare = std::function<void(AudioChip &)>;
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<quint32>("channel");
    QTest::addColumn<double>("gain");

    const auto none = [](AudioChip &) {};
    QTest::newRow("half volume at half master") << Prepare(none) << 1U << 0.25;
    QTest::newRow("full volume at full master") << Prepare([](AudioChip &chip) {
        chip.setMasterVolume(100);
        chip.setTrackVolume(mainTrack, player, 148);
    }) << 32U << 1.0;
    QTest::newRow("muted") << Prepare([](AudioChip &chip) { chip.setMute(mainTrack, true); }) << 1U << 0.0;
    QTest::newRow("unmuted again") << Prepare([](AudioChip &chip) {
        chip.setMute(mainTrack, true);
        chip.setMute(mainTrack, false);
    }) << 1U << 0.25;
    QTest::newRow("another track muted") << Prepare([](AudioChip &chip) { chip.setMute(second, true); }) << 1U << 0.25;
    QTest::newRow("ducked to 60") << Prepare([](AudioChip &chip) {
        chip.setDuckingMode(1);
        chip.setDuckingTargetGain(60);
    }) << 1U << 0.15;
    QTest::newRow("ducking gain without the mode") << Prepare([](AudioChip &chip) { chip.setDuckingTargetGain(60); }) << 1U << 0.25;
    QTest::newRow("ducked, gain beyond full") << Prepare([](AudioChip &chip) {
        chip.setDuckingMode(2);
        chip.setDuckingTargetGain(255);
    }) << 1U << 0.25;
    QTest::newRow("faded channel") << Prepare([](AudioChip &chip) { chip.setFadeBalance({8, 40, {}}); }) << 8U << 0.1;
    QTest::newRow("beside a faded channel") << Prepare([](AudioChip &chip) { chip.setFadeBalance({8, 40, {}}); }) << 4U << 0.25;
    QTest::newRow("front only, rear") << Prepare([](AudioChip &chip) { chip.setOutputChannelMask(3); }) << 4U << 0.0;
    QTest::newRow("front only, front") << Prepare([](AudioChip &chip) { chip.setOutputChannelMask(3); }) << 2U << 0.25;
    QTest::newRow("two channels at once") << Prepare(none) << 3U << 0.0;
    QTest::newRow("no channel") << Prepare(none) << 0U << 0.0;
}

void AudioChipTest::effectiveGain()
{
    QFETCH(std::function<void(AudioChip &)>, prepare);
    QFETCH(quint32, channel);
    QFETCH(double, gain);

    AudioChip chip;
    makeAudible(chip);
    prepare(chip);
    QVERIFY(std::abs(chip.effectiveGain(mainTrack, player, channel) - gain) < 1e-12);
}

void AudioChipTest::effectiveGainOfUnknown()
{
    AudioChip chip;
    makeAudible(chip);
    QCOMPARE(chip.effectiveGain(QStringLiteral("mian"), player, 1), 0.0);
    QCOMPARE(chip.effectiveGain(mainTrack, gps, 1), 0.0);
    QCOMPARE(chip.effectiveGain(second, player, 1), 0.0);
    QCOMPARE(chip.inputSelectPin(0), -1);
    QCOMPARE(chip.channelGain(64), 0);
    QVERIFY(!chip.filter(64));
    // Ducking is for the main track alone.
    chip.setTrackVolume(second, player, 148);
    chip.setDuckingMode(1);
    QCOMPARE(chip.effectiveGain(mainTrack, player, 1), 0.0);
    QCOMPARE(chip.effectiveGain(second, player, 1), 0.5);
}

void AudioChipTest::effectiveMainVolume_data()
{
    QTest::addColumn<int>("volume");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("gain");
    QTest::addColumn<bool>("mute");
    QTest::addColumn<int>("effective");

    QTest::newRow("as set") << 80 << 0 << 60 << false << 80;
    QTest::newRow("ducked") << 80 << 1 << 60 << false << 48;
    QTest::newRow("rounded down") << 81 << 1 << 60 << false << 48;
    QTest::newRow("ducked away") << 80 << 1 << 0 << false << 0;
    QTest::newRow("muted") << 80 << 0 << 60 << true << 0;
}

void AudioChipTest::effectiveMainVolume()
{
    QFETCH(int, volume);
    QFETCH(int, mode);
    QFETCH(int, gain);
    QFETCH(bool, mute);
    QFETCH(int, effective);

    AudioChip chip;
    chip.setTrackVolume(mainTrack, player, static_cast<unsigned char>(volume));
    chip.setDuckingMode(static_cast<unsigned int>(mode));
    chip.setDuckingTargetGain(static_cast<unsigned char>(gain));
    chip.setMute(mainTrack, mute);
    QCOMPARE(chip.effectiveMainVolume(), 0); // nothing plays
    chip.setOutputSource(mainTrack, player);
    QCOMPARE(chip.effectiveMainVolume(), effective);
}

void AudioChipTest::equalizerBands()
{
    AudioChip chip;
    QCOMPARE(chip.equalizerGain(1, 0), 0.0);

    audio::audio_ext_eq_parameter_t extended = {};
    extended.channel = 3;
    extended.band[15] = {3, 20000, 0, 5, 1, {}};
    extended.band[16] = {0, 20000, 0, 7, 1, {}};
    QCOMPARE(chip.setExtEqParameter(extended), 0);
    QCOMPARE(chip.equalizerGain(1, 15), 5.0);
    QCOMPARE(chip.equalizerGain(2, 15), 5.0);
    QCOMPARE(chip.equalizerGain(4, 15), 0.0); // not in the record's mask
    QCOMPARE(chip.equalizerGain(1, 16), 0.0); // not in use
    QCOMPARE(chip.equalizerGain(1, 20), 0.0);
    QCOMPARE(chip.equalizerGain(1, -1), 0.0);
    QCOMPARE(chip.equalizerGain(64, 15), 0.0);

    audio::audio_eq_parameter_t brief = {0xFFFF, {}, {1, 2, 3, 4, 5, 6, 7, -8}, {3, 3, 3, 0, 3, 3, 3, 3}};
    QCOMPARE(chip.setEqParameter(brief), 0);
    QCOMPARE(chip.equalizerGain(32, 7), -8.0);
    QCOMPARE(chip.equalizerGain(1, 3), 0.0); // not in use
    QCOMPARE(chip.equalizerGain(1, 15), 0.0); // the extended curve is replaced
    QCOMPARE(chip.equalizerGain(1, 8), 0.0);
}

void AudioChipTest::effectiveSound()
{
    AudioChip chip;
    makeAudible(chip);
    chip.setSpeakerDelay(2, 1.5F);
    QCOMPARE(chip.setEqParameter({0xFFFF, {}, {6, 0, 0, 0, 0, 0, 0, 0}, {3, 3, 3, 3, 3, 3, 3, 3}}), 0);
    const simulator::Sound sound = chip.effectiveSound(mainTrack, player, 2, 0);
    QCOMPARE(sound.gain, 0.25);
    QCOMPARE(sound.equalizer, 6.0);
    QCOMPARE(sound.delay, 1.5);
    QVERIFY(std::abs(chip.effectiveGainDb(mainTrack, player, 2, 0) - (20 * std::log10(0.25) + 6)) < 1e-9);
    QVERIFY(std::abs(chip.effectiveGainDb(mainTrack, player, 2, 1) - 20 * std::log10(0.25)) < 1e-9);
    chip.setMute(mainTrack, true);
    QVERIFY(std::isinf(chip.effectiveGainDb(mainTrack, player, 2, 0)));
    QVERIFY(chip.effectiveGainDb(mainTrack, player, 2, 0) < 0);
}

void AudioChipTest::alternativeTrack()
{
    AudioChip chip;
    chip.setTrackVolume(alternative, gps, 30);
    chip.setTrackVolume(mainTrack, gps, 20);
    QCOMPARE(chip.setAlterTrackVolume(90), 0);
    QCOMPARE(chip.alternativeVolume(), 90);
    QCOMPARE(chip.trackVolume(alternative, gps), 90);
    QCOMPARE(chip.trackVolume(alternative, player), 90);
    QCOMPARE(chip.trackVolume(mainTrack, gps), 20);
    chip.setTrackVolume(alternative, gps, 40);
    QCOMPARE(chip.trackVolume(alternative, gps), 40);
    QCOMPARE(chip.trackVolume(alternative, player), 90);
    QCOMPARE(chip.alternativeVolume(), 90);
}

void AudioChipTest::alternativeCount()
{
    AudioChip chip;
    QCOMPARE(chip.alternativeCount(alternative), 0);
    chip.setOutputSource(alternative, gps);
    QCOMPARE(chip.alternativeCount(alternative), 1);
    chip.setActiveSource(alternative, QStringLiteral("S+none"));
    QCOMPARE(chip.alternativeCount(alternative), 0);
    chip.setAlternativeCount(3);
    QCOMPARE(chip.alternativeCount(alternative), 3);
}

void AudioChipTest::activeSourceFollowsRouting()
{
    AudioChip chip;
    chip.setOutputSource(mainTrack, player);
    QCOMPARE(chip.activeSource(mainTrack), player);
    QVERIFY(chip.setActiveSource(mainTrack, QStringLiteral("S+none")));
    QCOMPARE(chip.activeSource(mainTrack), QStringLiteral("S+none"));
    QCOMPARE(chip.outputSource(mainTrack), player);
    QVERIFY(chip.setActiveSource(mainTrack, QString()));
    QVERIFY(chip.activeSource(mainTrack).isNull());
    QVERIFY(!chip.setActiveSource(QStringLiteral("mian"), player));
    QCOMPARE(chip.setOutputSource(mainTrack, QString()), int(simulator::EmptyName));
    QVERIFY(chip.activeSource(mainTrack).isNull());
}

void AudioChipTest::maskGoesToTrackRoutedLast()
{
    AudioChip chip;
    QCOMPARE(chip.lastRoutedTrack(), mainTrack);
    chip.setOutputSource(second, player);
    chip.setOutputSource(QStringLiteral("mian"), player); // refused
    chip.setOutputChannelMask(12);
    QCOMPARE(chip.lastRoutedTrack(), second);
    QCOMPARE(chip.outputChannelMask(second), 12U);
    QCOMPARE(chip.outputChannelMask(mainTrack), 0x3FU);
    chip.setOutputChannelMask(0xFFFF);
    QCOMPARE(chip.outputChannelMask(second), 0x3FU);
}

void AudioChipTest::filterAndDelayOfAllOutputs()
{
    AudioChip chip;
    QCOMPARE(chip.setFilter({4, 1, 0, 0, 0, 0, 0}), 0);
    QVERIFY(chip.filter(4).has_value());
    QVERIFY(!chip.filter(8).has_value());
    QCOMPARE(chip.setFilter({0xFFFF, 2, 0, 0, 0, 0, 0}), 0);
    QCOMPARE(chip.setSpeakerDelay(0xFFFF, 2.5F), 0);
    QCOMPARE(chip.setSpeakerDelay(16, 3), 0);
    for (const simulator::OutputChannel &channel : simulator::outputChannels) {
        QCOMPARE(chip.filter(channel.bit)->value1, quint16(2));
        QCOMPARE(chip.speakerDelay(channel.bit), channel.bit == 16 ? 3.0 : 2.5);
    }
}

void AudioChipTest::calibration()
{
    AudioChip chip;
    chip.startMicGainCalibration();
    QCOMPARE(chip.calibration(), simulator::Calibration::Running);
    chip.setMicGainCalibration();
    QCOMPARE(chip.calibration(), simulator::Calibration::Applied);
}

void AudioChipTest::floatsReadAsTheirDecimals()
{
    AudioChip chip;
    chip.setMicVolume(4.8F);
    chip.setMicPgaGain(4.8F, -0.1F);
    chip.setMicOpGain(4.8F, -0.1F);
    chip.setMicAnalogGain(4.8F, -0.1F);
    chip.setDpsUserGain(4.8F);
    chip.setSpeakerDelay(2, 4.8F);
    chip.setEqParameter({0xFFFF, {}, {4.8F, -0.1F}, {3, 3}});
    const std::array<double, 2> gains = {4.8, -0.1};
    QCOMPARE(chip.micVolume(), 4.8);
    QVERIFY(chip.micPgaGain() == gains);
    QVERIFY(chip.micOpGain() == gains);
    QVERIFY(chip.micAnalogGain() == gains);
    QCOMPARE(chip.dpsUserGain(), 4.8);
    QCOMPARE(chip.speakerDelay(2), 4.8);
    QCOMPARE(chip.equalizerGain(2, 0), 4.8);
    const QVariantList shown = {4.8, -0.1};
    QCOMPARE(stateValue(chip, QStringLiteral("microphone"), QStringLiteral("volume")), QVariant(4.8));
    QCOMPARE(stateValue(chip, QStringLiteral("microphone"), QStringLiteral("pga gain")), QVariant(shown));
    QCOMPARE(stateValue(chip, QStringLiteral("microphone"), QStringLiteral("op gain")), QVariant(shown));
    QCOMPARE(stateValue(chip, QStringLiteral("microphone"), QStringLiteral("analog gain")), QVariant(shown));
    QCOMPARE(stateValue(chip, QStringLiteral("processing"), QStringLiteral("dps user gain")), QVariant(4.8));
    QCOMPARE(stateValue(chip, QStringLiteral("speaker delay"), QStringLiteral("right front")), QVariant(4.8));
    QCOMPARE(stateValue(chip, QStringLiteral("processing"), QStringLiteral("equalizer")).toList().mid(0, 2), shown);
}

void AudioChipTest::changeSignals()
{
    AudioChip chip;
    QSignalSpy changed(&chip, &AudioChip::changed);
    chip.setTrackVolume(mainTrack, player, 80);
    QCOMPARE(changed, QList<QVariantList>({{QStringLiteral("volume"), QStringLiteral("main S+FilePlayer"), QVariant::fromValue(QVariant(80))}}));
    chip.setTrackVolume(mainTrack, player, 80);
    chip.setMasterVolume(0);
    chip.setMute(mainTrack, false);
    chip.setFadeBalance({1, 100, {}});
    chip.setActiveSource(mainTrack, QString());
    chip.setFrontRearMode(1);
    chip.setLoudness({0, 0, 0});
    chip.setAecQuality(1);
    QCOMPARE(changed.count(), 1);

    chip.setEqParameter({0xFFFF, {}, {}, {}});
    QCOMPARE(changed.count(), 2);
    chip.setEqParameter({0xFFFF, {}, {}, {}});
    QCOMPARE(changed.count(), 2);

    QSignalSpy wasReset(&chip, &AudioChip::wasReset);
    chip.reset();
    QCOMPARE(wasReset.count(), 1);
    QCOMPARE(chip.trackVolume(mainTrack, player), 0);
}

void AudioChipTest::changesAreFoundInStateTable()
{
    // Whatever changed() tells stands in the table under the same names with the same value.
    AudioChip chip;
    int changes = 0;
    connect(&chip, &AudioChip::changed, this, [&chip, &changes](const QString &group, const QString &name, const QVariant &value) {
        ++changes;
        QCOMPARE(stateValue(chip, group, name), value);
    });
    chip.setTrackVolume(alternative, gps, 30);
    chip.setAlterTrackVolume(9);
    chip.setMasterVolume(5);
    chip.setMute(mainTrack, true);
    chip.setDuckingMode(1);
    chip.setDuckingTargetGain(60);
    chip.setFadeBalance({8, 40, {}});
    chip.setOutputSource(second, player); // two changes
    chip.setActiveSource(second, QString());
    chip.setOutputChannelMask(3);
    chip.setFrontRearMode(0);
    chip.setInputDestination(QStringLiteral("input0"), QStringLiteral("uplink"));
    chip.setInputSelectPin(2, 5);
    chip.setAlternativeCount(4);
    chip.setEqParameter({0xFFFF, {}, {1}, {3}});
    chip.setLoudness({1, 1, 800});
    chip.setFilter({32, 1, 0, 0, 0, 0, 0});
    chip.setSpeakerDelay(16, 3);
    chip.setDpsEnabled(true);
    chip.setDpsUserGain(2);
    chip.setStereoEnabled(true);
    chip.setMicVolume(50);
    chip.setMicPgaGain(1, 1);
    chip.setMicOpGain(2, 2);
    chip.setMicAnalogGain(3, 4);
    chip.startMicGainCalibration();
    chip.setCalibrationGains(1, 2);
    chip.setMicrophoneTest({1, 2, 3, 4, 5, 6, 7, 8});
    chip.setMicLeftRightSwitch(true);
    chip.setHandsfreeDelay(7);
    chip.setAecQuality(2);
    chip.startDownlinkDelayEstimation();
    chip.setDownlinkDelay(12);
    QCOMPARE(changes, 35);
}

QTEST_GUILESS_MAIN(AudioChipTest)
#include "tst_audiochip.moc"
