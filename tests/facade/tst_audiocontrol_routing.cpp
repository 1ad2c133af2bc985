#include "operationtest.h"
#include "streamtags.h"

#include <QtTest/QtTest>

#include <limits>

using audio::AudioControl;

namespace
{

AudioControl::AudioTag tagOf(int number)
{
    return static_cast<AudioControl::AudioTag>(number);
}

OperationTest::Act route(const char *track, const char *source)
{
    return [track, source](AudioControl &control) {
        control.setOutputSource(track, source);
        return QVariant();
    };
}

OperationTest::Act routeTag(int tag, const char *source)
{
    return [tag, source](AudioControl &control) {
        control.setOutputSource(tagOf(tag), source);
        return QVariant();
    };
}

OperationTest::Act routeFront(const char *track, const char *source, bool frontOnly)
{
    return [track, source, frontOnly](AudioControl &control) {
        control.setOutputFrontSource(track, source, frontOnly);
        return QVariant();
    };
}

OperationTest::Act routeFrontTag(int tag, const char *source, bool frontOnly)
{
    return [tag, source, frontOnly](AudioControl &control) {
        control.setOutputFrontSource(tagOf(tag), source, frontOnly);
        return QVariant();
    };
}

OperationTest::Act setDuckingMode(unsigned int mode)
{
    return [mode](AudioControl &control) {
        control.setMainAudioDunkingMode(mode);
        return QVariant();
    };
}

OperationTest::Act setDuckingGain(unsigned char gain)
{
    return [gain](AudioControl &control) {
        control.setMainAudioDunkingTargetGain(gain);
        return QVariant();
    };
}

constexpr const char *outputByName = "void audio::AudioControl::setOutputSource(const char*, const char*)";
constexpr const char *outputByTag = "void audio::AudioControl::setOutputSource(AudioTag, const char*)";
constexpr const char *frontByTag = "void audio::AudioControl::setOutputFrontSource(AudioTag, const char*, bool)";

} // namespace

/// Where streams go, and how the main one is ducked.
class AudioControlRoutingTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setOutputSource_data();
    void setOutputSource() { checkRow(); }
    void setOutputSourceByTag_data();
    void setOutputSourceByTag() { checkRow(); }
    void setOutputFrontSource_data();
    void setOutputFrontSource() { checkRow(); }
    void setOutputFrontSourceByTag_data();
    void setOutputFrontSourceByTag() { checkRow(); }
    void setMainAudioDunkingMode_data();
    void setMainAudioDunkingMode() { checkRow(); }
    void setMainAudioDunkingTargetGain_data();
    void setMainAudioDunkingTargetGain() { checkRow(); }
    void whatWasRoutedIsInForce();
};

void AudioControlRoutingTest::setOutputSource_data()
{
    addColumns();
    const auto begin = [](const char *track, const char *source) {
        return QStringList{
            info(QStringLiteral("set audio stream output source %1 %2").arg(QLatin1String(track), QLatin1String(source))),
            trace(outputByName, qPrintable(QLatin1String(track) + QLatin1String(" tag"))),
            trace(outputByName, qPrintable(QLatin1String(source) + QLatin1String(" src"))),
        };
    };
    const auto failed = [](int result) {
        return QStringList{
            error(QStringLiteral("Set Front seat audio stream error %1").arg(result)),
            trace(outputByName, "setoutput failed"),
        };
    };
    const QString done = info("Set Front seat audio stream success."); // whatever the stream
    addRow("a source on a track",
           {},
           route("main", "S+FilePlayer"),
           {},
           fresh("Source", {R"(Source.setOutputSource("main", "S+FilePlayer") -> 0)"_s}),
           begin("main", "S+FilePlayer") << done);
    addRow("a source on the rear seats' track: the text still speaks of the front seat",
           {},
           route("second", "S+IPod"),
           {},
           fresh("Source", {R"(Source.setOutputSource("second", "S+IPod") -> 0)"_s}),
           begin("second", "S+IPod") << done);
    addRow("refused",
           {refused("Source.setOutputSource", 7)},
           route("main", "S+FilePlayer"),
           {},
           fresh("Source", {R"(Source.setOutputSource("main", "S+FilePlayer") -> 7)"_s}),
           begin("main", "S+FilePlayer") + failed(7));
    addRow("names are not translated: the chip does not know the track",
           {},
           route("tail", "S+FilePlayer_APP"),
           {},
           fresh("Source", {R"(Source.setOutputSource("tail", "S+FilePlayer_APP") -> 101)"_s}),
           begin("tail", "S+FilePlayer_APP") + failed(101));
    addRow("no Source can be made", {noneMade("Source")}, route("main", "S+IPod"), {}, {notCreated("Source")}, begin("main", "S+IPod") + failed(-1));
    addRow("null names reach the platform as empty ones",
           {},
           route(nullptr, nullptr),
           {},
           fresh("Source", {R"(Source.setOutputSource("", "") -> 101)"_s}),
           begin("", "") + failed(101));
    addRow("a null source reaches the platform as an empty one",
           {},
           route("main", nullptr),
           {},
           fresh("Source", {R"(Source.setOutputSource("main", "") -> 102)"_s}),
           begin("main", "") + failed(102));
    addRow("empty names are the same", {}, route("", ""), {}, fresh("Source", {R"(Source.setOutputSource("", "") -> 101)"_s}), begin("", "") + failed(101));
}

void AudioControlRoutingTest::setOutputSourceByTag_data()
{
    addColumns();
    const QString done = info("Set Front seat audio stream success.");
    const auto forwarded = [](const char *track, const char *source) {
        return QStringList{
            info(QStringLiteral("set audio stream output source %1 %2").arg(QLatin1String(track), QLatin1String(source))),
            trace(outputByName, qPrintable(QLatin1String(track) + QLatin1String(" tag"))),
            trace(outputByName, qPrintable(QLatin1String(source) + QLatin1String(" src"))),
        };
    };
    for (const TaggedTrack &row : taggedTracks) {
        addRow(qPrintable(QStringLiteral("tag %1 is track %2").arg(row.tag).arg(QLatin1String(row.track))),
               {},
               routeTag(row.tag, "S+IPod_APP"),
               {},
               fresh("Source", {QStringLiteral(R"(Source.setOutputSource("%1", "S+IPod") -> 0)").arg(QLatin1String(row.track))}),
               translation(outputByTag, row.tag, row.track, "S+IPod_APP", "S+IPod", "src") + forwarded(row.track, "S+IPod") << done);
    }
    for (const NoTag &row : noTags) {
        addRow(row.name,
               {},
               routeTag(row.tag, "S+IPod_APP"),
               {},
               {},
               translation(outputByTag, row.tag, "", "S+IPod_APP", "S+IPod", "src") << error("get spTag string error."));
    }
    const QStringList failed = {error("Set Front seat audio stream error 102"), trace(outputByName, "setoutput failed")};
    const QStringList emptySource = fresh("Source", {R"(Source.setOutputSource("main", "") -> 102)"_s});
    addRow("an unknown source is passed on as an empty name",
           {},
           routeTag(0, "S+Gramophone_APP"),
           {},
           emptySource,
           translation(outputByTag, 0, "main", "S+Gramophone_APP", "", "src") + forwarded("main", "") + failed);
    addRow("a platform name is no key of the table",
           {},
           routeTag(0, "S+FilePlayer"),
           {},
           emptySource,
           translation(outputByTag, 0, "main", "S+FilePlayer", "", "src") + forwarded("main", "") + failed);
    addRow("a null source counts as an empty one",
           {},
           routeTag(0, nullptr),
           {},
           emptySource,
           translation(outputByTag, 0, "main", "", "", "src") + forwarded("main", "") + failed);
    addRow("refused",
           {refused("Source.setOutputSource", 7)},
           routeTag(0, "S+IPod_APP"),
           {},
           fresh("Source", {R"(Source.setOutputSource("main", "S+IPod") -> 7)"_s}),
           translation(outputByTag, 0, "main", "S+IPod_APP", "S+IPod", "src") + forwarded("main", "S+IPod")
               << error("Set Front seat audio stream error 7") << trace(outputByName, "setoutput failed"));
    addRow("no Source can be made",
           {noneMade("Source")},
           routeTag(0, "S+IPod_APP"),
           {},
           {notCreated("Source")},
           translation(outputByTag, 0, "main", "S+IPod_APP", "S+IPod", "src") + forwarded("main", "S+IPod")
               << error("Set Front seat audio stream error -1") << trace(outputByName, "setoutput failed"));
}

void AudioControlRoutingTest::setOutputFrontSource_data()
{
    addColumns();
    const QString begin = info("set Front audio stream output source main S+IPod");
    const QString front = info("set front channels");
    const QString all = info("set front and rear channels");
    const QString done = info("Set Front seat audio stream success, 0 0 0");
    const auto calls = [](int sourceResult, int mask, int maskResult, int mode, int modeResult) {
        return QStringList{
            created("Source"),
            created("Mixer"),
            QStringLiteral(R"(Source.setOutputSource("main", "S+IPod") -> %1)").arg(sourceResult),
            QStringLiteral("Source.setOutputChannelMask(%1) -> %2").arg(mask).arg(maskResult),
            QStringLiteral("Mixer.setFrontRearMode(%1) -> %2").arg(mode).arg(modeResult),
            destroyed("Mixer"),
            destroyed("Source"),
        };
    };
    const auto failed = [](const char *results) { return error(QLatin1String("Set Front seat audio stream error, ") + QLatin1String(results)); };
    const Act frontOnly = routeFront("main", "S+IPod", true);
    const Act frontAndRear = routeFront("main", "S+IPod", false);
    constexpr const char *source = "Source.setOutputSource";
    constexpr const char *mask = "Source.setOutputChannelMask";
    constexpr const char *mode = "Mixer.setFrontRearMode";

    addRow("front only: mask 3, mode 0", {}, frontOnly, {}, calls(0, 3, 0, 0, 0), {begin, front, done});
    addRow("front and rear: mask 15, mode 1", {}, frontAndRear, {}, calls(0, 15, 0, 1, 0), {begin, all, done});
    addRow("front only, the source refused: the rest follows", {refused(source, 7)}, frontOnly, {}, calls(7, 3, 0, 0, 0), {begin, front, failed("7 0 0")});
    addRow("front only, the mask refused", {refused(mask, 8)}, frontOnly, {}, calls(0, 3, 8, 0, 0), {begin, front, failed("0 8 0")});
    addRow("front only, the mode refused", {refused(mode, 9)}, frontOnly, {}, calls(0, 3, 0, 0, 9), {begin, front, failed("0 0 9")});
    addRow("front and rear, the source refused", {refused(source, 7)}, frontAndRear, {}, calls(7, 15, 0, 1, 0), {begin, all, failed("7 0 0")});
    addRow("front and rear, the mask refused", {refused(mask, 8)}, frontAndRear, {}, calls(0, 15, 8, 1, 0), {begin, all, failed("0 8 0")});
    addRow("front and rear, the mode refused", {refused(mode, 9)}, frontAndRear, {}, calls(0, 15, 0, 1, 9), {begin, all, failed("0 0 9")});
    addRow("all refused", {refused(source, 7), refused(mask, 8), refused(mode, 9)}, frontOnly, {}, calls(7, 3, 8, 0, 9), {begin, front, failed("7 8 9")});
    // Codes whose sum or whose bits together are nothing: none may pass for success.
    addRow("results that cancel out", {refused(source, 1), refused(mask, -1)}, frontOnly, {}, calls(1, 3, -1, 0, 0), {begin, front, failed("1 -1 0")});

    const QStringList withoutMixer = {
        created("Source"),
        notCreated("Mixer"),
        R"(Source.setOutputSource("main", "S+IPod") -> 0)"_s,
        destroyed("Source"),
    };
    addRow("no Mixer can be made: no mask is sent", {noneMade("Mixer")}, frontOnly, {}, withoutMixer, {begin, failed("0 0 -1")});
    addRow("no Mixer, front and rear", {noneMade("Mixer")}, frontAndRear, {}, withoutMixer, {begin, failed("0 0 -1")});
    addRow("no Mixer, and the source refused",
           {noneMade("Mixer"), refused(source, 7)},
           frontOnly,
           {},
           {created("Source"), notCreated("Mixer"), R"(Source.setOutputSource("main", "S+IPod") -> 7)"_s, destroyed("Source")},
           {begin, failed("7 0 -1")});
    addRow("no Source can be made: the Mixer is destroyed all the same",
           {noneMade("Source")},
           frontOnly,
           {},
           {notCreated("Source"), created("Mixer"), destroyed("Mixer")},
           {begin, failed("0 0 -1")});
    addRow("neither can be made",
           {noneMade("Source"), noneMade("Mixer")},
           frontAndRear,
           {},
           {notCreated("Source"), notCreated("Mixer")},
           {begin, failed("0 0 -1")});
    addRow("null names reach the platform as empty ones",
           {},
           routeFront(nullptr, nullptr, true),
           {},
           {created("Source"),
            created("Mixer"),
            R"(Source.setOutputSource("", "") -> 101)"_s,
            "Source.setOutputChannelMask(3) -> 0"_s,
            "Mixer.setFrontRearMode(0) -> 0"_s,
            destroyed("Mixer"),
            destroyed("Source")},
           {info("set Front audio stream output source  "), front, failed("101 0 0")});
}

void AudioControlRoutingTest::setOutputFrontSourceByTag_data()
{
    addColumns();
    const auto calls = [](const char *track, const char *source, int result) {
        return QStringList{
            created("Source"),
            created("Mixer"),
            QStringLiteral(R"(Source.setOutputSource("%1", "%2") -> %3)").arg(QLatin1String(track), QLatin1String(source)).arg(result),
            "Source.setOutputChannelMask(3) -> 0"_s,
            "Mixer.setFrontRearMode(0) -> 0"_s,
            destroyed("Mixer"),
            destroyed("Source"),
        };
    };
    const auto lines = [](const char *track, const char *source, const QString &last) {
        return QStringList{
            info(QStringLiteral("set Front audio stream output source %1 %2").arg(QLatin1String(track), QLatin1String(source))),
            info("set front channels"),
            last,
        };
    };
    const QString done = info("Set Front seat audio stream success, 0 0 0");
    for (const TaggedTrack &row : taggedTracks) {
        addRow(qPrintable(QStringLiteral("tag %1 is track %2").arg(row.tag).arg(QLatin1String(row.track))),
               {},
               routeFrontTag(row.tag, "S+IPod_APP", true),
               {},
               calls(row.track, "S+IPod", 0),
               translation(frontByTag, row.tag, row.track, "S+IPod_APP", "S+IPod", "src") + lines(row.track, "S+IPod", done));
    }
    for (const NoTag &row : noTags) {
        addRow(row.name,
               {},
               routeFrontTag(row.tag, "S+IPod_APP", true),
               {},
               {},
               translation(frontByTag, row.tag, "", "S+IPod_APP", "S+IPod", "src") << error("get spTag string error."));
    }
    addRow("front and rear",
           {},
           routeFrontTag(0, "S+IPod_APP", false),
           {},
           {created("Source"),
            created("Mixer"),
            R"(Source.setOutputSource("main", "S+IPod") -> 0)"_s,
            "Source.setOutputChannelMask(15) -> 0"_s,
            "Mixer.setFrontRearMode(1) -> 0"_s,
            destroyed("Mixer"),
            destroyed("Source")},
           translation(frontByTag, 0, "main", "S+IPod_APP", "S+IPod", "src")
               << info("set Front audio stream output source main S+IPod") << info("set front and rear channels") << done);
    const QString failed = error("Set Front seat audio stream error, 102 0 0");
    addRow("an unknown source is passed on as an empty name",
           {},
           routeFrontTag(0, "S+Gramophone_APP", true),
           {},
           calls("main", "", 102),
           translation(frontByTag, 0, "main", "S+Gramophone_APP", "", "src") + lines("main", "", failed));
    addRow("a null source counts as an empty one",
           {},
           routeFrontTag(0, nullptr, true),
           {},
           calls("main", "", 102),
           translation(frontByTag, 0, "main", "", "", "src") + lines("main", "", failed));
}

void AudioControlRoutingTest::setMainAudioDunkingMode_data()
{
    addColumns();
    const QString done = info("Set Front seat audio stream success.");
    const auto row = [&done](unsigned int mode) {
        const QString number = QString::number(mode);
        addRow(qPrintable(QLatin1String("mode ") + number),
               {},
               setDuckingMode(mode),
               {},
               fresh("Volume", {QStringLiteral("Volume.setDuckingMode(%1) -> 0").arg(number)}),
               {info(QLatin1String("setMainAudioDunkingMode ") + number), done});
    };
    row(0);
    row(1);
    row(2);
    row(std::numeric_limits<unsigned int>::max());
    addRow("refused",
           {refused("Volume.setDuckingMode", 7)},
           setDuckingMode(2),
           {},
           fresh("Volume", {"Volume.setDuckingMode(2) -> 7"_s}),
           {info("setMainAudioDunkingMode 2"), error("Set Front seat audio stream error 7")});
    addRow("no Volume can be made",
           {noneMade("Volume")},
           setDuckingMode(2),
           {},
           {notCreated("Volume")},
           {info("setMainAudioDunkingMode 2"), error("Set Front seat audio stream error -1")});
    addRow("the long-lived Volume does not matter",
           {startedWithoutObjects()},
           setDuckingMode(2),
           {},
           fresh("Volume", {"Volume.setDuckingMode(2) -> 0"_s}),
           {info("setMainAudioDunkingMode 2"), done});
}

void AudioControlRoutingTest::setMainAudioDunkingTargetGain_data()
{
    addColumns();
    const QString done = info("Set Front seat audio stream success.");
    const auto row = [&done](unsigned char gain) {
        const QString number = QString::number(gain);
        addRow(qPrintable(QLatin1String("gain ") + number),
               {},
               setDuckingGain(gain),
               {},
               fresh("Volume", {QStringLiteral("Volume.setDuckingTargetGain(%1) -> 0").arg(number)}),
               {info(QLatin1String("setMainAudioDunkingMode ") + number), done}); // the mode's text, on purpose
    };
    row(0);
    row(40);
    row(255);
    addRow("refused",
           {refused("Volume.setDuckingTargetGain", 7)},
           setDuckingGain(40),
           {},
           fresh("Volume", {"Volume.setDuckingTargetGain(40) -> 7"_s}),
           {info("setMainAudioDunkingMode 40"), error("Set Front seat audio stream error 7")});
    addRow("no Volume can be made",
           {noneMade("Volume")},
           setDuckingGain(40),
           {},
           {notCreated("Volume")},
           {info("setMainAudioDunkingMode 40"), error("Set Front seat audio stream error -1")});
}

void AudioControlRoutingTest::whatWasRoutedIsInForce()
{
    const simulator::AudioChip *const chip = platform->chip();
    control->setOutputFrontSource(AudioControl::Second, "S+IPod_APP", true);
    QCOMPARE(chip->outputSource("second"_s), "S+IPod"_s);
    QCOMPARE(chip->outputChannelMask("second"_s), 3U);
    QCOMPARE(chip->frontRearMode(), 0);
    control->setOutputSource(AudioControl::Main, "S+FilePlayer_APP");
    QCOMPARE(chip->activeSource("main"_s), "S+FilePlayer"_s);
    control->setMainAudioDunkingMode(2);
    control->setMainAudioDunkingTargetGain(40);
    QCOMPARE(chip->duckingMode(), 2U);
    QCOMPARE(chip->duckingGain(), 40);
}

QTEST_GUILESS_MAIN(AudioControlRoutingTest)

#include "tst_audiocontrol_routing.moc"
