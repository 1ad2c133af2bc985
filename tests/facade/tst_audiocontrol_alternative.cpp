#include "operationtest.h"

#include <QtTest/QtTest>

using audio::AudioControl;

namespace
{

constexpr int untouchedStep = 77;

} // namespace

/// The alternative track, which prompts and calls play on, and the master step.
class AudioControlAlternativeTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void getActivedAlterNumber_data();
    void getActivedAlterNumber();
    void getAlterNumberOfAnotherTrack();
    void changeAlterStepVolume_data();
    void changeAlterStepVolume();
    void setAlterVolume_data();
    void setAlterVolume();
    void boostsEveryAlternativeVolume();
    void setAlterStepVolume_data();
    void setAlterStepVolume();
    void setMasterStepVolume_data();
    void setMasterStepVolume();

private:
    static Given range(int steps);
    static Act changeAlter(bool up, int current);
    static Act setAlter(int volume, bool hicarCall);
    static Act setAlterStep(int step, bool hicarCall);
    /// Master steps one after the other; the result is a pair for each: what came back and the step that then holds.
    static Act setMasterSteps(const QList<int> &steps);
};

/// The facade under test is only known when a row acts, so the range travels in a row as a request of its own.
AudioControlAlternativeTest::Given AudioControlAlternativeTest::range(int steps)
{
    return [steps](OperationTest &test) { static_cast<AudioControlAlternativeTest &>(test).control->setStepRange(static_cast<quint8>(steps)); };
}

AudioControlAlternativeTest::Act AudioControlAlternativeTest::changeAlter(bool up, int current)
{
    return [=](AudioControl &facade) {
        quint8 step = untouchedStep;
        const int result = facade.changeAlterStepVolume(up, static_cast<quint8>(current), step);
        return QVariantList{result, int(step), int(facade.getAlterStepVolume())};
    };
}

AudioControlAlternativeTest::Act AudioControlAlternativeTest::setAlter(int volume, bool hicarCall)
{
    return [=](AudioControl &facade) { return facade.setAlterVolume(static_cast<quint8>(volume), hicarCall); };
}

AudioControlAlternativeTest::Act AudioControlAlternativeTest::setAlterStep(int step, bool hicarCall)
{
    return [=](AudioControl &facade) {
        const int result = facade.setAlterStepVolume(static_cast<quint8>(step), hicarCall);
        return QVariantList{result, int(facade.getAlterStepVolume())};
    };
}

AudioControlAlternativeTest::Act AudioControlAlternativeTest::setMasterSteps(const QList<int> &steps)
{
    return [=](AudioControl &facade) {
        QVariantList results;
        for (const int step : steps) {
            const int result = facade.setMasterStepVolume(static_cast<quint8>(step));
            results += {result != 0, int(facade.getMasterStepVolume())};
        }
        return results;
    };
}

void AudioControlAlternativeTest::getActivedAlterNumber_data()
{
    const Act ask = [](AudioControl &facade) { return facade.getActivedAlterNumber(); };
    const auto answered = [](int count) { return fresh("Source", {R"(Source.queryAlterNumber("alternative") -> %1)"_s.arg(count)}); };

    addColumns();
    addRow("nothing plays", {}, ask, 0, answered(0), {});
    for (const int count : {1, 3, -5}) {
        const Given counted = [count](OperationTest &) { simulator::Platform::instance()->chip()->setAlternativeCount(count); };
        addRow(qPrintable("%1 is passed on as it is"_s.arg(count)), {counted}, ask, count, answered(count), {});
    }
    addRow("no Source is made", {noneMade("Source")}, ask, -1, {notCreated("Source")}, {error("Create audio source failed.")});
}

void AudioControlAlternativeTest::getActivedAlterNumber()
{
    checkRow();
}

void AudioControlAlternativeTest::getAlterNumberOfAnotherTrack()
{
    QString track = "second"_s;
    QVERIFY(platform->chip()->setActiveSource(track, "S+GPS"_s));
    QCOMPARE(inner->getAlterNumber(track), 1);
    QCOMPARE(track, "second"_s);
    QCOMPARE(takeCalls(), QStringList{R"(Source.queryAlterNumber("second") -> 1)"_s});
}

void AudioControlAlternativeTest::changeAlterStepVolume_data()
{
    const auto came = [](int result, int step) { return QVariantList{result, step, 0}; };
    const auto sent = [](int volume, int result = 0) { return fresh("Volume", {"Volume.setAlterTrackVolume(%1) -> %2"_s.arg(volume).arg(result)}); };
    const auto changed = [](int step, int value) { return info("changed to  %1 %2"_s.arg(step).arg(value)); };

    addColumns();
    addRow("up", {}, changeAlter(true, 20), came(0, 21), sent(21), {changed(21, 21)});
    addRow("down", {}, changeAlter(false, 20), came(0, 19), sent(19), {changed(19, 19)});
    addRow("up to the highest", {}, changeAlter(true, 99), came(0, 100), sent(100), {changed(100, 100)});
    addRow("down to silence", {}, changeAlter(false, 1), came(0, 0), sent(0), {changed(0, 0)});
    addRow("up at the highest", {}, changeAlter(true, 100), came(1, untouchedStep), {}, {});
    addRow("up above the highest", {}, changeAlter(true, 255), came(1, untouchedStep), {}, {});
    addRow("down at silence", {}, changeAlter(false, 0), came(1, untouchedStep), {}, {});
    addRow("at the limit no Volume is asked for", {noneMade("Volume")}, changeAlter(true, 100), came(1, untouchedStep), {}, {});
    addRow("step 15 of 30", {range(30)}, changeAlter(true, 14), came(0, 15), sent(50), {changed(15, 50)});
    addRow("the platform gets the low eight bits", {range(30)}, changeAlter(false, 90), came(0, 89), sent(296 - 256), {changed(89, 296)});
    addRow("in a range of 0 there is no up", {range(0)}, changeAlter(true, 0), came(1, untouchedStep), {}, {});
    addRow("in a range of 0 every step is silent", {range(0)}, changeAlter(false, 5), came(0, 4), sent(0), {changed(4, 0)});
    for (const int code : {7, 1, -1}) {
        addRow(qPrintable("the platform refuses with %1"_s.arg(code)),
               {refused("Volume.setAlterTrackVolume", code)},
               changeAlter(true, 20),
               came(code, untouchedStep),
               sent(21, code),
               {error("setAlterVolume failed. %1"_s.arg(code))});
    }
    addRow("no Volume is made", {noneMade("Volume")}, changeAlter(true, 20), came(-1, untouchedStep), {notCreated("Volume")}, {error("Create volume failed.")});
}

void AudioControlAlternativeTest::changeAlterStepVolume()
{
    checkRow();
}

void AudioControlAlternativeTest::setAlterVolume_data()
{
    const auto alternative = [](int volume, int result = 0) { return "Volume.setAlterTrackVolume(%1) -> %2"_s.arg(volume).arg(result); };
    const auto call
        = [](int volume, int result = 0) { return R"(Volume.setTrackVolume("main", "hicar_voice_callmodemspeaker10", %1) -> %2)"_s.arg(volume).arg(result); };

    // The result is -1 on success too.
    addColumns();
    addRow("40 is boosted", {}, setAlter(40, false), -1, fresh("Volume", {alternative(60)}), {info("set alter volume 60")});
    addRow("41 loses the fraction", {}, setAlter(41, false), -1, fresh("Volume", {alternative(61)}), {info("set alter volume 61")});
    addRow("silence", {}, setAlter(0, false), -1, fresh("Volume", {alternative(0)}), {info("set alter volume 0")});
    addRow("100 is held at 148", {}, setAlter(100, false), -1, fresh("Volume", {alternative(148)}), {info("set alter volume 148")});
    addRow("100 in a HiCar call", {}, setAlter(100, true), -1, fresh("Volume", {call(148), alternative(148)}), {info("set alter volume 148")});
    addRow("101 is refused", {}, setAlter(101, false), -1, {}, {error("input volume val more than  100")});
    addRow("255 is refused in a HiCar call", {}, setAlter(255, true), -1, {}, {error("input volume val more than  100")});
    for (const int code : {7, 1, -1}) {
        addRow(qPrintable("the platform refuses with %1"_s.arg(code)),
               {refused("Volume.setAlterTrackVolume", code)},
               setAlter(40, false),
               -1,
               fresh("Volume", {alternative(60, code)}),
               {error("set alter volume err %1"_s.arg(code))});
    }
    addRow("the platform refuses the call's volume, silently",
           {refused("Volume.setTrackVolume", 7)},
           setAlter(40, true),
           -1,
           fresh("Volume", {call(60, 7), alternative(60)}),
           {info("set alter volume 60")});
    addRow("the platform refuses both in a HiCar call",
           {refused("Volume.setTrackVolume", 7), refused("Volume.setAlterTrackVolume", 8)},
           setAlter(40, true),
           -1,
           fresh("Volume", {call(60, 7), alternative(60, 8)}),
           {error("set alter volume err 8")});
    addRow("no Volume is made", {noneMade("Volume")}, setAlter(40, true), -1, {notCreated("Volume")}, {error("Create volume failed.")});
}

void AudioControlAlternativeTest::setAlterVolume()
{
    checkRow();
}

void AudioControlAlternativeTest::boostsEveryAlternativeVolume()
{
    for (int volume = 0; volume <= 100; ++volume) {
        control->setAlterVolume(static_cast<quint8>(volume), false);
        const int boosted = 3 * volume / 2; // 150 at most: no wrap below 101
        QCOMPARE(platform->chip()->alternativeVolume(), boosted > 148 ? 148 : boosted);
    }
}

void AudioControlAlternativeTest::setAlterStepVolume_data()
{
    const QVariantList result = {-1, 0}; // -1 on success too, so the step is never remembered
    const auto alternative = [](int volume) { return "Volume.setAlterTrackVolume(%1) -> 0"_s.arg(volume); };

    addColumns();
    addRow("step 40 of 100", {}, setAlterStep(40, false), result, fresh("Volume", {alternative(60)}), {info("set alter volume 60")});
    addRow("step 10 of 25", {range(25)}, setAlterStep(10, false), result, fresh("Volume", {alternative(60)}), {info("set alter volume 60")});
    addRow("step 10 of 25 in a HiCar call",
           {range(25)},
           setAlterStep(10, true),
           result,
           fresh("Volume", {R"(Volume.setTrackVolume("main", "hicar_voice_callmodemspeaker10", 60) -> 0)"_s, alternative(60)}),
           {info("set alter volume 60")});
    addRow("step 101 of 100 is refused", {}, setAlterStep(101, true), result, {}, {error("input volume val more than  100")});
    addRow("step 130 of 50 wraps round to 4", {range(50)}, setAlterStep(130, false), result, fresh("Volume", {alternative(6)}), {info("set alter volume 6")});
    addRow("in a range of 0 every step is silent", {range(0)}, setAlterStep(9, false), result, fresh("Volume", {alternative(0)}), {info("set alter volume 0")});
    addRow("the platform refuses",
           {refused("Volume.setAlterTrackVolume", 7)},
           setAlterStep(40, false),
           result,
           fresh("Volume", {"Volume.setAlterTrackVolume(60) -> 7"_s}),
           {error("set alter volume err 7")});
    addRow("no Volume is made", {noneMade("Volume")}, setAlterStep(40, true), result, {notCreated("Volume")}, {error("Create volume failed.")});
}

void AudioControlAlternativeTest::setAlterStepVolume()
{
    checkRow();
}

void AudioControlAlternativeTest::setMasterStepVolume_data()
{
    const bool isTaken = false;
    const bool isRefused = true;
    const QString call = "Volume.setMasterVolume(100) -> 0"_s;
    const QString line = info("set master volume 100");
    const auto warning
        = [](int step, int current, int steps) { return info("[Warning]input volume  %1 cur volume %2 StepVolCnt  %3"_s.arg(step).arg(current).arg(steps)); };

    addColumns();
    addRow("first step", {}, setMasterSteps({40}), QVariantList{isTaken, 40}, {call}, {line});
    addRow("the first call takes the step that holds already", {}, setMasterSteps({0}), QVariantList{isTaken, 0}, {call}, {line});
    addRow("the same step again is refused", {}, setMasterSteps({40, 40}), QVariantList{isTaken, 40, isRefused, 40}, {call}, {line, warning(40, 40, 100)});
    addRow("another step is taken", {}, setMasterSteps({40, 41}), QVariantList{isTaken, 40, isTaken, 41}, {call, call}, {line, line});
    addRow("the highest step is taken", {}, setMasterSteps({40, 100}), QVariantList{isTaken, 40, isTaken, 100}, {call, call}, {line, line});
    addRow("a later step above the range is refused",
           {},
           setMasterSteps({40, 101}),
           QVariantList{isTaken, 40, isRefused, 40},
           {call},
           {line, warning(101, 40, 100)});
    addRow("a first step above the range reaches the master volume's own check",
           {},
           setMasterSteps({101, 101}),
           QVariantList{isRefused, 0, isRefused, 0},
           {},
           {error("input volume val more than  100"), warning(101, 0, 100)});
    addRow("a first step that wraps round is taken", {range(50)}, setMasterSteps({130}), QVariantList{isTaken, 130}, {call}, {line});
    addRow(
        "a range of 0 takes the first step only", {range(0)}, setMasterSteps({5, 6}), QVariantList{isTaken, 5, isRefused, 5}, {call}, {line, warning(6, 5, 0)});
    addRow("a step that the platform refuses is not remembered",
           {refusedOnce("Volume.setMasterVolume", 7, 1)},
           setMasterSteps({40, 40}),
           QVariantList{isRefused, 0, isTaken, 40},
           {"Volume.setMasterVolume(100) -> 7"_s, call},
           {error("set master volume err 7"), line});
    addRow("a refused first call was the first call",
           {refusedOnce("Volume.setMasterVolume", 7, 1)},
           setMasterSteps({40, 0}),
           QVariantList{isRefused, 0, isRefused, 0},
           {"Volume.setMasterVolume(100) -> 7"_s},
           {error("set master volume err 7"), warning(0, 0, 100)});
    addRow(
        "without the long-lived Volume", {startedWithoutObjects()}, setMasterSteps({40}), QVariantList{isRefused, 0}, {}, {error("set master volume err -1")});
}

void AudioControlAlternativeTest::setMasterStepVolume()
{
    checkRow();
}

QTEST_APPLESS_MAIN(AudioControlAlternativeTest)
#include "tst_audiocontrol_alternative.moc"
