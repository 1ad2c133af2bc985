#include "settingstarget.h"

#include "corpus.h"
#include "flash.h"
#include "storetest.h"

#include <QtTest/QtTest>

/// What a fuzzer found worth keeping of settings files, and what it began with.
class SettingsTargetTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void seedsAreUnderstood_data();
    void seedsAreUnderstood();
    void anyBytesAreAFile();
};

void SettingsTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    keptFrom(corpus::viewOf(bytes));
}

void SettingsTargetTest::seedsAreUnderstood_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count");
    QTest::newRow("full") << flash::fullSettings() << 33;
    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("a line without its end") << QByteArray("[Volume]\n0=1\n1=2") << 1;
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf[Volume]\n0=1\n") << 1;
}

void SettingsTargetTest::seedsAreUnderstood()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, count);
    QCOMPARE(keptFrom(corpus::viewOf(bytes)).size(), count);
}

void SettingsTargetTest::anyBytesAreAFile()
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QCOMPARE(keptFrom(corpus::viewOf(all)), QStringList());
}

QTEST_GUILESS_MAIN(SettingsTargetTest)
#include "tst_settingstarget.moc"
