#include "scenariotarget.h"

#include "corpus.h"

#include <logrecorder.h>
#include <virtualclock.h>

#include <QtTest/QtTest>

/// Scenarios of any bytes: what a fuzzer found worth keeping.
class ScenarioTargetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void scenariosAreUnderstood();
    void endlessOnesEnd();
    void anyBytesAreAScenario();

private:
    LogRecorder m_quiet;
};

void ScenarioTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    const PlayedScenario scenario = played(corpus::viewOf(bytes));
    QVERIFY(!scenario.texts.isEmpty());
}

void ScenarioTargetTest::scenariosAreUnderstood()
{
    const PlayedScenario scenario = played("powerOn();\nAudioPolicy.setVolume(AudioPolicy.Media, 9, true);\nexpect(AudioPolicy.getVolume(0)).toBe(9);");
    QCOMPARE(scenario.result.error, QString());
    QCOMPARE(scenario.result.checks.size(), 1);
    QVERIFY(scenario.result.checks.constFirst().passed);
    QVERIFY(scenario.texts.contains(QStringLiteral("AudioPolicy.setVolume(Media, 9, true)")));
}

void ScenarioTargetTest::endlessOnesEnd()
{
    const PlayedScenario scenario = played("say(\"on and on\");\nfor (;;)\n    ;");
    QCOMPARE(scenario.result.error, QStringLiteral("did not end within 0.5 s"));
    QVERIFY(scenario.result.errorLine >= 2);
}

void ScenarioTargetTest::anyBytesAreAScenario()
{
    QCOMPARE(played({}).result.error, QString());
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QVERIFY(played(corpus::viewOf(all)).result.error.startsWith(QStringLiteral("SyntaxError: ")));
}

int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    ScenarioTargetTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_scenariotarget.moc"
