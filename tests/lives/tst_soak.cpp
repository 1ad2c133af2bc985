#include <program.h>

#include <QtTest/QtTest>

/// That what grows is found, and that the library does not grow.
class SoakTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingGrows();
    void leaksAreFound_data();
    void leaksAreFound();
};

namespace
{

program::Run soak(const QStringList &arguments)
{
    return program::run(program::commandLine(QStringLiteral(SOAK), arguments));
}

QStringList rowsThatAreOut(const QString &output)
{
    return program::lines(output).filter(QRegularExpression(QStringLiteral("OUT$")));
}

} // namespace

void SoakTest::nothingGrows()
{
    // A machine that does something else meanwhile says little about time.
    const program::Run run = soak({QStringLiteral("--operations"), QStringLiteral(OPERATIONS), QStringLiteral("--time-limit"), QStringLiteral("500")});
    QVERIFY2(run.exitStatus == QProcess::NormalExit, qPrintable(run.errors));
    QCOMPARE(rowsThatAreOut(run.output), QStringList());
    QCOMPARE(run.exitCode, 0);
}

void SoakTest::leaksAreFound_data()
{
    QTest::addColumn<QString>("row");
    QTest::newRow("memory") << QStringLiteral("heap in use");
    QTest::newRow("descriptors") << QStringLiteral("open descriptors");
    QTest::newRow("files") << QStringLiteral("files in the flash folder");
    QTest::newRow("time") << QStringLiteral("the same operations");
}

void SoakTest::leaksAreFound()
{
    QFETCH(const QString, row);
    const program::Run run
        = soak({QStringLiteral("--operations"), QStringLiteral(OPERATIONS), QStringLiteral("--leak"), QLatin1String(QTest::currentDataTag())});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(!rowsThatAreOut(run.output).filter(row).isEmpty(), qPrintable(run.output));
}

QTEST_GUILESS_MAIN(SoakTest)

#include "tst_soak.moc"
