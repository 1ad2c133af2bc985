#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

using audio::AudioDataBase;

namespace
{

constexpr int savesEach = 2000;
constexpr int patienceMs = 500000;

} // namespace

/// Several processes that save at once.
class ConcurrentSettingsTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void processesWithAKeyEach_data();
    void processesWithAKeyEach();
    void readerSeesOnlyWholeFiles();
    void everyVersionHasATimeOfItsOwn_data();
    void everyVersionHasATimeOfItsOwn();
};

void ConcurrentSettingsTest::processesWithAKeyEach_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("two processes") << 2;
    QTest::newRow("four processes") << 4;
}

void ConcurrentSettingsTest::processesWithAKeyEach()
{
    QFETCH(int, count);
    flash::setContent(flash::fullSettings());
    flash::Entries expected = flash::entries();
    QElapsedTimer timer;
    timer.start();
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < count; ++i) {
        const QString key = QStringLiteral("writer%1").arg(i);
        writers.push_back(std::make_unique<QProcess>());
        program::start(*writers.back(), settingsprocess::commandLine({QStringLiteral("count"), key, QString::number(savesEach)}));
        expected.insert("Volume/" + key.toLatin1(), QByteArray::number(savesEach));
    }
    for (const auto &writer : writers) {
        QVERIFY(writer->waitForFinished(patienceMs));
        QVERIFY2(writer->exitStatus() == QProcess::NormalExit && writer->exitCode() == 0, writer->readAllStandardError().constData());
    }
    const qint64 milliseconds = timer.elapsed();
    QCOMPARE(flash::entries(), expected);
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
    log.reset();
    qInfo("%d saves in %lld ms, 0 values lost", count * savesEach, milliseconds);
}

/// In the test's own process, beside a writer: no state in between, and each value at least as new as the one before.
void ConcurrentSettingsTest::readerSeesOnlyWholeFiles()
{
    flash::setContent(flash::fullSettings());
    AudioDataBase store;
    const auto writer = settingsprocess::start({QStringLiteral("count"), QStringLiteral("writer"), QString::number(savesEach)});
    int last = 0;
    int changes = 0;
    while (!writer->waitForFinished(0)) {
        const int value = store.data(QStringLiteral("Volume"), QStringLiteral("writer"), 0).toInt();
        QVERIFY2(value >= last, qPrintable(QStringLiteral("%1 after %2").arg(value).arg(last)));
        changes += value > last;
        last = value;
        QCOMPARE(store.data(QStringLiteral("Elsewhere"), QStringLiteral("Key"), 0).toString(), QStringLiteral("also kept"));
    }
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("writer"), 0).toInt(), savesEach);
    QVERIFY(changes > 1);
}

void ConcurrentSettingsTest::everyVersionHasATimeOfItsOwn_data()
{
    QTest::addColumn<int>("secondsAhead");
    QTest::newRow("usual") << 0;
    QTest::newRow("after the clock went back") << 3600;
}

/// Whoever has read an earlier version of the same size must see by its time, in ms, that this is another one.
void ConcurrentSettingsTest::everyVersionHasATimeOfItsOwn()
{
    QFETCH(int, secondsAhead);
    AudioDataBase store;
    store.setEqType(0);
    QFile file(flash::settingsFile());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(secondsAhead), QFileDevice::FileModificationTime));
    qint64 last = QFileInfo(flash::settingsFile()).lastModified().toMSecsSinceEpoch();
    for (int save = 1; save <= 500; ++save) {
        store.setEqType(save % 10);
        const qint64 time = QFileInfo(flash::settingsFile()).lastModified().toMSecsSinceEpoch();
        QVERIFY2(time > last, qPrintable(QStringLiteral("%1 after %2").arg(time).arg(last)));
        last = time;
    }
}

QTEST_GUILESS_MAIN(ConcurrentSettingsTest)

#include "tst_audiodatabase_concurrent.moc"
