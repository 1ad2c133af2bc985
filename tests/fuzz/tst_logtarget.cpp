#include "logtarget.h"

#include "corpus.h"

#include <virtualclock.h>

#include <QtTest/QtTest>

/// What the fuzzer begins with is understood, so that it begins behind the front door.
class LogTargetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void seedsAreUnderstood_data();
    void seedsAreUnderstood();
    void anyBytesAreALog();
};

void LogTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(!timelineOf(corpus::viewOf(bytes)).isEmpty());
    const QString scenario = scenarioOf(corpus::viewOf(bytes));
    QVERIFY(scenario.isEmpty() || scenario.endsWith(QLatin1Char('\n')));
}

void LogTargetTest::seedsAreUnderstood_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder(QStringLiteral(CORPUS));
    const QStringList names = folder.entryList({QStringLiteral("*.log")}, QDir::Files);
    QVERIFY(names.size() >= 12);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

void LogTargetTest::seedsAreUnderstood()
{
    QFETCH(const QString, file);
    QFile seed(file);
    QVERIFY(seed.open(QIODevice::ReadOnly));
    const QByteArray log = seed.readAll();
    const QStringList told = timelineOf({log.constData(), std::size_t(log.size())});
    QVERIFY2(told.contains(QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true)")), qPrintable(told.join(QLatin1Char('\n'))));
    QVERIFY2(told.contains(QStringLiteral("Volume.setTrackVolume(\"main\", \"S+BtPcmPhone\", 78) -> 7 (refused by the platform)")),
             qPrintable(told.join(QLatin1Char('\n'))));
    QVERIFY2(told.contains(QStringLiteral("\"music\" loses focus: LOSS")), qPrintable(told.join(QLatin1Char('\n'))));
    const QString scenario = scenarioOf({log.constData(), std::size_t(log.size())});
    QVERIFY2(scenario.contains(QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true)")), qPrintable(scenario));
}

void LogTargetTest::anyBytesAreALog()
{
    QCOMPARE(timelineOf({}).size(), 1);
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QCOMPARE(timelineOf({all.constData(), std::size_t(all.size())}).size(), 1);
}

int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    LogTargetTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_logtarget.moc"
