#include "benchprocess.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

/// "play --log-to": the log of a drive, kept as a unit would keep it.
class BenchLogFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsEachLineWithItsTime();
    void isWhatExplainReads();
    void linesAreNotShownBesides();
    void whatWasThereIsReplaced();
    void refusals_data();
    void refusals();

private:
    QByteArray log() const;

    QTemporaryDir m_folder;
    QString m_scenario;
    QString m_log;
};

void BenchLogFileTest::init()
{
    m_scenario = m_folder.filePath(QStringLiteral("a drive.js"));
    m_log = m_folder.filePath(QStringLiteral("its log.txt"));
    QFile file(m_scenario);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("AudioControl.setMasterVolume(30);\nwait(61500);\nAudioControl.setMasterVolume(101);\n");
}

QByteArray BenchLogFileTest::log() const
{
    QFile file(m_log);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void BenchLogFileTest::keepsEachLineWithItsTime()
{
    const BenchProcess bench({QStringLiteral("play"), m_scenario, QStringLiteral("--log-to"), m_log});
    QVERIFY2(bench.exitCode == 0, qPrintable(bench.errors));
    const QRegularExpression expected(
        QStringLiteral("^\\[       0.000\\] \\[QT\\] \\[Audiocontrol\\] set master volume 100\n"
                       "\\[      61.500\\] \\[QT\\] \\[Error\\] \\[Audiocontrol\\] line: \\d+ input volume val more than +100\n$"));
    QVERIFY2(expected.match(QString::fromUtf8(log())).hasMatch(), log().constData());
}

void BenchLogFileTest::isWhatExplainReads()
{
    QCOMPARE(BenchProcess({QStringLiteral("play"), m_scenario, QStringLiteral("--log-to"), m_log}).exitCode, 0);
    const BenchProcess bench({QStringLiteral("explain"), QStringLiteral("-v"), m_log});
    QVERIFY2(bench.exitCode == 0, qPrintable(bench.errors));
    QVERIFY2(bench.output.contains(QLatin1String("  0:00.000  AudioControl.setMasterVolume(?)\n                Volume.setMasterVolume(100) -> 0\n")),
             qPrintable(bench.output));
    QVERIFY2(bench.output.contains(QLatin1String("  1:01.500  ")), qPrintable(bench.output));
}

void BenchLogFileTest::linesAreNotShownBesides()
{
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("-v"), m_scenario, QStringLiteral("--log-to"), m_log});
    QVERIFY2(bench.output.contains(QLatin1String("Volume.setMasterVolume(100) -> 0")), qPrintable(bench.output));
    QVERIFY2(!bench.output.contains(QLatin1String("[QT]")), qPrintable(bench.output));
}

void BenchLogFileTest::whatWasThereIsReplaced()
{
    QFile file(m_log);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100000, 'x'));
    file.close();
    QCOMPARE(BenchProcess({QStringLiteral("play"), m_scenario, QStringLiteral("--log-to"), m_log}).exitCode, 0);
    QVERIFY2(log().startsWith("[       0.000] "), log().left(100).constData());
    QCOMPARE(log().count('\n'), 2);
}

void BenchLogFileTest::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("a folder that is not there") << QStringList{QStringLiteral("/nowhere/its.log")} << QStringLiteral("/nowhere/its.log: No such file");
    QTest::newRow("a full disk") << QStringList{QStringLiteral("/dev/full")} << QStringLiteral("/dev/full: No space left on device");
    QTest::newRow("no name") << QStringList{QString()} << QStringLiteral("--log-to needs a name");
    QTest::newRow("two scenarios") << QStringList{m_log, QStringLiteral("commute")} << QStringLiteral("--log-to keeps the log of one scenario, played once");
    QTest::newRow("played twice") << QStringList{m_log, QStringLiteral("--repeat"), QStringLiteral("2")}
                                  << QStringLiteral("--log-to keeps the log of one scenario, played once");
}

void BenchLogFileTest::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    if (arguments.size() > 1 && !BenchProcess::canSupervise())
        QSKIP("an emulator runs one program only");
    const BenchProcess bench(QStringList{QStringLiteral("play"), m_scenario, QStringLiteral("--log-to")} + arguments);
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.contains(message), qPrintable(bench.errors));
}

QTEST_GUILESS_MAIN(BenchLogFileTest)

#include "tst_benchlogfile.moc"
