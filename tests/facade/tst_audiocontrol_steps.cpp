#include "operationtest.h"

#include <QtTest/QtTest>

#include <limits>

using audio::AudioControl;

namespace
{

using Steps = QHash<QString, quint8>;

constexpr const char *filePlayer = "S+FilePlayer_APP";
constexpr const char *untouched = "untouched";
constexpr int untouchedStep = 77;

AudioControl::AudioTag tagOf(int number)
{
    return static_cast<AudioControl::AudioTag>(number);
}

QVariantMap mapOf(const Steps &steps)
{
    QVariantMap map;
    for (auto entry = steps.constBegin(); entry != steps.constEnd(); ++entry)
        map.insert(entry.key(), int(entry.value()));
    return map;
}

/// What comes of a step: the result, the name and the step that are handed out, and the step table behind it.
QVariant outcome(int result, const char *name, int step, const Steps &steps)
{
    return QVariantList{result, QString::fromLatin1(name), step, mapOf(steps)};
}

} // namespace

/// Volume in steps on the main and second track.
class AudioControlStepsTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void getCurTrackVolumeInfo_data();
    void getCurTrackVolumeInfo();
    void getCurMainTrackStepVolumeInfoAsksTheMainTrack();
    void findsAPhoneUnderEitherName();

    void changeCurTrackVolume_data();
    void changeCurTrackVolume();
    void changeCurTrackVolumeOfAGroup_data();
    void changeCurTrackVolumeOfAGroup();
    void changeCurTrackVolumeFails_data();
    void changeCurTrackVolumeFails();
    void looksAtEverySecondGroupOnly();
    void movesTheTableOfTheTag_data();
    void movesTheTableOfTheTag();
    void changeMainTrackStepVolumeMovesTheMainTrack();
    void walksThroughAllSteps();

private:
    // What is there before
    static Given playing(const char *source, const char *track = "main");
    static Given nothingPlaying();
    Given range(int steps);
    Given stored(const Steps &steps);
    Given currentTrack(const char *name);

    Act getInfo(int tag = 0);
    Act change(bool up, int tag = 0);

    static QString asked(const char *answer);
    static QString set(const char *source, int volume, int result = 0);
    /// Between the making and the destroying of a Source, then of a Volume.
    static QStringList inSource(const QStringList &calls);
    static QStringList inSourceAndVolume(const char *answer, const QStringList &calls);
};

AudioControlStepsTest::Given AudioControlStepsTest::playing(const char *source, const char *track)
{
    return [=](OperationTest &) { QVERIFY(simulator::Platform::instance()->chip()->setActiveSource(QString::fromLatin1(track), QString::fromLatin1(source))); };
}

AudioControlStepsTest::Given AudioControlStepsTest::nothingPlaying()
{
    return [](OperationTest &) { QVERIFY(simulator::Platform::instance()->chip()->activeSource("main"_s).isNull()); };
}

AudioControlStepsTest::Given AudioControlStepsTest::range(int steps)
{
    return [=](OperationTest &) { inner->stepRange = static_cast<quint8>(steps); };
}

AudioControlStepsTest::Given AudioControlStepsTest::stored(const Steps &steps)
{
    return [=](OperationTest &) { inner->mainStepVolumes = steps; };
}

AudioControlStepsTest::Given AudioControlStepsTest::currentTrack(const char *name)
{
    return [=](OperationTest &) { inner->curMainTrack = QString::fromLatin1(name); };
}

AudioControlStepsTest::Act AudioControlStepsTest::getInfo(int tag)
{
    return [=](AudioControl &) {
        QString name = QString::fromLatin1(untouched);
        quint8 step = untouchedStep;
        const int result = inner->getCurTrackVolumeInfo(tagOf(tag), name, step);
        return QVariantList{result, name, int(step)};
    };
}

AudioControlStepsTest::Act AudioControlStepsTest::change(bool up, int tag)
{
    return [=](AudioControl &) {
        QString name = QString::fromLatin1(untouched);
        quint8 step = untouchedStep;
        const int result = inner->changeCurTrackVolume(tagOf(tag), up, name, step);
        return QVariantList{result, name, int(step), mapOf(inner->mainStepVolumes)};
    };
}

QString AudioControlStepsTest::asked(const char *answer)
{
    return R"(Source.getActiveSource("main") -> %1)"_s.arg(answer ? R"("%1")"_s.arg(QString::fromLatin1(answer)) : "null"_s);
}

QString AudioControlStepsTest::set(const char *source, int volume, int result)
{
    return R"(Volume.setTrackVolume("main", "%1", %2) -> %3)"_s.arg(QString::fromLatin1(source)).arg(volume).arg(result);
}

QStringList AudioControlStepsTest::inSource(const QStringList &calls)
{
    return fresh("Source", calls);
}

QStringList AudioControlStepsTest::inSourceAndVolume(const char *answer, const QStringList &calls)
{
    return fresh("Source", QStringList{asked(answer)} + fresh("Volume", calls));
}

// Asking --------------------------------------------------------------------------------------------------------------------

void AudioControlStepsTest::getCurTrackVolumeInfo_data()
{
    const auto found = [](const char *name, int step) { return QVariantList{0, QString::fromLatin1(name), step}; };
    const auto missing = [](const char *name) { return QVariantList{-1, QString::fromLatin1(name), untouchedStep}; };

    addColumns();
    addRow("a source with a step",
           {playing("S+GPS"), stored({{"S+GPS_APP"_s, 20}, {"S+IPod_APP"_s, 30}})},
           getInfo(),
           found("S+GPS_APP", 20),
           inSource({asked("S+GPS")}),
           {});
    addRow("at step 0", {playing("S+GPS"), stored({{"S+GPS_APP"_s, 0}})}, getInfo(), found("S+GPS_APP", 0), inSource({asked("S+GPS")}), {});
    addRow("a source without a step leaves the step alone",
           {playing("S+GPS"), stored({{"S+IPod_APP"_s, 30}})},
           getInfo(),
           missing("S+GPS_APP"),
           inSource({asked("S+GPS")}),
           {error(R"("S+GPS_APP" isn't in the audio list.plz check)")});
    addRow("no group stands in for its member",
           {playing("S+AndroidAuto"), stored({{"S+FilePlayer_APP"_s, 30}})},
           getInfo(),
           missing("S+AndroidAuto_APP"),
           inSource({asked("S+AndroidAuto")}),
           {error(R"("S+AndroidAuto_APP" isn't in the audio list.plz check)")});
    addRow("S+none is the current track",
           {playing("S+none"), stored({{"S+FilePlayer_APP"_s, 30}})},
           getInfo(),
           found(filePlayer, 30),
           inSource({asked("S+none")}),
           {});
    addRow("S+none is another current track",
           {playing("S+none"), currentTrack("S+IPod_APP"), stored({{"S+FilePlayer_APP"_s, 30}, {"S+IPod_APP"_s, 40}})},
           getInfo(),
           found("S+IPod_APP", 40),
           inSource({asked("S+none")}),
           {});
    addRow("S+none, and the current track has no step",
           {playing("S+none")},
           getInfo(),
           missing(filePlayer),
           inSource({asked("S+none")}),
           {error(R"("S+FilePlayer_APP" isn't in the audio list.plz check)")});
    addRow("an unknown source is the current track",
           {playing("S+Unheard"), stored({{"S+FilePlayer_APP"_s, 30}})},
           getInfo(),
           found(filePlayer, 30),
           inSource({asked("S+Unheard")}),
           {});
    addRow("an empty source is the current track",
           {playing(""), stored({{"S+FilePlayer_APP"_s, 30}})},
           getInfo(),
           found(filePlayer, 30),
           inSource({asked("")}),
           {});
    addRow("nothing plays",
           {nothingPlaying(), stored({{"S+FilePlayer_APP"_s, 30}})},
           getInfo(),
           missing(untouched),
           inSource({asked(nullptr)}),
           {error("get getOutPutSource failed.")});
    addRow("the platform cannot tell",
           {playing("S+GPS"), refused("Source.getActiveSource", 7), stored({{"S+GPS_APP"_s, 20}})},
           getInfo(),
           missing(untouched),
           inSource({asked(nullptr)}),
           {error("get getOutPutSource failed.")});
    addRow("no Source is made, silently",
           {noneMade("Source"), playing("S+GPS"), stored({{"S+GPS_APP"_s, 20}})},
           getInfo(),
           missing(untouched),
           {notCreated("Source")},
           {});
}

void AudioControlStepsTest::getCurTrackVolumeInfo()
{
    checkRow();
}

void AudioControlStepsTest::getCurMainTrackStepVolumeInfoAsksTheMainTrack()
{
    QVERIFY(platform->chip()->setActiveSource("main"_s, "S+GPS"_s));
    QVERIFY(platform->chip()->setActiveSource("second"_s, "S+IPod"_s));
    control->initTrackStepVolume(AudioControl::Main, {{"S+GPS_APP"_s, 20}});
    control->initTrackStepVolume(AudioControl::Second, {{"S+GPS_APP"_s, 21}, {"S+IPod_APP"_s, 30}});
    takeCalls();
    QString name;
    quint8 step = 0;
    QCOMPARE(control->getCurMainTrackStepVolumeInfo(name, step), 0);
    QCOMPARE(name, "S+GPS_APP"_s);
    QCOMPARE(int(step), 20);
    QCOMPARE(takeCallsAndLifetimes(), inSource({asked("S+GPS")}));
}

void AudioControlStepsTest::findsAPhoneUnderEitherName()
{
    QVERIFY(platform->chip()->setActiveSource("main"_s, "S+BtPcmPhone"_s));
    inner->mainStepVolumes = {{"S+BtPcmPhone"_s, 20}, {"S+BtPcmPhone_APP"_s, 20}};
    QString name;
    quint8 step = 0;
    QCOMPARE(inner->getCurTrackVolumeInfo(AudioControl::Main, name, step), 0);
    QVERIFY2(name == "S+BtPcmPhone"_s || name == "S+BtPcmPhone_APP"_s, qPrintable(name));
    QCOMPARE(int(step), 20);
}

// Stepping ------------------------------------------------------------------------------------------------------------------

void AudioControlStepsTest::changeCurTrackVolume_data()
{
    const auto changed
        = [](const char *name, int step, int value) { return info(R"(main "%1" changed to  %2 %3)"_s.arg(QString::fromLatin1(name)).arg(step).arg(value)); };
    const auto gps = [](int step) { return Steps{{"S+GPS_APP"_s, static_cast<quint8>(step)}}; };

    addColumns();
    addRow("up",
           {playing("S+GPS"), stored(gps(20))},
           change(true),
           outcome(0, "S+GPS_APP", 21, gps(21)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 21)}),
           {changed("S+GPS_APP", 21, 21)});
    addRow("down",
           {playing("S+GPS"), stored(gps(20))},
           change(false),
           outcome(0, "S+GPS_APP", 19, gps(19)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 19)}),
           {changed("S+GPS_APP", 19, 19)});
    addRow("up to the highest",
           {playing("S+GPS"), stored(gps(99))},
           change(true),
           outcome(0, "S+GPS_APP", 100, gps(100)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 100)}),
           {changed("S+GPS_APP", 100, 100)});
    addRow("down to silence",
           {playing("S+GPS"), stored(gps(1))},
           change(false),
           outcome(0, "S+GPS_APP", 0, gps(0)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 0)}),
           {changed("S+GPS_APP", 0, 0)});
    addRow("up at the highest makes no Volume",
           {playing("S+GPS"), stored(gps(100))},
           change(true),
           outcome(1, "S+GPS_APP", 100, gps(100)),
           inSource({asked("S+GPS")}),
           {});
    addRow("up above the highest makes no Volume",
           {playing("S+GPS"), stored(gps(120))},
           change(true),
           outcome(1, "S+GPS_APP", 120, gps(120)),
           inSource({asked("S+GPS")}),
           {});
    addRow("down at silence makes no Volume",
           {playing("S+GPS"), stored(gps(0))},
           change(false),
           outcome(1, "S+GPS_APP", 0, gps(0)),
           inSource({asked("S+GPS")}),
           {});
    addRow("up from an empty table starts in the middle",
           {playing("S+GPS")},
           change(true),
           outcome(0, "S+GPS_APP", 51, gps(51)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 51)}),
           {changed("S+GPS_APP", 51, 51)});
    addRow("down from an empty table starts in the middle",
           {playing("S+GPS")},
           change(false),
           outcome(0, "S+GPS_APP", 49, gps(49)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 49)}),
           {changed("S+GPS_APP", 49, 49)});
    addRow("the middle of 25 steps is 12",
           {range(25), playing("S+GPS")},
           change(true),
           outcome(0, "S+GPS_APP", 13, gps(13)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 52)}),
           {changed("S+GPS_APP", 13, 52)});
    addRow("the middle of 1 step is 0", {range(1), playing("S+GPS")}, change(false), outcome(1, "S+GPS_APP", 0, {}), inSource({asked("S+GPS")}), {});
    addRow("step 15 of 30",
           {range(30), playing("S+GPS"), stored(gps(14))},
           change(true),
           outcome(0, "S+GPS_APP", 15, gps(15)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 50)}),
           {changed("S+GPS_APP", 15, 50)});
    addRow("step 30 of 30",
           {range(30), playing("S+GPS"), stored(gps(29))},
           change(true),
           outcome(0, "S+GPS_APP", 30, gps(30)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 100)}),
           {changed("S+GPS_APP", 30, 100)});
    addRow("down from beyond a range made smaller",
           {range(50), playing("S+GPS"), stored(gps(60))},
           change(false),
           outcome(0, "S+GPS_APP", 59, gps(59)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 118)}),
           {changed("S+GPS_APP", 59, 118)});
    addRow("the platform gets the low eight bits",
           {range(30), playing("S+GPS"), stored(gps(90))},
           change(false),
           outcome(0, "S+GPS_APP", 89, gps(89)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 296 - 256)}),
           {changed("S+GPS_APP", 89, 296)});
    addRow("255 steps",
           {range(255), playing("S+GPS"), stored(gps(254))},
           change(true),
           outcome(0, "S+GPS_APP", 255, gps(255)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 100)}),
           {changed("S+GPS_APP", 255, 100)});
    addRow("in a range of 0 there is no up", {range(0), playing("S+GPS")}, change(true), outcome(1, "S+GPS_APP", 0, {}), inSource({asked("S+GPS")}), {});
    addRow("in a range of 0 every step is silent",
           {range(0), playing("S+GPS"), stored(gps(5))},
           change(false),
           outcome(0, "S+GPS_APP", 4, gps(4)),
           inSourceAndVolume("S+GPS", {set("S+GPS", 0)}),
           {changed("S+GPS_APP", 4, 0)});
    addRow("nothing is boosted",
           {playing("S+BtRingtone"), stored({{"S+BtRingtone_APP"_s, 39}})},
           change(true),
           outcome(0, "S+BtRingtone_APP", 40, {{"S+BtRingtone_APP"_s, 40}}),
           inSourceAndVolume("S+BtRingtone", {set("S+BtRingtone", 40)}),
           {changed("S+BtRingtone_APP", 40, 40)});
    addRow("S+none is the current track",
           {playing("S+none"), currentTrack("S+GPS_APP"), stored(gps(20))},
           change(true),
           outcome(0, "S+GPS_APP", 21, gps(21)),
           inSourceAndVolume("S+none", {set("S+GPS", 21)}),
           {changed("S+GPS_APP", 21, 21)});
    addRow("an unknown source steps without a name",
           {playing("S+Unheard")},
           change(true),
           outcome(0, "", 51, {{QString(), 51}}),
           inSourceAndVolume("S+Unheard", {set("S+Unheard", 51)}),
           {changed("", 51, 51)});
}

void AudioControlStepsTest::changeCurTrackVolume()
{
    checkRow();
}

void AudioControlStepsTest::changeCurTrackVolumeOfAGroup_data()
{
    const auto steps = [](int step) { return Steps{{"S+FilePlayer_APP"_s, static_cast<quint8>(step)}}; };
    const auto findGroup = [](const char *source) { return info(R"(Find group  "S+FilePlayer" for "%1")"_s.arg(QString::fromLatin1(source))); };
    const QString willChange = R"([QT] Will change the group volume of  "S+FilePlayer_APP")"_s;
    const auto changed = [](int step) { return info(R"(main "S+FilePlayer_APP" changed to  %1 %1)"_s.arg(step)); };

    addColumns();
    addRow("its key plays: the key, then the member",
           {playing("S+FilePlayer"), stored(steps(20))},
           change(true),
           outcome(0, filePlayer, 21, steps(21)),
           inSourceAndVolume("S+FilePlayer", {set("S+FilePlayer", 21), set("S+AndroidAuto", 21)}),
           {findGroup("S+FilePlayer"), changed(21)});
    addRow("its member plays: the member, then the key",
           {playing("S+AndroidAuto"), stored(steps(20))},
           change(false),
           outcome(0, filePlayer, 19, steps(19)),
           inSourceAndVolume("S+AndroidAuto", {set("S+AndroidAuto", 19), set("S+FilePlayer", 19)}),
           {findGroup("S+AndroidAuto"), willChange, changed(19)});
    addRow("a step of the member's own is left alone",
           {playing("S+AndroidAuto"), stored({{"S+FilePlayer_APP"_s, 20}, {"S+AndroidAuto_APP"_s, 90}})},
           change(true),
           outcome(0, filePlayer, 21, {{"S+FilePlayer_APP"_s, 21}, {"S+AndroidAuto_APP"_s, 90}}),
           inSourceAndVolume("S+AndroidAuto", {set("S+AndroidAuto", 21), set("S+FilePlayer", 21)}),
           {findGroup("S+AndroidAuto"), willChange, changed(21)});
    addRow("S+none is the current track, which is in the group",
           {playing("S+none"), stored(steps(20))},
           change(true),
           outcome(0, filePlayer, 21, steps(21)),
           inSourceAndVolume("S+none", {set("S+FilePlayer", 21), set("S+AndroidAuto", 21)}),
           {findGroup("S+FilePlayer"), changed(21)});
    addRow("at the limit nothing is set",
           {playing("S+AndroidAuto"), stored(steps(100))},
           change(true),
           outcome(1, filePlayer, 100, steps(100)),
           inSource({asked("S+AndroidAuto")}),
           {findGroup("S+AndroidAuto"), willChange});
    addRow("the platform refuses what plays: the others are left",
           {playing("S+AndroidAuto"), stored(steps(20)), refusedOnce("Volume.setTrackVolume", 7, 1)},
           change(true),
           outcome(7, filePlayer, 20, steps(20)),
           inSourceAndVolume("S+AndroidAuto", {set("S+AndroidAuto", 21, 7)}),
           {findGroup("S+AndroidAuto"), willChange, error("setTrackVolume failed. 7")});
    addRow("the platform refuses the other, silently",
           {playing("S+AndroidAuto"), stored(steps(20)), refusedOnce("Volume.setTrackVolume", 7, 2)},
           change(true),
           outcome(0, filePlayer, 21, steps(21)),
           inSourceAndVolume("S+AndroidAuto", {set("S+AndroidAuto", 21), set("S+FilePlayer", 21, 7)}),
           {findGroup("S+AndroidAuto"), willChange, changed(21)});
    const Given third = [this](OperationTest &) { inner->groups = {{"S+FilePlayer"_s, {"S+AndroidAuto"_s, "S+IPod"_s, "S+FilePlayer"_s}}}; };
    addRow("a refused member does not stop the next",
           {third, playing("S+IPod"), stored(steps(20)), refusedOnce("Volume.setTrackVolume", 7, 2)},
           change(true),
           outcome(0, filePlayer, 21, steps(21)),
           inSourceAndVolume("S+IPod", {set("S+IPod", 21), set("S+AndroidAuto", 21, 7), set("S+FilePlayer", 21)}),
           {findGroup("S+IPod"), willChange, changed(21)});
    addRow("the search minds upper and lower case",
           {playing("s+androidauto")},
           change(true),
           outcome(0, "", 51, {{QString(), 51}}),
           inSourceAndVolume("s+androidauto", {set("s+androidauto", 51)}),
           {info(R"(main "" changed to  51 51)")});
}

void AudioControlStepsTest::changeCurTrackVolumeOfAGroup()
{
    checkRow();
}

void AudioControlStepsTest::changeCurTrackVolumeFails_data()
{
    const Steps gps = {{"S+GPS_APP"_s, 20}};

    addColumns();
    addRow("no Source is made",
           {playing("S+GPS"), stored(gps), noneMade("Source")},
           change(true),
           outcome(-1, untouched, untouchedStep, gps),
           {notCreated("Source")},
           {error("Create audio source failed.")});
    addRow("nothing plays",
           {nothingPlaying(), stored(gps)},
           change(true),
           outcome(-1, untouched, untouchedStep, gps),
           inSource({asked(nullptr)}),
           {error("get cur source name failed.")});
    addRow("the platform cannot tell",
           {playing("S+GPS"), stored(gps), refused("Source.getActiveSource", 7)},
           change(true),
           outcome(-1, untouched, untouchedStep, gps),
           inSource({asked(nullptr)}),
           {error("get cur source name failed.")});
    addRow("an empty source",
           {playing(""), stored(gps)},
           change(true),
           outcome(-1, untouched, untouchedStep, gps),
           inSource({asked("")}),
           {error("get cur source name failed.")});
    addRow("no Volume is made",
           {playing("S+GPS"), stored(gps), noneMade("Volume")},
           change(true),
           outcome(-1, "S+GPS_APP", 20, gps),
           inSource({asked("S+GPS"), notCreated("Volume")}),
           {error("Create volume failed.")});
    for (const int code : {7, 1, -1}) {
        addRow(qPrintable("the platform refuses with %1"_s.arg(code)),
               {playing("S+GPS"), stored(gps), refused("Volume.setTrackVolume", code)},
               change(true),
               outcome(code, "S+GPS_APP", 20, gps),
               inSourceAndVolume("S+GPS", {set("S+GPS", 21, code)}),
               {error("setTrackVolume failed. %1"_s.arg(code))});
    }
    addRow("the low eight bits may be refused",
           {playing("S+GPS"), range(50), stored({{"S+GPS_APP"_s, 100}})},
           change(false),
           outcome(103, "S+GPS_APP", 100, {{"S+GPS_APP"_s, 100}}),
           inSourceAndVolume("S+GPS", {set("S+GPS", 198, 103)}),
           {error("setTrackVolume failed. 103")});
    addRow("a current track that has no platform name",
           {playing("S+none"), currentTrack("S+Unheard_APP")},
           change(true),
           outcome(102, "S+Unheard_APP", 50, {}),
           inSourceAndVolume("S+none", {set("", 51, 102)}),
           {error("setTrackVolume failed. 102")});
}

void AudioControlStepsTest::changeCurTrackVolumeFails()
{
    checkRow();
}

void AudioControlStepsTest::looksAtEverySecondGroupOnly()
{
    inner->groups = {{"S+GPS"_s, {"member"_s}}, {"S+IPod"_s, {"member"_s}}, {"S+CarLife"_s, {"member"_s}}, {"S+WebLink"_s, {"member"_s}}};
    const QStringList keys = inner->groups.keys();
    for (int position = 0; position < keys.size(); ++position) {
        for (const QString &key : keys)
            inner->groups[key] = QStringList{key == keys.at(position) ? "S+Mic"_s : "S+DiscPlayer"_s, "follower"_s};
        QVERIFY(platform->chip()->setActiveSource("main"_s, "S+Mic"_s));
        QString name;
        quint8 step = 0;
        QCOMPARE(inner->changeCurTrackVolume(AudioControl::Main, true, name, step), 0);

        const bool isFound = position % 2 == 0;
        QString groupName;
        inner->trackNameFromSpToQt(keys.at(position), groupName);
        QCOMPARE(name, isFound ? groupName : "S+Mic_APP"_s);
        QCOMPARE(takeCalls().filter("follower"_s).size(), isFound ? 1 : 0);
        QCOMPARE(log->takeTexts().filter("Find group "_s).size(), isFound ? 1 : 0);
    }
}

void AudioControlStepsTest::movesTheTableOfTheTag_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("track");
    QTest::newRow("0") << 0 << "main"_s;
    QTest::newRow("1, the rear seats") << 1 << "second"_s;
    for (const int tag : {2, 3, 4, 5, 6, 7, 8, -1, std::numeric_limits<int>::min()})
        QTest::newRow(qPrintable("%1 counts as main"_s.arg(tag))) << tag << "main"_s;
}

void AudioControlStepsTest::movesTheTableOfTheTag()
{
    QFETCH(int, tag);
    QFETCH(QString, track);
    const bool isSecond = track == "second"_s;
    QVERIFY(platform->chip()->setActiveSource(track, "S+GPS"_s));
    QVERIFY(platform->chip()->setActiveSource(isSecond ? "main"_s : "second"_s, "S+IPod"_s));
    inner->mainStepVolumes = {{"S+GPS_APP"_s, 20}};
    inner->secondStepVolumes = {{"S+GPS_APP"_s, 30}};

    QString name;
    quint8 step = 0;
    QCOMPARE(inner->getCurTrackVolumeInfo(tagOf(tag), name, step), 0);
    QCOMPARE(name, "S+GPS_APP"_s);
    QCOMPARE(int(step), isSecond ? 30 : 20);
    QCOMPARE(inner->changeCurTrackVolume(tagOf(tag), true, name, step), 0);
    QCOMPARE(name, "S+GPS_APP"_s);
    QCOMPARE(int(step), isSecond ? 31 : 21);
    QCOMPARE(inner->mainStepVolumes, (Steps{{"S+GPS_APP"_s, static_cast<quint8>(isSecond ? 20 : 21)}}));
    QCOMPARE(inner->secondStepVolumes, (Steps{{"S+GPS_APP"_s, static_cast<quint8>(isSecond ? 31 : 30)}}));
    QCOMPARE(takeCalls(),
             (QStringList{R"(Source.getActiveSource("%1") -> "S+GPS")"_s.arg(track),
                          R"(Source.getActiveSource("%1") -> "S+GPS")"_s.arg(track),
                          R"(Volume.setTrackVolume("%1", "S+GPS", %2) -> 0)"_s.arg(track).arg(step)}));
    QCOMPARE(log->takeTexts(), QStringList{info(R"(%1 "S+GPS_APP" changed to  %2 %2)"_s.arg(track).arg(step))});
}

void AudioControlStepsTest::changeMainTrackStepVolumeMovesTheMainTrack()
{
    QVERIFY(platform->chip()->setActiveSource("main"_s, "S+GPS"_s));
    QVERIFY(platform->chip()->setActiveSource("second"_s, "S+IPod"_s));
    QString name;
    quint8 step = 0;
    QCOMPARE(control->changeMainTrackStepVolume(true, name, step), 0);
    QCOMPARE(name, "S+GPS_APP"_s);
    QCOMPARE(int(step), 51);
    QCOMPARE(control->changeMainTrackStepVolume(false, name, step), 0);
    QCOMPARE(int(step), 50);
    QCOMPARE(control->getCurMainTrackStepVolumeInfo(name, step), 0);
    QCOMPARE(int(step), 50);
    QCOMPARE(platform->chip()->trackVolume("main"_s, "S+GPS"_s), 50);
}

void AudioControlStepsTest::walksThroughAllSteps()
{
    QVERIFY(platform->chip()->setActiveSource("main"_s, "S+FilePlayer"_s));
    control->setStepRange(25);
    control->initTrackStepVolume(AudioControl::Main, {{"S+FilePlayer_APP"_s, 0}});
    QString name;
    quint8 step = 0;
    for (int expected = 1; expected <= 25; ++expected) {
        QCOMPARE(control->changeMainTrackStepVolume(true, name, step), 0);
        QCOMPARE(int(step), expected);
        QCOMPARE(platform->chip()->trackVolume("main"_s, "S+AndroidAuto"_s), 4 * expected);
    }
    QCOMPARE(control->changeMainTrackStepVolume(true, name, step), 1);
    QCOMPARE(platform->chip()->trackVolume("main"_s, "S+FilePlayer"_s), 100);
}

QTEST_APPLESS_MAIN(AudioControlStepsTest)
#include "tst_audiocontrol_steps.moc"
