#include <facadetest.h>
#include <qzaudio/audiodatabase.h>
#include <texts.h>

#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

#include <functional>

using audio::AudioControl;
using Act = std::function<void(AudioControl &)>;

Q_DECLARE_METATYPE(Act)

/// Where nobody reads the lines: the platform is told the same, and nothing is written.
class AudioControlQuietTest : public FacadeTest
{
    Q_OBJECT

private Q_SLOTS:
    void operations_data();
    void operations();
    void store();

private:
    struct Outcome
    {
        QStringList calls;
        QStringList lines;
    };
    Outcome outcome(const Act &act, const char *rules);
};

AudioControlQuietTest::Outcome AudioControlQuietTest::outcome(const Act &act, const char *rules)
{
    takeCallsAndLifetimes();
    log->take();
    QLoggingCategory::setFilterRules(QString::fromLatin1(rules));
    act(*control);
    QLoggingCategory::setFilterRules(QString());
    return {takeCallsAndLifetimes(), log->takeTexts()};
}

void AudioControlQuietTest::operations_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<bool>("isRefused");
    const auto row = [](const char *name, bool isRefused, const Act &act) { QTest::newRow(name) << act << isRefused; };
    row("a volume", false, [](AudioControl &facade) { facade.setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 80); });
    row("a volume of nobody", true, [](AudioControl &facade) { facade.setStreamVolume(AudioControl::Main, "nobody", 80); });
    row("fade and balance", false, [](AudioControl &facade) { facade.setFadeBalance(3, -4); });
    row("fade and balance beyond the end", true, [](AudioControl &facade) { facade.setFadeBalance(99, 0); });
    row("a preset, whose frequencies are listed", false, [](AudioControl &facade) { facade.setEqMode(static_cast<AudioControl::EqMode>(1)); });
    row("a curve", false, [](AudioControl &facade) {
        QList<float> gains;
        for (int band = 0; band < 16; ++band)
            gains.append(static_cast<float>(band % 3));
        facade.setEqGain(gains);
    });
    row("a curve that is too short", true, [](AudioControl &facade) { facade.setEqGain(QList<float>{1.0F}); });
    row("a route", false, [](AudioControl &facade) { facade.setOutputSource(AudioControl::Main, "S+FilePlayer_APP"); });
    row("a route of a tag that there is not", true, [](AudioControl &facade) {
        facade.setOutputSource(static_cast<AudioControl::AudioTag>(8), "S+FilePlayer_APP");
    });
    row("mute", false, [](AudioControl &facade) {
        facade.setMute(true);
        facade.setMute(false);
    });
}

void AudioControlQuietTest::operations()
{
    QFETCH(Act, act);
    QFETCH(bool, isRefused);
    const Outcome loud = outcome(act, "");
    const Outcome quiet = outcome(act, "default.debug=false");
    QVERIFY(!loud.lines.isEmpty());
    QCOMPARE(quiet.lines, QStringList());
    QCOMPARE(quiet.calls, loud.calls);
    QCOMPARE(loud.calls.isEmpty(), isRefused);
}

void AudioControlQuietTest::store()
{
    audio::AudioDataBase store;
    log->take();
    QVERIFY(!store.clear()); // there is no file
    QCOMPARE(log->takeTexts().size(), 1);
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
    const bool isCleared = store.clear();
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(!isCleared);
    QCOMPARE(log->takeTexts(), QStringList());
}

QTEST_GUILESS_MAIN(AudioControlQuietTest)
#include "tst_audiocontrol_quiet.moc"
