#include "operationtest.h"
#include "streamtags.h"

#include <QtTest/QtTest>

#include <limits>

using audio::AudioControl;

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

AudioControl::AudioTag tagOf(int number)
{
    return static_cast<AudioControl::AudioTag>(number);
}

AudioControl::AudioInChannel inChannel(int number)
{
    return static_cast<AudioControl::AudioInChannel>(number);
}

OperationTest::Act feed(const char *track, const char *destination)
{
    return [track, destination](AudioControl &control) {
        control.setInputDestination(track, destination);
        return QVariant();
    };
}

OperationTest::Act feedTag(int tag, const char *destination)
{
    return [tag, destination](AudioControl &control) {
        control.setInputDestination(tagOf(tag), destination);
        return QVariant();
    };
}

OperationTest::Act putAuxin(int channel)
{
    return [channel](AudioControl &control) {
        control.setAuxinChannel(inChannel(channel));
        return QVariant();
    };
}

QVariant auxin(AudioControl &control)
{
    return int(control.getAuxinChannel());
}

OperationTest::Act putI2s(int channel)
{
    return [channel](AudioControl &control) {
        control.setI2SINChannel(inChannel(channel));
        return QVariant();
    };
}

constexpr const char *inputByName = "void audio::AudioControl::setInputDestination(const char*, const char*)";
constexpr const char *inputByTag = "void audio::AudioControl::setInputDestination(AudioTag, const char*)";

} // namespace

/// Where inputs come from and what they feed.
class AudioControlInputsTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setInputDestination_data();
    void setInputDestination() { checkRow(); }
    void setInputDestinationByTag_data();
    void setInputDestinationByTag() { checkRow(); }
    void setAuxinChannel_data();
    void setAuxinChannel() { checkRow(); }
    void getAuxinChannel_data();
    void getAuxinChannel() { checkRow(); }
    void setI2SINChannel_data();
    void setI2SINChannel() { checkRow(); }
    void pinsAndChannels_data();
    void pinsAndChannels();
    void whatWasSetIsInForce();
};

void AudioControlInputsTest::setInputDestination_data()
{
    addColumns();
    const QString begin = info("set audio stream input source uplink BT_MIC_Record");
    const auto traces = [](int result) {
        return QStringList{
            trace(inputByName, "uplink tag"),
            trace(inputByName, "BT_MIC_Record dest"),
            trace(inputByName, qPrintable(QStringLiteral("%1 return").arg(result))),
        };
    };
    const QString done = info("Set audio stream input source success.");
    const Act act = feed("uplink", "BT_MIC_Record");
    const auto call = [](int result) { return QStringLiteral(R"(Source.setInputDestination("uplink", "BT_MIC_Record") -> %1)").arg(result); };
    addRow("a destination, with a Volume that is only made and destroyed",
           {},
           act,
           {},
           {created("Source"), created("Volume"), call(0), destroyed("Volume"), destroyed("Source")},
           QStringList{begin} + traces(0) << done);
    addRow("refused",
           {refused("Source.setInputDestination", 7)},
           act,
           {},
           {created("Source"), created("Volume"), call(7), destroyed("Volume"), destroyed("Source")},
           QStringList{begin} + traces(7) << error("Set audio stream input source error. 7"));
    addRow("no Source can be made: the Volume is destroyed all the same",
           {noneMade("Source")},
           act,
           {},
           {notCreated("Source"), created("Volume"), destroyed("Volume")},
           {begin, error("Set audio stream input source error. -1")});
    addRow("no Volume can be made: the call is made all the same",
           {noneMade("Volume")},
           act,
           {},
           {created("Source"), notCreated("Volume"), call(0), destroyed("Source")},
           QStringList{begin} + traces(0) << done);
    addRow("neither can be made",
           {noneMade("Source"), noneMade("Volume")},
           act,
           {},
           {notCreated("Source"), notCreated("Volume")},
           {begin, error("Set audio stream input source error. -1")});
    addRow("null names reach the platform as empty ones",
           {},
           feed(nullptr, nullptr),
           {},
           {created("Source"), created("Volume"), R"(Source.setInputDestination("", "") -> 101)"_s, destroyed("Volume"), destroyed("Source")},
           {info("set audio stream input source  "),
            trace(inputByName, " tag"),
            trace(inputByName, " dest"),
            trace(inputByName, "101 return"),
            error("Set audio stream input source error. 101")});
}

void AudioControlInputsTest::setInputDestinationByTag_data()
{
    addColumns();
    const auto calls = [](const char *track, const char *destination, int result) {
        return QStringList{
            created("Source"),
            created("Volume"),
            QStringLiteral(R"(Source.setInputDestination("%1", "%2") -> %3)").arg(QLatin1String(track), QLatin1String(destination)).arg(result),
            destroyed("Volume"),
            destroyed("Source"),
        };
    };
    const auto lines = [](const char *track, const char *destination, int result) {
        return QStringList{
            info(QStringLiteral("set audio stream input source %1 %2").arg(QLatin1String(track), QLatin1String(destination))),
            trace(inputByName, qPrintable(QLatin1String(track) + QLatin1String(" tag"))),
            trace(inputByName, qPrintable(QLatin1String(destination) + QLatin1String(" dest"))),
            trace(inputByName, qPrintable(QStringLiteral("%1 return").arg(result))),
        };
    };
    for (const TaggedTrack &row : taggedTracks) {
        addRow(qPrintable(QStringLiteral("tag %1 is track %2").arg(row.tag).arg(QLatin1String(row.track))),
               {},
               feedTag(row.tag, "BT_MIC_Record"),
               {},
               calls(row.track, "BT_MIC_Record", 0),
               translation(inputByTag, row.tag, row.track, "BT_MIC_Record", "BT_MIC_Record", "dest") + lines(row.track, "BT_MIC_Record", 0)
                   << info("Set audio stream input source success."));
    }
    for (const NoTag &row : noTags) {
        addRow(row.name,
               {},
               feedTag(row.tag, "S+Mic_APP"),
               {},
               {},
               translation(inputByTag, row.tag, "", "S+Mic_APP", "S+Mic", "dest") << error("get spTag string error."));
    }
    addRow("an unknown destination is passed on as an empty name",
           {},
           feedTag(3, "S+Gramophone_APP"),
           {},
           calls("uplink", "", 102),
           translation(inputByTag, 3, "uplink", "S+Gramophone_APP", "", "dest") + lines("uplink", "", 102)
               << error("Set audio stream input source error. 102"));
    addRow("a null destination counts as an empty one",
           {},
           feedTag(3, nullptr),
           {},
           calls("uplink", "", 102),
           translation(inputByTag, 3, "uplink", "", "", "dest") + lines("uplink", "", 102) << error("Set audio stream input source error. 102"));
}

void AudioControlInputsTest::setAuxinChannel_data()
{
    addColumns();
    for (int channel = 0; channel <= 5; ++channel) {
        addRow(qPrintable(QStringLiteral("channel %1 is pin %1").arg(channel)),
               {},
               putAuxin(channel),
               {},
               fresh("Source", {QStringLiteral("Source.setInputSelectPin(1, %1) -> 0").arg(channel)}),
               {info(QStringLiteral("set setAuxinChannel  %1 %1").arg(channel)), info(QStringLiteral("set auxin pin success %1").arg(channel))});
    }
    const auto unknown = [](const char *name, int channel) {
        addRow(name,
               {},
               putAuxin(channel),
               {},
               fresh("Source", {"Source.setInputSelectPin(1, 0) -> 0"_s}),
               {error(QStringLiteral("getSPAudioADCSelectPin %1 err,use default").arg(channel)),
                info(QStringLiteral("set setAuxinChannel  %1 0").arg(channel)),
                info("set auxin pin success 0")});
    };
    unknown("channel 6 is put on pin 0", 6);
    unknown("channel 9 is put on pin 0", 9);
    unknown("channel -1 is put on pin 0", -1);
    unknown("the lowest int is put on pin 0", lowest);
    unknown("the highest int is put on pin 0", highest);
    addRow("refused",
           {refused("Source.setInputSelectPin", 7)},
           putAuxin(3),
           {},
           fresh("Source", {"Source.setInputSelectPin(1, 3) -> 7"_s}),
           {info("set setAuxinChannel  3 3"), error("Set auxin pin error 7")});
    addRow("no Source can be made",
           {noneMade("Source")},
           putAuxin(3),
           {},
           {notCreated("Source")},
           {info("set setAuxinChannel  3 3"), error("Set auxin pin error -1")});
}

void AudioControlInputsTest::getAuxinChannel_data()
{
    addColumns();
    const auto onPin
        = [](int pin) -> Given { return [pin](OperationTest &) { QCOMPARE(simulator::Platform::instance()->chip()->setInputSelectPin(1, pin), 0); }; };
    for (int pin = 0; pin <= 5; ++pin) {
        addRow(qPrintable(QStringLiteral("pin %1 is channel %1").arg(pin)),
               {onPin(pin)},
               auxin,
               pin,
               fresh("Source", {QStringLiteral("Source.getInputSelectPin(1) -> 0, %1").arg(pin)}),
               {info("get AuxinChannel "), info(QStringLiteral("get auxin pin success %1").arg(pin))});
    }
    addRow("refused: channel 0 whatever the pin is",
           {onPin(4), refusedAfterWriting("Source.getInputSelectPin", 7)},
           auxin,
           0,
           fresh("Source", {"Source.getInputSelectPin(1) -> 7, 4"_s}),
           {info("get AuxinChannel "), error("get auxin pin error 7")});
    addRow("no Source can be made: channel 0",
           {onPin(4), noneMade("Source")},
           auxin,
           0,
           {notCreated("Source")},
           {info("get AuxinChannel "), error("get auxin pin error -1")});
}

void AudioControlInputsTest::setI2SINChannel_data()
{
    addColumns();
    const QStringList calls = fresh("Source", {"Source.setInputSelectPin(2, 5) -> 0"_s});
    const QStringList lines = {info("set I2SIN success 5")};
    addRow("channel 0 is put on pin 5", {}, putI2s(0), {}, calls, lines);
    addRow("channel 3 is put on pin 5", {}, putI2s(3), {}, calls, lines);
    addRow("channel 5 is put on pin 5", {}, putI2s(5), {}, calls, lines);
    addRow("channel 9 is put on pin 5, without an error", {}, putI2s(9), {}, calls, lines);
    addRow("the lowest int is put on pin 5", {}, putI2s(lowest), {}, calls, lines);
    addRow("refused",
           {refused("Source.setInputSelectPin", 7)},
           putI2s(0),
           {},
           fresh("Source", {"Source.setInputSelectPin(2, 5) -> 7"_s}),
           {error("Set I2SIN pin error 7")});
    addRow("no Source can be made", {noneMade("Source")}, putI2s(0), {}, {notCreated("Source")}, {error("Set I2SIN pin error -1")});
}

void AudioControlInputsTest::pinsAndChannels_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("counterpart");
    for (int number = 0; number <= 5; ++number)
        QTest::addRow("%d", number) << number << number;
    QTest::newRow("6") << 6 << 0;
    QTest::newRow("-1") << -1 << 0;
    QTest::newRow("255, the highest pin that the platform can tell") << 255 << 0;
    QTest::newRow("the lowest int") << lowest << 0;
    QTest::newRow("the highest int") << highest << 0;
}

void AudioControlInputsTest::pinsAndChannels()
{
    QFETCH(int, number);
    QFETCH(int, counterpart);
    const bool isKnown = number >= 0 && number <= 5;
    const auto lines = [isKnown, number](const char *operation) {
        return isKnown ? QStringList() : QStringList{error(QStringLiteral("%1 %2 err,use default").arg(QLatin1String(operation)).arg(number))};
    };
    QCOMPARE(int(inner->getSPAudioADCSelectPin(inChannel(number))), counterpart);
    QCOMPARE(log->takeTexts(), lines("getSPAudioADCSelectPin"));
    QCOMPARE(int(inner->getAudioInChannel(static_cast<audio::audio_input_select_pin_e>(number))), counterpart);
    QCOMPARE(log->takeTexts(), lines("getAudioInChannel"));
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlInputsTest::whatWasSetIsInForce()
{
    const simulator::AudioChip *const chip = platform->chip();
    control->setInputDestination(AudioControl::Uplink, "S+Mic_APP");
    QCOMPARE(chip->inputDestination("uplink"_s), "S+Mic"_s);
    control->setAuxinChannel(inChannel(4));
    control->setI2SINChannel(inChannel(1));
    QCOMPARE(chip->inputSelectPin(1), 4);
    QCOMPARE(chip->inputSelectPin(2), 5);
    QCOMPARE(int(control->getAuxinChannel()), 4);
}

QTEST_GUILESS_MAIN(AudioControlInputsTest)

#include "tst_audiocontrol_inputs.moc"
