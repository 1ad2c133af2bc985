#include "journalmodel.h"

#include "platform.h"

#include <qzaudio/audiocontrol.h>

#include <QtTest/QAbstractItemModelTester>
#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

using simulator::Platform;

namespace
{

QVariantMap row(int number)
{
    const bool isRefused = number % 10 == 0;
    return {{QStringLiteral("time"), number * 5},
            {QStringLiteral("object"), QStringLiteral("Volume#%1").arg(number % 3)},
            {QStringLiteral("operation"), number % 2 == 0 ? QStringLiteral("Volume.setMute") : QStringLiteral("Volume.setTrackVolume")},
            {QStringLiteral("call"), QStringLiteral("call %1").arg(number)},
            {QStringLiteral("cause"), QStringLiteral("AudioPolicy.setMute(true)")},
            {QStringLiteral("note"), isRefused ? QStringLiteral("Volume OUT of range") : QString()},
            {QStringLiteral("refused"), isRefused}};
}

QVariantList rows(int first, int last)
{
    QVariantList rows;
    for (int number = first; number <= last; ++number)
        rows.append(row(number));
    return rows;
}

QVariant value(const JournalModel &model, int row, JournalModel::Role role)
{
    return model.data(model.index(row), role);
}

QStringList calls(const JournalModel &model)
{
    QStringList calls;
    for (int row = 0; row < model.count(); ++row)
        calls.append(value(model, row, JournalModel::CallRole).toString());
    return calls;
}

} // namespace

class JournalModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void init();
    static void roles();
    static void filters_data();
    static void filters();
    static void filteredRowsComeAndGo();
    static void narrowingAndWidening();
    static void limit();
    static void lowerLimit();
    static void clear();
    static void live();
    static void liveLimit();
    static void oneSignalForManyRows();
    static void manyRows();
    static void rowsComeWhileFiltering();
};

void JournalModelTest::init()
{
    Platform::instance()->reset();
}

void JournalModelTest::roles()
{
    JournalModel model;
    QSignalSpy counted(&model, &JournalModel::countChanged);
    model.append({row(7), row(10)});
    QCOMPARE(model.count(), 2);
    QCOMPARE(counted.count(), 1);
    QCOMPARE(value(model, 0, JournalModel::TimeRole), QVariant(35));
    QCOMPARE(value(model, 0, JournalModel::ObjectRole), QVariant(QStringLiteral("Volume#1")));
    QCOMPARE(value(model, 0, JournalModel::OperationRole), QVariant(QStringLiteral("Volume.setTrackVolume")));
    QCOMPARE(value(model, 0, JournalModel::CallRole), QVariant(QStringLiteral("call 7")));
    QCOMPARE(value(model, 0, JournalModel::CauseRole), QVariant(QStringLiteral("AudioPolicy.setMute(true)")));
    QCOMPARE(value(model, 0, JournalModel::NoteRole), QVariant(QString()));
    QCOMPARE(value(model, 0, JournalModel::RefusedRole), QVariant(false));
    QCOMPARE(value(model, 1, JournalModel::NoteRole), QVariant(QStringLiteral("Volume OUT of range")));
    QCOMPARE(value(model, 1, JournalModel::RefusedRole), QVariant(true));
    QCOMPARE(value(model, 2, JournalModel::CallRole), QVariant());
    for (const char *const name : {"time", "object", "operation", "call", "cause", "note", "refused"})
        QVERIFY2(model.roleNames().values().contains(name), name);
}

void JournalModelTest::filters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("refusedOnly");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("shown");

    const QString none;
    const QString mute = QStringLiteral("Volume.setMute");
    const auto called = [](std::initializer_list<int> numbers) {
        QStringList calls;
        for (const int number : numbers)
            calls.append(QStringLiteral("call %1").arg(number));
        return calls;
    };
    QTest::newRow("none") << none << false << none << called({6, 7, 8, 9, 10, 11});
    QTest::newRow("call") << QStringLiteral("CALL 1") << false << none << called({10, 11});
    QTest::newRow("object") << QStringLiteral("volume#1") << false << none << called({7, 10});
    QTest::newRow("cause") << QStringLiteral("audiopolicy") << false << none << called({6, 7, 8, 9, 10, 11});
    QTest::newRow("note") << QStringLiteral("out of") << false << none << called({10});
    QTest::newRow("refused") << none << true << none << called({10});
    QTest::newRow("operation") << none << false << mute << called({6, 8, 10});
    QTest::newRow("a part of an operation") << none << false << QStringLiteral("Volume.set") << QStringList();
    QTest::newRow("all of them") << QStringLiteral("call") << true << mute << called({10});
    QTest::newRow("nothing") << QStringLiteral("nowhere") << false << none << QStringList();
}

void JournalModelTest::filters()
{
    QFETCH(QString, text);
    QFETCH(bool, refusedOnly);
    QFETCH(QString, operation);
    QFETCH(QStringList, shown);
    const auto set = [&](JournalModel &model) {
        model.setText(text);
        model.setRefusedOnly(refusedOnly);
        model.setOperation(operation);
    };
    JournalModel before; // the rows come
    set(before);
    before.append(rows(6, 11));
    QCOMPARE(calls(before), shown);
    JournalModel afterwards; // the filter comes
    afterwards.append(rows(6, 11));
    set(afterwards);
    QCOMPARE(calls(afterwards), shown);
    QCOMPARE(afterwards.total(), 6);
}

void JournalModelTest::filteredRowsComeAndGo()
{
    JournalModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setLimit(20);
    model.setRefusedOnly(true);
    QStringList expected;
    for (int number = 1; number <= 200; ++number) {
        model.append({row(number)});
        expected.clear();
        for (int kept = std::max(1, number - 19); kept <= number; ++kept) {
            if (kept % 10 == 0)
                expected.append(QStringLiteral("call %1").arg(kept));
        }
        QCOMPARE(calls(model), expected);
    }
    model.setRefusedOnly(false);
    QCOMPARE(model.count(), 20);
    QCOMPARE(calls(model).constFirst(), QStringLiteral("call 181"));
}

void JournalModelTest::narrowingAndWidening()
{
    JournalModel model;
    model.append(rows(1, 300));
    for (const char *const text : {"call 1", "call 12", "call 1", "2", "", "call 29", "2", "all 12"}) {
        model.setText(QLatin1String(text));
        QStringList expected;
        for (int number = 1; number <= 300; ++number) {
            const QString call = QStringLiteral("call %1").arg(number);
            if (call.contains(QLatin1String(text)) || row(number).value(QStringLiteral("object")).toString().contains(QLatin1String(text)))
                expected.append(call);
        }
        QCOMPARE(calls(model), expected);
    }
}

void JournalModelTest::limit()
{
    JournalModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.limit(), 100000);
    model.setLimit(10);
    model.append(rows(1, 8));
    model.append(rows(9, 12));
    QCOMPARE(calls(model).constFirst(), QStringLiteral("call 3"));
    QCOMPARE(calls(model).constLast(), QStringLiteral("call 12"));
    QCOMPARE(model.count(), 10);
    QCOMPARE(model.total(), 10);
    model.append(rows(13, 100));
    QCOMPARE(calls(model).constFirst(), QStringLiteral("call 91"));
    QCOMPARE(model.count(), 10);
}

void JournalModelTest::lowerLimit()
{
    JournalModel model;
    model.append(rows(1, 20));
    QSignalSpy counted(&model, &JournalModel::countChanged);
    model.setLimit(5);
    QCOMPARE(calls(model).constFirst(), QStringLiteral("call 16"));
    QCOMPARE(model.count(), 5);
    QCOMPARE(counted.count(), 1);
    model.setLimit(0); // a list without room would show nothing for good
    QCOMPARE(model.limit(), 1);
    QCOMPARE(calls(model), QStringList(QStringLiteral("call 20")));
}

void JournalModelTest::clear()
{
    JournalModel model;
    model.append(rows(1, 20));
    model.clear();
    QCOMPARE(model.count(), 0);
    QCOMPARE(model.total(), 0);
    model.append(rows(21, 22));
    QCOMPARE(calls(model), QStringList({QStringLiteral("call 21"), QStringLiteral("call 22")}));
}

void JournalModelTest::live()
{
    audio::AudioControl *const control = audio::AudioControl::getInstance();
    control->setMasterVolume(100);
    JournalModel model;
    model.append(rows(1, 3));
    model.setLive(true);
    QCOMPARE(model.count(), Platform::instance()->journal()->count());
    QVERIFY(model.count() > 0);
    QVERIFY(!calls(model).contains(QStringLiteral("call 1")));

    Platform::instance()->faults()->fail(QStringLiteral("Volume.setMasterVolume"), 7);
    control->setMasterVolume(100);
    QCOMPARE(model.count(), Platform::instance()->journal()->count());
    model.setRefusedOnly(true);
    QCOMPARE(calls(model), QStringList(QStringLiteral("Volume.setMasterVolume(100) -> 7")));
    QCOMPARE(value(model, 0, JournalModel::OperationRole), QVariant(QStringLiteral("Volume.setMasterVolume")));
    QCOMPARE(value(model, 0, JournalModel::CauseRole), QVariant(QString()));
    QVERIFY(value(model, 0, JournalModel::ObjectRole).toString().startsWith(QLatin1String("Volume#")));
    QVERIFY(!value(model, 0, JournalModel::NoteRole).toString().isEmpty());

    model.setRefusedOnly(false);
    Platform::instance()->journal()->clear();
    QCOMPARE(model.count(), 0);
    control->setMasterVolume(100);
    const int count = model.count();
    QVERIFY(count > 0);
    model.setLive(false);
    control->setMasterVolume(100);
    QCOMPARE(model.count(), count);
}

void JournalModelTest::liveLimit()
{
    audio::AudioControl *const control = audio::AudioControl::getInstance();
    for (int i = 0; i < 20; ++i)
        control->setMute(i % 2 == 0);
    JournalModel model;
    model.setLimit(5);
    model.setLive(true);
    QCOMPARE(model.count(), 5);
    const auto entries = Platform::instance()->journal()->entries();
    QCOMPARE(calls(model).constFirst(), entries.at(entries.size() - 5).call());
}

void JournalModelTest::oneSignalForManyRows()
{
    JournalModel model;
    model.setLimit(1000);
    QSignalSpy inserted(&model, &JournalModel::rowsInserted);
    QSignalSpy removed(&model, &JournalModel::rowsRemoved);
    QSignalSpy reset(&model, &JournalModel::modelReset);
    model.append(rows(1, 1000));
    model.append(rows(1001, 1500));
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(reset.count(), 0);
}

/// A list of a long drive: what comes in a frame of 16 ms may take some of it only.
void JournalModelTest::manyRows()
{
    JournalModel model;
    const QVariantList many = rows(1, 100000);
    QElapsedTimer timer;
    timer.start();
    model.append(many);
    qInfo("100000 rows added: %lld ms", timer.restart());
    constexpr int frames = 1000;
    for (int frame = 0; frame < frames; ++frame)
        model.append({row(frame)});
    const qint64 added = timer.restart();
    qInfo("a row beyond the limit: %.3f ms", double(added) / frames);
    QVERIFY(added < 2 * frames);
    model.setText(QStringLiteral("nowhere to be found"));
    qInfo("a text that is nowhere, in the first turn: %lld ms", timer.restart());
    QCoreApplication::processEvents();
    QCOMPARE(model.count(), 0);
    model.setText({});
    QVERIFY(model.count() > 1000);
    QVERIFY(model.count() < 20000); // the rest is not waited for
    QCOMPARE(calls(model).constLast(), QStringLiteral("call 999"));
    QTRY_COMPARE(model.count(), 100000);
    QCOMPARE(value(model, 0, JournalModel::CallRole), QVariant(QStringLiteral("call 1001")));
    model.setRefusedOnly(true);
    QTRY_COMPARE(model.count(), 10000);
}

void JournalModelTest::rowsComeWhileFiltering()
{
    JournalModel model;
    model.append(rows(1, 100000));
    model.setRefusedOnly(true);
    QVERIFY(model.count() < 10000);
    model.append(rows(100001, 130000)); // three parts of ten of what is not looked through yet go meanwhile
    model.setOperation(QStringLiteral("Volume.setMute"));
    model.append(rows(130001, 150000));
    QTRY_COMPARE(model.count(), 10000);
    const QStringList shown = calls(model);
    for (int index = 0; index < shown.size(); ++index)
        QCOMPARE(shown.at(index), QStringLiteral("call %1").arg(50010 + 10 * index));
    // All of it goes before it was looked through.
    model.setRefusedOnly(false);
    model.append(rows(1, 100000));
    QCOMPARE(model.count(), 50000);
    QCoreApplication::processEvents();
    QCOMPARE(model.count(), 50000);
}

QTEST_GUILESS_MAIN(JournalModelTest)

#include "tst_journalmodel.moc"
