#include "operationtest.h"

#include <QtTest/QtTest>

#include <algorithm>

using audio::AudioControl;

namespace
{

constexpr const char *setStreamVolumeSignature = "void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8)";

AudioControl::AudioTag tagOf(int number)
{
    return static_cast<AudioControl::AudioTag>(number);
}

} // namespace

/// Volume of one source, of the chip as a whole, and of many sources at once.
class AudioControlVolumeTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setStreamVolume_data();
    void setStreamVolume();
    void setStreamVolumeAddresses_data();
    void setStreamVolumeAddresses();
    void getStreamVolume_data();
    void getStreamVolume();
    void readsABoostedSourceBackBoosted();
    void setMasterVolume_data();
    void setMasterVolume();
    void getMasterVolume_data();
    void getMasterVolume();

    void boosts_data();
    void boosts();
    void leavesUnboosted_data();
    void leavesUnboosted();
    void convertsEveryStepOfEveryRange();

    void initTracksVolumes_data();
    void initTracksVolumes();
    void initTracksVolumesFillsTheTableOfTheTag_data();
    void initTracksVolumesFillsTheTableOfTheTag();
    void initTracksVolumesReplacesAndKeepsOldEntries();
    void initTracksVolumesAppliesTheOthersWhenOneFails();
    void initTrackStepVolumeReachesThePlatform();

private:
    Act set(int tag, const char *name, int volume) const;
    Act get(int tag, const char *name) const;
    Act load(int range, const QHash<QString, quint8> &volumes);
    /// The two traces that precede every request that is in range.
    static QStringList traces(int tag, const QString &track, const char *name, const QString &source);
};

AudioControlVolumeTest::Act AudioControlVolumeTest::set(int tag, const char *name, int volume) const
{
    return [=](AudioControl &facade) {
        facade.setStreamVolume(tagOf(tag), name, static_cast<quint8>(volume));
        return QVariant();
    };
}

AudioControlVolumeTest::Act AudioControlVolumeTest::get(int tag, const char *name) const
{
    return [=](AudioControl &facade) { return int(facade.getStreamVolume(tagOf(tag), name)); };
}

QStringList AudioControlVolumeTest::traces(int tag, const QString &track, const char *name, const QString &source)
{
    return {trace(setStreamVolumeSignature, qPrintable(R"(%1 "%2" tag)"_s.arg(tag).arg(track))),
            trace(setStreamVolumeSignature, qPrintable(R"(%1 "%2" src)"_s.arg(QString::fromLatin1(name), source)))};
}

void AudioControlVolumeTest::setStreamVolume_data()
{
    const QVariant nothing;
    const QStringList noCalls;
    const auto sent = [](const QString &source, int volume) {
        return fresh("Volume", {R"(Volume.setTrackVolume("main", ")"_s + source + R"(", )"_s + QString::number(volume) + ") -> 0"_s});
    };
    const auto logged = [](const char *name, const QString &source, int volume) {
        return traces(0, "main"_s, name, source) + QStringList{info("set stream "_s + QString::fromLatin1(name) + " "_s + QString::number(volume))};
    };

    addColumns();
    addRow("as given", {}, set(0, "S+FilePlayer_APP", 80), nothing, sent("S+FilePlayer"_s, 80), logged("S+FilePlayer_APP", "S+FilePlayer"_s, 80));
    addRow("silent", {}, set(0, "S+FilePlayer_APP", 0), nothing, sent("S+FilePlayer"_s, 0), logged("S+FilePlayer_APP", "S+FilePlayer"_s, 0));
    addRow("highest", {}, set(0, "S+FilePlayer_APP", 148), nothing, sent("S+FilePlayer"_s, 148), logged("S+FilePlayer_APP", "S+FilePlayer"_s, 148));
    addRow("the ringtone is boosted by half",
           {},
           set(0, "S+BtRingtone_APP", 40),
           nothing,
           sent("S+BtRingtone"_s, 60),
           logged("S+BtRingtone_APP", "S+BtRingtone"_s, 60));
    addRow("and loses the fraction", {}, set(0, "S+BtRingtone_APP", 41), nothing, sent("S+BtRingtone"_s, 61), logged("S+BtRingtone_APP", "S+BtRingtone"_s, 61));
    addRow("and held at 148", {}, set(0, "S+BtRingtone_APP", 100), nothing, sent("S+BtRingtone"_s, 148), logged("S+BtRingtone_APP", "S+BtRingtone"_s, 148));
    addRow(
        "and not refused at 148", {}, set(0, "S+BtRingtone_APP", 148), nothing, sent("S+BtRingtone"_s, 148), logged("S+BtRingtone_APP", "S+BtRingtone"_s, 148));
    addRow("the AirPlay name begins in lower case",
           {},
           set(0, "s+AirPlayMedia_APP", 9),
           nothing,
           sent("S+AirPlayMedia"_s, 9),
           logged("s+AirPlayMedia_APP", "S+AirPlayMedia"_s, 9));
    addRow("a group's name sets that one source",
           {},
           set(0, "S+AndroidAuto_APP", 9),
           nothing,
           sent("S+AndroidAuto"_s, 9),
           logged("S+AndroidAuto_APP", "S+AndroidAuto"_s, 9));

    addRow("a byte order mark is no part of a name",
           {},
           set(0, "\xef\xbb\xbfS+FilePlayer_APP", 80),
           nothing,
           sent("S+FilePlayer"_s, 80),
           logged("S+FilePlayer_APP", "S+FilePlayer"_s, 80));

    const QStringList refusal = {error("input volume val more than  148")};
    addRow("149 is refused", {}, set(0, "S+FilePlayer_APP", 149), nothing, noCalls, refusal);
    addRow("149 is refused also where it would be boosted", {}, set(0, "S+BtRingtone_APP", 149), nothing, noCalls, refusal);
    addRow("255 is refused", {}, set(0, "S+FilePlayer_APP", 255), nothing, noCalls, refusal);
    addRow("149 is refused before the names are looked at", {}, set(8, "S+Unheard_APP", 149), nothing, noCalls, refusal);

    addRow("an unknown name is passed over", {}, set(0, "S+Unheard_APP", 80), nothing, noCalls, traces(0, "main"_s, "S+Unheard_APP", {}));
    addRow("a platform name is unknown here", {}, set(0, "S+FilePlayer", 80), nothing, noCalls, traces(0, "main"_s, "S+FilePlayer", {}));
    addRow("an empty name is passed over", {}, set(0, "", 80), nothing, noCalls, traces(0, "main"_s, "", {}));
    addRow("a null name is passed over", {}, set(0, nullptr, 80), nothing, noCalls, traces(0, "main"_s, "", {}));
    addRow("tag 8 is passed over", {}, set(8, "S+FilePlayer_APP", 80), nothing, noCalls, traces(8, {}, "S+FilePlayer_APP", "S+FilePlayer"_s));
    addRow("tag -1 is passed over", {}, set(-1, "S+FilePlayer_APP", 80), nothing, noCalls, traces(-1, {}, "S+FilePlayer_APP", "S+FilePlayer"_s));
    addRow("the lowest tag is passed over",
           {},
           set(std::numeric_limits<int>::min(), "S+FilePlayer_APP", 80),
           nothing,
           noCalls,
           traces(std::numeric_limits<int>::min(), {}, "S+FilePlayer_APP", "S+FilePlayer"_s));
    addRow("neither tag nor name", {}, set(8, "S+Unheard_APP", 80), nothing, noCalls, traces(8, {}, "S+Unheard_APP", {}));

    const QStringList fileTraces = traces(0, "main"_s, "S+FilePlayer_APP", "S+FilePlayer"_s);
    for (const int code : {7, 1, -1}) {
        addRow(qPrintable("the platform refuses with "_s + QString::number(code)),
               {refused("Volume.setTrackVolume", code)},
               set(0, "S+FilePlayer_APP", 80),
               nothing,
               fresh("Volume", {R"(Volume.setTrackVolume("main", "S+FilePlayer", 80) -> )"_s + QString::number(code)}),
               fileTraces + QStringList{error("set stream S+FilePlayer_APP err "_s + QString::number(code))});
    }
    addRow("no Volume is made",
           {noneMade("Volume")},
           set(0, "S+FilePlayer_APP", 80),
           nothing,
           {notCreated("Volume")},
           fileTraces + QStringList{error("create volume  S+FilePlayer_APP  err")});
    addRow("the long-lived objects are not needed",
           {startedWithoutObjects()},
           set(0, "S+FilePlayer_APP", 80),
           nothing,
           sent("S+FilePlayer"_s, 80),
           logged("S+FilePlayer_APP", "S+FilePlayer"_s, 80));
}

void AudioControlVolumeTest::setStreamVolume()
{
    checkRow();
}

void AudioControlVolumeTest::setStreamVolumeAddresses_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("track");
    int tag = 0;
    for (const char *track : {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"})
        QTest::newRow(track) << tag++ << QString::fromLatin1(track);
}

void AudioControlVolumeTest::setStreamVolumeAddresses()
{
    QFETCH(int, tag);
    QFETCH(QString, track);
    control->setStreamVolume(tagOf(tag), "S+GPS_APP", 33);
    QCOMPARE(platform->chip()->trackVolume(track, "S+GPS"_s), 33);
    QCOMPARE(takeCalls(), QStringList{R"(Volume.setTrackVolume(")"_s + track + R"(", "S+GPS", 33) -> 0)"_s});
    QCOMPARE(int(control->getStreamVolume(tagOf(tag), "S+GPS_APP")), 33);
    QCOMPARE(takeCalls(), QStringList{R"(Volume.getTrackVolume(")"_s + track + R"(", "S+GPS") -> 0, 33)"_s});
}

void AudioControlVolumeTest::getStreamVolume_data()
{
    const auto holding = [](int volume) -> Given {
        return [volume](OperationTest &) { simulator::Platform::instance()->chip()->setTrackVolume("second"_s, "S+GPS"_s, static_cast<quint8>(volume)); };
    };

    addColumns();
    addRow("never set",
           {},
           get(1, "S+GPS_APP"),
           0,
           fresh("Volume", {R"(Volume.getTrackVolume("second", "S+GPS") -> 0, 0)"_s}),
           {info(R"(get stream "second" "S+GPS" 0)")});
    addRow("set",
           {holding(77)},
           get(1, "S+GPS_APP"),
           77,
           fresh("Volume", {R"(Volume.getTrackVolume("second", "S+GPS") -> 0, 77)"_s}),
           {info(R"(get stream "second" "S+GPS" 77)")});
    addRow("an unknown name reads as 0, silently", {}, get(1, "S+Unheard_APP"), 0, {}, {});
    addRow("a platform name reads as 0, silently", {holding(77)}, get(1, "S+GPS"), 0, {}, {});
    addRow("a null name reads as 0, silently", {}, get(1, nullptr), 0, {}, {});
    addRow("tag 8 reads as 0, silently", {}, get(8, "S+GPS_APP"), 0, {}, {});
    addRow("tag -1 reads as 0, silently", {}, get(-1, "S+GPS_APP"), 0, {}, {});
    addRow("the platform refuses",
           {holding(77), refused("Volume.getTrackVolume", 7)},
           get(1, "S+GPS_APP"),
           0,
           fresh("Volume", {R"(Volume.getTrackVolume("second", "S+GPS") -> 7)"_s}),
           {error(R"(get stream "second" "S+GPS" err 7)")});
    addRow("the platform refuses after writing: what it wrote",
           {holding(77), refusedAfterWriting("Volume.getTrackVolume", 7)},
           get(1, "S+GPS_APP"),
           77,
           fresh("Volume", {R"(Volume.getTrackVolume("second", "S+GPS") -> 7, 77)"_s}),
           {error(R"(get stream "second" "S+GPS" err 7)")});
    addRow("no Volume is made",
           {holding(77), noneMade("Volume")},
           get(1, "S+GPS_APP"),
           0,
           {notCreated("Volume")},
           {error(R"(create volume  "second" "S+GPS" err)")});
}

void AudioControlVolumeTest::getStreamVolume()
{
    checkRow();
}

void AudioControlVolumeTest::readsABoostedSourceBackBoosted()
{
    control->setStreamVolume(AudioControl::Main, "S+BtRingtone_APP", 40);
    QCOMPARE(int(control->getStreamVolume(AudioControl::Main, "S+BtRingtone_APP")), 60);
}

void AudioControlVolumeTest::setMasterVolume_data()
{
    const auto setMaster = [](int volume) -> Act { return [volume](AudioControl &facade) { return facade.setMasterVolume(static_cast<quint8>(volume)); }; };
    const QStringList call = {"Volume.setMasterVolume(100) -> 0"_s};
    const QStringList line = {info("set master volume 100")};

    addColumns();
    addRow("0 still means full scale", {}, setMaster(0), 0, call, line);
    addRow("30 still means full scale", {}, setMaster(30), 0, call, line);
    addRow("100", {}, setMaster(100), 0, call, line);
    addRow("101 is refused", {}, setMaster(101), -1, {}, {error("input volume val more than  100")});
    addRow("255 is refused", {}, setMaster(255), -1, {}, {error("input volume val more than  100")});
    for (const int code : {7, 1, -1, -2}) {
        const QString number = QString::number(code);
        addRow(qPrintable("-1 when the platform refuses with "_s + number),
               {refused("Volume.setMasterVolume", code)},
               setMaster(30),
               -1,
               {"Volume.setMasterVolume(100) -> "_s + number},
               {error("set master volume err "_s + number)});
    }
    addRow("-1 without the long-lived Volume", {startedWithoutObjects()}, setMaster(30), -1, {}, {error("set master volume err -1")});
    addRow("101 is refused without the long-lived Volume", {startedWithoutObjects()}, setMaster(101), -1, {}, {error("input volume val more than  100")});
    addRow("no Volume is made for it", {noneMade("Volume")}, setMaster(30), 0, call, line);
}

void AudioControlVolumeTest::setMasterVolume()
{
    checkRow();
}

void AudioControlVolumeTest::getMasterVolume_data()
{
    const Act get = [](AudioControl &facade) { return int(facade.getMasterVolume()); };
    const Given set = [](OperationTest &) { simulator::Platform::instance()->chip()->setMasterVolume(42); };

    addColumns();
    addRow("silent after switching on", {}, get, 0, {"Volume.getMasterVolume(0) -> 0, 0"_s}, {info("get master volume 0")});
    addRow("set", {set}, get, 42, {"Volume.getMasterVolume(0) -> 0, 42"_s}, {info("get master volume 42")});
    addRow("0 when the platform refuses",
           {set, refused("Volume.getMasterVolume", 7)},
           get,
           0,
           {"Volume.getMasterVolume(0) -> 7"_s},
           {error("get master volume err 7")});
    addRow("what the platform wrote before it refused",
           {set, refusedAfterWriting("Volume.getMasterVolume", 7)},
           get,
           42,
           {"Volume.getMasterVolume(0) -> 7, 42"_s},
           {error("get master volume err 7")});
    addRow("0 without the long-lived Volume", {startedWithoutObjects(), set}, get, 0, {}, {error("get master volume err -1")});
}

void AudioControlVolumeTest::getMasterVolume()
{
    checkRow();
}

void AudioControlVolumeTest::boosts_data()
{
    QTest::addColumn<QString>("source");
    for (const char *source : {"S+CarPlayTelephony", "S+BtPhone", "S+CarPlayAlert", "S+BtRingtone", "S+AuxIn", "S+CarPlaySpeech", "S+BtPcmPhone"})
        QTest::newRow(source) << QString::fromLatin1(source);
}

void AudioControlVolumeTest::boosts()
{
    QFETCH(QString, source);
    for (int volume = 0; volume <= 255; ++volume) {
        const int product = (3 * volume / 2) % 256; // 171 and more wrap round
        QCOMPARE(int(inner->increaseVolume(source, static_cast<quint8>(volume))), product > 148 ? 148 : product);
    }
    QCOMPARE(int(inner->increaseVolume(source, 98)), 147);
    QCOMPARE(int(inner->increaseVolume(source, 99)), 148);
    QCOMPARE(int(inner->increaseVolume(source, 170)), 148);
    QCOMPARE(int(inner->increaseVolume(source, 171)), 0);
    QCOMPARE(int(inner->increaseVolume(source, 255)), 126);
}

void AudioControlVolumeTest::leavesUnboosted_data()
{
    QTest::addColumn<QString>("source");
    for (const char *source : {"S+FilePlayer",
                               "S+DiscPlayer",
                               "BT_AUDIO_Track",
                               "BT_MIC_Record",
                               "S+Mic",
                               "S+GPS",
                               "S+CarPlayMedia",
                               "S+CarPlayDefault",
                               "S+AndroidAuto",
                               "S+IPod",
                               "S+CarLife",
                               "S+IosMirror",
                               "S+WebLink",
                               "S+AirPlayMedia",
                               "S+none"})
        QTest::newRow(source) << QString::fromLatin1(source);
    QTest::newRow("a boosted source in lower case") << "s+btringtone"_s;
    QTest::newRow("the application's name of a boosted source") << "S+BtRingtone_APP"_s;
    QTest::newRow("the beginning of a boosted source") << "S+BtRing"_s;
    QTest::newRow("an empty name") << ""_s;
    QTest::newRow("a null name") << QString();
}

void AudioControlVolumeTest::leavesUnboosted()
{
    QFETCH(QString, source);
    for (int volume = 0; volume <= 255; ++volume)
        QCOMPARE(int(inner->increaseVolume(source, static_cast<quint8>(volume))), volume);
}

void AudioControlVolumeTest::convertsEveryStepOfEveryRange()
{
    control->setStepRange(0);
    inner->stepRange = 0;
    for (int step = 0; step <= 255; ++step)
        QCOMPARE(inner->platformValueOfStep(step), 0);
    for (int range = 1; range <= 255; ++range) {
        inner->stepRange = static_cast<quint8>(range);
        for (int step = 0; step <= 255; ++step) {
            // The largest whole number whose product with the range is not above 100 steps.
            const int value = inner->platformValueOfStep(step);
            const bool isRight = value * range <= 100 * step && (value + 1) * range > 100 * step;
            QVERIFY2(isRight, qPrintable("step %1 of %2 is worth %3"_s.arg(step).arg(range).arg(value)));
        }
    }
}

AudioControlVolumeTest::Act AudioControlVolumeTest::load(int range, const QHash<QString, quint8> &volumes)
{
    return [=](AudioControl &) {
        inner->stepRange = static_cast<quint8>(range);
        inner->initTracksVolumes(AudioControl::Second, volumes);
        QVariantMap table;
        for (auto entry = inner->secondStepVolumes.constBegin(); entry != inner->secondStepVolumes.constEnd(); ++entry)
            table.insert(entry.key(), int(entry.value()));
        return table;
    };
}

void AudioControlVolumeTest::initTracksVolumes_data()
{
    const auto set = [](const char *source, int volume, int result = 0) {
        return R"(Volume.setTrackVolume("second", "%1", %2) -> %3)"_s.arg(QString::fromLatin1(source)).arg(volume).arg(result);
    };
    const auto done = [](const char *source, int step, int volume) {
        return info(R"(set stream second "%1" %2 %3)"_s.arg(QString::fromLatin1(source)).arg(step).arg(volume));
    };
    // The line number stands twice.
    const auto failed = [](const char *source, int step, int volume, int result) {
        return error(R"(LINE set stream second "%1" %2 %3 %4)"_s.arg(QString::fromLatin1(source)).arg(step).arg(volume).arg(result));
    };
    const auto table = [](const char *name, int step) { return QVariantMap{{QString::fromLatin1(name), step}}; };

    addColumns();
    addRow("nothing to load", {}, load(100, {}), QVariantMap(), fresh("Volume", {}), {});
    addRow("one source",
           {},
           load(100, {{"S+DiscPlayer_APP"_s, 50}}),
           table("S+DiscPlayer_APP", 50),
           fresh("Volume", {set("S+DiscPlayer", 50)}),
           {done("S+DiscPlayer", 50, 50)});
    addRow("a group's key sets every member",
           {},
           load(100, {{"S+FilePlayer_APP"_s, 50}}),
           table("S+FilePlayer_APP", 50),
           fresh("Volume", {set("S+AndroidAuto", 50), set("S+FilePlayer", 50)}),
           {done("S+AndroidAuto", 50, 50), done("S+FilePlayer", 50, 50)});
    addRow("a group's other member sets itself",
           {},
           load(100, {{"S+AndroidAuto_APP"_s, 50}}),
           table("S+AndroidAuto_APP", 50),
           fresh("Volume", {set("S+AndroidAuto", 50)}),
           {done("S+AndroidAuto", 50, 50)});
    addRow("step 15 of 30", {}, load(30, {{"S+GPS_APP"_s, 15}}), table("S+GPS_APP", 15), fresh("Volume", {set("S+GPS", 50)}), {done("S+GPS", 15, 50)});
    addRow("step 30 of 30", {}, load(30, {{"S+GPS_APP"_s, 30}}), table("S+GPS_APP", 30), fresh("Volume", {set("S+GPS", 100)}), {done("S+GPS", 30, 100)});
    addRow("step 1 of 30 loses the fraction",
           {},
           load(30, {{"S+GPS_APP"_s, 1}}),
           table("S+GPS_APP", 1),
           fresh("Volume", {set("S+GPS", 3)}),
           {done("S+GPS", 1, 3)});
    addRow("step 0", {}, load(100, {{"S+GPS_APP"_s, 0}}), table("S+GPS_APP", 0), fresh("Volume", {set("S+GPS", 0)}), {done("S+GPS", 0, 0)});
    addRow("step 40 is boosted",
           {},
           load(100, {{"S+AuxIn_APP"_s, 40}}),
           table("S+AuxIn_APP", 40),
           fresh("Volume", {set("S+AuxIn", 60)}),
           {done("S+AuxIn", 40, 60)});
    addRow("step 200 counts as the highest",
           {},
           load(100, {{"S+GPS_APP"_s, 200}}),
           table("S+GPS_APP", 100),
           fresh("Volume", {set("S+GPS", 100)}),
           {error(R"("S+GPS_APP" 's value 200  is more than stepRange,set to max  100)"), done("S+GPS", 100, 100)});
    addRow("step 101 counts as the highest, boosted",
           {},
           load(100, {{"S+BtRingtone_APP"_s, 101}}),
           table("S+BtRingtone_APP", 100),
           fresh("Volume", {set("S+BtRingtone", 148)}),
           {error(R"("S+BtRingtone_APP" 's value 101  is more than stepRange,set to max  100)"), done("S+BtRingtone", 100, 148)});
    addRow("in a range of 0 every step is silent",
           {},
           load(0, {{"S+GPS_APP"_s, 5}}),
           table("S+GPS_APP", 0),
           fresh("Volume", {set("S+GPS", 0)}),
           {error(R"("S+GPS_APP" 's value 5  is more than stepRange,set to max  0)"), done("S+GPS", 0, 0)});
    addRow("an unknown name is kept and not sent",
           {},
           load(100, {{"S+Unheard_APP"_s, 50}}),
           table("S+Unheard_APP", 50),
           fresh("Volume", {}),
           {error(R"(get sp track name failed. "S+Unheard_APP")")});
    addRow("an unknown name above the range is kept lowered",
           {},
           load(100, {{"S+Unheard_APP"_s, 101}}),
           table("S+Unheard_APP", 100),
           fresh("Volume", {}),
           {error(R"("S+Unheard_APP" 's value 101  is more than stepRange,set to max  100)"), error(R"(get sp track name failed. "S+Unheard_APP")")});
    addRow("the platform refuses; the step is kept",
           {refused("Volume.setTrackVolume", 7)},
           load(100, {{"S+GPS_APP"_s, 50}}),
           table("S+GPS_APP", 50),
           fresh("Volume", {set("S+GPS", 50, 7)}),
           {failed("S+GPS", 50, 50, 7)});
    addRow("the platform refuses the first of a group",
           {refusedOnce("Volume.setTrackVolume", 7, 1)},
           load(100, {{"S+FilePlayer_APP"_s, 50}}),
           table("S+FilePlayer_APP", 50),
           fresh("Volume", {set("S+AndroidAuto", 50, 7), set("S+FilePlayer", 50)}),
           {failed("S+AndroidAuto", 50, 50, 7), done("S+FilePlayer", 50, 50)});
    addRow("the platform refuses the second of a group",
           {refusedOnce("Volume.setTrackVolume", 7, 2)},
           load(100, {{"S+FilePlayer_APP"_s, 50}}),
           table("S+FilePlayer_APP", 50),
           fresh("Volume", {set("S+AndroidAuto", 50), set("S+FilePlayer", 50, 7)}),
           {done("S+AndroidAuto", 50, 50), failed("S+FilePlayer", 50, 50, 7)});
    addRow("no Volume is made: nothing is kept",
           {noneMade("Volume")},
           load(100, {{"S+GPS_APP"_s, 50}}),
           QVariantMap(),
           {notCreated("Volume")},
           {error("create volume err")});
}

void AudioControlVolumeTest::initTracksVolumes()
{
    checkRow();
}

void AudioControlVolumeTest::initTracksVolumesFillsTheTableOfTheTag_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("track");
    QTest::newRow("0") << 0 << "main"_s;
    QTest::newRow("1, the rear seats") << 1 << "second"_s;
    for (const int tag : {2, 3, 4, 5, 6, 7, 8, -1})
        QTest::newRow(qPrintable("%1 counts as main"_s.arg(tag))) << tag << "main"_s;
}

void AudioControlVolumeTest::initTracksVolumesFillsTheTableOfTheTag()
{
    QFETCH(int, tag);
    QFETCH(QString, track);
    inner->initTracksVolumes(tagOf(tag), {{"S+GPS_APP"_s, 20}});
    const QHash<QString, quint8> none;
    const QHash<QString, quint8> filled = {{"S+GPS_APP"_s, 20}};
    const bool isSecond = track == "second"_s;
    QCOMPARE(inner->mainStepVolumes, isSecond ? none : filled);
    QCOMPARE(inner->secondStepVolumes, isSecond ? filled : none);
    QCOMPARE(takeCalls(), QStringList{R"(Volume.setTrackVolume("%1", "S+GPS", 20) -> 0)"_s.arg(track)});
    QCOMPARE(log->takeTexts(), QStringList{info(R"(set stream %1 "S+GPS" 20 20)"_s.arg(track))});
}

void AudioControlVolumeTest::initTracksVolumesReplacesAndKeepsOldEntries()
{
    inner->mainStepVolumes = {{"S+GPS_APP"_s, 20}, {"S+IPod_APP"_s, 30}};
    inner->initTracksVolumes(AudioControl::Main, {{"S+GPS_APP"_s, 21}});
    QCOMPARE(inner->mainStepVolumes, (QHash<QString, quint8>{{"S+GPS_APP"_s, 21}, {"S+IPod_APP"_s, 30}}));
}

void AudioControlVolumeTest::initTracksVolumesAppliesTheOthersWhenOneFails()
{
    QVERIFY(platform->faults()->fail("Volume.setTrackVolume"_s, 7, 2));
    inner->initTracksVolumes(AudioControl::Main, {{"S+GPS_APP"_s, 20}, {"S+Unheard_APP"_s, 10}, {"S+IPod_APP"_s, 30}, {"S+AuxIn_APP"_s, 40}});
    // In the order of a hash, which differs from run to run.
    QCOMPARE(takeCalls().size(), 3);
    const QStringList lines = log->takeFacadeTexts();
    QCOMPARE(lines.filter("get sp track name failed."_s).size(), 1);
    QCOMPARE(lines.filter("set stream main"_s).size(), 3);
    QCOMPARE(lines.filter("[Error]"_s).size(), 2);
    const simulator::AudioChip *const chip = platform->chip();
    const int sum = chip->trackVolume("main"_s, "S+GPS"_s) + chip->trackVolume("main"_s, "S+IPod"_s) + chip->trackVolume("main"_s, "S+AuxIn"_s);
    QVERIFY2(sum == 20 + 30 || sum == 20 + 60 || sum == 30 + 60, qPrintable(QString::number(sum)));
}

void AudioControlVolumeTest::initTrackStepVolumeReachesThePlatform()
{
    control->setStepRange(25);
    control->initTrackStepVolume(AudioControl::Second, {{"S+FilePlayer_APP"_s, 10}});
    QCOMPARE(
        takeCallsAndLifetimes(),
        fresh("Volume", {R"(Volume.setTrackVolume("second", "S+AndroidAuto", 40) -> 0)"_s, R"(Volume.setTrackVolume("second", "S+FilePlayer", 40) -> 0)"_s}));
    QCOMPARE(platform->chip()->trackVolume("second"_s, "S+AndroidAuto"_s), 40);
}

QTEST_APPLESS_MAIN(AudioControlVolumeTest)
#include "tst_audiocontrol_volume.moc"
