#include "equalizertarget.h"

#include "corpus.h"

#include <QtTest/QtTest>

#include <cmath>

/// What the fuzzer begins with is understood, so that it begins behind the front door.
class EqualizerTargetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void seedsAreUnderstood_data();
    void seedsAreUnderstood();
    void anyBytesAreAText();
};

void EqualizerTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    const EqualizerText text = importedFrom(corpus::viewOf(bytes));
    QVERIFY(std::isfinite(text.level(1000)));
}

void EqualizerTargetTest::seedsAreUnderstood_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder(QStringLiteral(CORPUS));
    const QStringList names = folder.entryList({QStringLiteral("*.txt")}, QDir::Files);
    QVERIFY(names.size() >= 4);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

void EqualizerTargetTest::seedsAreUnderstood()
{
    QFETCH(const QString, file);
    QFile seed(file);
    QVERIFY(seed.open(QIODevice::ReadOnly));
    const QByteArray bytes = seed.readAll();
    const EqualizerText text = importedFrom({bytes.constData(), std::size_t(bytes.size())});
    QVERIFY(!text.isEmpty());
    QVERIFY(std::abs(text.level(1000)) > 1);
}

void EqualizerTargetTest::anyBytesAreAText()
{
    QVERIFY(importedFrom({}).isEmpty());
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QVERIFY(importedFrom({all.constData(), std::size_t(all.size())}).isEmpty());
}

QTEST_GUILESS_MAIN(EqualizerTargetTest)
#include "tst_equalizertarget.moc"
